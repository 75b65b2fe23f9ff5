// A tree of items.
#include <algorithm>
#include <cstring>
#include <unordered_map>

#include <windows.h>

#include <commctrl.h>

#include "controls/common/win32/CheckImages.h"
#include "controls/forms/win32/FieldControl.h"
#include "controls/forms/win32/ItemDrag.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::forms::win32 {

using platform::win32::FromWide;
using platform::win32::ToWide;

namespace {

constexpr LPARAM checkChanged = 1;

UINT CheckState(bool checked) { return INDEXTOSTATEIMAGEMASK(checked ? 2U : 1U); }

class TreeControl final : public FieldControl {
public:
    using FieldControl::FieldControl;

    bool Create(HWND parent, int id) override {
        NameFor(parent);
        const FieldRow& row = lclField.Row();
        DWORD styles = WS_TABSTOP | WS_GROUP | TVS_HASBUTTONS | TVS_LINESATROOT | TVS_HASLINES |
                       TVS_SHOWSELALWAYS;
        if (row.Has(style::edits)) styles |= TVS_EDITLABELS;
        if (!row.Has(style::drags)) styles |= TVS_DISABLEDRAGDROP;
        if (!Child(parent, id, WC_TREEVIEWW, styles, WS_EX_CLIENTEDGE)) return false;
        // Windows wants the boxes switched on after the window is there.
        if (row.Has(style::checks)) {
            SetWindowLongPtrW(lclWindow, GWL_STYLE,
                              GetWindowLongPtrW(lclWindow, GWL_STYLE) | TVS_CHECKBOXES);
            controls::win32::FreeCheckImages(lclWindow);
        }
        return true;
    }

    void ShowLook() override {
        FieldControl::ShowLook();
        ShowPictures();
    }

    void Show(Aspect aspect) override {
        const Quiet quiet(*this);
        if (aspect == Aspect::Items) Fill();
        if (aspect == Aspect::Items || aspect == Aspect::Selection) {
            const auto selected = NodeOf(lclField.Selected());
            SendMessageW(lclWindow, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(selected));
        }
    }

    void ShowItem(std::int32_t id) override {
        const Quiet quiet(*this);
        const Item* item = lclField.Find(id);
        const auto node = NodeOf(id);
        if (!item || !node) return;
        auto text = ToWide(item->Cell());
        TVITEMW data = Data(*item, text);
        data.hItem = node;
        SendMessageW(lclWindow, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&data));
        SendMessageW(lclWindow, TVM_EXPAND, item->expanded ? TVE_EXPAND : TVE_COLLAPSE,
                     reinterpret_cast<LPARAM>(node));
    }

    void EditItem(std::int32_t id, int) override {
        SetFocus(lclWindow);
        SendMessageW(lclWindow, TVM_EDITLABELW, 0, reinterpret_cast<LPARAM>(NodeOf(id)));
    }

    void EndEdit() override { SendMessageW(lclWindow, TVM_ENDEDITLABELNOW, FALSE, 0); }

    bool Notified(NMHDR& header, LRESULT& result) override {
        result = 0;
        switch (header.code) {
        case TVN_SELCHANGEDW:
            if (!IsQuiet()) Selected(reinterpret_cast<NMTREEVIEWW&>(header));
            return true;
        case TVN_ITEMEXPANDEDW:
            if (!IsQuiet()) Expanded(reinterpret_cast<NMTREEVIEWW&>(header));
            return true;
        case TVN_BEGINLABELEDITW:
            result = !MayEdit(reinterpret_cast<NMTVDISPINFOW&>(header).item);
            return true;
        case TVN_ENDLABELEDITW:
            result = Edited(reinterpret_cast<NMTVDISPINFOW&>(header).item);
            return true;
        case TVN_BEGINDRAGW: BeginDrag(reinterpret_cast<NMTREEVIEWW&>(header)); return true;
        case TVN_KEYDOWN:
            if (reinterpret_cast<NMTVKEYDOWN&>(header).wVKey == VK_SPACE) WatchCheck(CaretNode());
            return false;
        case NM_CLICK:
            if (const auto hit = Hit(); hit.flags & TVHT_ONITEMSTATEICON) WatchCheck(hit.hItem);
            return false;
        case NM_DBLCLK:
            if (const auto hit = Hit(); hit.flags & (TVHT_ONITEMICON | TVHT_ONITEMLABEL))
                result = lclForm.Raise({.field = lclField,
                                        .what = What::Activated,
                                        .item = IdOf(hit.hItem)}); // then it does not fold
            return true;
        default: return false;
        }
    }

    std::int32_t ItemAt(POINT point, Place& place) const override {
        TVHITTESTINFO hit{};
        hit.pt = point;
        ScreenToClient(lclWindow, &hit.pt);
        SendMessageW(lclWindow, TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
        if (!hit.hItem) return 0;
        RECT row;
        std::memcpy(&row, &hit.hItem, sizeof hit.hItem);
        SendMessageW(lclWindow, TVM_GETITEMRECT, FALSE, reinterpret_cast<LPARAM>(&row));
        const int quarter = (row.bottom - row.top) / 4;
        place = hit.pt.y < row.top + quarter       ? Place::Before
                : hit.pt.y >= row.bottom - quarter ? Place::After
                                                   : Place::On;
        return IdOf(hit.hItem);
    }
    void MarkDrop(std::int32_t id, Place place) override {
        const auto node = reinterpret_cast<LPARAM>(NodeOf(id));
        SendMessageW(lclWindow, TVM_SELECTITEM, TVGN_DROPHILITE, place == Place::On ? node : 0);
        SendMessageW(lclWindow, TVM_SETINSERTMARK, place == Place::After,
                     place == Place::On ? 0 : node);
    }

    // The box of a node turns only after its click or key was told.
    void Posted(LPARAM what) override {
        if (what == checkChanged) Flush();
    }
    void Flush() override {
        const auto node = std::exchange(lclWatched, nullptr);
        if (!node) return;
        const auto state = static_cast<UINT>(SendMessageW(
            lclWindow, TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(node), TVIS_STATEIMAGEMASK));
        lclForm.ItemChecked(lclField, IdOf(node),
                            (state & TVIS_STATEIMAGEMASK) == CheckState(true));
    }

private:
    TVITEMW Data(const Item& item, std::wstring& text) {
        TVITEMW data{};
        data.mask = TVIF_TEXT | TVIF_PARAM | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_STATE;
        data.pszText = text.data();
        data.lParam = item.id;
        data.iImage = data.iSelectedImage = lclLook.Picture(item.icon);
        data.stateMask = TVIS_BOLD;
        data.state = item.bold ? TVIS_BOLD : 0;
        if (lclField.Row().Has(style::checks)) {
            data.stateMask |= TVIS_STATEIMAGEMASK;
            data.state |= CheckState(item.checked);
        }
        if (item.children) {
            data.mask |= TVIF_CHILDREN;
            data.cChildren = 1;
        }
        return data;
    }

    // Without any there is no room for them either.
    void ShowPictures() {
        const auto& items = lclField.Items();
        const bool any = std::any_of(items.begin(), items.end(),
                                     [](const Item& item) { return !item.icon.empty(); });
        SendMessageW(lclWindow, TVM_SETIMAGELIST, TVSIL_NORMAL,
                     reinterpret_cast<LPARAM>(any ? lclLook.Pictures() : nullptr));
    }

    void Fill() {
        lclWatched = nullptr;
        ShowPictures();
        SendMessageW(lclWindow, WM_SETREDRAW, FALSE, 0);
        SendMessageW(lclWindow, TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
        lclNodes.clear();
        for (const Item& item : lclField.Items()) {
            auto text = ToWide(item.Cell());
            TVINSERTSTRUCTW insert{};
            const auto parent = NodeOf(item.parent);
            insert.hParent = parent ? parent : TVI_ROOT;
            insert.hInsertAfter = TVI_LAST;
            insert.item = Data(item, text);
            lclNodes[item.id] = reinterpret_cast<HTREEITEM>(
                SendMessageW(lclWindow, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
        }
        for (const Item& item : lclField.Items())
            if (item.expanded)
                SendMessageW(lclWindow, TVM_EXPAND, TVE_EXPAND,
                             reinterpret_cast<LPARAM>(NodeOf(item.id)));
        SendMessageW(lclWindow, WM_SETREDRAW, TRUE, 0);
        InvalidateRect(lclWindow, nullptr, TRUE);
    }

    void Selected(const NMTREEVIEWW& change) {
        Flush();
        const auto id = static_cast<std::int32_t>(change.itemNew.lParam);
        lclForm.Chosen(lclField,
                       change.itemNew.hItem ? std::vector{id} : std::vector<std::int32_t>{});
    }
    void Expanded(const NMTREEVIEWW& change) {
        lclForm.ItemExpanded(lclField, static_cast<std::int32_t>(change.itemNew.lParam),
                             change.action == TVE_EXPAND);
    }
    bool MayEdit(const TVITEMW& item) {
        Flush();
        FieldEvent event{.field = lclField,
                         .what = What::Editing,
                         .item = static_cast<std::int32_t>(item.lParam)};
        return !lclForm.Handles(lclField, What::Editing) || lclForm.Raise(&event);
    }
    bool Edited(const TVITEMW& item) {
        return item.pszText && lclForm.ItemEdited(lclField, static_cast<std::int32_t>(item.lParam),
                                                  0, FromWide(item.pszText));
    }
    void BeginDrag(const NMTREEVIEWW& drag) {
        const auto id = static_cast<std::int32_t>(drag.itemNew.lParam);
        lclField.Select(id);
        BeginItemDrag(lclForm, lclField, lclLook, {id});
    }
    TVHITTESTINFO Hit() const {
        const DWORD at = GetMessagePos();
        TVHITTESTINFO hit{};
        hit.pt = {static_cast<short>(LOWORD(at)), static_cast<short>(HIWORD(at))};
        ScreenToClient(lclWindow, &hit.pt);
        SendMessageW(lclWindow, TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
        return hit;
    }
    void WatchCheck(HTREEITEM node) {
        if (!node || !lclField.Row().Has(style::checks)) return;
        Flush();
        lclWatched = node;
        Post(checkChanged);
    }
    HTREEITEM CaretNode() const {
        return reinterpret_cast<HTREEITEM>(SendMessageW(lclWindow, TVM_GETNEXTITEM, TVGN_CARET, 0));
    }
    HTREEITEM NodeOf(std::int32_t id) const {
        const auto known = lclNodes.find(id);
        return known == lclNodes.end() ? nullptr : known->second;
    }
    std::int32_t IdOf(HTREEITEM node) const {
        TVITEMW data{};
        data.mask = TVIF_PARAM;
        data.hItem = node;
        SendMessageW(lclWindow, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&data));
        return static_cast<std::int32_t>(data.lParam);
    }

    std::unordered_map<std::int32_t, HTREEITEM> lclNodes;
    HTREEITEM lclWatched = nullptr;
};

} // namespace

std::unique_ptr<FieldControl> MakeTreeControl(Form& form, Field& field, FormLook& look) {
    return std::make_unique<TreeControl>(form, field, look);
}

} // namespace kavidex::controls::forms::win32
