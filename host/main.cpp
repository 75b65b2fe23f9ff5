// The sample host: an OLE container with one binder control, driven as a business host would.
#include <windows.h>

#include <commctrl.h>
#include <ole2.h>
#include <shellapi.h>

#include <stdexcept>

#include "host/HostWindow.h"
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

// Where Kavidex.manifest lies beside this program, its classes are taken from there: nothing needs
// to be registered. Elsewhere those of the registry are used. Holds until the program ends.
void UseLibraryBeside() {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    if (length == 0 || length == MAX_PATH) return;
    std::wstring folder(path, length);
    folder.erase(folder.find_last_of(L'\\') + 1);
    const std::wstring manifest =
        folder + (sizeof(void*) == 8 ? L"Kavidex64" : L"Kavidex") + L".manifest";
    if (GetFileAttributesW(manifest.c_str()) == INVALID_FILE_ATTRIBUTES) return;
    ACTCTXW context{};
    context.cbSize = sizeof context;
    context.lpSource = manifest.c_str();
    const HANDLE made = CreateActCtxW(&context);
    ULONG_PTR cookie = 0;
    if (made == INVALID_HANDLE_VALUE || !ActivateActCtx(made, &cookie))
        throw std::runtime_error("Kavidex.manifest beside this program cannot be used.");
}

int Run() {
    try {
        UseLibraryBeside();
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
