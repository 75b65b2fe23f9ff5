// A native report list over a VirtualList: its window asks for what it paints and tells the list of
// the user. It is a part of a control's window, which hands it its notifications.
#pragma once

#include <optional>

#include <windows.h>

#include <commctrl.h>

#include "controls/common/Appearance.h"
#include "controls/lists/VirtualList.h"
#include "controls/pictures/win32/IconStore.h"

namespace kavidex::controls::win32 {

class ListWindowWin32 final : public ListWindow {
public:
    explicit ListWindowWin32(VirtualList& logic) : lclLogic(logic) {}
    ~ListWindowWin32();
    ListWindowWin32(const ListWindowWin32&) = delete;
    ListWindowWin32& operator=(const ListWindowWin32&) = delete;

    // A child without a size, hidden; lives until its parent goes. Null when Windows refuses.
    HWND Create(HWND parent, int id);
    HWND Handle() const { return lclWindow; }
    // Null font: as it is. Unset colours: the system's.
    void BuildLook(int dpi, HFONT font, std::optional<COLORREF> back = {},
                   std::optional<COLORREF> fore = {});
    void Place(const RECT& place);
    void SetName(std::string_view name); // how it is called when it is read out

    // What the parent receives from the list or its heading; null: not from them.
    std::optional<LRESULT> Notified(NMHDR& header);
    // Whether a key is the list's, while it has the focus; all keys are its label editor's.
    bool UsesKey(WPARAM key) const;
    bool IsEditing(HWND window) const; // whether that window is the editor

    void RowsChanged() override;
    void TitlesChanged() override;
    void WidthsChanged() override;
    void SelectionChanged() override;
    void BoxesChanged() override;
    void ShowRow(std::size_t row) override;
    void EditRow(std::size_t row) override;

private:
    void Deselect();
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR id,
                                      DWORD_PTR self);
    std::optional<LRESULT> Handle(UINT message, WPARAM w, LPARAM l);
    void Gone();
    void GiveItem(LVITEMW& item);
    void OpenContextMenu(LPARAM position);
    void ReportSelection();
    void BoxClickedAt(POINT point);
    bool KeyPressed(WPARAM key);

    VirtualList& lclLogic;
    HWND lclWindow = nullptr;
    IconStore lclIcons;
    int lclDpi = 96;
    int lclQuiet = 0;             // above 0: what the list tells is our own doing
    bool lclWidthsByHand = false; // the user has drawn a column: the shares end
};

} // namespace kavidex::controls::win32
