// A toolbar as its window is to show it, and the port through which the window tells of clicks.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kavidex::controls {

enum class CommandKind {
    Push,
    Toggle, // stays down while its state is checked
    Owner,  // opens what it owns: a sub menu, or what drops down from a button
    Split,  // acts, and has an arrow that opens what it owns
    Separator
};

struct ToolbarItem {
    std::string_view name;
    CommandKind kind = CommandKind::Push;
    std::string_view picture{}; // of the icon store; empty: none
    bool visible = true, enabled = true, pressed = false;
    std::string tooltip{}; // translated
    bool operator==(const ToolbarItem&) const = default;
};

class ToolbarSource {
public:
    virtual ~ToolbarSource() = default;
    // Always the same items in the same order, hidden ones included.
    virtual std::vector<ToolbarItem> Toolbar() = 0;
    virtual void ButtonClicked(std::string_view name) = 0;
    // The arrow of a Split button.
    virtual void ButtonDropped(std::string_view) {}
};

} // namespace kavidex::controls
