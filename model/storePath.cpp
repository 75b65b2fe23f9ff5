#include "model/storePath.h"

#include "model/Store.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::model {

std::optional<std::string> FindStore(const platform::Workstation& workstation,
                                     const data::ConnectionPtr& connection) {
    const auto root = ReadSetting(workstation, connection, "Storage", "DocumentPath");
    if (!root || root->empty()) return std::nullopt;
    return WithBackslash(*root);
}

std::string StoreOrTold(const platform::Workstation& workstation,
                        const data::ConnectionPtr& connection,
                        const data::Translation& translation) {
    if (auto root = FindStore(workstation, connection)) return std::move(*root);
    TellNoStore(workstation, translation);
    return {};
}

void TellNoStore(const platform::Workstation& workstation, const data::Translation& translation) {
    workstation.messages.Show(
        {.text = data::Translated(translation, "DocumentPath in section Storage not found")});
}

std::string WithBackslash(std::string_view folder) {
    std::string result(folder);
    if (!result.empty() && result.back() != '\\') result += '\\';
    return result;
}

std::string TypeFolder(std::string_view base, std::string_view date, std::string_view type) {
    for (const std::string_view name : {date, type})
        if (!name.empty() && !platform::IsFileName(name))
            throw platform::Error(platform::errors::invalidArgument,
                                  "\"" + std::string(name) +
                                      "\" cannot be a folder of the document store.",
                                  "clsDocument");
    return std::string(base).append(date).append("\\").append(type);
}

std::string DocumentPath(std::string_view base, std::string_view date, std::string_view type,
                         std::int32_t id) {
    return TypeFolder(base, date, type)
        .append("\\")
        .append(std::to_string(id))
        .append(".")
        .append(type);
}

std::optional<std::uint32_t> AttributesOf(const platform::Workstation& workstation,
                                          std::string_view path) {
    try {
        return workstation.files.Attributes(path);
    } catch (const platform::Error& error) {
        if (error.Number() == platform::errors::notFound ||
            error.Number() == platform::errors::pathNotFound)
            return std::nullopt;
        throw;
    }
}

void MakeStoreFolder(const platform::Workstation& workstation, std::string_view base,
                     std::string_view folder) {
    if (workstation.files.DirectoryExists(folder)) return;
    if (!workstation.files.DirectoryExists(base))
        throw platform::Error(platform::errors::pathNotFound,
                              "The document store \"" + std::string(base) + "\" is not there.",
                              "clsDocument");
    workstation.files.CreateDirectories(folder);
}

void RemoveCopied(const platform::Workstation& workstation, std::string_view source,
                  std::string_view copy) {
    platform::Files& files = workstation.files;
    if (files.SameFile(source, copy))
        throw platform::Error(platform::errors::invalidArgument,
                              std::string(source) + " is the stored file itself.");
    if (!files.SameBytes(source, copy))
        throw platform::Error(platform::errors::fail, std::string(source) + " is kept: its copy " +
                                                          std::string(copy) + " differs from it.");
    if (files.Attributes(source) & platform::attributes::readOnly)
        files.SetAttributes(source, platform::attributes::normal);
    files.Remove(source);
}

} // namespace kavidex::model
