// The pages of a TIFF file: what they are, and their pictures.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "imaging/Orientation.h"
#include "imaging/PageBitmap.h"

namespace kavidex::platform {
class FileReader;
class Files;
} // namespace kavidex::platform

namespace kavidex::imaging {

namespace tiff {
class Source;
}

// What a page says of itself; nothing is decoded for it.
struct PageFacts {
    std::uint32_t width = 0, height = 0; // as shown, that is, upright
    double xDpi = 0, yDpi = 0;           // of the sides as shown; 0 where nobody knows
    Orientation orientation = 1;         // of the picture as stored
    PixelFormat format = PixelFormat::bits1;
    int compression = 1, bitsPerSample = 1, samplesPerPixel = 1; // as TIFF numbers them
    bool hasMarks = false;
};

// The file stays open, and nobody is kept from it. Every failing call throws platform::Error;
// errors::invalidData for a damaged file. Pages count from 1.
class PageFile {
public:
    PageFile(platform::Files& files, std::string_view path);
    PageFile(std::unique_ptr<platform::FileReader> reader, std::string_view name);
    ~PageFile();

    int Count();
    PageFacts Facts(int page);

    // Upright. Of a damaged page the rows that can be read are shown and `damage` tells why the
    // rest is white; without `damage`, and where no row can be read, it is an error.
    PageBitmap Decode(int page, std::string* damage = nullptr);
    // The page at this size, with little memory whatever its own: for thumbnails and views.
    PageBitmap DecodeScaled(int page, std::uint32_t width, std::uint32_t height,
                            std::string* damage = nullptr);

    // The annotations' bytes as stored; none where the page has none.
    std::optional<std::string> Marks(int page);

    // Of what the page says of itself, its annotations, the sizes of its compressed data and some
    // of that: a copy of the page in another file, or at another number, has the same.
    std::uint64_t Fingerprint(int page);

private:
    std::unique_ptr<tiff::Source> lclSource;
};

// The largest size within this room that keeps the page's proportions, with the sides' different
// resolutions made even; at least 1 by 1.
struct PageSize {
    std::uint32_t width, height;
};
PageSize FittingSize(const PageFacts& facts, std::uint32_t width, std::uint32_t height);

// A page drawn into that room.
PageBitmap Thumbnail(PageFile& file, int page, std::uint32_t width, std::uint32_t height);

} // namespace kavidex::imaging
