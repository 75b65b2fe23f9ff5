// Which scanner or program made an image, as the image itself says.
#pragma once

#include <string>
#include <string_view>

namespace kavidex::imaging {

// Of a TIFF file's bytes: maker and model of the scanner (tags 271 and 272), or the program (305);
// empty when it tells neither, or is no TIFF.
std::string ScanSource(std::string_view tiff);

} // namespace kavidex::imaging
