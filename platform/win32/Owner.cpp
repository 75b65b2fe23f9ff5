#include "platform/win32/Owner.h"

#include <utility>

namespace kavidex::platform::win32 {

namespace {

HWND owner = nullptr;

} // namespace

HWND SetOwner(HWND window) { return std::exchange(owner, window); }

HWND Owner() { return owner && IsWindow(owner) ? GetAncestor(owner, GA_ROOT) : nullptr; }

HINSTANCE OwnModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&owner), &module);
    return module;
}

} // namespace kavidex::platform::win32
