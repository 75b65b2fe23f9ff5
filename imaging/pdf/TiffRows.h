// The decoded rows of a TIFF page from the top, whatever parts and planes it is stored in; never
// more of them in memory than one row of tiles or strips.
#pragma once

#include <functional>
#include <string>

namespace kavidex::imaging {

class TiffSource;
struct TiffFacts;

using RowTaker = std::function<void(std::string& row)>; // may change it

// Samples side by side as PDF has them: the highest byte first, without those that are no colours.
void ReadRows(const TiffSource& source, const TiffFacts& facts, const RowTaker& take);

// Red, green and blue of 8 bits, over white where the page is transparent.
void ReadColourRows(const TiffSource& source, const TiffFacts& facts, const RowTaker& take);

} // namespace kavidex::imaging
