#include "imaging/RowScaler.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace kavidex::imaging {

namespace {

// A byte for each black element of eight, the leftmost in the lowest byte.
constexpr std::array<std::uint64_t, 256> SpreadBlacks() {
    std::array<std::uint64_t, 256> spread{};
    for (unsigned byte = 0; byte < 256; ++byte)
        for (unsigned bit = 0; bit < 8; ++bit)
            if (!(byte & 0x80u >> bit)) spread[byte] |= std::uint64_t{1} << (8 * bit);
    return spread;
}
constexpr auto spreadBlacks = SpreadBlacks();

// Of the fraction by which sums become levels: a level and all that rounds it fit above.
constexpr unsigned factorBits = 48;

constexpr std::uint64_t allWhite = ~std::uint64_t{0};

} // namespace

RowScaler::RowScaler(PixelFormat format, std::uint32_t left, std::uint32_t sourceWidth,
                     std::uint32_t sourceHeight, std::uint32_t width, std::uint32_t height)
    : lclFormat(format), lclLeft(left), lclSourceWidth(sourceWidth), lclSourceHeight(sourceHeight),
      lclTotal(format == PixelFormat::bits1 ? 255 : 256),
      lclResult(
          MakeBitmap(format == PixelFormat::rgb24 ? format : PixelFormat::grey8, width, height)) {
    const unsigned channels = format == PixelFormat::rgb24 ? 3 : 1;
    std::uint32_t skipped = 0;
    if (format == PixelFormat::bits1) {
        skipped = left % 8;
        lclBlacks.assign((std::size_t{skipped} + sourceWidth + 7) / 8 + 1, 0);
    } else {
        lclSums.assign(std::size_t{sourceWidth} * channels, 0);
    }
    // What an element of the result gathers where all that it covers is full makes 255.
    const double full = 256.0 * sourceWidth / std::max(width, 1u) * lclTotal *
                        (format == PixelFormat::bits1 ? 1 : 255);
    lclFactor = static_cast<std::uint64_t>(
        std::llround(255.0 * static_cast<double>(std::uint64_t{1} << factorBits) / full));
    lclPlaces.reserve(std::size_t{width} + 1);
    for (std::uint64_t i = 0; i <= width; ++i) {
        const std::uint64_t place = i * sourceWidth * 256 / std::max(width, 1u);
        lclPlaces.push_back({static_cast<std::uint32_t>(place / 256) + skipped,
                             static_cast<std::uint32_t>(place % 256)});
    }
}

// The share of this source row in the row of the result that is being made.
std::uint32_t RowScaler::Weight(std::uint64_t row) const {
    const std::uint64_t before = lclTarget * lclSourceHeight;
    const auto share = [&](std::uint64_t edge) {
        const std::uint64_t at = edge * lclResult.height;
        const std::uint64_t covered =
            at <= before ? 0 : std::min<std::uint64_t>(at - before, lclSourceHeight);
        return covered * lclTotal / lclSourceHeight;
    };
    return static_cast<std::uint32_t>(share(row + 1) - share(row));
}

void RowScaler::Row(const std::uint8_t* row) {
    while (lclTarget < lclResult.height) {
        if (const std::uint32_t weight = Weight(lclRow)) Add(row, weight);
        const std::uint64_t end = (lclRow + 1) * lclResult.height;
        if (end < (lclTarget + 1) * lclSourceHeight) break; // needs more rows
        Emit();
        ++lclTarget;
        if (end <= lclTarget * lclSourceHeight) break;
    }
    ++lclRow;
}

void RowScaler::Add(const std::uint8_t* row, std::uint32_t weight) {
    if (lclFormat == PixelFormat::bits1) {
        AddBits(row + lclLeft / 8, weight);
        return;
    }
    lclBlank = false;
    const std::size_t channels = lclFormat == PixelFormat::rgb24 ? 3 : 1;
    const std::uint8_t* from = row + lclLeft * channels;
    std::uint16_t* sums = lclSums.data();
    const auto factor = static_cast<std::uint16_t>(weight);
    for (std::size_t i = 0, n = lclSums.size(); i < n; ++i)
        sums[i] = static_cast<std::uint16_t>(sums[i] + from[i] * factor);
}

void RowScaler::AddBits(const std::uint8_t* row, std::uint32_t weight) {
    const std::size_t bytes = (std::size_t{lclLeft % 8} + lclSourceWidth + 7) / 8;
    std::uint64_t* sums = lclBlacks.data();
    std::size_t i = 0;
    for (; i + 8 <= bytes; i += 8) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, row + i, 8);
        if (eight == allWhite) continue;
        lclBlank = false;
        for (std::size_t k = i; k < i + 8; ++k) sums[k] += spreadBlacks[row[k]] * weight;
    }
    for (; i < bytes; ++i) {
        if (row[i] == 0xFF) continue;
        lclBlank = false;
        sums[i] += spreadBlacks[row[i]] * weight;
    }
}

template <unsigned channels, class Sum>
void RowScaler::EmitFrom(const Sum* sums, bool invert) {
    // Of one byte each they add up in 32 bits on the widest page.
    using Whole = std::conditional_t<sizeof(Sum) == 1, std::uint32_t, std::uint64_t>;
    std::uint8_t* out = lclResult.Row(static_cast<std::uint32_t>(lclTarget));
    for (unsigned channel = 0; channel < channels; ++channel) {
        const Sum* from = sums + channel;
        Place first = lclPlaces[0];
        for (std::size_t i = 1; i < lclPlaces.size(); ++i) {
            const Place last = lclPlaces[i];
            if constexpr (sizeof(Sum) == 1) {
                // Paper between letters, which most of a page is.
                std::uint64_t eight = 0;
                std::memcpy(&eight, from + first.element, sizeof eight);
                if (eight == 0 && last.element - first.element < sizeof eight) {
                    out[i - 1] = invert ? 255 : 0;
                    first = last;
                    continue;
                }
            }
            Whole whole = 0;
            for (std::size_t x = first.element; x < last.element; ++x) whole += from[x * channels];
            std::uint64_t sum = std::uint64_t{whole} * 256;
            if (last.part != 0)
                sum += std::uint64_t{from[std::size_t{last.element} * channels]} * last.part;
            if (first.part != 0)
                sum -= std::uint64_t{from[std::size_t{first.element} * channels]} * first.part;
            const auto level = static_cast<std::uint8_t>(std::min<std::uint64_t>(
                (sum * lclFactor + (std::uint64_t{1} << (factorBits - 1))) >> factorBits, 255));
            out[(i - 1) * channels + channel] =
                static_cast<std::uint8_t>(invert ? 255 - level : level);
            first = last;
        }
    }
}

void RowScaler::Emit() {
    if (lclFormat == PixelFormat::bits1) {
        if (!lclBlank) {
            // The lowest byte is the leftmost element, as little-endian memory has it.
            EmitFrom<1>(reinterpret_cast<const std::uint8_t*>(lclBlacks.data()), true);
            std::fill(lclBlacks.begin(), lclBlacks.end(), 0);
        }
    } else {
        if (lclFormat == PixelFormat::rgb24)
            EmitFrom<3>(lclSums.data(), false);
        else
            EmitFrom<1>(lclSums.data(), false);
        std::fill(lclSums.begin(), lclSums.end(), std::uint16_t{0});
    }
    lclBlank = true;
}

PageBitmap Scaled(const PageBitmap& bitmap, const Region& region, std::uint32_t width,
                  std::uint32_t height) {
    const std::uint32_t left = std::min(region.x, bitmap.width);
    const std::uint32_t top = std::min(region.y, bitmap.height);
    const std::uint32_t columns = std::min(region.width, bitmap.width - left);
    const std::uint32_t rows = std::min(region.height, bitmap.height - top);
    if (columns == 0 || rows == 0)
        return MakeBitmap(bitmap.format == PixelFormat::rgb24 ? PixelFormat::rgb24
                                                              : PixelFormat::grey8,
                          width, height);
    RowScaler scaler(bitmap.format, left, columns, rows, width, height);
    for (std::uint32_t y = 0; y < rows; ++y) scaler.Row(bitmap.Row(top + y));
    PageBitmap result = scaler.Take();
    result.xDpi = bitmap.xDpi * width / columns;
    result.yDpi = bitmap.yDpi * height / rows;
    return result;
}

} // namespace kavidex::imaging
