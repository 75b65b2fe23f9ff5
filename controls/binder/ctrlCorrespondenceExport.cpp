// Counting the dossier's documents and copying them out of the store.
#include <algorithm>

#include "controls/binder/ctrlCorrespondenceGuarded.h"
#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
#include "model/documentFile.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Guids.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/modCreateGuid.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::int32_t notImplemented = static_cast<std::int32_t>(0x80004001);
constexpr std::size_t longestName = 120; // bytes; leaves room for the folder in 260 characters

// A description as a file name that Windows takes.
std::string FileNameOf(std::string_view description) {
    std::string name;
    for (const char c : description) name += platform::CanBeInFileName(c) ? c : ' ';
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

} // namespace

std::int32_t ctrlCorrespondence::ContainsDocuments(std::string_view prmType) const {
    return Usable() ? lclTree->CountDocuments(prmType) : 0;
}

std::int32_t ctrlCorrespondence::Copy(const std::vector<std::shared_ptr<model::clsItem>>& items,
                                      std::string_view folder, std::vector<std::string>& copies) {
    auto& files = lclWorkstation.files;
    model::DocumentFiles documents(lclWorkstation, DbConnection());
    std::int32_t failures = 0;
    Operation operation(lclLock);
    if (!operation) throw platform::Error(platform::errors::fail, "Another operation is running");
    operation.Show(Text("Documenten exporteren"), "", Text("Annuleren"));
    int done = 0;
    for (const auto& item : items) {
        if (!operation.Step(done++, static_cast<int>(items.size()))) break;
        if (item->AllowChildren() || item->ItemId() <= 0) continue;
        operation.Show(Text("Documenten exporteren"), item->Description());
        const auto document = documents.Of(*item);
        const bool note = platform::EqualNoCase(item->ItemType(), "nnt");
        if (note && document.outcome == model::DocumentLook::FileMissing)
            continue; // one in which nothing was written
        try {
            if (!document.HasFile()) throw platform::Error(document.number, document.error);
            const auto stem = platform::JoinPath(folder, FileNameOf(item->Description()));
            const auto extension = "." + platform::Extension(document.path);
            auto target = stem + extension;
            for (int n = 1; files.FileExists(target) || files.DirectoryExists(target); ++n)
                target = stem + " (" + std::to_string(n) + ")" + extension;
            files.Copy(document.path, target, true);
            copies.push_back(target);
        } catch (const platform::Error& error) {
            lclWorkstation.log.Write("ExportFiles", error.what());
            ++failures;
        }
    }
    return failures;
}

std::int32_t ctrlCorrespondence::ExportFiles(std::string_view prmDirectory) {
    std::int32_t result = -1;
    Guarded("ExportFiles", [&] {
        if (!Usable() || platform::TrimView(prmDirectory).empty()) return;
        lclWorkstation.files.CreateDirectories(prmDirectory);
        std::vector<std::string> copies;
        auto items = lclTree->AllItems();
        std::erase_if(items, [](const auto& item) { return item->Id() < 0; }); // deleted, but shown
        const auto failures = Copy(items, prmDirectory, copies);
        result = failures == 0 ? static_cast<std::int32_t>(copies.size()) : -failures;
    });
    return result;
}

std::vector<std::string> ctrlCorrespondence::ExportSelectedFiles(bool Merge,
                                                                 bool AddDescriptionPage) {
    if (Merge || AddDescriptionPage)
        throw platform::Error(notImplemented,
                              "Merging and description pages need the image component",
                              "ctrlCorrespondence");
    std::vector<std::string> copies;
    Guarded("ExportSelectedFiles", [&] {
        if (!Usable()) return;
        std::string guid;
        if (platform::CreateGuid(lclWorkstation, guid) != 0)
            throw platform::Error(platform::errors::fail, "No name for the folder of the export");
        const auto folder =
            lclWorkstation.files.TemporaryFolder() + "Kavidex-" + guid.substr(1, guid.size() - 2);
        lclWorkstation.files.CreateDirectories(folder);
        Copy(lclTree->SelectedItems(), folder, copies);
    });
    return copies;
}

} // namespace kavidex::controls
