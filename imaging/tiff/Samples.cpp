#include "imaging/tiff/Samples.h"

#include <algorithm>
#include <cstring>

#include "platform/Error.h"

namespace kavidex::imaging::tiff {

namespace {

std::uint16_t GuessedPhotometric(const Samples& samples) {
    if (samples.perPixel >= 3) return photometrics::rgb;
    const bool fax =
        samples.compression >= compressions::ccittRle && samples.compression <= compressions::fax4;
    return fax ? photometrics::minIsWhite : photometrics::minIsBlack;
}

unsigned ColoursOf(const Samples& samples) {
    switch (samples.photometric) {
    case photometrics::rgb: return 3;
    case photometrics::cmyk: return 4;
    default: return 1;
    }
}

// Of the colours, one byte; over white.
std::uint8_t OverWhite(unsigned level, unsigned alpha, std::uint16_t kind) {
    if (kind == 2) level = level * alpha / 255;
    return static_cast<std::uint8_t>(std::min(255u, level + 255 - alpha));
}

} // namespace

PixelFormat Samples::Shown() const {
    const bool grey = photometric <= photometrics::minIsBlack || photometric == photometrics::mask;
    if (grey && bits == 1 && perPixel == 1) return PixelFormat::bits1;
    return grey ? PixelFormat::grey8 : PixelFormat::rgb24;
}

Samples ReadSamples(Source& source, const Directory& page) {
    const auto number = [&](std::uint16_t tag, std::uint64_t otherwise) {
        return source.Number(page, tag, otherwise);
    };
    const auto small = [&](std::uint16_t tag, std::uint16_t otherwise) {
        return static_cast<std::uint16_t>(std::min<std::uint64_t>(number(tag, otherwise), 0xFFFF));
    };
    constexpr std::uint64_t longestSide = 1 << 20;
    Samples samples;
    const std::uint64_t width = number(tags::imageWidth, 0), height = number(tags::imageLength, 0);
    samples.bits = small(tags::bitsPerSample, 1);
    samples.perPixel = small(tags::samplesPerPixel, 1);
    if (width == 0 || height == 0 || samples.bits == 0 || samples.perPixel == 0)
        source.Damaged("a page has no size");
    if (width > longestSide || height > longestSide || samples.bits > 64 || samples.perPixel > 64)
        source.Damaged("a page is too large");
    samples.width = static_cast<std::uint32_t>(width);
    samples.height = static_cast<std::uint32_t>(height);
    samples.compression = small(tags::compression, 1);
    samples.photometric = small(tags::photometric, GuessedPhotometric(samples));
    samples.format = small(tags::sampleFormat, 1);
    samples.planes = small(tags::planarConfig, 1) == 2 && samples.perPixel > 1;
    samples.tiled = page.Find(tags::tileWidth) != nullptr;
    if (samples.perPixel == ColoursOf(samples) + 1) {
        const std::uint16_t kind = small(tags::extraSamples, 0);
        samples.alpha = kind <= 2 ? kind : 0;
    }
    if (samples.photometric == photometrics::palette) {
        if (const Entry* map = page.Find(tags::colorMap)) samples.palette = source.Numbers(*map);
        if (samples.bits > 16 || samples.palette.size() < (std::size_t{3} << samples.bits))
            source.Damaged("the colours of a page are missing");
    }
    const std::uint16_t sizes = samples.tiled ? tags::tileByteCounts : tags::stripByteCounts;
    if (const Entry* told = page.Find(sizes)) {
        if (told->count > mostParts) source.Damaged("a page has too many parts");
        for (const std::uint64_t size : source.Numbers(*told))
            samples.dataBytes += std::min(size, source.Size());
    } else {
        samples.dataBytes = source.Size();
    }
    return samples;
}

Orientation OrientationOf(Source& source, const Directory& page) {
    const std::uint64_t told = source.Number(page, tags::orientation, 1);
    return IsOrientation(told) ? static_cast<Orientation>(told) : 1;
}

RowConverter::RowConverter(const Samples& samples)
    : lclSamples(samples), lclShown(samples.Shown()) {
    if (samples.bits > 16 || samples.format > 2 || samples.perPixel < ColoursOf(samples))
        throw platform::Error(platform::errors::invalidData,
                              "The page's picture is of a kind that cannot be shown");
    const std::size_t values = std::size_t{1} << samples.bits;
    if (samples.photometric == photometrics::palette) {
        // Some writers tell the colours in a byte each, where two are meant.
        const bool bytes = std::all_of(samples.palette.begin(), samples.palette.end(),
                                       [](std::uint64_t level) { return level < 256; });
        for (std::size_t value = 0; value < values; ++value)
            for (std::size_t colour = 0; colour < 3; ++colour)
                lclColours.push_back(static_cast<std::uint8_t>(
                    samples.palette[colour * values + value] >> (bytes ? 0 : 8)));
    } else {
        for (std::size_t value = 0; value < values; ++value) {
            const std::size_t level = value * 255 / (values - 1);
            const bool inverted = samples.photometric == photometrics::minIsWhite;
            lclLevels.push_back(static_cast<std::uint8_t>(inverted ? 255 - level : level));
        }
    }
    if (lclShown != PixelFormat::bits1)
        lclRow.resize(std::size_t{samples.width} * samples.perPixel);
    if (samples.planes) lclOnePlane.resize(samples.width);
}

void RowConverter::Unpack(const std::uint8_t* row, std::size_t count, std::uint16_t* out) const {
    const unsigned bits = lclSamples.bits;
    if (bits == 8) {
        std::copy(row, row + count, out);
    } else if (bits == 16) {
        std::memcpy(out, row, count * 2); // libtiff gives them in the machine's order
    } else {
        const unsigned mask = (1u << bits) - 1;
        std::uint32_t held = 0;
        unsigned have = 0;
        for (std::size_t i = 0; i < count; ++i) {
            while (have < bits) {
                held = held << 8 | *row++;
                have += 8;
            }
            have -= bits;
            out[i] = static_cast<std::uint16_t>(held >> have & mask);
        }
    }
}

void RowConverter::Convert(const std::uint8_t* const* planes, std::uint8_t* out) {
    const Samples& samples = lclSamples;
    if (lclShown == PixelFormat::bits1) {
        const std::size_t bytes = PageBitmap::BytesPerRow(lclShown, samples.width);
        const std::uint8_t flip = samples.photometric == photometrics::minIsWhite ? 0xFF : 0;
        const std::uint8_t* from = planes[0];
        for (std::size_t i = 0; i < bytes; ++i) out[i] = static_cast<std::uint8_t>(from[i] ^ flip);
        return;
    }
    if (samples.planes) {
        for (std::size_t plane = 0; plane < samples.perPixel; ++plane) {
            Unpack(planes[plane], samples.width, lclOnePlane.data());
            for (std::size_t x = 0; x < samples.width; ++x)
                lclRow[x * samples.perPixel + plane] = lclOnePlane[x];
        }
    } else {
        Unpack(planes[0], lclRow.size(), lclRow.data());
    }
    ConvertColours(out);
}

void RowConverter::ConvertColours(std::uint8_t* out) {
    const Samples& samples = lclSamples;
    const std::uint16_t* pixel = lclRow.data();
    const std::uint8_t* levels = lclLevels.data();
    const unsigned colours = ColoursOf(samples);
    for (std::uint32_t x = 0; x < samples.width; ++x, pixel += samples.perPixel) {
        std::uint8_t* first = out;
        if (samples.photometric == photometrics::palette) {
            out = std::copy_n(&lclColours[std::size_t{pixel[0]} * 3], 3, out);
        } else if (colours == 4) {
            const unsigned light = 255u - levels[pixel[3]];
            for (int colour = 0; colour < 3; ++colour)
                *out++ = static_cast<std::uint8_t>((255u - levels[pixel[colour]]) * light / 255);
        } else {
            for (unsigned colour = 0; colour < colours; ++colour) *out++ = levels[pixel[colour]];
            if (lclShown == PixelFormat::rgb24 && colours == 1) // grey of another colour space
                out = std::fill_n(out, 2, *first);
        }
        if (samples.alpha != 0 && samples.photometric != photometrics::minIsWhite && colours != 4 &&
            samples.photometric != photometrics::palette)
            for (; first != out; ++first)
                *first = OverWhite(*first, levels[pixel[colours]], samples.alpha);
    }
}

} // namespace kavidex::imaging::tiff
