// Reading and writing workstation options with the house's rules for missing values and errors.
#pragma once

#include <string>
#include <string_view>

namespace kavidex::platform {

struct Workstation;

inline constexpr std::string_view applicationName = "Kavidex";

// `fallback` when the key is missing or cannot be read, or when the stored text trimmed is "$%$".
std::string GetRegSetting(const Workstation& workstation, std::string_view application,
                          std::string_view section, std::string_view key,
                          std::string_view fallback);

// A failure is logged and otherwise ignored.
void SaveRegSetting(const Workstation& workstation, std::string_view application,
                    std::string_view section, std::string_view key, std::string_view value);

// Options kept as the texts "True" and "False"; anything but "true" (in any case) reads as false.
bool GetRegFlag(const Workstation& workstation, std::string_view section, std::string_view key);
void SaveRegFlag(const Workstation& workstation, std::string_view section, std::string_view key,
                 bool value);

} // namespace kavidex::platform
