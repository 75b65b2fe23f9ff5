// An entry of an initialisation file, read from its bytes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kavidex::platform {

// Section and key are found without case, the first of several counts; quotes around the value are
// taken off, as the system does. The bytes are of the system's code page, or of UTF-8 or UTF-16
// behind its mark. Null when there is no such entry.
std::optional<std::string> IniEntry(std::string_view bytes, std::string_view section,
                                    std::string_view key);

} // namespace kavidex::platform
