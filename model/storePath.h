// Where documents lie in the store: base\yyyymmdd\type\id.type
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::model {

std::string WithBackslash(std::string_view folder); // ends in one, unless it is empty
std::string TypeFolder(std::string_view base, std::string_view date, std::string_view type);
std::string DocumentPath(std::string_view base, std::string_view date, std::string_view type,
                         std::int32_t id);

// Deletes a source whose copy is there and holds the same bytes. Throws platform::Error, and
// deletes nothing, when it is not, or when the two are one file.
void RemoveCopied(const platform::Workstation& workstation, std::string_view source,
                  std::string_view copy);

} // namespace kavidex::model
