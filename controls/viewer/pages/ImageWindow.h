// The window of the image part, as its logic sees it; the page and the thumbnails have ports of
// their own.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "controls/common/PopupMenu.h"

namespace kavidex::controls {

class ImageWindow {
public:
    virtual ~ImageWindow() = default;
    virtual void ContentChanged() = 0; // whether toolbox and thumbnails show, the toolbox's buttons
    // Drops the menu down from the toolbox's button and waits; the chosen entry's position.
    virtual std::optional<std::size_t> ShowMenu(const PopupMenu& menu, std::string_view button) = 0;
};

} // namespace kavidex::controls
