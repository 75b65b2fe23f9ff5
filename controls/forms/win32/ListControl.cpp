// A list of rows with columns and pictures.
#include <algorithm>

#include <windows.h>

#include <commctrl.h>

#include "controls/common/win32/CheckImages.h"
#include "controls/forms/win32/CellEditor.h"
#include "controls/forms/win32/FieldControl.h"
#include "controls/forms/win32/ItemDrag.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::forms::win32 {

using platform::win32::ToWide;

namespace {

constexpr LPARAM selectionChanged = 1;

UINT CheckState(bool checked) { return INDEXTOSTATEIMAGEMASK(checked ? 2U : 1U); }

class ListControl final : public FieldControl {
public:
    using FieldControl::FieldControl;

    bool Create(HWND parent, int id) override {
        NameFor(parent);
        const FieldRow& row = lclField.Row();
        DWORD styles = WS_TABSTOP | WS_GROUP | LVS_REPORT | LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS;
        if (!row.Has(style::multi)) styles |= LVS_SINGLESEL;
        if (row.Has(style::noHeader) || row.columns.empty()) styles |= LVS_NOCOLUMNHEADER;
        if (!row.Has(style::sorts) && !lclForm.Handles(lclField, What::Heading))
            styles |= LVS_NOSORTHEADER;
        if (!Child(parent, id, WC_LISTVIEWW, styles, WS_EX_CLIENTEDGE)) return false;
        DWORD extra =
            LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_INFOTIP | LVS_EX_SUBITEMIMAGES;
        if (row.Has(style::checks)) {
            extra |= LVS_EX_CHECKBOXES;
            controls::win32::FreeCheckImages(lclWindow);
        }
        SendMessageW(lclWindow, LVM_SETEXTENDEDLISTVIEWSTYLE, extra, static_cast<LPARAM>(extra));
        MakeColumns();
        return true;
    }

    void ShowLook() override {
        FieldControl::ShowLook();
        const auto set = [&](WPARAM which, bool large) {
            SendMessageW(lclWindow, LVM_SETIMAGELIST, which,
                         reinterpret_cast<LPARAM>(lclLook.Pictures(large)));
        };
        set(LVSIL_SMALL, false);
        set(LVSIL_NORMAL, true);
    }

    void MoveTo(const RECT& place) override {
        FieldControl::MoveTo(place);
        EndEdit();
        PlaceColumns();
    }

    void Show(Aspect aspect) override {
        const Quiet quiet(*this);
        if (aspect == Aspect::Items) Fill();
        if (aspect == Aspect::Items || aspect == Aspect::Selection) ShowSelection();
        if (aspect == Aspect::Mode) ShowMode();
        if (aspect == Aspect::Text) NameColumns();
    }

    void ShowItem(std::int32_t id) override {
        const Quiet quiet(*this);
        const Item* item = lclField.Find(id);
        const int row = RowOf(id);
        if (item && row >= 0) SetRow(row, *item, false);
    }

    void EditItem(std::int32_t id, int column) override {
        const int row = RowOf(id);
        const Item* item = lclField.Find(id);
        if (row < 0 || !item || !CanEdit(column)) return;
        Flush();
        FieldEvent event{.field = lclField,
                         .what = What::Editing,
                         .item = id,
                         .column = column,
                         .text = item->Cell(static_cast<std::size_t>(column))};
        if (lclForm.Handles(lclField, What::Editing) && !lclForm.Raise(&event)) return;
        SendMessageW(lclWindow, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
        lclEditor.Open(lclWindow, CellAt(row, column), lclLook.Font(), event.text, event.choices,
                       [this, id, column](const std::string& text, int step) {
                           EndEdit(id, column, text, step);
                       });
    }

    void EndEdit() override { lclEditor.Close(true); }

    bool Notified(NMHDR& header, LRESULT& result) override {
        if (header.code == LVN_ITEMCHANGED) {
            if (!IsQuiet()) Changed(reinterpret_cast<NMLISTVIEW&>(header));
        } else if (header.code == LVN_ITEMACTIVATE) {
            Activated(reinterpret_cast<NMITEMACTIVATE&>(header));
        } else if (header.code == LVN_COLUMNCLICK) {
            Flush();
            lclForm.HeadingClicked(lclField, reinterpret_cast<NMLISTVIEW&>(header).iSubItem);
        } else if (header.code == LVN_BEGINDRAG && lclField.Row().Has(style::drags)) {
            Flush();
            BeginItemDrag(lclForm, lclField, lclLook, lclField.SelectedItems());
        } else {
            return false;
        }
        result = 0;
        return true;
    }

    std::int32_t ItemAt(POINT point, Place& place) const override {
        LVHITTESTINFO hit{};
        hit.pt = point;
        ScreenToClient(lclWindow, &hit.pt);
        const auto row = static_cast<int>(
            SendMessageW(lclWindow, LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
        if (row < 0) return 0;
        RECT bounds{LVIR_BOUNDS, 0, 0, 0};
        SendMessageW(lclWindow, LVM_GETITEMRECT, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(&bounds));
        place = hit.pt.y < (bounds.top + bounds.bottom) / 2 ? Place::Before : Place::After;
        return IdOf(row);
    }
    void MarkDrop(std::int32_t id, Place) override {
        SetState(-1, 0, LVIS_DROPHILITED);
        if (id) SetState(RowOf(id), LVIS_DROPHILITED, LVIS_DROPHILITED);
    }

    void Posted(LPARAM what) override {
        if (what == selectionChanged) Flush();
    }

    void Flush() override {
        if (!std::exchange(lclSelectionWaits, false)) return;
        std::vector<std::int32_t> ids;
        for (int row = -1; (row = Next(row)) >= 0;) ids.push_back(IdOf(row));
        lclForm.Chosen(lclField, std::move(ids));
    }

private:
    void MakeColumns() {
        static constexpr Column only[] = {{"", 0}};
        const auto& own = lclField.Row().columns;
        lclColumns = own.empty() ? std::span<const Column>(only) : own;
        for (std::size_t i = 0; i < lclColumns.size(); ++i) {
            LVCOLUMNW column{};
            column.mask = LVCF_FMT | LVCF_SUBITEM;
            column.fmt = lclColumns[i].right ? LVCFMT_RIGHT : LVCFMT_LEFT;
            column.iSubItem = static_cast<int>(i);
            SendMessageW(lclWindow, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
        }
        NameColumns();
    }

    void NameColumns() {
        for (std::size_t i = 0; i < lclColumns.size(); ++i) {
            auto caption = ToWide(lclForm.Text(lclColumns[i].caption));
            LVCOLUMNW column{};
            column.mask = LVCF_TEXT;
            column.pszText = caption.data();
            SendMessageW(lclWindow, LVM_SETCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
        }
    }

    void PlaceColumns() {
        RECT area;
        GetClientRect(lclWindow, &area);
        int left = area.right, shared = 0;
        if (!(GetWindowLongPtrW(lclWindow, GWL_STYLE) & WS_VSCROLL))
            left -= GetSystemMetrics(SM_CXVSCROLL);
        std::vector<int> widths;
        for (const Column& column : lclColumns) {
            widths.push_back(std::max(lclLook.Wide(column.width), HeadingWidth(column)));
            if (column.width) left -= widths.back();
            shared += column.width == 0;
        }
        for (std::size_t i = 0; i < lclColumns.size(); ++i) {
            if (lclColumns[i].width == 0) widths[i] = std::max(widths[i], left / shared);
            SendMessageW(lclWindow, LVM_SETCOLUMNWIDTH, i, MAKELPARAM(widths[i], 0));
        }
    }

    // What it needs, whatever the language.
    int HeadingWidth(const Column& column) const {
        constexpr int margins = 9;
        const auto caption = ToWide(lclForm.Text(column.caption));
        return static_cast<int>(SendMessageW(lclWindow, LVM_GETSTRINGWIDTHW, 0,
                                             reinterpret_cast<LPARAM>(caption.c_str()))) +
               lclLook.Wide(margins);
    }

    void Fill() {
        lclEditor.Close(false);
        SendMessageW(lclWindow, WM_SETREDRAW, FALSE, 0);
        SendMessageW(lclWindow, LVM_DELETEALLITEMS, 0, 0);
        SendMessageW(lclWindow, LVM_SETITEMCOUNT, lclField.Items().size(), 0);
        int row = 0;
        for (const Item& item : lclField.Items()) SetRow(row++, item, true);
        SendMessageW(lclWindow, WM_SETREDRAW, TRUE, 0);
        InvalidateRect(lclWindow, nullptr, TRUE);
        MarkHeading();
        PlaceColumns(); // a scroll bar may have come
    }

    void SetRow(int row, const Item& item, bool insert) {
        LVITEMW data{};
        auto text = ToWide(item.Cell());
        data.mask = LVIF_TEXT | LVIF_PARAM | LVIF_IMAGE;
        data.iItem = row;
        data.pszText = text.data();
        data.lParam = item.id;
        data.iImage = lclLook.Picture(item.icon);
        lclLook.Picture(item.icon, true); // both lists number alike
        if (data.iImage < 0) data.iImage = I_IMAGENONE;
        SendMessageW(lclWindow, insert ? LVM_INSERTITEMW : LVM_SETITEMW, 0,
                     reinterpret_cast<LPARAM>(&data));
        for (std::size_t i = 1; i < lclColumns.size(); ++i) {
            auto cell = ToWide(item.Cell(i));
            LVITEMW sub{};
            sub.iSubItem = static_cast<int>(i);
            sub.pszText = cell.data();
            SendMessageW(lclWindow, LVM_SETITEMTEXTW, static_cast<WPARAM>(row),
                         reinterpret_cast<LPARAM>(&sub));
        }
        if (lclField.Row().Has(style::checks))
            SetState(row, CheckState(item.checked), LVIS_STATEIMAGEMASK);
    }

    void SetState(int row, UINT state, UINT mask) {
        LVITEMW data{};
        data.state = state;
        data.stateMask = mask;
        SendMessageW(lclWindow, LVM_SETITEMSTATE, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(&data));
    }

    void ShowSelection() {
        lclSelectionWaits = false;
        SetState(-1, 0, LVIS_SELECTED);
        int first = -1;
        for (const auto id : lclField.SelectedItems()) {
            const int row = RowOf(id);
            if (row < 0) continue;
            SetState(row, LVIS_SELECTED | (first < 0 ? LVIS_FOCUSED : 0U),
                     LVIS_SELECTED | (first < 0 ? LVIS_FOCUSED : 0U));
            if (first < 0) first = row;
        }
        if (first >= 0)
            SendMessageW(lclWindow, LVM_ENSUREVISIBLE, static_cast<WPARAM>(first), FALSE);
    }

    void ShowMode() {
        constexpr LONG_PTR styles[] = {LVS_REPORT, LVS_ICON, LVS_LIST};
        const LONG_PTR old = GetWindowLongPtrW(lclWindow, GWL_STYLE) & ~LONG_PTR{LVS_TYPEMASK};
        SetWindowLongPtrW(lclWindow, GWL_STYLE,
                          old | styles[static_cast<std::size_t>(lclField.Mode())]);
        Fill();
        ShowSelection();
    }

    void MarkHeading() {
        const auto header = reinterpret_cast<HWND>(SendMessageW(lclWindow, LVM_GETHEADER, 0, 0));
        for (std::size_t i = 0; header && i < lclColumns.size(); ++i) {
            HDITEMW item{};
            item.mask = HDI_FORMAT;
            SendMessageW(header, HDM_GETITEMW, i, reinterpret_cast<LPARAM>(&item));
            item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
            if (lclField.SortColumn() == static_cast<int>(i))
                item.fmt |= lclField.SortDescending() ? HDF_SORTDOWN : HDF_SORTUP;
            SendMessageW(header, HDM_SETITEMW, i, reinterpret_cast<LPARAM>(&item));
        }
    }

    void Changed(const NMLISTVIEW& change) {
        if (!(change.uChanged & LVIF_STATE) || change.iItem < -1) return;
        const UINT differs = change.uOldState ^ change.uNewState;
        // The first state of an inserted row has no box yet.
        if (change.iItem >= 0 && (differs & LVIS_STATEIMAGEMASK) &&
            (change.uOldState & LVIS_STATEIMAGEMASK))
            lclForm.ItemChecked(lclField, IdOf(change.iItem),
                                (change.uNewState & LVIS_STATEIMAGEMASK) == CheckState(true));
        // One act of the user is told in several pieces.
        if ((differs & LVIS_SELECTED) && !std::exchange(lclSelectionWaits, true))
            Post(selectionChanged);
    }

    void Activated(const NMITEMACTIVATE& act) {
        Flush();
        if (act.iItem < 0) return;
        const auto id = IdOf(act.iItem);
        if (act.iSubItem >= 0 && CanEdit(act.iSubItem) && lclField.Mode() == ListMode::Rows)
            EditItem(id, act.iSubItem);
        else
            lclForm.Raise({.field = lclField, .what = What::Activated, .item = id});
    }

    bool CanEdit(int column) const {
        const auto at = static_cast<std::size_t>(column);
        return at < lclColumns.size() &&
               (lclColumns[at].edits || (column == 0 && lclField.Row().Has(style::edits)));
    }

    // `step`: to the next or previous cell that can be edited, by the Tab key.
    void EndEdit(std::int32_t id, int column, const std::string& text, int step) {
        lclForm.ItemEdited(lclField, id, column, text);
        const auto& items = lclField.Items();
        const auto columns = static_cast<int>(lclColumns.size());
        for (int row = RowOf(id), next = column + step; step != 0 && row >= 0;) {
            if (next < 0 || next >= columns) {
                row += step;
                next = step > 0 ? 0 : columns - 1;
            }
            if (row < 0 || row >= static_cast<int>(items.size())) return;
            if (CanEdit(next)) {
                const auto other = items[static_cast<std::size_t>(row)].id;
                lclField.Select(other);
                EditItem(other, next);
                return;
            }
            next += step;
        }
    }

    RECT CellAt(int row, int column) const {
        RECT cell{};
        cell.left = column == 0 ? LVIR_LABEL : LVIR_BOUNDS;
        cell.top = column;
        SendMessageW(lclWindow, LVM_GETSUBITEMRECT, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(&cell));
        return cell;
    }
    int Next(int row) const {
        return static_cast<int>(
            SendMessageW(lclWindow, LVM_GETNEXTITEM, static_cast<WPARAM>(row), LVNI_SELECTED));
    }
    std::int32_t IdOf(int row) const {
        const auto at = static_cast<std::size_t>(row);
        return at < lclField.Items().size() ? lclField.Items()[at].id : 0;
    }
    int RowOf(std::int32_t id) const {
        const auto& items = lclField.Items();
        for (std::size_t i = 0; i < items.size(); ++i)
            if (items[i].id == id) return static_cast<int>(i);
        return -1;
    }

    std::span<const Column> lclColumns;
    CellEditor lclEditor;
    bool lclSelectionWaits = false;
};

} // namespace

std::unique_ptr<FieldControl> MakeListControl(Form& form, Field& field, FormLook& look) {
    return std::make_unique<ListControl>(form, field, look);
}

} // namespace kavidex::controls::forms::win32
