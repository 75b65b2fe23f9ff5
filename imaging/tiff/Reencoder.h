// Encodes a page anew without loss, turned or in another byte order, in the compression it has.
#pragma once

#include <optional>
#include <string>

#include "imaging/Orientation.h"
#include "imaging/tiff/Source.h"

namespace kavidex::imaging::tiff {

// A TIFF file of this byte order that holds the page's picture as `orientation` shows it. None
// where it would not be without loss (JPEG), or the compression cannot be written. Throws
// platform::Error for a damaged page.
std::optional<std::string> Reencoded(Source& source, const Directory& page, Orientation orientation,
                                     Order order);

} // namespace kavidex::imaging::tiff
