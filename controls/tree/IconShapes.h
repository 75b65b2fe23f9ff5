// The tree's own pictures as shapes, drawn sharp at any size.
#pragma once

#include <string_view>
#include <vector>

#include "controls/common/Pictures.h"

namespace kavidex::controls {

// "closedtab", "opentab", "attachtment", "Users", "SelectedUser", "unknown", in this order.
std::vector<std::string_view> PictureKeys();

// An unknown key gives the picture of "unknown".
Picture DrawPicture(std::string_view key, int size, const PictureColours& colours = {});

} // namespace kavidex::controls
