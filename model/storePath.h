// Where documents lie in the store: base\yyyymmdd\type\id.type
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "data/Connection.h"
#include "data/Texts.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::model {

// The root of the installation's store (setting "Storage"/"DocumentPath"), ending in a backslash;
// none when the setting is absent or empty. Throws data::Error when it could not be read.
std::optional<std::string> FindStore(const platform::Workstation& workstation,
                                     const data::ConnectionPtr& connection);
// The same; an installation without one is told in a message box and gives an empty text.
std::string StoreOrTold(const platform::Workstation& workstation,
                        const data::ConnectionPtr& connection,
                        const data::Translation& translation);
// The box alone.
void TellNoStore(const platform::Workstation& workstation, const data::Translation& translation);

std::string WithBackslash(std::string_view folder); // ends in one, unless it is empty

// Throw platform::Error for a date or a type that could lead out of the store, which nothing may be
// read from or written to.
std::string TypeFolder(std::string_view base, std::string_view date, std::string_view type);
std::string DocumentPath(std::string_view base, std::string_view date, std::string_view type,
                         std::int32_t id);

// What has that name, none where nothing does. Throws platform::Error where the file system does
// not say: a file that could not be looked for is not absent.
std::optional<std::uint32_t> AttributesOf(const platform::Workstation& workstation,
                                          std::string_view path);
inline bool IsThere(const platform::Workstation& workstation, std::string_view path) {
    return AttributesOf(workstation, path).has_value();
}

// Makes the folder below a base that must be there: one that is missing is an unmounted drive or a
// typing error, and is never made. Throws platform::Error.
void MakeStoreFolder(const platform::Workstation& workstation, std::string_view base,
                     std::string_view folder);

// Deletes a source whose copy is there and holds the same bytes. Throws platform::Error, and
// deletes nothing, when it is not, or when the two are one file, however they are spelled.
void RemoveCopied(const platform::Workstation& workstation, std::string_view source,
                  std::string_view copy);

} // namespace kavidex::model
