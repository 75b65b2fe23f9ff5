// What the extension of a file says about showing it in the web browser control.
#pragma once

#include <string_view>

namespace kavidex::controls {

enum class FileKind {
    Plain,
    Markup,  // may hold scripts, which the control is told not to run
    Program, // showing it could start it
};

FileKind FileKindOf(std::string_view type); // lower case, without the dot

} // namespace kavidex::controls
