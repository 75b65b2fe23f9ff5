// A page, or part of one, as picture elements in memory: what decoding gives, and what drawing,
// printing and writing take.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kavidex::imaging {

enum class PixelFormat : std::uint8_t {
    bits1 = 1,  // 8 elements a byte, the leftmost in the highest bit; 1 is white
    grey8 = 8,  // 0 black, 255 white
    rgb24 = 24, // red, green, blue
};

// Rows run from the top, each begins at a byte of its own and has no other padding.
struct PageBitmap {
    PixelFormat format = PixelFormat::bits1;
    std::uint32_t width = 0, height = 0;
    double xDpi = 0, yDpi = 0; // 0 where nobody knows
    std::vector<std::uint8_t> bytes;

    static std::size_t BytesPerRow(PixelFormat format, std::uint32_t width) {
        return (static_cast<std::size_t>(width) * static_cast<unsigned>(format) + 7) / 8;
    }
    std::size_t BytesPerRow() const { return BytesPerRow(format, width); }
    std::uint8_t* Row(std::uint32_t y) { return bytes.data() + y * BytesPerRow(); }
    const std::uint8_t* Row(std::uint32_t y) const { return bytes.data() + y * BytesPerRow(); }
};

// White, or what `fill` says, of this size.
inline PageBitmap MakeBitmap(PixelFormat format, std::uint32_t width, std::uint32_t height,
                             double xDpi = 0, double yDpi = 0, std::uint8_t fill = 0xFF) {
    PageBitmap bitmap{format, width, height, xDpi, yDpi, {}};
    bitmap.bytes.assign(bitmap.BytesPerRow() * height, fill);
    return bitmap;
}

} // namespace kavidex::imaging
