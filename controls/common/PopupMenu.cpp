#include "controls/common/PopupMenu.h"

#include <algorithm>

namespace kavidex::controls {

MenuEntry* FindEntry(PopupMenu& menu, std::string_view name, int index) {
    const auto found = std::find_if(menu.begin(), menu.end(), [&](const MenuEntry& entry) {
        return entry.name == name && entry.index == index;
    });
    return found == menu.end() ? nullptr : &*found;
}

PopupMenu VisibleEntries(const PopupMenu& menu) {
    PopupMenu shown;
    int hiddenBelow = -1; // the depth of a hidden owner: what is deeper is hidden with it
    for (const auto& entry : menu) {
        if (hiddenBelow >= 0 && entry.depth > hiddenBelow) continue;
        hiddenBelow = entry.visible ? -1 : entry.depth;
        if (!entry.visible) continue;
        const bool first = shown.empty() || shown.back().depth < entry.depth;
        if (entry.IsSeparator() && (first || shown.back().IsSeparator())) continue;
        shown.push_back(entry);
    }
    // From the back: separators that end their level.
    int next = -1;
    for (auto position = shown.size(); position-- > 0;) {
        if (shown[position].IsSeparator() && next < shown[position].depth)
            shown.erase(shown.begin() + static_cast<std::ptrdiff_t>(position));
        else
            next = shown[position].depth;
    }
    return shown;
}

} // namespace kavidex::controls
