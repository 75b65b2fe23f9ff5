#include "controls/common/PopupMenu.h"

#include <algorithm>

namespace kavidex::controls {

MenuEntry* FindEntry(PopupMenu& menu, std::string_view name, int index) {
    const auto found = std::find_if(menu.begin(), menu.end(), [&](const MenuEntry& entry) {
        return entry.name == name && entry.index == index;
    });
    return found == menu.end() ? nullptr : &*found;
}

namespace {

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

char Lower(char letter) { return static_cast<char>(letter | 0x20); }

// The first letter of a word that is free, else any letter that is; -1 when all are taken.
int FreeLetter(const std::string& caption, std::string_view taken) {
    for (const bool wordsOnly : {true, false})
        for (std::size_t i = 0; i < caption.size(); ++i) {
            if (!IsLetter(caption[i]) || (wordsOnly && i > 0 && caption[i - 1] != ' ')) continue;
            if (taken.find(Lower(caption[i])) == std::string_view::npos) return static_cast<int>(i);
        }
    return -1;
}

void AssignMnemonics(PopupMenu& menu) {
    std::vector<std::string> taken; // a level each, of the menu that is being read
    for (auto& entry : menu) {
        taken.resize(static_cast<std::size_t>(entry.depth) + 1);
        entry.mnemonic = FreeLetter(entry.caption, taken.back());
        if (entry.mnemonic >= 0)
            taken.back() += Lower(entry.caption[static_cast<std::size_t>(entry.mnemonic)]);
    }
}

// Owns what follows it in that menu.
bool Owns(const PopupMenu& menu, std::size_t position) {
    return position + 1 < menu.size() && menu[position + 1].depth > menu[position].depth;
}

} // namespace

PopupMenu VisibleEntries(const PopupMenu& menu) {
    PopupMenu shown;
    std::vector<bool> owner;
    int hiddenBelow = -1; // the depth of a hidden owner: what is deeper is hidden with it
    for (std::size_t i = 0; i < menu.size(); ++i) {
        const auto& entry = menu[i];
        if (hiddenBelow >= 0 && entry.depth > hiddenBelow) continue;
        hiddenBelow = entry.visible ? -1 : entry.depth;
        if (!entry.visible) continue;
        const bool first = shown.empty() || shown.back().depth < entry.depth;
        if (entry.IsSeparator() && (first || shown.back().IsSeparator())) continue;
        shown.push_back(entry);
        owner.push_back(Owns(menu, i));
    }
    // From the back: owners that are left with nothing, separators that end their level.
    int next = -1;
    for (auto position = shown.size(); position-- > 0;) {
        const bool empty = owner[position] && next <= shown[position].depth;
        if (empty || (shown[position].IsSeparator() && next < shown[position].depth))
            shown.erase(shown.begin() + static_cast<std::ptrdiff_t>(position));
        else
            next = shown[position].depth;
    }
    AssignMnemonics(shown);
    return shown;
}

} // namespace kavidex::controls
