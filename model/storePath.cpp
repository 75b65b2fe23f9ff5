#include "model/storePath.h"

#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::model {

std::string WithBackslash(std::string_view folder) {
    std::string result(folder);
    if (!result.empty() && result.back() != '\\') result += '\\';
    return result;
}

std::string TypeFolder(std::string_view base, std::string_view date, std::string_view type) {
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

void RemoveCopied(const platform::Workstation& workstation, std::string_view source,
                  std::string_view copy) {
    const auto plain = [](std::string_view path) { return platform::Replace(path, "/", "\\"); };
    if (platform::EqualNoCase(plain(source), plain(copy)))
        throw platform::Error(platform::errors::invalidArgument,
                              std::string(source) + " is the stored file itself.");
    if (!workstation.files.SameBytes(source, copy))
        throw platform::Error(platform::errors::fail, std::string(source) + " is kept: its copy " +
                                                          std::string(copy) + " differs from it.");
    workstation.files.Remove(source);
}

} // namespace kavidex::model
