#include "imaging/annotations/Dib.h"

#include <array>
#include <cstdlib>

#include "platform/Bytes.h"

namespace kavidex::imaging::annotations {

namespace {

using platform::ReadLittle;

constexpr std::size_t headerSize = 40, largest = 64 * 1024 * 1024;
constexpr std::uint32_t plain = 0, masked = 3;

struct Layout {
    std::uint32_t width = 0, height = 0, bits = 0, packing = 0;
    bool topDown = false;
    std::size_t palette = 0, colours = 0, rows = 0, stride = 0;
    std::array<std::uint32_t, 3> masks{};
};

std::optional<Layout> ReadLayout(std::string_view dib) {
    if (dib.size() < headerSize || ReadLittle<std::uint32_t>(dib, 0) < headerSize)
        return std::nullopt;
    Layout layout;
    const std::int64_t width = ReadLittle<std::int32_t>(dib, 4),
                       height = ReadLittle<std::int32_t>(dib, 8);
    layout.bits = ReadLittle<std::uint16_t>(dib, 14);
    layout.packing = ReadLittle<std::uint32_t>(dib, 16);
    layout.topDown = height < 0;
    const std::int64_t rows = std::abs(height);
    constexpr std::int64_t most = 32767;
    if (width < 1 || width > most || rows < 1 || rows > most) return std::nullopt;
    layout.width = static_cast<std::uint32_t>(width);
    layout.height = static_cast<std::uint32_t>(rows);
    const bool wide = layout.bits == 16 || layout.bits == 32;
    const bool known =
        layout.bits == 1 || layout.bits == 4 || layout.bits == 8 || layout.bits == 24 || wide;
    if (!known || (layout.packing != plain && !(layout.packing == masked && wide)))
        return std::nullopt;
    layout.masks = layout.bits == 16 ? std::array<std::uint32_t, 3>{0x7C00, 0x3E0, 0x1F}
                                     : std::array<std::uint32_t, 3>{0xFF0000, 0xFF00, 0xFF};
    layout.palette = ReadLittle<std::uint32_t>(dib, 0);
    std::size_t after = layout.palette;
    if (layout.packing == masked) {
        if (dib.size() < headerSize + 12) return std::nullopt;
        for (std::size_t i = 0; i < 3; ++i)
            layout.masks[i] = ReadLittle<std::uint32_t>(dib, headerSize + 4 * i);
        if (layout.palette == headerSize) after += 12;
    }
    layout.colours = ReadLittle<std::uint32_t>(dib, 32);
    if (layout.bits <= 8 && layout.colours == 0) layout.colours = std::size_t{1} << layout.bits;
    if (layout.colours > 256) return std::nullopt;
    layout.rows = after + 4 * layout.colours;
    layout.stride = (std::size_t{layout.width} * layout.bits + 31) / 32 * 4;
    if (layout.rows > dib.size() || layout.stride * layout.height > dib.size() - layout.rows ||
        std::size_t{layout.width} * layout.height * 3 > largest)
        return std::nullopt;
    return layout;
}

// The masked bits, stretched to 8.
std::uint8_t Masked(std::uint32_t pixel, std::uint32_t mask) {
    if (mask == 0) return 0;
    const int shift = __builtin_ctz(mask);
    return static_cast<std::uint8_t>(std::uint64_t{(pixel & mask) >> shift} * 255 /
                                     (mask >> shift));
}

using Rgb = std::array<std::uint8_t, 3>;

Rgb PixelAt(std::string_view dib, const Layout& layout, std::size_t row, std::size_t x) {
    const auto colour = [&](std::size_t at) {
        return Rgb{static_cast<std::uint8_t>(dib[at + 2]), static_cast<std::uint8_t>(dib[at + 1]),
                   static_cast<std::uint8_t>(dib[at])};
    };
    if (layout.bits == 24) return colour(row + 3 * x);
    if (layout.bits > 8) {
        const std::uint32_t pixel = layout.bits == 16 ? ReadLittle<std::uint16_t>(dib, row + 2 * x)
                                                      : ReadLittle<std::uint32_t>(dib, row + 4 * x);
        return {Masked(pixel, layout.masks[0]), Masked(pixel, layout.masks[1]),
                Masked(pixel, layout.masks[2])};
    }
    const std::size_t perByte = 8 / layout.bits;
    const auto byte = static_cast<unsigned char>(dib[row + x / perByte]);
    const std::size_t index =
        (byte >> ((perByte - 1 - x % perByte) * layout.bits)) & ((1u << layout.bits) - 1);
    if (index >= layout.colours) return {};
    return colour(layout.palette + 4 * index);
}

} // namespace

std::optional<PageBitmap> ReadDib(std::string_view dib) {
    const auto layout = ReadLayout(dib);
    if (!layout) return std::nullopt;
    PageBitmap bitmap = MakeBitmap(PixelFormat::rgb24, layout->width, layout->height);
    for (std::uint32_t y = 0; y < layout->height; ++y) {
        const std::uint32_t stored = layout->topDown ? y : layout->height - 1 - y;
        std::uint8_t* to = bitmap.Row(y);
        for (std::uint32_t x = 0; x < layout->width; ++x)
            for (const std::uint8_t value :
                 PixelAt(dib, *layout, layout->rows + stored * layout->stride, x))
                *to++ = value;
    }
    return bitmap;
}

PageBitmap TurnedImage(const PageBitmap& image, int code) {
    if (code <= 1 || code > 8) return image;
    const int quarters = (code - 1) % 4;
    const bool mirrored = code > 4, upright = quarters % 2 == 0;
    PageBitmap turned = MakeBitmap(PixelFormat::rgb24, upright ? image.width : image.height,
                                   upright ? image.height : image.width);
    for (std::uint32_t y = 0; y < image.height; ++y)
        for (std::uint32_t x = 0; x < image.width; ++x) {
            std::uint32_t toX = mirrored ? image.width - 1 - x : x, toY = y;
            std::uint32_t height = image.height, width = image.width;
            for (int i = 0; i < quarters; ++i) { // one to the right
                const std::uint32_t old = toX;
                toX = height - 1 - toY;
                toY = old;
                std::swap(width, height);
            }
            for (int c = 0; c < 3; ++c) turned.Row(toY)[3 * toX + c] = image.Row(y)[3 * x + c];
        }
    return turned;
}

} // namespace kavidex::imaging::annotations
