// A page's picture with its marks, in the colours that paper can show.
#pragma once

#include "imaging/PageBitmap.h"
#include "imaging/annotations/Annotations.h"
#include "imaging/annotations/TextPainter.h"
#include "platform/Printers.h"

namespace kavidex::controls {

// As it is where none of them shows.
imaging::PageBitmap MarkedForPaper(imaging::PageBitmap page,
                                   const imaging::annotations::Annotations& marks,
                                   const platform::PrintPaper& paper,
                                   imaging::annotations::TextPainter& texts);

} // namespace kavidex::controls
