#include "platform/win32/Owner.h"

#include <utility>
#include <vector>

namespace kavidex::platform::win32 {

namespace {

// Of this thread's controls: a host may have some on each of several.
thread_local HWND owner = nullptr;
thread_local std::vector<HWND> hosts; // the latest last
const int inThisModule = 0;

HWND TopOf(HWND window) {
    return window && IsWindow(window) ? GetAncestor(window, GA_ROOT) : nullptr;
}

} // namespace

void SetHost(HWND window) {
    DropHost(window);
    hosts.push_back(window);
}

void DropHost(HWND window) {
    std::erase_if(hosts, [=](HWND host) { return host == window || !IsWindow(host); });
}

HWND SetOwner(HWND window) { return std::exchange(owner, window); }

HWND Owner() {
    if (const HWND dialog = TopOf(owner)) return dialog;
    DropHost(nullptr);
    const HWND top = hosts.empty() ? nullptr : TopOf(hosts.back()), active = GetActiveWindow();
    for (HWND window = active; window; window = GetWindow(window, GW_OWNER))
        if (window == top) return active;
    return top;
}

HINSTANCE OwnModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&inThisModule), &module);
    return module;
}

} // namespace kavidex::platform::win32
