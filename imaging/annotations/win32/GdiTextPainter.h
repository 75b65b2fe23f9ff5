// Letters as Windows draws them.
#pragma once

#include "imaging/annotations/TextPainter.h"

namespace kavidex::imaging::annotations {

std::unique_ptr<TextPainter> MakeGdiTextPainter();

} // namespace kavidex::imaging::annotations
