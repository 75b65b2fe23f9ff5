#include "controls/lists/win32/ListWindowWin32.h"

#include <algorithm>
#include <string>
#include <unordered_set>
#include <vector>

#include <windowsx.h>

#include "controls/common/win32/CheckImages.h"
#include "controls/common/win32/Look.h"
#include "controls/common/win32/OwnWindow.h"
#include "controls/common/win32/TrackMenu.h"
#include "platform/win32/OwnCall.h"
#include "platform/win32/Owner.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

namespace {

struct Quiet {
    int& count;
    explicit Quiet(int& counter) : count(counter) { ++count; }
    ~Quiet() { --count; }
};

constexpr UINT marked = LVIS_SELECTED | LVIS_FOCUSED;
constexpr int longestText = 255; // of the database's columns

std::size_t RowNumber(int item) { return static_cast<std::size_t>(std::max(item, 0)); }

} // namespace

ListWindowWin32::~ListWindowWin32() {
    if (!lclWindow) return;
    const HWND window = lclWindow;
    Gone();
    RemoveWindowSubclass(window, Procedure, 1);
}

// The parent and the list go, or this does.
void ListWindowWin32::Gone() {
    lclLogic.AttachWindow(nullptr);
    if (lclWindow) ListView_SetImageList(lclWindow, nullptr, LVSIL_SMALL);
    lclIcons.Destroy();
    lclWindow = nullptr;
    lclWidthsByHand = false;
}

HWND ListWindowWin32::Create(HWND parent, int id) {
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    const DWORD style = WS_CHILD | WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS | LVS_OWNERDATA |
                        LVS_EDITLABELS | LVS_SHAREIMAGELISTS |
                        (lclLogic.ManySelected() ? 0U : LVS_SINGLESEL);
    lclWindow = CreateWindowExW(WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"", style, 0, 0, 0, 0, parent,
                                reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                platform::win32::OwnModule(), nullptr);
    if (!lclWindow) return nullptr;
    ListView_SetExtendedListViewStyle(lclWindow,
                                      LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP | LVS_EX_DOUBLEBUFFER);
    HideTipUnderMenus(ListView_GetToolTips(lclWindow));
    SetWindowSubclass(lclWindow, Procedure, 1, reinterpret_cast<DWORD_PTR>(this));
    FreeCheckImages(lclWindow);
    lclLogic.AttachWindow(this);
    return lclWindow;
}

void ListWindowWin32::BuildLook(int dpi, HFONT font, std::optional<COLORREF> back,
                                std::optional<COLORREF> fore) {
    if (!lclWindow) return;
    const bool resized = dpi != std::exchange(lclDpi, dpi);
    if (font) SendMessageW(lclWindow, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    ListView_SetBkColor(lclWindow, back.value_or(GetSysColor(COLOR_WINDOW)));
    ListView_SetTextBkColor(lclWindow, back.value_or(GetSysColor(COLOR_WINDOW)));
    ListView_SetTextColor(lclWindow, fore.value_or(GetSysColor(COLOR_WINDOWTEXT)));
    ListView_SetImageList(lclWindow, nullptr, LVSIL_SMALL);
    lclIcons.Build(dpi);
    if (lclLogic.HasPictures()) ListView_SetImageList(lclWindow, lclIcons.Handle(), LVSIL_SMALL);
    if (resized) lclWidthsByHand = false;
    WidthsChanged();
    InvalidateRect(lclWindow, nullptr, TRUE);
}

void ListWindowWin32::Place(const RECT& place) {
    if (!lclWindow) return;
    Put(lclWindow, {place.left, place.top, std::max(place.left, place.right),
                    std::max(place.top, place.bottom)});
}

void ListWindowWin32::SetName(std::string_view name) {
    if (lclWindow) ShowText(lclWindow, platform::win32::ToWide(name));
}

// --- What the list shows ------------------------------------------------------------------------

void ListWindowWin32::RowsChanged() {
    const Quiet quiet(lclQuiet);
    if (lclLogic.HasPictures() && lclIcons.Handle() &&
        !ListView_GetImageList(lclWindow, LVSIL_SMALL))
        ListView_SetImageList(lclWindow, lclIcons.Handle(), LVSIL_SMALL);
    ListView_SetItemCountEx(lclWindow, static_cast<int>(lclLogic.Count()), 0);
    WidthsChanged(); // a scroll bar may have come or gone
    InvalidateRect(lclWindow, nullptr, TRUE);
}

void ListWindowWin32::TitlesChanged() {
    const HWND header = ListView_GetHeader(lclWindow);
    const int present = header ? Header_GetItemCount(header) : 0;
    for (int i = 0; i < static_cast<int>(lclLogic.Columns()); ++i) {
        auto title = platform::win32::ToWide(lclLogic.Title(static_cast<std::size_t>(i)));
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_SUBITEM;
        column.pszText = title.data();
        column.iSubItem = i;
        if (i < present)
            ListView_SetColumn(lclWindow, i, &column);
        else
            ListView_InsertColumn(lclWindow, i, &column);
    }
    WidthsChanged(); // a longer one needs more room
}

void ListWindowWin32::WidthsChanged() {
    if (!lclWindow || lclWidthsByHand) return;
    const Quiet quiet(lclQuiet);
    RECT inside{};
    GetClientRect(lclWindow, &inside);
    constexpr int margins = 16; // around a heading's text, at 96 dots an inch
    std::vector<int> titles;
    for (std::size_t i = 0; i < lclLogic.Columns(); ++i)
        titles.push_back(
            ListView_GetStringWidth(lclWindow, platform::win32::ToWide(lclLogic.Title(i)).c_str()) +
            margins * lclDpi / 96);
    const auto widths = lclLogic.Widths(inside.right, lclDpi, titles);
    for (std::size_t i = 0; i < widths.size(); ++i)
        ListView_SetColumnWidth(lclWindow, static_cast<int>(i), widths[i]);
}

// Few one by one: for all together some lists go through every row.
void ListWindowWin32::Deselect() {
    constexpr UINT few = 64;
    if (ListView_GetSelectedCount(lclWindow) > few)
        ListView_SetItemState(lclWindow, -1, 0, LVIS_SELECTED);
    for (int row = -1; ListView_GetSelectedCount(lclWindow) > 0 &&
                       (row = ListView_GetNextItem(lclWindow, row, LVNI_SELECTED)) >= 0;)
        ListView_SetItemState(lclWindow, row, 0, LVIS_SELECTED);
}

void ListWindowWin32::SelectionChanged() {
    const Quiet quiet(lclQuiet);
    Deselect();
    const auto& selected = lclLogic.Selected();
    if (selected.empty()) return;
    if (selected.size() == lclLogic.Count() && selected.size() > 1) {
        ListView_SetItemState(lclWindow, -1, LVIS_SELECTED, LVIS_SELECTED);
        return;
    }
    const std::unordered_set<std::int32_t> among(selected.begin(), selected.end());
    for (std::size_t row = 0; row < lclLogic.Count(); ++row) {
        const auto id = lclLogic.Id(row);
        if (!among.contains(id)) continue;
        const UINT state = id == selected.front() ? marked : LVIS_SELECTED;
        ListView_SetItemState(lclWindow, static_cast<int>(row), state, state);
    }
}

void ListWindowWin32::BoxesChanged() {
    const bool boxes = lclLogic.HasBoxes();
    // What is ticked is asked for, as all that a row shows.
    ListView_SetCallbackMask(lclWindow, boxes ? LVIS_STATEIMAGEMASK : 0);
    ListView_SetExtendedListViewStyleEx(lclWindow, LVS_EX_CHECKBOXES,
                                        boxes ? LVS_EX_CHECKBOXES : 0);
    InvalidateRect(lclWindow, nullptr, TRUE);
}

void ListWindowWin32::EditRow(std::size_t row) {
    ::SetFocus(lclWindow); // without the focus the list edits nothing
    ListView_EditLabel(lclWindow, static_cast<int>(row));
}

void ListWindowWin32::ShowRow(std::size_t row) {
    const Quiet quiet(lclQuiet);
    ListView_SetItemState(lclWindow, static_cast<int>(row), LVIS_FOCUSED, LVIS_FOCUSED);
    ListView_EnsureVisible(lclWindow, static_cast<int>(row), FALSE);
}

void ListWindowWin32::GiveItem(LVITEMW& item) {
    const auto row = static_cast<std::size_t>(item.iItem);
    if (item.iItem < 0 || row >= lclLogic.Count()) return;
    if (item.mask & LVIF_IMAGE) item.iImage = lclIcons.Of(lclLogic.Picture(row));
    if ((item.mask & LVIF_STATE) && lclLogic.HasBoxes()) {
        item.state = INDEXTOSTATEIMAGEMASK(lclLogic.Ticked(row) ? 2 : 1);
        item.stateMask = LVIS_STATEIMAGEMASK;
    }
    if (!(item.mask & LVIF_TEXT) || item.cchTextMax < 1) return;
    const auto text = platform::win32::ToWide(
        lclLogic.Text(row, static_cast<std::size_t>(std::max(item.iSubItem, 0))));
    const auto length =
        std::min<std::size_t>(text.size(), static_cast<std::size_t>(item.cchTextMax) - 1);
    text.copy(item.pszText, length);
    item.pszText[length] = L'\0';
}

// --- What the user does -------------------------------------------------------------------------

void ListWindowWin32::ReportSelection() {
    if (lclQuiet) return;
    std::vector<std::size_t> rows;
    for (int row = -1; (row = ListView_GetNextItem(lclWindow, row, LVNI_SELECTED)) >= 0;)
        rows.push_back(static_cast<std::size_t>(row));
    lclLogic.RowsSelected(rows);
}

std::optional<LRESULT> ListWindowWin32::Notified(NMHDR& header) {
    if (!lclWindow || header.hwndFrom != lclWindow) return std::nullopt;
    switch (header.code) {
    case LVN_GETDISPINFOW: GiveItem(reinterpret_cast<NMLVDISPINFOW&>(header).item); return 0;
    case LVN_ODFINDITEMW: {
        const auto& search = reinterpret_cast<NMLVFINDITEMW&>(header);
        if (!(search.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) || !search.lvfi.psz) return -1;
        const auto found = lclLogic.Find(platform::win32::FromWide(search.lvfi.psz),
                                         static_cast<std::size_t>(std::max(search.iStart, 0)));
        return found ? static_cast<LRESULT>(*found) : -1;
    }
    case LVN_COLUMNCLICK:
        lclLogic.HeadingClicked(RowNumber(reinterpret_cast<NMLISTVIEW&>(header).iSubItem));
        return 0;
    case NM_CLICK: BoxClickedAt(reinterpret_cast<NMITEMACTIVATE&>(header).ptAction); return 0;
    case LVN_BEGINLABELEDITW: {
        const HWND edit = ListView_GetEditControl(lclWindow);
        SendMessageW(edit, EM_LIMITTEXT, longestText, 0);
        return !lclLogic.EditBegun(RowNumber(reinterpret_cast<NMLVDISPINFOW&>(header).item.iItem));
    }
    case LVN_ENDLABELEDITW: {
        const auto* text = reinterpret_cast<NMLVDISPINFOW&>(header).item.pszText;
        if (text) lclLogic.EditEnded(platform::win32::FromWide(text));
        return FALSE; // the rows have the new text, or the old one stays
    }
    case LVN_ITEMCHANGED: {
        const auto& change = reinterpret_cast<NMLISTVIEW&>(header);
        if ((change.uChanged & LVIF_STATE) &&
            ((change.uNewState ^ change.uOldState) & LVIS_SELECTED))
            ReportSelection();
        return 0;
    }
    case LVN_ODSTATECHANGED: ReportSelection(); return 0;
    case LVN_ITEMACTIVATE:
        // By the keyboard the notification names no row.
        if (const int row = ListView_GetNextItem(lclWindow, -1, LVNI_FOCUSED); row >= 0)
            lclLogic.RowActivated(static_cast<std::size_t>(row));
        return 0;
    case LVN_BEGINDRAG:
        if (const int row = reinterpret_cast<NMLISTVIEW&>(header).iItem; row >= 0)
            lclLogic.DragStarted.Raise(lclLogic.Id(static_cast<std::size_t>(row)));
        return 0;
    case NM_SETFOCUS:
        // The keyboard needs a row to start from; a click brings its own.
        if (ListView_GetNextItem(lclWindow, -1, LVNI_FOCUSED) < 0 && lclLogic.Count() > 0 &&
            GetKeyState(VK_LBUTTON) >= 0 && GetKeyState(VK_RBUTTON) >= 0)
            ListView_SetItemState(lclWindow, 0, marked, marked);
        lclLogic.FocusTaken.Raise();
        return 0;
    default: return 0;
    }
}

void ListWindowWin32::BoxClickedAt(POINT point) {
    LVHITTESTINFO hit{};
    hit.pt = point;
    if (ListView_HitTest(lclWindow, &hit) >= 0 && (hit.flags & LVHT_ONITEM) == LVHT_ONITEMSTATEICON)
        lclLogic.RowBoxClicked(RowNumber(hit.iItem));
}

bool ListWindowWin32::IsEditing(HWND window) const {
    return lclWindow && window != lclWindow && ListView_GetEditControl(lclWindow) == window;
}

bool ListWindowWin32::UsesKey(WPARAM key) const {
    return IsMoveKey(key) || key == VK_RETURN || key == VK_SPACE || key == VK_APPS;
}

void ListWindowWin32::OpenContextMenu(LPARAM position) {
    POINT point{GET_X_LPARAM(position), GET_Y_LPARAM(position)};
    std::optional<std::int32_t> id;
    if (position == -1) { // by the keyboard: below the current row
        const int row = ListView_GetNextItem(lclWindow, -1, LVNI_FOCUSED | LVNI_SELECTED);
        RECT place{};
        if (row >= 0 && ListView_GetItemRect(lclWindow, row, &place, LVIR_LABEL))
            id = lclLogic.Id(static_cast<std::size_t>(row));
        point = {place.left, place.bottom};
        ClientToScreen(lclWindow, &point);
    } else {
        LVHITTESTINFO hit{};
        hit.pt = point;
        ScreenToClient(lclWindow, &hit.pt);
        if (const int row = ListView_HitTest(lclWindow, &hit); row >= 0)
            id = lclLogic.Id(static_cast<std::size_t>(row));
    }
    lclLogic.ContextMenu.Raise(id, point.x, point.y);
}

bool ListWindowWin32::KeyPressed(WPARAM key) {
    const Shortcut shortcut{static_cast<int>(key), GetKeyState(VK_CONTROL) < 0,
                            GetKeyState(VK_SHIFT) < 0};
    bool used = false;
    lclLogic.KeyPressed.Raise(shortcut, used);
    const int current = ListView_GetNextItem(lclWindow, -1, LVNI_FOCUSED);
    if (!used && lclLogic.HasBoxes() && shortcut == Key(keys::space) && current >= 0) {
        lclLogic.RowBoxClicked(RowNumber(current));
        used = true;
    }
    if (!used && lclLogic.ManySelected() && shortcut == Ctrl('A')) {
        lclLogic.SelectAll();
        used = true;
    }
    return used;
}

LRESULT CALLBACK ListWindowWin32::Procedure(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                            DWORD_PTR self) {
    const platform::win32::OwnCall call;
    auto& list = *reinterpret_cast<ListWindowWin32*>(self);
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(window, Procedure, 1);
        const LRESULT result = DefSubclassProc(window, message, w, l);
        list.Gone();
        return result;
    }
    if (const auto answer = list.Handle(message, w, l)) return *answer;
    return DefSubclassProc(window, message, w, l);
}

std::optional<LRESULT> ListWindowWin32::Handle(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
    case WM_SIZE: {
        const LRESULT result = DefSubclassProc(lclWindow, message, w, l);
        WidthsChanged();
        return result;
    }
    case WM_NOTIFY: {
        const auto code = reinterpret_cast<const NMHDR*>(l)->code;
        if (!lclQuiet && (code == HDN_ENDTRACKW || code == HDN_ENDTRACKA)) lclWidthsByHand = true;
        return std::nullopt;
    }
    case WM_CONTEXTMENU: OpenContextMenu(l); return 0;
    case WM_KEYDOWN: return KeyPressed(w) ? std::optional<LRESULT>(0) : std::nullopt;
    default: return std::nullopt;
    }
}

} // namespace kavidex::controls::win32
