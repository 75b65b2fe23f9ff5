#include "com/Module.h"

#include <atomic>

#include "com/dispatch/LiveObjects.h"
#include "platform/win32/ComPtr.h"

namespace kavidex::com {

namespace {
std::atomic<long> locks{0};
} // namespace

HINSTANCE ThisModule() noexcept {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const wchar_t*>(&ThisModule), &module);
    return module;
}

std::wstring ModulePath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(ThisModule(), path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

HRESULT OwnTypeLib(ITypeLib** library) noexcept {
    *library = nullptr;
    try {
        return LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, library);
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT TypeInfoOf(REFGUID guid, ITypeInfo** info) noexcept {
    *info = nullptr;
    platform::win32::ComPtr<ITypeLib> library;
    const HRESULT loaded = OwnTypeLib(library.Put());
    return FAILED(loaded) ? loaded : library->GetTypeInfoOfGuid(guid, info);
}

void LockModule(bool lock) noexcept { lock ? ++locks : --locks; }

bool CanUnload() noexcept { return locks == 0 && LiveObjects() == 0; }

} // namespace kavidex::com
