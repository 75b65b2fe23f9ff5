#include "imaging/tiff/Reencoder.h"

#include <algorithm>

#include "imaging/tiff/Decoder.h"
#include "imaging/tiff/LibTiff.h"

namespace kavidex::imaging::tiff {

namespace {

// Those that are without loss and whose encoders all builds have.
constexpr std::uint16_t writable[] = {
    compressions::none,          compressions::ccittRle, compressions::fax3,
    compressions::fax4,          compressions::lzw,      compressions::adobeDeflate,
    compressions::ccittRleWords, compressions::packBits, compressions::deflate};

std::uint32_t RowsPerStrip(std::uint32_t before, std::uint32_t height, std::size_t rowBytes) {
    if (before >= height) return height; // one strip stays one
    constexpr std::size_t comfortable = std::size_t{64} * 1024;
    return static_cast<std::uint32_t>(
        std::clamp<std::size_t>(comfortable / std::max<std::size_t>(rowBytes, 1), 1, height));
}

bool Encode(TIFF* tiff, const Elements& picture, const Samples& samples, Source& source,
            const Directory& page) {
    const auto number = [&](std::uint16_t tag) { return source.Number(page, tag, 0); };
    const auto set = [&](std::uint32_t tag, auto value) { return TIFFSetField(tiff, tag, value); };
    const std::size_t rowBytes = picture.BytesPerRow();
    const std::uint64_t rows = source.Number(page, tags::rowsPerStrip, 0xFFFFFFFFu);
    const std::uint32_t rowsPerStrip = RowsPerStrip(
        samples.tiled ? 0 : static_cast<std::uint32_t>(std::min<std::uint64_t>(rows, 0xFFFFFFFFu)),
        picture.height, rowBytes);
    set(TIFFTAG_IMAGEWIDTH, picture.width);
    set(TIFFTAG_IMAGELENGTH, picture.height);
    set(TIFFTAG_BITSPERSAMPLE, static_cast<int>(samples.bits));
    set(TIFFTAG_SAMPLESPERPIXEL, static_cast<int>(samples.perPixel));
    set(TIFFTAG_PHOTOMETRIC, static_cast<int>(samples.photometric));
    set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    set(TIFFTAG_ROWSPERSTRIP, rowsPerStrip);
    if (set(TIFFTAG_COMPRESSION, static_cast<int>(samples.compression)) != 1) return false;
    if (samples.compression == compressions::fax3)
        set(TIFFTAG_GROUP3OPTIONS, static_cast<std::uint32_t>(number(tags::t4Options)));
    const bool predicts = samples.compression == compressions::lzw ||
                          samples.compression == compressions::deflate ||
                          samples.compression == compressions::adobeDeflate;
    if (const auto predictor = number(tags::predictor);
        predicts && predictor >= 1 && predictor <= 2)
        set(TIFFTAG_PREDICTOR, static_cast<int>(predictor));
    std::vector<std::uint8_t> row(rowBytes); // the encoders may write into what they are given
    for (std::uint32_t y = 0; y < picture.height; ++y) {
        std::copy_n(&picture.bytes[y * rowBytes], rowBytes, row.begin());
        if (TIFFWriteScanline(tiff, row.data(), y, 0) != 1) return false;
    }
    return true;
}

} // namespace

std::optional<std::string> Reencoded(Source& source, const Directory& page, Orientation orientation,
                                     Order order) {
    const Samples samples = ReadSamples(source, page);
    if (std::find(std::begin(writable), std::end(writable), samples.compression) ==
        std::end(writable))
        return {};
    Elements picture{samples.width, samples.height,
                     static_cast<std::uint32_t>(samples.bits) * samples.perPixel,
                     DecodeSamples(source, page, samples)};
    if (picture.bytes.empty()) return {};
    picture = Oriented(std::move(picture), orientation);
    std::string file;
    LibTiff tiff(file, order, mostMemory);
    if (!tiff.Get() || !Encode(tiff.Get(), picture, samples, source, page) || !tiff.Close())
        source.Damaged("a page cannot be encoded anew: " + tiff.Complaint());
    return file;
}

} // namespace kavidex::imaging::tiff
