// How a failing Windows call becomes an Error.
#pragma once

#include <string>
#include <string_view>

#include <windows.h>

namespace kavidex::platform::win32 {

// Throws for `cause` (a GetLastError number): "Cannot copy "a" to "b": There is not enough space".
[[noreturn]] void Fail(DWORD cause, std::string_view action, std::string_view path,
                       std::string_view target = {});

} // namespace kavidex::platform::win32
