// How many picture elements an inch of a page has.
#pragma once

#include "imaging/tiff/Source.h"

namespace kavidex::imaging::tiff {

// Of the sides as stored; both 0 where the page does not tell, or tells a proportion only.
struct Resolution {
    double x = 0, y = 0;
};

Resolution ResolutionOf(Source& source, const Directory& page);

} // namespace kavidex::imaging::tiff
