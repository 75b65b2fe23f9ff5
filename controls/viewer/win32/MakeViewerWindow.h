// The native window of the document viewer.
#pragma once

#include <memory>

#include "controls/common/win32/ControlWindow.h"

namespace kavidex::platform {
struct Workstation;
}
namespace kavidex::controls {
class ctlViewer;
}

namespace kavidex::controls::win32 {

// `logic` and `workstation` must outlive the window.
std::unique_ptr<ControlWindow> MakeViewerWindow(ctlViewer& logic,
                                                const platform::Workstation& workstation);

} // namespace kavidex::controls::win32
