// The binder control's window, as its logic sees it. The children's windows have ports
// of their own.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include "controls/common/PopupMenu.h"

namespace kavidex::controls::forms {
class FormPresenter;
class PaneContent;
} // namespace kavidex::controls::forms

namespace kavidex::controls {

class ScanPlace;
class ctlViewer;

class BinderWindow {
public:
    virtual ~BinderWindow() = default;

    virtual void ToolbarChanged() = 0;    // visibility, enabling or tooltips of buttons
    virtual void LayoutChanged() = 0;     // which children show, and how they lie
    virtual void AppearanceChanged() = 0; // colours, font, border, enabled
    virtual void Repaint() = 0;
    virtual void FocusTree() = 0;   // an item was made there on the user's request
    virtual void FocusViewer() = 0; // what it shows is to be written in
    // Drops the menu down from the button and waits; the chosen entry's position in `menu`.
    virtual std::optional<std::size_t> ShowMenu(const PopupMenu& menu, std::string_view button) = 0;
    virtual forms::FormPresenter* Forms() = 0; // shows forms before the window
    virtual ScanPlace* Scanner() = 0;
    // A viewer of its own, for a dialog.
    virtual std::unique_ptr<forms::PaneContent> MakePane(ctlViewer& viewer) = 0;
};

} // namespace kavidex::controls
