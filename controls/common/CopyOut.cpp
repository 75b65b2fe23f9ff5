#include "controls/common/CopyOut.h"

#include <algorithm>

#include "model/clsItem.h"
#include "model/documentFile.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/TemporaryFolder.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::size_t longestName = 120; // bytes; leaves room for the folder in 260 characters

} // namespace

std::string OutgoingStem(std::string_view text) {
    std::string name;
    for (const char c : text) name += platform::CanBeInFileName(c) ? c : ' ';
    if (name.size() > longestName) {
        std::size_t end = longestName; // never within a character
        while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80) --end;
        name.resize(end);
    }
    name = platform::Trim(name);
    while (!name.empty() && (name.back() == '.' || name.back() == ' ')) name.pop_back();
    if (platform::IsDeviceName(name)) name.insert(std::min(name.find('.'), name.size()), "_");
    return name.empty() ? "document" : name;
}

std::string OutgoingName(const model::clsItem& item) {
    const auto stem = OutgoingStem(item.Description());
    std::string type;
    for (const char c : platform::Trim(item.ItemType()))
        if (platform::CanBeInFileName(c)) type += c;
    return type.empty() ? stem : stem + "." + type;
}

// None for what has no file by its nature.
std::optional<std::string> OutgoingDocuments::FileOf(const model::clsItem& item) {
    if (item.AllowChildren() || item.ItemId() <= 0 || item.Id() < 0) return std::nullopt;
    const auto document = lclDocuments.Of(item);
    const bool note = platform::EqualNoCase(item.ItemType(), "nnt");
    if (note && document.outcome == model::DocumentLook::FileMissing) return std::nullopt;
    if (!document.HasFile()) throw platform::Error(document.number, document.error);
    return document.path;
}

std::string OutgoingDocuments::CopyInto(std::string_view folder, const model::clsItem& item) {
    auto& files = lclWorkstation.files;
    const auto source = FileOf(item);
    if (!source) return {};
    const auto stem = platform::JoinPath(folder, OutgoingStem(item.Description()));
    const auto extension = "." + platform::Extension(*source);
    auto target = stem + extension;
    for (int n = 1; files.FileExists(target) || files.DirectoryExists(target); ++n)
        target = stem + " (" + std::to_string(n) + ")" + extension;
    files.Copy(*source, target, true);
    return target;
}

std::string OutgoingDocuments::Bytes(const model::clsItem& item) {
    const auto source = FileOf(item);
    return source ? lclWorkstation.files.ReadAll(*source) : std::string();
}

CopiedOut
CopyOut(const platform::Workstation& workstation, const data::ConnectionPtr& connection,
        OperationLock& lock, const data::Translation& translation,
        std::span<const std::shared_ptr<model::clsItem>> items, std::string_view folder,
        const std::function<void(const model::clsItem&, const std::string& path)>& heard) {
    OutgoingDocuments documents(workstation, connection);
    CopiedOut copied;
    Operation operation(lock);
    if (!operation)
        throw platform::Error(platform::errors::fail,
                              data::Translated(translation, "Er loopt nog een andere bewerking"));
    const auto caption = data::Translated(translation, "Documenten exporteren");
    const auto stop = data::Translated(translation, "Annuleren");
    operation.Show(caption, "", stop);
    for (std::size_t done = 0; done < items.size(); ++done) {
        const auto& item = items[done];
        if (!operation.Step(static_cast<int>(done), static_cast<int>(items.size()))) {
            copied.left = static_cast<std::size_t>(
                std::count_if(items.begin() + static_cast<std::ptrdiff_t>(done), items.end(),
                              [](const auto& one) { return !one->AllowChildren(); }));
            break;
        }
        if (!item->AllowChildren()) operation.Show(caption, item->Description());
        try {
            const auto target = documents.CopyInto(folder, *item);
            if (target.empty()) continue;
            copied.files.push_back(target);
            if (heard) heard(*item, target);
        } catch (const platform::Error& error) {
            workstation.log.Write("CopyOut", error.what());
            copied.failed.push_back(item->Description());
        }
    }
    return copied;
}

std::string MakeCopyFolder(const platform::Workstation& workstation) {
    constexpr int days = 7; // that whoever asked for the copies may take
    return platform::MakeTemporaryFolder(workstation, "Export", days);
}

} // namespace kavidex::controls
