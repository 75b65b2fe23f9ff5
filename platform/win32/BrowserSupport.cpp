#include "platform/win32/BrowserSupport.h"

#include <windows.h>

#include <string>

#include "platform/win32/Variant.h"

namespace kavidex::platform::win32 {

namespace {

std::wstring TextAt(HKEY root, const std::wstring& path, const wchar_t* name) {
    wchar_t text[MAX_PATH] = L"";
    DWORD size = sizeof text - sizeof(wchar_t);
    const DWORD kinds = RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ; // expands where it is needed
    return RegGetValueW(root, path.c_str(), name, kinds, nullptr, text, &size) == ERROR_SUCCESS
               ? text
               : L"";
}

// A path in quotes, or with arguments behind it.
bool IsFileThere(std::wstring command) {
    if (command.starts_with(L'"')) command = command.substr(1, command.find(L'"', 1) - 1);
    wchar_t found[MAX_PATH];
    return !command.empty() &&
           SearchPathW(nullptr, command.c_str(), nullptr, MAX_PATH, found, nullptr) != 0;
}

bool IsWine() {
    const HMODULE system = GetModuleHandleW(L"ntdll.dll");
    return system && GetProcAddress(system, "wine_get_version");
}

bool HasWineEngine(HKEY root) {
    HKEY versions = nullptr;
    const wchar_t path[] = L"Software\\Wine\\MSHTML";
    if (RegOpenKeyExW(root, path, 0, KEY_READ, &versions) != ERROR_SUCCESS) return false;
    bool found = false;
    wchar_t name[64];
    DWORD size = 64;
    for (DWORD i = 0; RegEnumKeyExW(versions, i, name, &size, nullptr, nullptr, nullptr, nullptr) ==
                      ERROR_SUCCESS;
         ++i, size = 64)
        found |= !TextAt(versions, name, L"GeckoPath").empty();
    RegCloseKey(versions);
    return found;
}

// Microsoft's own list of controls that its browser must not run.
bool IsBlocked(const std::wstring& clsid) {
    DWORD flags = 0, size = sizeof flags;
    const std::wstring path =
        L"Software\\Microsoft\\Internet Explorer\\ActiveX Compatibility\\" + clsid;
    constexpr DWORD killBit = 0x400;
    return RegGetValueW(HKEY_LOCAL_MACHINE, path.c_str(), L"Compatibility Flags", RRF_RT_REG_DWORD,
                        nullptr, &flags, &size) == ERROR_SUCCESS &&
           (flags & killBit);
}

} // namespace

bool HasBrowserEngine() {
    if (IsWine()) return HasWineEngine(HKEY_LOCAL_MACHINE) || HasWineEngine(HKEY_CURRENT_USER);
    const wchar_t htmlDocument[] = L"CLSID\\{25336920-03F9-11CF-8FD0-00AA00686F13}\\InprocServer32";
    return IsFileThere(TextAt(HKEY_CLASSES_ROOT, htmlDocument, nullptr));
}

bool BrowserShows(std::string_view mimeType) {
    if (!HasBrowserEngine()) return false;
    const auto clsid =
        TextAt(HKEY_CLASSES_ROOT, L"MIME\\Database\\Content Type\\" + ToWide(mimeType), L"CLSID");
    if (clsid.empty() || IsBlocked(clsid)) return false;
    for (const wchar_t* kind : {L"\\InprocServer32", L"\\LocalServer32"})
        if (IsFileThere(TextAt(HKEY_CLASSES_ROOT, L"CLSID\\" + clsid + kind, nullptr))) return true;
    return false;
}

} // namespace kavidex::platform::win32
