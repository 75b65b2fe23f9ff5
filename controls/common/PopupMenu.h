// A popup menu as a list of entries; the logic prepares it, the window shows it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kavidex::controls {

// A separator has no caption; entries of a submenu follow their owner with a greater `depth`.
struct MenuEntry {
    std::string name; // entries of one control array share it and differ by `index`
    int index = 0;
    std::string caption;
    int depth = 0;
    bool visible = true, enabled = true, checked = false;
    std::string shortcut{}; // as the user reads it
    int mnemonic = -1;      // the place in the caption of the letter that chooses it; -1: none

    bool IsSeparator() const { return caption.empty(); }
};

using PopupMenu = std::vector<MenuEntry>;

// The entry of that name (and index), null when there is none.
MenuEntry* FindEntry(PopupMenu& menu, std::string_view name, int index = 0);

// What a window shows: visible entries only, without owners that have no visible entries and
// without separators at the ends or beside each other. Each entry has a mnemonic of its own among
// its neighbours as long as letters last, in whatever language the captions are.
PopupMenu VisibleEntries(const PopupMenu& menu);

} // namespace kavidex::controls
