// The tree control's window: a status label above a native tree, or above the list in its place.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <windows.h>

#include <commctrl.h>

#include "controls/common/win32/ItemTip.h"
#include "controls/common/win32/OwnWindow.h"
#include "controls/exchange/win32/DropTarget.h"
#include "controls/forms/win32/WindowsForms.h"
#include "controls/lists/win32/ListWindowWin32.h"
#include "controls/pictures/win32/IconStore.h"
#include "controls/tree/TreeWindow.h"

namespace kavidex::platform {
struct Workstation;
}
namespace kavidex::controls {
class ctrlTree;
}

namespace kavidex::controls::win32 {

class TreeWindowWin32 final : public OwnWindow, public TreeWindow, private DropReceiver {
public:
    TreeWindowWin32(ctrlTree& logic, const platform::Workstation& workstation);
    ~TreeWindowWin32() override { Destroy(); }

    HWND Create(HWND parent, const RECT& place) override;
    void TakeFocus() override;
    bool TranslateKey(const MSG& message) override;
    void Draw(HDC device, const RECT& place) const override;

    void SetRedraw(bool redraw) override;
    void Clear() override;
    NodeHandle AddNode(NodeHandle parent, const TreeNode& node) override;
    void Remove(NodeHandle node) override;
    void SetText(NodeHandle node, std::string_view text) override;
    void SetImages(NodeHandle node, int image, int expandedImage) override;
    void Select(NodeHandle node) override;
    NodeHandle Selected() const override;
    void EnsureVisible(NodeHandle node) override;
    void Expand(NodeHandle node, bool expand) override;
    bool IsExpanded(NodeHandle node) const override;
    void SetCheckBoxes(bool show) override;
    void SetChecked(NodeHandle node, bool checked) override;
    void SetCut(NodeHandle node, bool cut) override;
    void Repaint(NodeHandle node) override;
    void EditLabel(NodeHandle node) override;
    void SetDropTarget(NodeHandle node) override;
    int Image(std::string_view key) override { return lclImages.Index(key); }
    bool AddFileIcon(std::string_view extension, std::string_view key) override {
        return lclImages.AddFileIcon(extension, key);
    }
    void ShowList(bool list) override;
    void WakeSoon() override;
    void SetStatusText(std::string_view text) override;
    void ShowStatusBar(bool show) override;
    void SetColours(std::uint32_t back, std::uint32_t fore, bool opaque) override;
    void SetFont(const std::optional<FontFace>& font) override;
    void SetEnabled(bool enabled) override;
    void SetBorder(bool border) override;
    std::optional<std::size_t> ShowMenu(const PopupMenu& menu, int x, int y) override;
    std::int32_t Drag(const DropData& data, std::int32_t allowed) override;
    forms::FormPresenter* Forms() override { return &lclForms; }
    bool HasTopWindow(std::string_view title) override;

    using OwnWindow::Handle;
    LRESULT Handle(UINT message, WPARAM w, LPARAM l);

private:
    void DragSoon(std::int32_t id);
    static LRESULT CALLBACK TreeProcedure(HWND window, UINT message, WPARAM w, LPARAM l);
    static LRESULT CALLBACK GridProcedure(HWND window, UINT message, WPARAM w, LPARAM l,
                                          UINT_PTR id, DWORD_PTR self);
    void ExpandBelow(HTREEITEM top);
    LRESULT HandleTree(UINT message, WPARAM w, LPARAM l);
    LRESULT TreeMessage(UINT message, WPARAM w, LPARAM l);
    LRESULT Notified(NMHDR& header);
    LRESULT TreeNotified(NMHDR& header);
    void NodeChanged(const NMTREEVIEWW& change);
    bool MoveAlone(WPARAM key);
    bool ReportInput(UINT message, WPARAM w, LPARAM l);
    bool UsesKey(WPARAM key) const;
    void SwitchTyped();
    LRESULT CustomDraw(NMTVCUSTOMDRAW& draw) const;
    bool BeginLabelEdit(const NMTVDISPINFOW& info);
    void EndLabelEdit(const NMTVDISPINFOW& info);
    bool ClickedAt(bool doubleClick);
    void ReportCheck(HTREEITEM item);
    void OpenContextMenu(LPARAM position);
    void ShowTip(LPARAM position);
    void MouseEvent(UINT message, WPARAM w, LPARAM l);

    bool CreateChildren();
    HWND Shown() const { return lclList ? lclGrid.Handle() : lclTree; }
    void CreateGrid();
    void BuildGridLook();
    void Layout();
    void BuildLook();
    void ShowExpandedImage(HTREEITEM item, bool expanded);
    HTREEITEM HitTest(POINT screen, UINT* flags = nullptr) const;
    std::int32_t IdOf(HTREEITEM item) const; // 0: none

    std::int32_t DragMoved(DragState state, const DropData& data, const DropPlace& place) override;
    std::int32_t DragDropped(const DropData& data, const DropPlace& place) override;
    void DragTimer(UINT_PTR timer);
    void StopDragTimers();
    LRESULT LabelColours(HDC device);

    ctrlTree& lclLogic;
    const platform::Workstation& lclWorkstation;
    HWND lclTree = nullptr, lclLabel = nullptr, lclSwitch = nullptr;
    ListWindowWin32 lclGrid;
    ItemTip lclTip;
    WNDPROC lclNativeTree = nullptr;
    HFONT lclFont = nullptr;
    int lclDpi = 96;
    IconStore lclImages;
    forms::win32::WindowsForms lclForms{lclWorkstation, [this] { return lclWindow; }};
    std::vector<std::pair<int, int>> lclPairs; // closed and open images that differ
    std::optional<FontFace> lclFace;
    std::uint32_t lclBack = 0, lclFore = 0;
    bool lclOpaque = false;
    HBRUSH lclLabelBrush = nullptr; // behind the label, null for the surroundings' colour
    bool lclByMouse = false;        // the focus comes with a click
    int lclQuiet = 0;               // above 0: what the tree tells is our own doing
    bool lclStatusBar = true, lclCheckBoxes = false, lclList = false;
    bool lclOwnColours = false;
    WPARAM lclClickKeys = 0; // held when the button went down
    bool lclMoving = false;  // a key that moves the current node is at work
    bool lclKeypad = false;  // its plus, minus or star is: they are no text to look for
    DropRegistration lclDrops, lclGridDrops;
    HTREEITEM lclHovered = nullptr;
    POINT lclDragPoint{};
};

} // namespace kavidex::controls::win32
