// The window that shows a folder tree, as the tree control's logic sees it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/common/Appearance.h"
#include "controls/common/PopupMenu.h"
#include "controls/exchange/DragDrop.h"

namespace kavidex::controls::forms {
class FormPresenter;
}

namespace kavidex::controls {

// A node of the window; valid until it is removed or the window cleared. 0 is no node.
using NodeHandle = std::uintptr_t;

struct TreeNode {
    std::int32_t id = 0;                // the model item's id, handed back with every gesture
    std::string_view text;              // UTF-8
    int image = -1, expandedImage = -1; // image numbers; equal for types with one image
    bool children = false;              // whether children will follow
    bool expanded = false;              // shown open from the start
};

// Images are addressed by key; a number is valid as long as the window lives.
class TreeWindow {
public:
    virtual ~TreeWindow() = default;

    // Between SetRedraw(false) and SetRedraw(true) nothing is painted. Does not nest.
    virtual void SetRedraw(bool redraw) = 0;
    virtual void Clear() = 0;
    // The new node is its parent's last child (parent 0: the last root). 0 when the window refused.
    virtual NodeHandle AddNode(NodeHandle parent, const TreeNode& node) = 0;
    virtual void Remove(NodeHandle node) = 0; // with all below it
    virtual void SetText(NodeHandle node, std::string_view text) = 0;
    virtual void SetImages(NodeHandle node, int image, int expandedImage) = 0;

    // Selects and shows the node, without a NodeSelected to the logic; 0 selects nothing.
    virtual void Select(NodeHandle node) = 0;
    virtual NodeHandle Selected() const = 0;
    virtual void EnsureVisible(NodeHandle node) = 0;
    virtual void Expand(NodeHandle node, bool expand) = 0;
    virtual bool IsExpanded(NodeHandle node) const = 0;
    virtual void SetCheckBoxes(bool show) = 0;
    virtual void SetChecked(NodeHandle node, bool checked) = 0;
    virtual void SetCut(NodeHandle node, bool cut) = 0; // shown dimmed
    // The node's part in the collected selection changed (0: that of many): paint it again.
    virtual void Repaint(NodeHandle node) = 0;
    virtual void EditLabel(NodeHandle node) = 0;
    virtual void SetDropTarget(NodeHandle node) = 0; // 0: none

    // The number of a picture by its key, -1 when there is none of that key.
    virtual int Image(std::string_view key) = 0;
    // Adds the system's icon of a file extension under the key; false when there is none.
    virtual bool AddFileIcon(std::string_view extension, std::string_view key) = 0;

    // The list (ctrlTree::Grid) in the tree's place, or the tree again; with the focus where one of
    // them has it.
    virtual void ShowList(bool list) = 0;
    // Calls ctrlTree::Woken once the messages at hand are handled.
    virtual void WakeSoon() = 0;

    virtual void SetStatusText(std::string_view text) = 0; // names the list too
    virtual void ShowStatusBar(bool show) = 0;
    // 0 as both colours: the system's. `opaque`: the label above the tree has them too, else the
    // surroundings'.
    virtual void SetColours(std::uint32_t back, std::uint32_t fore, bool opaque) = 0;
    virtual void SetFont(const std::optional<FontFace>& font) = 0;
    virtual void SetEnabled(bool enabled) = 0;
    virtual void SetBorder(bool border) = 0;

    // Shows the menu at a screen point and waits; the chosen entry's position in `menu`.
    virtual std::optional<std::size_t> ShowMenu(const PopupMenu& menu, int x, int y) = 0;
    // Drags that data as a button of the mouse is held and waits until it is dropped; the effect.
    // Tells the logic DragFeedback and DragDataAsked meanwhile.
    virtual std::int32_t Drag(const DropData& data, std::int32_t allowed) = 0;
    // Shows forms before the window; null: none can be shown.
    virtual forms::FormPresenter* Forms() = 0;
    // Whether a top-level window's title contains the text, without case.
    virtual bool HasTopWindow(std::string_view title) = 0;
};

} // namespace kavidex::controls
