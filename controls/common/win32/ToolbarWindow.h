// A native toolbar over any control's items, with pictures of ours and full use by keyboard.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

#include <commctrl.h>

#include "controls/common/PopupMenu.h"
#include "controls/common/Toolbar.h"
#include "controls/pictures/win32/SharedPictures.h"

namespace kavidex::controls::win32 {

class ToolbarWindow {
public:
    explicit ToolbarWindow(ToolbarSource& source) : lclSource(source) {}
    ToolbarWindow(const ToolbarWindow&) = delete;
    ToolbarWindow& operator=(const ToolbarWindow&) = delete;

    HWND Create(HWND parent, int id); // lives until its parent goes
    HWND Handle() const { return lclWindow; }
    void Forget(); // the parent is gone

    void BuildLook(int dpi); // pictures and sizes for that resolution
    void ShowButtons();      // visibility, enabling, state, tooltips
    int Height() const;
    void Place(int width);

    bool CanTakeFocus() const; // a button that can be pressed is there
    bool UsesKey(WPARAM key) const;
    std::optional<std::size_t> ShowMenu(const PopupMenu& menu, std::string_view button);
    // What the parent receives from the toolbar.
    void Command(int id);
    LRESULT Notified(NMHDR& header);

    // For drawing without a window.
    static void Draw(HDC device, const RECT& place, int dpi, const std::vector<ToolbarItem>& items);

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l);
    LRESULT Handle(HWND window, UINT message, WPARAM w, LPARAM l);
    bool Key(WPARAM key);
    void WriteState(int command, const ToolbarItem& item);
    void Measure();    // after what may change its height
    void Drop(int id); // opens what the button owns
    void MoveHot(int step);
    int NextEnabled(int from, int step) const; // -1: none that way

    int CommandOf(std::string_view name) const;
    const ToolbarItem* ItemOf(int command) const; // null: none

    ToolbarSource& lclSource;
    HWND lclWindow = nullptr;
    WNDPROC lclOwnProcedure = nullptr; // the toolbar's, below ours
    std::shared_ptr<SharedPictures> lclImages;
    int lclDpi = 96;
    bool lclFilled = false;
    mutable int lclHeight = 0;             // 0: to be measured
    std::vector<ToolbarItem> lclItems;     // as they were shown last
    std::vector<std::wstring> lclTooltips; // by position
};

} // namespace kavidex::controls::win32
