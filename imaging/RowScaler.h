// Brings a page to another size while its rows come in, so that neither the page nor a larger
// picture need be in memory. Each element of the result is the mean of the area it covers: fine
// lines of a scanned page turn grey instead of vanishing.
#pragma once

#include <cstdint>
#include <vector>

#include "imaging/PageBitmap.h"

namespace kavidex::imaging {

struct Region {
    std::uint32_t x = 0, y = 0, width = 0, height = 0;
};

// Gives grey8 of bits1 and grey8, rgb24 of rgb24.
class RowScaler {
public:
    // Of each row the elements from `left` on are taken, `sourceWidth` of them.
    RowScaler(PixelFormat format, std::uint32_t left, std::uint32_t sourceWidth,
              std::uint32_t sourceHeight, std::uint32_t width, std::uint32_t height);

    void Row(const std::uint8_t* row); // the next one from the top
    // Rows that did not come are white.
    PageBitmap Take() { return std::move(lclResult); }

private:
    struct Place {
        std::uint32_t element, part; // and how many 256ths of that element lie before
    };

    std::uint32_t Weight(std::uint64_t row) const;
    void Add(const std::uint8_t* row, std::uint32_t weight);
    void AddBits(const std::uint8_t* row, std::uint32_t weight);
    void Emit();
    template <unsigned channels, class Sum>
    void EmitFrom(const Sum* sums, bool invert);

    PixelFormat lclFormat;
    std::uint32_t lclLeft, lclSourceWidth, lclSourceHeight;
    std::uint32_t lclTotal; // of the weights of the rows that make one
    std::uint64_t lclFactor;
    std::uint64_t lclRow = 0, lclTarget = 0;
    bool lclBlank = true;                 // nothing but white so far in this row of the result
    std::vector<std::uint64_t> lclBlacks; // 8 sums of a byte each
    std::vector<std::uint16_t> lclSums;
    std::vector<Place> lclPlaces;
    PageBitmap lclResult;
};

// Part of a page in memory, at another size.
PageBitmap Scaled(const PageBitmap& bitmap, const Region& region, std::uint32_t width,
                  std::uint32_t height);

} // namespace kavidex::imaging
