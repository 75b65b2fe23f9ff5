// Which window shows which part of the viewer's stage.
#pragma once

#include <memory>
#include <span>

#include "controls/common/win32/ControlWindow.h"
#include "controls/viewer/Part.h"

namespace kavidex::platform {
struct Workstation;
}
namespace kavidex::controls {
class ctlViewer;
}

namespace kavidex::controls::win32 {

struct PartRow {
    Part part;
    std::unique_ptr<ControlWindow> (*make)(ctlViewer& viewer,
                                           const platform::Workstation& workstation);
    // A part with a height of its own lies above those that share the rest; null: it is the rest.
    int (*height)(ctlViewer& viewer, int width, int dpi) = nullptr;
    bool keep = true; // false: its window goes when something else is shown
};

// From the top of the stage downwards.
std::span<const PartRow> PartTable();

} // namespace kavidex::controls::win32
