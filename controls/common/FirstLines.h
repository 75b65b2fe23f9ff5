// A list in a message box: as many lines as a screen has room for, and how many more there are.
#pragma once

#include <string>
#include <vector>

#include "data/Texts.h"

namespace kavidex::controls {

// Each begins with a line end. The log must have them all: the last line says so.
inline std::string FirstLines(const data::Translation& translation,
                              const std::vector<std::string>& lines) {
    constexpr std::size_t shown = 8;
    std::string text;
    for (std::size_t i = 0; i < lines.size() && i < shown; ++i) text += "\r\n" + lines[i];
    if (lines.size() > shown)
        text += "\r\n" + data::Translated(translation, "... en nog $%$; het logboek noemt ze alle",
                                          {std::to_string(lines.size() - shown)});
    return text;
}

} // namespace kavidex::controls
