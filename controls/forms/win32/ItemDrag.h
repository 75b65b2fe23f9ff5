// Dragging items between the lists and trees of one form.
#pragma once

#include <cstdint>
#include <vector>

#include "controls/forms/win32/FieldControl.h"

namespace kavidex::controls::forms::win32 {

// From the moment Windows tells that a drag begins until the button is let go or Escape pressed;
// asks the form with DragOver and tells it Dropped.
void BeginItemDrag(Form& form, const Field& source, FormLook& look, std::vector<std::int32_t> ids);

} // namespace kavidex::controls::forms::win32
