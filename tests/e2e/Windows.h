// What a test looks for among the windows on the screen, and the messages that it waits through.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "platform/win32/Variant.h"

namespace kavidex::tests {

// The visible ones of that class anywhere below `parent`.
inline std::vector<HWND> AllVisible(HWND parent, const std::wstring& type) {
    struct Search {
        const std::wstring& type;
        std::vector<HWND> found;
        static BOOL CALLBACK Look(HWND window, LPARAM self) {
            auto& search = *reinterpret_cast<Search*>(self);
            wchar_t name[64] = L"";
            GetClassNameW(window, name, 64);
            if (search.type == name && IsWindowVisible(window)) search.found.push_back(window);
            return TRUE;
        }
    } search{type, {}};
    EnumChildWindows(parent, Search::Look, reinterpret_cast<LPARAM>(&search));
    return search.found;
}
// The first of them; where a text is given the one that shows it, mnemonics aside.
inline HWND Visible(HWND parent, const std::wstring& type, const wchar_t* text = nullptr) {
    for (const HWND window : AllVisible(parent, type)) {
        wchar_t shown[200] = L"";
        GetWindowTextW(window, shown, 200);
        std::wstring plain(shown);
        std::erase(plain, L'&');
        if (!text || plain == text) return window;
    }
    return nullptr;
}

inline std::string TextOf(HWND window) {
    wchar_t text[512] = L"";
    GetWindowTextW(window, text, 512);
    return platform::win32::FromWide(text);
}

// Whether it has come about within so many milliseconds of messages.
template <class Until>
bool PumpUntil(Until until, DWORD most = 60000) {
    const DWORD start = GetTickCount();
    while (!until()) {
        if (GetTickCount() - start > most) return false;
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        Sleep(5);
    }
    return true;
}

} // namespace kavidex::tests
