// How a page keeps its picture, and how that becomes rows that can be shown.
#pragma once

#include <cstdint>
#include <vector>

#include "imaging/Orientation.h"
#include "imaging/PageBitmap.h"
#include "imaging/tiff/Source.h"

namespace kavidex::imaging::tiff {

namespace photometrics {
constexpr std::uint16_t minIsWhite = 0, minIsBlack = 1, rgb = 2, palette = 3, mask = 4, cmyk = 5,
                        ycbcr = 6;
} // namespace photometrics

struct Samples {
    std::uint32_t width = 0, height = 0;
    std::uint16_t bits = 1, perPixel = 1, photometric = 0, compression = 1, format = 1;
    std::uint16_t alpha = 0; // 1: colours are multiplied with it already, 2: not
    bool planes = false;     // each sample in a plane of its own
    bool tiled = false;
    std::uint64_t dataBytes = 0; // as compressed
    std::vector<std::uint64_t> palette;

    std::uint64_t RowBits() const { return std::uint64_t{width} * bits * perPixel; }
    PixelFormat Shown() const;
};

// Throws platform::Error for a page that says nothing sensible of itself.
Samples ReadSamples(Source& source, const Directory& page);

// 1 where none, or nonsense, is told.
Orientation OrientationOf(Source& source, const Directory& page);

// Rows of samples, as libtiff gives them, to rows of picture elements.
class RowConverter {
public:
    explicit RowConverter(const Samples& samples); // throws for samples that nothing can show

    // `planes`: one row of all samples, or one a plane.
    void Convert(const std::uint8_t* const* planes, std::uint8_t* out);

private:
    void Unpack(const std::uint8_t* row, std::size_t count, std::uint16_t* out) const;
    void ConvertColours(std::uint8_t* out);

    const Samples& lclSamples;
    PixelFormat lclShown;
    std::vector<std::uint8_t> lclLevels;  // of a sample, 0 to 255
    std::vector<std::uint8_t> lclColours; // of a palette, three each
    std::vector<std::uint16_t> lclRow;    // the samples of one row, in the order of the pixels
    std::vector<std::uint16_t> lclOnePlane;
};

} // namespace kavidex::imaging::tiff
