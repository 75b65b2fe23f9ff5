// The native window of the binder control.
#pragma once

#include <memory>

#include "controls/common/win32/ControlWindow.h"
#include "controls/intake/win32/ScanObjects.h"

namespace kavidex::platform {
struct Workstation;
}
namespace kavidex::controls {
class ctrlCorrespondence;
}

namespace kavidex::controls::win32 {

// `logic` and `workstation` must outlive the window.
std::unique_ptr<ControlWindow> MakeBinderWindow(ctrlCorrespondence& logic,
                                                const platform::Workstation& workstation,
                                                ScanObjects objects = {});

} // namespace kavidex::controls::win32
