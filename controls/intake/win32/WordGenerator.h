// The letter generator, "LumaformWordGen.clsWord".
#pragma once

#include <memory>

#include "controls/intake/Letters.h"

namespace kavidex::controls::win32 {

// Throws platform::Error when it is not installed or cannot be created.
std::unique_ptr<LetterGenerator> MakeLetterGenerator();

} // namespace kavidex::controls::win32
