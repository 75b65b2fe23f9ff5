// The binder's toolbar as tables: buttons, the rights they need, and their drop-down menus.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kavidex::controls {

enum class ButtonKind { Separator, Push, Toggle, DropDown };

struct ToolbarButton {
    std::string_view key;
    std::string_view description; // the action, in lower case
    std::string_view tooltip;     // before translation
    ButtonKind kind = ButtonKind::Push;
    std::string_view right{}; // needed to enable it; empty: none
    bool available = true;    // false: its action is not part of this version
};

// A button as a window is to show it now.
struct ButtonState {
    const ToolbarButton* button = nullptr;
    bool visible = true, enabled = true, pressed = false;
    std::string tooltip; // translated
};

struct ToolbarMenuEntry {
    std::string_view button, key, caption; // the key in lower case
    std::int16_t layout = 0;               // 1 to 4: the layout that it chooses
    bool available = true;
};

std::span<const ToolbarButton> ToolbarTable();
std::span<const ToolbarMenuEntry> ToolbarMenuTable();

const ToolbarButton* FindButton(std::string_view key); // without case; null when there is none

} // namespace kavidex::controls
