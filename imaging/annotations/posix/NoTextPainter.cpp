#include "imaging/annotations/TextPainter.h"

namespace kavidex::imaging::annotations {

std::unique_ptr<TextPainter> MakeTextPainter() { return nullptr; }

} // namespace kavidex::imaging::annotations
