#include "controls/viewer/pages/PagePicture.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace kavidex::controls {

using imaging::PageBitmap;
using imaging::PixelFormat;

namespace {

constexpr std::uint64_t mostKept = std::uint64_t{64} * 1024 * 1024;

struct Span {
    std::uint32_t first = 0, count = 0; // of elements
    std::int64_t place = 0, room = 0;   // where they lie at the other size, and how much they take
};

// The whole elements that an area touches. Their edges lie where those of any other area do.
Span Touched(int from, int length, std::uint32_t elements, std::uint32_t size) {
    const double zoom = static_cast<double>(size) / elements;
    const auto first =
        static_cast<std::uint32_t>(std::clamp(std::floor(from / zoom), 0.0, elements - 1.0));
    const auto end = static_cast<std::uint32_t>(
        std::clamp(std::ceil((from + length) / zoom), first + 1.0, double(elements)));
    const auto place = std::llround(first * zoom);
    return {first, end - first, place, std::max<std::int64_t>(1, std::llround(end * zoom) - place)};
}

} // namespace

bool KeepsScaled(const PageBitmap& picture, std::uint32_t width, std::uint32_t height) {
    const std::uint64_t size =
        std::uint64_t{width} * height * (picture.format == PixelFormat::rgb24 ? 3 : 1);
    return size <= mostKept && width <= picture.width && height <= picture.height;
}

PageBitmap ScaledPart(const PageBitmap& picture, std::uint32_t width, std::uint32_t height,
                      const PictureArea& area) {
    if (area.width <= 0 || area.height <= 0 || picture.width == 0 || picture.height == 0)
        return imaging::MakeBitmap(PixelFormat::grey8, 0, 0);
    const Span x = Touched(area.left, area.width, picture.width, width),
               y = Touched(area.top, area.height, picture.height, height);
    const PageBitmap scaled =
        imaging::Scaled(picture, {x.first, y.first, x.count, y.count},
                        static_cast<std::uint32_t>(x.room), static_cast<std::uint32_t>(y.room));
    return Cut(scaled, {area.left - static_cast<int>(x.place), area.top - static_cast<int>(y.place),
                        area.width, area.height});
}

PageBitmap Cut(const PageBitmap& picture, const PictureArea& area) {
    const auto left = static_cast<std::uint32_t>(
                   std::clamp<std::int64_t>(area.left, 0, picture.width)),
               top = static_cast<std::uint32_t>(
                   std::clamp<std::int64_t>(area.top, 0, picture.height));
    const auto width = std::min(static_cast<std::uint32_t>(std::max(0, area.width)),
                                picture.width - left),
               height = std::min(static_cast<std::uint32_t>(std::max(0, area.height)),
                                 picture.height - top);
    PageBitmap cut = imaging::MakeBitmap(picture.format, width, height, picture.xDpi, picture.yDpi);
    const std::size_t bytes = picture.format == PixelFormat::rgb24 ? 3 : 1;
    for (std::uint32_t row = 0; row < height; ++row)
        std::memcpy(cut.Row(row), picture.Row(top + row) + left * bytes, width * bytes);
    return cut;
}

PageBitmap AsColours(const PageBitmap& picture) {
    if (picture.format == PixelFormat::rgb24) return picture;
    PageBitmap colours = imaging::MakeBitmap(PixelFormat::rgb24, picture.width, picture.height,
                                             picture.xDpi, picture.yDpi);
    for (std::size_t i = 0; i < picture.bytes.size(); ++i)
        std::memset(colours.bytes.data() + 3 * i, picture.bytes[i], 3);
    return colours;
}

void FillSquare(PageBitmap& picture, int x, int y, int half, std::uint8_t level) {
    const auto width = static_cast<int>(picture.width), height = static_cast<int>(picture.height);
    const int left = std::clamp(x - half, 0, width), right = std::clamp(x + half + 1, 0, width);
    for (int row = std::max(0, y - half); row < std::min(height, y + half + 1); ++row)
        if (left < right)
            std::memset(picture.Row(static_cast<std::uint32_t>(row)) + 3 * left, level,
                        static_cast<std::size_t>(3 * (right - left)));
}

} // namespace kavidex::controls
