#include <windows.h>

#include "imaging/pdfium/Pdfium.h"
#include "imaging/pdfium/PdfiumCalls.h"
#include "platform/Files.h"
#include "platform/win32/NewFile.h"
#include "platform/win32/Variant.h"

namespace kavidex::imaging {

void* LoadLibraryAt(std::string_view path) {
    // By its full path; what it needs is looked for beside it first.
    return LoadLibraryExW(platform::win32::WidePath(path).c_str(), nullptr,
                          LOAD_WITH_ALTERED_SEARCH_PATH);
}

void* FunctionOf(void* library, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

std::string PdfiumPath() {
    HMODULE module = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            reinterpret_cast<const wchar_t*>(&PdfiumPath), &module))
        return {};
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
    return platform::JoinPath(platform::FolderOf(platform::win32::FromWide(path)), "pdfium.dll");
}

} // namespace kavidex::imaging
