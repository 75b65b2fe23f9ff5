// The pictures of the binder's toolbar.
#pragma once

#include <span>
#include <string_view>

#include "controls/common/Pictures.h"

namespace kavidex::controls {

// Empty for a button without a picture.
std::span<const PictureLayer> ToolbarPicture(std::string_view button);

} // namespace kavidex::controls
