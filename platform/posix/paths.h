// The house's paths as this system takes them.
#pragma once

#include <string>
#include <string_view>

namespace kavidex::platform::posix {

// Backslashes become slashes; nothing else changes.
std::string ToNative(std::string_view path);
std::string FromNative(std::string_view path);

// The folder of `nativePath` as open() takes it, "." where the path has none.
std::string NativeFolder(const std::string& nativePath);

// $HOME, else the home of the account.
std::string HomeFolder();

} // namespace kavidex::platform::posix
