// The nodes of the native tree.
#include <algorithm>

#include "controls/common/win32/CheckImages.h"
#include "controls/common/win32/TrackMenu.h"
#include "controls/tree/win32/TreeWindowWin32.h"
#include "platform/text.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

namespace {

HTREEITEM ItemOf(NodeHandle node) { return reinterpret_cast<HTREEITEM>(node); }
NodeHandle HandleOf(HTREEITEM item) { return reinterpret_cast<NodeHandle>(item); }

// UTF-16 without an allocation for texts of ordinary length.
class WideText {
public:
    explicit WideText(std::string_view text) {
        const int length = text.empty() ? 0
                                        : MultiByteToWideChar(CP_UTF8, 0, text.data(),
                                                              static_cast<int>(text.size()),
                                                              lclShort, std::size(lclShort) - 1);
        lclShort[length] = 0;
        if (length == 0 && !text.empty()) lclLong = platform::win32::ToWide(text);
    }
    wchar_t* Get() { return lclLong.empty() ? lclShort : lclLong.data(); }

private:
    wchar_t lclShort[300];
    std::wstring lclLong;
};

class Quiet {
public:
    explicit Quiet(int& counter) : lclCounter(counter) { ++lclCounter; }
    ~Quiet() { --lclCounter; }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    int& lclCounter;
};

} // namespace

void TreeWindowWin32::SetRedraw(bool redraw) {
    SendMessageW(lclTree, WM_SETREDRAW, redraw, 0);
    if (redraw) InvalidateRect(lclTree, nullptr, TRUE);
}

void TreeWindowWin32::Clear() {
    const Quiet quiet(lclQuiet);
    TreeView_DeleteAllItems(lclTree);
    lclHovered = nullptr;
    lclTip.Forget();
}

// Always behind the last sibling: any other place, or sorting, takes time that grows with the
// number of siblings.
NodeHandle TreeWindowWin32::AddNode(NodeHandle parent, const TreeNode& node) {
    WideText text(node.text);
    TVINSERTSTRUCTW insert{};
    insert.hParent = parent ? ItemOf(parent) : TVI_ROOT;
    insert.hInsertAfter = TVI_LAST;
    insert.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM;
    insert.item.pszText = text.Get();
    insert.item.iImage = insert.item.iSelectedImage = node.image;
    insert.item.lParam = node.id;
    if (node.expanded) { // at once: opening a folder that is filled already costs a new layout
        insert.item.mask |= TVIF_STATE;
        insert.item.state = insert.item.stateMask = TVIS_EXPANDED | TVIS_EXPANDEDONCE;
        insert.item.iImage = insert.item.iSelectedImage = node.expandedImage;
    }
    if (node.image != node.expandedImage) {
        const std::pair pair{node.image, node.expandedImage};
        if (std::find(lclPairs.begin(), lclPairs.end(), pair) == lclPairs.end())
            lclPairs.push_back(pair);
    }
    return HandleOf(reinterpret_cast<HTREEITEM>(
        SendMessageW(lclTree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert))));
}

void TreeWindowWin32::Remove(NodeHandle node) {
    const Quiet quiet(lclQuiet);
    lclHovered = nullptr;
    lclTip.Forget();
    TreeView_DeleteItem(lclTree, ItemOf(node));
}

void TreeWindowWin32::SetText(NodeHandle node, std::string_view text) {
    WideText wide(text);
    lclTip.Forget();
    TVITEMW item{};
    item.mask = TVIF_TEXT;
    item.hItem = ItemOf(node);
    item.pszText = wide.Get();
    SendMessageW(lclTree, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

void TreeWindowWin32::SetImages(NodeHandle node, int image, int expandedImage) {
    if (image != expandedImage) lclPairs.emplace_back(image, expandedImage);
    TVITEMW item{};
    item.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    item.hItem = ItemOf(node);
    item.iImage = item.iSelectedImage = IsExpanded(node) ? expandedImage : image;
    SendMessageW(lclTree, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

void TreeWindowWin32::ShowExpandedImage(HTREEITEM node, bool expanded) {
    TVITEMW item{};
    item.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    item.hItem = node;
    SendMessageW(lclTree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    for (const auto& [closed, open] : lclPairs) {
        const int from = expanded ? closed : open;
        if (item.iImage != from) continue;
        item.iImage = item.iSelectedImage = expanded ? open : closed;
        SendMessageW(lclTree, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
        return;
    }
}

void TreeWindowWin32::Select(NodeHandle node) {
    const Quiet quiet(lclQuiet);
    TreeView_SelectItem(lclTree, ItemOf(node));
}

NodeHandle TreeWindowWin32::Selected() const { return HandleOf(TreeView_GetSelection(lclTree)); }

void TreeWindowWin32::EnsureVisible(NodeHandle node) {
    if (node) TreeView_EnsureVisible(lclTree, ItemOf(node));
}

void TreeWindowWin32::Expand(NodeHandle node, bool expand) {
    const Quiet quiet(lclQuiet);
    TreeView_Expand(lclTree, ItemOf(node), expand ? TVE_EXPAND : TVE_COLLAPSE);
    ShowExpandedImage(ItemOf(node), expand && IsExpanded(node));
}

bool TreeWindowWin32::IsExpanded(NodeHandle node) const {
    return TreeView_GetItemState(lclTree, ItemOf(node), TVIS_EXPANDED) & TVIS_EXPANDED;
}

void TreeWindowWin32::SetCheckBoxes(bool show) {
    if (show == lclCheckBoxes) return;
    lclCheckBoxes = show;
    const auto style = GetWindowLongPtrW(lclTree, GWL_STYLE);
    if (show) {
        SetWindowLongPtrW(lclTree, GWL_STYLE, style | TVS_CHECKBOXES);
        FreeCheckImages(lclTree);
        return;
    }
    const auto boxes = TreeView_SetImageList(lclTree, nullptr, TVSIL_STATE);
    if (boxes) ImageList_Destroy(boxes);
    SetWindowLongPtrW(lclTree, GWL_STYLE, style & ~static_cast<LONG_PTR>(TVS_CHECKBOXES));
}

void TreeWindowWin32::SetChecked(NodeHandle node, bool checked) {
    const Quiet quiet(lclQuiet);
    TreeView_SetCheckState(lclTree, ItemOf(node), checked);
}

void TreeWindowWin32::SetCut(NodeHandle node, bool cut) {
    TreeView_SetItemState(lclTree, ItemOf(node), cut ? TVIS_CUT : 0, TVIS_CUT);
}

void TreeWindowWin32::Repaint(NodeHandle node) {
    RECT place{};
    if (!node)
        InvalidateRect(lclTree, nullptr, TRUE);
    else if (TreeView_GetItemRect(lclTree, ItemOf(node), &place, FALSE))
        InvalidateRect(lclTree, &place, TRUE);
}

void TreeWindowWin32::EditLabel(NodeHandle node) {
    ::SetFocus(lclTree); // the user asked for it; without the focus the tree edits nothing
    TreeView_EditLabel(lclTree, ItemOf(node));
}

void TreeWindowWin32::SetDropTarget(NodeHandle node) {
    TreeView_SelectDropTarget(lclTree, ItemOf(node));
}

HTREEITEM TreeWindowWin32::HitTest(POINT screen, UINT* flags) const {
    TVHITTESTINFO hit{};
    hit.pt = screen;
    ScreenToClient(lclTree, &hit.pt);
    const HTREEITEM item = TreeView_HitTest(lclTree, &hit);
    if (flags) *flags = hit.flags;
    return item;
}

std::int32_t TreeWindowWin32::IdOf(HTREEITEM node) const {
    if (!node) return 0;
    TVITEMW item{};
    item.mask = TVIF_PARAM;
    item.hItem = node;
    SendMessageW(lclTree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    return static_cast<std::int32_t>(item.lParam);
}

std::optional<std::size_t> TreeWindowWin32::ShowMenu(const PopupMenu& menu, int x, int y) {
    return TrackMenu(lclWindow, menu, x, y);
}

bool TreeWindowWin32::HasTopWindow(std::string_view title) {
    struct Search {
        std::string wanted;
        bool found;
    } search{platform::LowerCase(title), false};
    // A function of its own: a lambda has no calling convention to choose on 32 bits.
    struct Visitor {
        static BOOL CALLBACK Visit(HWND window, LPARAM parameter) {
            auto& sought = *reinterpret_cast<Search*>(parameter);
            wchar_t text[512];
            const int length = GetWindowTextW(window, text, std::size(text));
            const auto own = platform::win32::FromWide({text, static_cast<std::size_t>(length)});
            sought.found = platform::LowerCase(own).find(sought.wanted) != std::string::npos;
            return !sought.found;
        }
    };
    EnumWindows(Visitor::Visit, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

} // namespace kavidex::controls::win32
