// How a host wants a control to look. Everything unset follows the system.
#pragma once

#include <string>

namespace kavidex::controls {

struct FontFace {
    std::string name; // empty: the system's message font
    double points = 0;
    int weight = 400;
    bool italic = false, underline = false, strikethrough = false;

    bool operator==(const FontFace&) const = default;
};

} // namespace kavidex::controls
