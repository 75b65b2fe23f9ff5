// The picture of a scanned page as PDF embeds it: the compressed data as they are where PDF knows
// their form, else packed anew without loss.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kavidex::imaging {

class TiffSource;
struct TiffFacts;

struct ImagePiece {
    std::uint32_t x, y, width, height; // on the page, in its pixels
    std::string entries;               // of the image's dictionary
    std::string data;
};

// One piece; more where compressed parts cannot be joined. Throws platform::Error.
std::vector<ImagePiece> ReadPageImage(const TiffSource& source, const TiffFacts& facts);

// A JPEG file as it is; null when it is none that PDF shows. The resolution is 0 where it tells
// none.
struct JpegFile {
    ImagePiece piece;
    double xDpi = 0, yDpi = 0;
    int orientation = 1; // from which it is turned to be shown
};
std::optional<JpegFile> ReadJpegFile(std::string bytes);

// The ways of one form each, for ReadPageImage: nothing when the page is not of that form.
std::optional<ImagePiece> FaxImage(const TiffSource& source, const TiffFacts& facts);
std::vector<ImagePiece> JpegImage(const TiffSource& source, const TiffFacts& facts);
std::optional<ImagePiece> PackedImage(const TiffSource& source, const TiffFacts& facts);
ImagePiece ColourImage(const TiffSource& source, const TiffFacts& facts);

// The stored bytes of a strip or tile.
std::string RawPart(const TiffSource& source, const TiffFacts& facts, std::uint32_t part);
ImagePiece WholePage(const TiffFacts& facts);
std::string SizeEntries(std::uint32_t width, std::uint32_t height, unsigned bits);

} // namespace kavidex::imaging
