#include "imaging/pdf/PageImage.h"

#include "imaging/pdf/TiffSource.h"

namespace kavidex::imaging {

std::string RawPart(const TiffSource& source, const TiffFacts& facts, std::uint32_t part) {
    const std::uint64_t size = TIFFGetStrileByteCount(source.Get(), part);
    if (size == 0 || size > TiffSource::mostForOnePart) source.Fail();
    std::string bytes(static_cast<std::size_t>(size), '\0');
    const auto wanted = static_cast<tmsize_t>(bytes.size());
    const tmsize_t read = facts.tiled ? TIFFReadRawTile(source.Get(), part, bytes.data(), wanted)
                                      : TIFFReadRawStrip(source.Get(), part, bytes.data(), wanted);
    if (read != wanted) source.Fail();
    if (facts.fillOrder == FILLORDER_LSB2MSB)
        TIFFReverseBits(reinterpret_cast<std::uint8_t*>(bytes.data()), wanted);
    return bytes;
}

ImagePiece WholePage(const TiffFacts& facts) { return {0, 0, facts.width, facts.height, {}, {}}; }

std::string SizeEntries(std::uint32_t width, std::uint32_t height, unsigned bits) {
    return "/Type /XObject /Subtype /Image /Width " + std::to_string(width) + " /Height " +
           std::to_string(height) + " /BitsPerComponent " + std::to_string(bits) + " ";
}

std::vector<ImagePiece> ReadPageImage(const TiffSource& source, const TiffFacts& facts) {
    if (auto image = FaxImage(source, facts)) return {std::move(*image)};
    if (auto pieces = JpegImage(source, facts); !pieces.empty()) return pieces;
    if (auto image = PackedImage(source, facts)) return {std::move(*image)};
    return {ColourImage(source, facts)};
}

} // namespace kavidex::imaging
