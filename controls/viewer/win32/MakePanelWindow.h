// The native window of the document panel.
#pragma once

#include <memory>

#include "controls/common/win32/ControlWindow.h"

namespace kavidex::platform {
struct Workstation;
}
namespace kavidex::controls {
class DocumentPanel;
}

namespace kavidex::controls::win32 {

// `logic` and `workstation` must outlive the window.
std::unique_ptr<ControlWindow> MakePanelWindow(DocumentPanel& logic,
                                               const platform::Workstation& workstation);

} // namespace kavidex::controls::win32
