// How far a page is turned, in quarters to the right.
#pragma once

#include <cstdint>

namespace kavidex::imaging {

enum class Turn : std::uint8_t { None = 0, Right = 1, Half = 2, Left = 3 };

} // namespace kavidex::imaging
