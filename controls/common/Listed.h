// Many names in one message box.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/Texts.h"

namespace kavidex::controls {

// The first of them, and how many more there are: a box with all of ten thousand would not fit the
// screen. The log must have them all.
std::string Listed(const std::vector<std::string>& names, const data::Translation& translation,
                   std::string_view between = "\r\n");

} // namespace kavidex::controls
