// The sample host: an OLE container with one binder control, driven as a business host would.
#include <windows.h>

#include <commctrl.h>
#include <ole2.h>
#include <shellapi.h>

#include "host/HostWindow.h"
#include "platform/Error.h"
#include "platform/win32/Variant.h"

using namespace kavidex;

namespace {

std::vector<std::string> Words() {
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> result;
    for (int i = 1; i < count; ++i) result.push_back(platform::win32::FromWide(words[i]));
    LocalFree(words);
    return result;
}

int Run() {
    try {
        return host::HostWindow(host::ParseOptions(Words())).Run();
    } catch (const std::exception& error) {
        MessageBoxW(nullptr, platform::win32::ToWide(error.what()).c_str(), L"kavidex-host",
                    MB_OK | MB_ICONEXCLAMATION);
        return 2;
    }
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int) {
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES};
    InitCommonControlsEx(&controls);
    if (FAILED(OleInitialize(nullptr))) return 3;
    const int code = Run();
    OleUninitialize();
    return code;
}
