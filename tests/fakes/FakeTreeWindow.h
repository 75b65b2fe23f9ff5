// A tree window in memory that a test can read and steer.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "controls/tree/TreeEvents.h"
#include "controls/tree/TreeWindow.h"
#include "platform/Error.h"
#include "tests/fakes/FakeForms.h"

namespace kavidex::tests {

using controls::NodeHandle;

class FakeTreeWindow : public controls::TreeWindow {
public:
    struct Node {
        NodeHandle parent = 0;
        std::int32_t id = 0;
        std::string text;
        int image = -1, expandedImage = -1;
        bool expanded = false, checked = false, cut = false;
        std::vector<NodeHandle> children;
    };
    std::map<NodeHandle, Node> nodes{{0, {}}}; // 0 holds the roots
    std::vector<std::string> images{"closedtab", "opentab",      "attachtment",
                                    "Users",     "SelectedUser", "unknown"};
    std::set<std::string> withoutIcon; // extensions that the system does not know
    std::string failingIcon;
    std::vector<std::string> iconsAsked;
    std::string refusedText; // a node of that text is refused
    std::function<void()> onAdd;
    NodeHandle selected = 0, edited = 0;
    std::string status;
    bool redraw = true;
    int fills = 0, paintedAdds = 0; // paintedAdds: nodes added while redraw was on
    std::string topWindow;
    controls::DropData dragged;
    std::int32_t dragAllowed = 0;
    std::int32_t dragEffect = controls::drop::move; // what the target makes of a drag
    controls::PopupMenu menu;                       // the last one shown
    std::string choose;                             // the entry that the user takes
    std::function<void()> onMenu;                   // while it is open

    // The texts below a node, a level deeper one more dot.
    std::string Drawing(NodeHandle node = 0, const std::string& indent = {}) const {
        std::string lines;
        for (const auto child : nodes.at(node).children)
            lines += indent + nodes.at(child).text + "\n" + Drawing(child, indent + ".");
        return lines;
    }
    NodeHandle Find(std::int32_t id) const {
        for (const auto& [handle, node] : nodes)
            if (handle && node.id == id) return handle;
        return 0;
    }
    const Node& At(std::int32_t id) const { return nodes.at(Find(id)); }
    std::string ImageOf(std::int32_t id) const {
        return images.at(static_cast<std::size_t>(At(id).image));
    }

    void SetRedraw(bool on) override {
        redraw = on;
        fills += on;
    }
    void Clear() override { nodes = {{0, {}}}, selected = 0; }
    NodeHandle AddNode(NodeHandle parent, const controls::TreeNode& node) override {
        if (!refusedText.empty() && node.text == refusedText) return 0;
        if (onAdd) onAdd();
        paintedAdds += redraw;
        const auto handle = ++lclLast;
        nodes[handle] = {parent,
                         node.id,
                         std::string(node.text),
                         node.image,
                         node.expandedImage,
                         node.expanded,
                         false,
                         false,
                         {}};
        nodes.at(parent).children.push_back(handle);
        return handle;
    }
    void Remove(NodeHandle node) override {
        while (!nodes.at(node).children.empty()) Remove(nodes.at(node).children.back());
        std::erase(nodes.at(nodes.at(node).parent).children, node);
        nodes.erase(node);
        if (selected == node) selected = 0;
    }
    void SetText(NodeHandle node, std::string_view text) override { nodes.at(node).text = text; }
    void SetImages(NodeHandle node, int image, int expandedImage) override {
        nodes.at(node).image = image;
        nodes.at(node).expandedImage = expandedImage;
    }
    void Select(NodeHandle node) override {
        nodes.at(node);
        selected = node;
    }
    NodeHandle Selected() const override { return selected; }
    void EnsureVisible(NodeHandle) override {}
    void Expand(NodeHandle node, bool expand) override { nodes.at(node).expanded = expand; }
    bool IsExpanded(NodeHandle node) const override { return nodes.at(node).expanded; }
    void SetCheckBoxes(bool) override {}
    void SetChecked(NodeHandle node, bool checked) override { nodes.at(node).checked = checked; }
    void SetCut(NodeHandle node, bool cut) override { nodes.at(node).cut = cut; }
    void Repaint(NodeHandle node) override { nodes.at(node); }
    void EditLabel(NodeHandle node) override { edited = node; }
    void SetDropTarget(NodeHandle) override {}
    int Image(std::string_view key) override {
        for (std::size_t i = 0; i < images.size(); ++i)
            if (images[i] == key) return static_cast<int>(i);
        return -1;
    }
    bool AddFileIcon(std::string_view extension, std::string_view key) override {
        iconsAsked.emplace_back(extension);
        if (extension == failingIcon) throw platform::Error(platform::errors::fail, "no icon");
        if (withoutIcon.contains(std::string(extension))) return false;
        images.emplace_back(key);
        return true;
    }
    void ShowList(bool) override {}
    void WakeSoon() override {}
    void SetStatusText(std::string_view text) override { status = text; }
    void ShowStatusBar(bool) override {}
    void SetColours(std::uint32_t, std::uint32_t, bool) override {}
    void SetFont(const std::optional<controls::FontFace>&) override {}
    void SetEnabled(bool) override {}
    void SetBorder(bool) override {}
    std::optional<std::size_t> ShowMenu(const controls::PopupMenu& shown, int, int) override {
        menu = shown;
        if (onMenu) onMenu();
        for (std::size_t i = 0; i < menu.size(); ++i)
            if (menu[i].name == choose) return i;
        return std::nullopt;
    }
    std::int32_t Drag(const controls::DropData& data, std::int32_t allowed) override {
        dragged = data;
        dragAllowed = allowed;
        return allowed & dragEffect;
    }
    FakeForms forms;
    controls::forms::FormPresenter* Forms() override { return &forms; }
    bool HasTopWindow(std::string_view title) override {
        return !topWindow.empty() && title == topWindow;
    }

private:
    NodeHandle lclLast = 0;
};

} // namespace kavidex::tests
