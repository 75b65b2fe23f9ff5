// Drags that begin here, and drops on the tree or on the list.
#include "controls/common/win32/Look.h"
#include "controls/tree/ctrlTree.h"
#include "controls/tree/win32/TreeWindowWin32.h"

namespace kavidex::controls::win32 {

namespace {

constexpr UINT_PTR tmrExpand = 1, tmrScroll = 2;
constexpr UINT hoverMilliseconds = 700, scrollMilliseconds = 80;

} // namespace

std::int32_t TreeWindowWin32::Drag(const DropData& data, std::int32_t allowed) {
    if (GetKeyState(VK_LBUTTON) >= 0) return drop::none; // it would be dropped where it lies
    return win32::Drag(data, allowed, Shown(),
                       {[&] {
                            std::int16_t format = CF_TEXT;
                            lclLogic.DragDataAsked.Raise(data, format);
                        },
                        [this](std::int32_t& effect, bool& pointers) {
                            lclLogic.DragFeedback.Raise(effect, pointers);
                        }});
}

std::int32_t TreeWindowWin32::DragMoved(DragState state, const DropData& data,
                                        const DropPlace& place) {
    const POINT point{place.x, place.y};
    // A list has no folders to choose from: what is dropped on it goes to the top.
    const HTREEITEM item = state == DragState::Leave || lclList ? nullptr : HitTest(point);
    lclDragPoint = point;
    if (item != lclHovered) {
        lclHovered = item;
        KillTimer(lclWindow, tmrExpand);
        if (item) SetTimer(lclWindow, tmrExpand, hoverMilliseconds, nullptr);
    }
    if (state == DragState::Enter) SetTimer(lclWindow, tmrScroll, scrollMilliseconds, nullptr);
    if (state == DragState::Leave) StopDragTimers();
    const auto effect = lclLogic.DragOver(state, data, IdOf(item));
    TreeView_SelectDropTarget(lclTree, effect == drop::none ? nullptr : item);
    return effect;
}

std::int32_t TreeWindowWin32::DragDropped(const DropData& data, const DropPlace& place) {
    StopDragTimers();
    const auto target = lclList ? 0 : IdOf(HitTest({place.x, place.y}));
    TreeView_SelectDropTarget(lclTree, nullptr);
    const auto effect = lclLogic.Dropped(data, target);
    // A drag that was still on its way while the drop was handled marks its folder again.
    if (lclTree) TreeView_SelectDropTarget(lclTree, nullptr);
    return effect;
}

void TreeWindowWin32::DragTimer(UINT_PTR timer) {
    if (timer == tmrExpand) {
        KillTimer(lclWindow, tmrExpand);
        const auto node = reinterpret_cast<NodeHandle>(lclHovered);
        if (!lclHovered || IsExpanded(node) || !TreeView_GetChild(lclTree, lclHovered)) return;
        Expand(node, true);
        lclLogic.HoverExpanded(IdOf(lclHovered));
    } else if (timer == tmrScroll) {
        RECT area{};
        GetWindowRect(lclTree, &area);
        if (!PtInRect(&area, lclDragPoint)) return;
        const int edge = Scaled(20, lclDpi);
        if (lclDragPoint.y < area.top + edge)
            SendMessageW(lclTree, WM_VSCROLL, SB_LINEUP, 0);
        else if (lclDragPoint.y > area.bottom - edge)
            SendMessageW(lclTree, WM_VSCROLL, SB_LINEDOWN, 0);
    }
}

void TreeWindowWin32::StopDragTimers() {
    KillTimer(lclWindow, tmrExpand);
    KillTimer(lclWindow, tmrScroll);
    lclHovered = nullptr;
}

} // namespace kavidex::controls::win32
