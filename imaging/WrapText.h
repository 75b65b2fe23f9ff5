// Text broken into lines of a width.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kavidex::imaging {

using TextMeasure = std::function<double(std::string_view)>;

// At its own line ends and at blanks; a word wider than a line is broken within. Tabs are four
// blanks. A width of 0 or less breaks at line ends only. An empty text has one line.
std::vector<std::string> WrapText(std::string_view text, double width, const TextMeasure& measure);

} // namespace kavidex::imaging
