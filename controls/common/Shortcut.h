// A key with its modifiers, as a command's row names it.
#pragma once

#include <string>
#include <string_view>

#include "data/Texts.h"

namespace kavidex::controls {

// The numbers under which Windows tells keys; letters and digits are their capitals.
namespace keys {
constexpr int tab = 0x09, enter = 0x0D, escape = 0x1B, space = 0x20, insert = 0x2D, del = 0x2E;
constexpr int pageUp = 0x21, pageDown = 0x22, end = 0x23, home = 0x24;
constexpr int left = 0x25, up = 0x26, right = 0x27, down = 0x28;
constexpr int multiply = 0x6A, add = 0x6B, subtract = 0x6D;
constexpr int f1 = 0x70, f2 = 0x71, f3 = 0x72, f5 = 0x74, f10 = 0x79, f24 = 0x87;
} // namespace keys

struct Shortcut {
    int key = 0; // 0: none
    bool control = false, shift = false, alt = false;

    bool operator==(const Shortcut&) const = default;
};

constexpr Shortcut Key(int key) { return {key}; }
constexpr Shortcut Ctrl(int key) { return {key, true}; }

// "Ctrl+X", "F2", "Del": as menus and tooltips show it, the names of keys translated. Empty for
// none.
std::string ShortcutText(const Shortcut& shortcut, const data::Translation& translation);

} // namespace kavidex::controls
