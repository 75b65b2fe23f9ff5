#include "tools/check/arguments.h"

#include <windows.h>

#include <shellapi.h>

#include "platform/text.h"

namespace kavidex::check {

// The narrow arguments have lost what the code page does not hold.
std::vector<std::string> Arguments(int, char**) {
    std::vector<std::string> arguments;
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!wide) return arguments;
    for (int i = 1; i < count; ++i) {
        const std::u16string_view text(reinterpret_cast<const char16_t*>(wide[i]));
        arguments.push_back(platform::Replace(platform::ToUtf8(text), "/", "\\"));
    }
    LocalFree(wide);
    return arguments;
}

} // namespace kavidex::check
