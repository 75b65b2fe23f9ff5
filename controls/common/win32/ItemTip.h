// A tooltip over the items of a window that shows many: each has a text of its own.
#pragma once

#include <windows.h>

#include <string>

namespace kavidex::controls::win32 {

class ItemTip {
public:
    ItemTip() = default;
    ItemTip(const ItemTip&) = delete;
    ItemTip& operator=(const ItemTip&) = delete;

    // Its own window is made at the first text, since it looks at every message of `window` from
    // then on, and goes with that.
    void Attach(HWND window);
    // The mouse moves over the item; 0: over none. The text is asked for once an item.
    template <class Ask>
    void Over(INT_PTR item, const RECT& place, Ask ask) {
        if (item != lclItem) Show(item, place, item ? ask() : std::wstring());
    }
    void Forget() { // the item is gone, or bears another text
        if (lclItem != 0) Show(0, {}, {});
    }

private:
    void Create();
    void Show(INT_PTR item, const RECT& place, std::wstring text);

    HWND lclWindow = nullptr, lclTip = nullptr;
    INT_PTR lclItem = 0;
};

} // namespace kavidex::controls::win32
