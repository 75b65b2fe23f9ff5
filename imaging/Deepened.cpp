#include "imaging/Deepened.h"

#include <utility>

namespace kavidex::imaging {

PageBitmap Deepened(PageBitmap bitmap, PixelFormat format) {
    if (bitmap.format >= format) return bitmap;
    PageBitmap deep = MakeBitmap(format, bitmap.width, bitmap.height, bitmap.xDpi, bitmap.yDpi);
    const std::size_t channels = format == PixelFormat::rgb24 ? 3 : 1;
    for (std::uint32_t y = 0; y < bitmap.height; ++y) {
        const std::uint8_t* from = bitmap.Row(y);
        std::uint8_t* to = deep.Row(y);
        for (std::uint32_t x = 0; x < bitmap.width; ++x) {
            const bool bits = bitmap.format == PixelFormat::bits1;
            const int grey = !bits ? from[x] : from[x / 8] & 0x80 >> x % 8 ? 255 : 0;
            for (std::size_t channel = 0; channel < channels; ++channel)
                *to++ = static_cast<std::uint8_t>(grey);
        }
    }
    return deep;
}

} // namespace kavidex::imaging
