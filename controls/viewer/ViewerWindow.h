// The window of the document viewer, as its logic sees it. The parts of the stage have ports of
// their own, which they get from their windows.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "controls/common/PopupMenu.h"

namespace kavidex::controls::forms {
class FormPresenter;
}

namespace kavidex::controls {

class ViewerWindow {
public:
    virtual ~ViewerWindow() = default;

    virtual void ContentChanged() = 0;    // the parts that show, the toolbars, the status bar
    virtual void AppearanceChanged() = 0; // colours, font, border, enabled
    // Calls ctlViewer::Idle when the message loop has nothing else to do.
    virtual void WantIdle() = 0;
    // Drops the menu down from the button and waits; the chosen entry's position in `menu`.
    virtual std::optional<std::size_t> ShowMenu(const PopupMenu& menu, std::string_view button) = 0;
    // The same at a point of the screen.
    virtual std::optional<std::size_t> ShowMenuAt(const PopupMenu& menu, int x, int y) = 0;
    // Shows forms before the window; null: none can be shown.
    virtual forms::FormPresenter* Forms() = 0;
};

} // namespace kavidex::controls
