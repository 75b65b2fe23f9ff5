// A page of a TIFF file through libtiff, to take its picture out as it is stored.
#pragma once

#include <tiffio.h>

#include <cstdint>

#include "imaging/tiff/LibTiff.h"

namespace kavidex::imaging {

class TiffSource {
public:
    // Pages from 1. Throws platform::Error where the page cannot be read.
    TiffSource(tiff::Source& source, int page)
        : lclSource(source), lclFile(source, source.PageOffset(page), mostForOnePart) {}

    TIFF* Get() const { return lclFile.Get(); }

    // Throws platform::Error with the library's own words on the first thing that went wrong.
    [[noreturn]] void Fail() const {
        const std::string& complaint = lclFile.Complaint();
        lclSource.Damaged(complaint.empty() ? "a page is damaged" : complaint);
    }

    template <class Value>
    Value Field(std::uint32_t tag, Value byDefault) const {
        Value value{};
        return TIFFGetFieldDefaulted(Get(), tag, &value) ? value : byDefault;
    }

    // One piece of memory is never larger.
    static constexpr std::size_t mostForOnePart = std::size_t{192} * 1024 * 1024;

private:
    tiff::Source& lclSource;
    tiff::LibTiff lclFile;
};

// What the parts that read a page ask again and again.
struct TiffFacts {
    std::uint32_t width, height;
    std::uint16_t bits, samples, compression, photometric, planes, fillOrder,
        predictor = 1, extras = 0, sampleFormat;
    bool tiled, alpha = false;
    std::uint32_t parts; // strips or tiles of the page

    explicit TiffFacts(const TiffSource& source);
    std::uint16_t Colours() const { return static_cast<std::uint16_t>(samples - extras); }
};

} // namespace kavidex::imaging
