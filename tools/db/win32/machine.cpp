#include "tools/db/machine.h"

#include <windows.h>

#include <objbase.h>
#include <shellapi.h>

#include "data/win32/LateAdoFactory.h"
#include "platform/text.h"

namespace kavidex::db {

// The narrow arguments have lost what the code page does not hold.
std::vector<std::string> Arguments(int, char**) {
    std::vector<std::string> arguments;
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!wide) return arguments;
    for (int i = 1; i < count; ++i)
        arguments.push_back(
            platform::ToUtf8(std::u16string_view(reinterpret_cast<const char16_t*>(wide[i]))));
    LocalFree(wide);
    return arguments;
}

std::unique_ptr<data::AdoFactory> MakeAdoFactory() {
    return std::make_unique<data::win32::LateAdoFactory>();
}

void Begin() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    SetConsoleOutputCP(CP_UTF8);
}

} // namespace kavidex::db
