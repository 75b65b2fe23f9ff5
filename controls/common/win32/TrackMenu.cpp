#include "controls/common/win32/TrackMenu.h"

#include <commctrl.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/text.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

namespace {

// An ampersand within a name is no mnemonic; the shortcut stands at the right edge.
std::wstring MenuText(const MenuEntry& entry) {
    const auto split = static_cast<std::size_t>(std::max(entry.mnemonic, 0));
    const auto part = [&](std::size_t from, std::size_t count) {
        return platform::Replace(entry.caption.substr(from, count), "&", "&&");
    };
    std::string text =
        part(0, split) + (entry.mnemonic >= 0 ? "&" : "") + part(split, std::string::npos);
    if (!entry.shortcut.empty()) text += "\t" + entry.shortcut;
    return platform::win32::ToWide(text);
}

thread_local HWND tracking = nullptr; // the owner of the menu that is open

constexpr wchar_t ownTip[] = L"KavidexTip";

BOOL CALLBACK LetShow(HWND window, LPARAM show) {
    if (GetPropW(window, ownTip)) SendMessageW(window, TTM_ACTIVATE, static_cast<WPARAM>(show), 0);
    return TRUE;
}

void LetTipsShow(bool show) { EnumThreadWindows(GetCurrentThreadId(), LetShow, show); }

} // namespace

void HideTipUnderMenus(HWND tip) { SetPropW(tip, ownTip, tip); }

void EndMenuOf(HWND window) {
    if (tracking && (tracking == window || IsChild(window, tracking))) EndMenu();
}

void FillMenu(HMENU top, const PopupMenu& menu) {
    std::vector<HMENU> levels{top};
    for (std::size_t i = 0; i < menu.size(); ++i) {
        const auto& entry = menu[i];
        while (static_cast<int>(levels.size()) > entry.depth + 1) levels.pop_back();
        const bool owns = i + 1 < menu.size() && menu[i + 1].depth > entry.depth;
        if (entry.IsSeparator()) {
            AppendMenuW(levels.back(), MF_SEPARATOR, 0, nullptr);
            continue;
        }
        const auto caption = MenuText(entry);
        UINT flags = MF_STRING | (entry.enabled ? MF_ENABLED : MF_GRAYED) |
                     (entry.checked ? MF_CHECKED : MF_UNCHECKED);
        UINT_PTR id = i + 1;
        if (owns) {
            const HMENU below = CreatePopupMenu();
            AppendMenuW(levels.back(), flags | MF_POPUP, reinterpret_cast<UINT_PTR>(below),
                        caption.c_str());
            levels.push_back(below);
        } else {
            AppendMenuW(levels.back(), flags, id, caption.c_str());
        }
    }
}

std::optional<std::size_t> TrackMenu(HWND owner, const PopupMenu& menu, int x, int y) {
    const HMENU top = CreatePopupMenu();
    FillMenu(top, menu);
    const HWND around = std::exchange(tracking, owner);
    LetTipsShow(false);
    const int chosen = TrackPopupMenuEx(top, TPM_RETURNCMD | TPM_RIGHTBUTTON, x, y, owner, nullptr);
    tracking = around;
    if (!tracking) LetTipsShow(true);
    DestroyMenu(top); // and the menus below it
    if (chosen <= 0) return std::nullopt;
    return static_cast<std::size_t>(chosen) - 1;
}

} // namespace kavidex::controls::win32
