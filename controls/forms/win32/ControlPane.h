// A control of the house on a form.
#pragma once

#include <memory>

#include "controls/common/win32/ControlWindow.h"
#include "controls/forms/Field.h"

namespace kavidex::controls::forms::win32 {

class ControlPane final : public PaneContent {
public:
    explicit ControlPane(std::unique_ptr<controls::win32::ControlWindow> made)
        : window(std::move(made)) {}
    const std::unique_ptr<controls::win32::ControlWindow> window;
};

} // namespace kavidex::controls::forms::win32
