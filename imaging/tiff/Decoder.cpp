#include "imaging/tiff/Decoder.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "imaging/tiff/LibTiff.h"

namespace kavidex::imaging::tiff {

namespace {

constexpr std::uint64_t mostPixels = std::uint64_t{1} << 30;
constexpr std::uint64_t mostJpegPixels = 100'000'000;
constexpr std::uint64_t mostDecoded = std::uint64_t{640} << 20;

// How many bytes one compressed byte can become. A page that claims more is damaged, which is told
// before time and memory are spent on it.
std::uint64_t MostOf(std::uint16_t compression) {
    switch (compression) {
    case compressions::none: return 1;
    case compressions::packBits: return 64;
    case compressions::lzw: return 3000;
    case compressions::deflate:
    case compressions::adobeDeflate: return 1100;
    default: return 0; // no telling
    }
}

bool IsJpeg(const Samples& samples) {
    return samples.compression == compressions::jpeg ||
           samples.compression == compressions::oldJpeg;
}

// Colours that only libtiff's own conversion knows.
bool NeedsConversion(const Samples& samples) {
    constexpr std::uint16_t others[] = {8, 9, 10, 32844, 32845}; // Lab, and logarithmic light
    return samples.compression == compressions::oldJpeg ||
           (samples.photometric == photometrics::ycbcr &&
            (samples.compression != compressions::jpeg || samples.planes)) ||
           std::find(std::begin(others), std::end(others), samples.photometric) != std::end(others);
}

class Decoder {
public:
    Decoder(Source& source, const Directory& page, const Samples& samples, std::size_t held)
        : lclSource(source), lclOffset(page.offset), lclSamples(samples),
          lclRoom(mostMemory - std::min(held, mostMemory)) {
        Open();
    }

    std::string Decode(const RowSink& sink);
    bool DecodeRaw(std::uint8_t* out, std::size_t rowBytes);

private:
    using Planes = std::vector<const std::uint8_t*>;
    using RawSink = std::function<void(const std::uint8_t* const* planes)>;

    void Open();
    TIFF* Tiff() const { return lclTiff->Get(); }
    bool StripsAreSmall() const;
    bool ReadRows(const RawSink& sink);
    bool ReadScanlines(const RawSink& sink);
    bool ReadStrips(const RawSink& sink);
    bool ReadTiles(const RawSink& sink);
    bool ReadConverted(const RowSink& sink);
    bool ReadConvertedTiles(const RowSink& sink);
    void ConvertRow(const std::uint32_t* raster, std::uint32_t count, std::uint8_t* out) const;
    std::uint8_t* Room(std::uint64_t size, std::vector<std::uint8_t>& room) const;
    std::size_t PlaneCount() const { return lclSamples.planes ? lclSamples.perPixel : 1; }
    std::uint64_t PlaneRowBytes() const {
        return lclSamples.planes ? (std::uint64_t{lclSamples.width} * lclSamples.bits + 7) / 8
                                 : (lclSamples.RowBits() + 7) / 8;
    }

    Source& lclSource;
    std::uint64_t lclOffset;
    Samples lclSamples; // as they come out of libtiff
    std::size_t lclRoom;
    std::optional<LibTiff> lclTiff;
    std::string lclComplaint; // the first one, of handles that are closed
    bool lclIsYcbcrJpeg = false;
    std::uint32_t lclRows = 0; // handed over
};

std::uint8_t* Decoder::Room(std::uint64_t size, std::vector<std::uint8_t>& room) const {
    if (size == 0 || size > lclRoom) lclSource.Damaged("a page is too large");
    room.resize(static_cast<std::size_t>(size));
    return room.data();
}

void Decoder::Open() {
    if (lclTiff && lclComplaint.empty()) lclComplaint = lclTiff->Complaint();
    lclTiff.emplace(lclSource, lclOffset, lclRoom);
    if (lclSamples.compression != compressions::jpeg || NeedsConversion(lclSamples)) return;
    if (lclSamples.photometric == photometrics::ycbcr) lclIsYcbcrJpeg = true;
    if (!lclIsYcbcrJpeg) return;
    TIFFSetField(Tiff(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    lclSamples.photometric = photometrics::rgb;
}

std::string Decoder::Decode(const RowSink& sink) {
    bool whole = false;
    const PixelFormat shown = lclSamples.Shown();
    if (NeedsConversion(lclSamples)) {
        // The orientation is for the caller: without this it would be applied in part.
        TIFFSetField(Tiff(), TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
        whole = lclSamples.tiled ? ReadConvertedTiles(sink) : ReadConverted(sink);
    } else {
        RowConverter converter(lclSamples);
        std::vector<std::uint8_t> row(PageBitmap::BytesPerRow(shown, lclSamples.width));
        whole = ReadRows([&](const std::uint8_t* const* planes) {
            converter.Convert(planes, row.data());
            sink(row.data());
        });
    }
    const std::string complaint = lclComplaint.empty() ? lclTiff->Complaint() : lclComplaint;
    if (lclRows == 0) lclSource.Damaged(complaint.empty() ? "a page is damaged" : complaint);
    return whole || !complaint.empty() ? complaint : "a page is damaged";
}

bool Decoder::ReadRows(const RawSink& sink) {
    const RawSink counting = [&](const std::uint8_t* const* planes) {
        sink(planes);
        ++lclRows;
    };
    if (lclSamples.tiled) return ReadTiles(counting);
    if (lclSamples.planes) return ReadStrips(counting);
    if (StripsAreSmall()) {
        if (ReadStrips(counting)) return true;
        Open(); // row by row what the damaged strip still has can be read
    }
    return ReadScanlines(counting);
}

// Decoding a whole strip at a time is quicker.
bool Decoder::StripsAreSmall() const {
    constexpr std::uint64_t comfortable = 16 << 20;
    return TIFFStripSize64(Tiff()) <= std::min<std::uint64_t>(comfortable, lclRoom / 4);
}

bool Decoder::DecodeRaw(std::uint8_t* out, std::size_t rowBytes) {
    const std::size_t sample = lclSamples.bits / 8, pixel = sample * lclSamples.perPixel;
    const bool whole = ReadRows([&](const std::uint8_t* const* planes) {
        if (!lclSamples.planes) std::memcpy(out, planes[0], rowBytes);
        for (std::size_t plane = 0; lclSamples.planes && plane < PlaneCount(); ++plane)
            for (std::size_t x = 0; x < lclSamples.width; ++x)
                std::memcpy(out + x * pixel + plane * sample, planes[plane] + x * sample, sample);
        out += rowBytes;
    });
    return whole && lclComplaint.empty() && lclTiff->Complaint().empty();
}

bool Decoder::ReadScanlines(const RawSink& sink) {
    std::vector<std::uint8_t> row;
    const std::uint64_t size = TIFFScanlineSize64(Tiff());
    if (size < PlaneRowBytes()) return false;
    Planes planes{Room(size, row)};
    for (std::uint32_t y = lclRows; y < lclSamples.height; ++y) {
        if (TIFFReadScanline(Tiff(), row.data(), y, 0) != 1) return false;
        sink(planes.data());
    }
    return true;
}

bool Decoder::ReadStrips(const RawSink& sink) {
    TIFF* tiff = Tiff();
    std::uint32_t rowsPerStrip = 0;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_ROWSPERSTRIP, &rowsPerStrip);
    rowsPerStrip = std::min(rowsPerStrip, lclSamples.height);
    const std::uint64_t size = TIFFStripSize64(tiff), rowBytes = TIFFScanlineSize64(tiff);
    if (rowsPerStrip == 0 || rowBytes < PlaneRowBytes() || size / rowsPerStrip < rowBytes)
        return false;
    std::vector<std::uint8_t> room;
    Room(size * PlaneCount(), room);
    Planes planes(PlaneCount());
    for (std::uint32_t y = 0; y < lclSamples.height; y += rowsPerStrip) {
        for (std::size_t plane = 0; plane < PlaneCount(); ++plane) {
            const std::uint32_t strip =
                TIFFComputeStrip(tiff, y, static_cast<std::uint16_t>(plane));
            if (TIFFReadEncodedStrip(tiff, strip, room.data() + plane * size,
                                     static_cast<tmsize_t>(size)) < 0)
                return false;
        }
        for (std::uint32_t i = 0; i < rowsPerStrip && y + i < lclSamples.height; ++i) {
            for (std::size_t plane = 0; plane < PlaneCount(); ++plane)
                planes[plane] = room.data() + plane * size + i * rowBytes;
            sink(planes.data());
        }
    }
    return true;
}

// A row of tiles at a time, put side by side.
bool Decoder::ReadTiles(const RawSink& sink) {
    TIFF* tiff = Tiff();
    std::uint32_t width = 0, height = 0;
    TIFFGetField(tiff, TIFFTAG_TILEWIDTH, &width);
    TIFFGetField(tiff, TIFFTAG_TILELENGTH, &height);
    const std::uint64_t size = TIFFTileSize64(tiff), rowBytes = TIFFTileRowSize64(tiff);
    const std::uint64_t bits =
        lclSamples.planes ? lclSamples.bits : std::uint64_t{lclSamples.bits} * lclSamples.perPixel;
    if (width == 0 || height == 0 || width * bits % 8 != 0 || rowBytes < width * bits / 8 ||
        size / height < rowBytes)
        return false;
    const std::uint64_t across = (lclSamples.width + std::uint64_t{width} - 1) / width;
    const std::uint64_t bandRow = across * (width * bits / 8);
    std::vector<std::uint8_t> tile, band;
    const std::uint32_t rows = std::min(height, lclSamples.height);
    if (bandRow > lclRoom || size + bandRow * rows * PlaneCount() > lclRoom)
        lclSource.Damaged("a page is too large");
    Room(size, tile);
    Room(bandRow * rows * PlaneCount(), band);
    Planes planes(PlaneCount());
    for (std::uint32_t y = 0; y < lclSamples.height; y += height) {
        const std::uint32_t count = std::min(height, lclSamples.height - y);
        for (std::size_t plane = 0; plane < PlaneCount(); ++plane)
            for (std::uint64_t column = 0; column < across; ++column) {
                if (TIFFReadTile(tiff, tile.data(), static_cast<std::uint32_t>(column * width), y,
                                 0, static_cast<std::uint16_t>(plane)) < 0)
                    return false;
                for (std::uint32_t i = 0; i < count; ++i)
                    std::memcpy(&band[(plane * rows + i) * bandRow + column * (width * bits / 8)],
                                &tile[i * rowBytes], width * bits / 8);
            }
        for (std::uint32_t i = 0; i < count; ++i) {
            for (std::size_t plane = 0; plane < PlaneCount(); ++plane)
                planes[plane] = &band[(plane * rows + i) * bandRow];
            sink(planes.data());
        }
    }
    return true;
}

void Decoder::ConvertRow(const std::uint32_t* raster, std::uint32_t count,
                         std::uint8_t* out) const {
    const std::size_t channels = lclSamples.Shown() == PixelFormat::rgb24 ? 3 : 1;
    for (std::uint32_t x = 0; x < count; ++x, out += channels) {
        // Colours are multiplied with their alpha already: what is missing is the white below.
        const unsigned white = 255 - TIFFGetA(raster[x]);
        out[0] = static_cast<std::uint8_t>(std::min(255u, TIFFGetR(raster[x]) + white));
        if (channels == 1) continue;
        out[1] = static_cast<std::uint8_t>(std::min(255u, TIFFGetG(raster[x]) + white));
        out[2] = static_cast<std::uint8_t>(std::min(255u, TIFFGetB(raster[x]) + white));
    }
}

bool Decoder::ReadConverted(const RowSink& sink) {
    TIFF* tiff = Tiff();
    std::uint32_t rowsPerStrip = 0;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_ROWSPERSTRIP, &rowsPerStrip);
    rowsPerStrip = std::min(rowsPerStrip, lclSamples.height);
    const std::uint64_t pixels = std::uint64_t{lclSamples.width} * rowsPerStrip;
    if (rowsPerStrip == 0) return false;
    // Three times: libtiff holds the samples beside the raster.
    if (pixels * 12 > lclRoom) lclSource.Damaged("a page is too large");
    std::vector<std::uint32_t> raster(static_cast<std::size_t>(pixels));
    std::vector<std::uint8_t> row(PageBitmap::BytesPerRow(lclSamples.Shown(), lclSamples.width));
    for (std::uint32_t y = 0; y < lclSamples.height; y += rowsPerStrip) {
        if (!TIFFReadRGBAStripExt(tiff, y, raster.data(), 1)) return false;
        const std::uint32_t rows = std::min(rowsPerStrip, lclSamples.height - y);
        for (std::uint32_t i = 0; i < rows; ++i, ++lclRows) {
            ConvertRow(&raster[std::size_t{rows - 1 - i} * lclSamples.width], lclSamples.width,
                       row.data());
            sink(row.data());
        }
    }
    return true;
}

bool Decoder::ReadConvertedTiles(const RowSink& sink) {
    TIFF* tiff = Tiff();
    std::uint32_t width = 0, height = 0;
    TIFFGetField(tiff, TIFFTAG_TILEWIDTH, &width);
    TIFFGetField(tiff, TIFFTAG_TILELENGTH, &height);
    const std::uint64_t rowBytes = PageBitmap::BytesPerRow(lclSamples.Shown(), lclSamples.width);
    if (width == 0 || height == 0) return false;
    const std::uint32_t rows = std::min(height, lclSamples.height);
    if (width > lclRoom / 12 / height || rowBytes > lclRoom / 4 / rows)
        lclSource.Damaged("a page is too large");
    std::vector<std::uint32_t> raster(std::size_t{width} * height);
    std::vector<std::uint8_t> band(static_cast<std::size_t>(rowBytes * rows));
    const std::size_t channels = lclSamples.Shown() == PixelFormat::rgb24 ? 3 : 1;
    for (std::uint32_t y = 0; y < lclSamples.height; y += height) {
        const std::uint32_t count = std::min(height, lclSamples.height - y);
        for (std::uint32_t x = 0; x < lclSamples.width; x += width) {
            if (!TIFFReadRGBATileExt(tiff, x, y, raster.data(), 1)) return false;
            for (std::uint32_t i = 0; i < count; ++i)
                ConvertRow(&raster[std::size_t{height - 1 - i} * width],
                           std::min(width, lclSamples.width - x),
                           &band[i * rowBytes + x * channels]);
        }
        for (std::uint32_t i = 0; i < count; ++i, ++lclRows) sink(&band[i * rowBytes]);
    }
    return true;
}

void CheckPlausible(Source& source, const Samples& samples) {
    const std::uint64_t pixels = std::uint64_t{samples.width} * samples.height;
    const std::uint64_t decoded = (samples.RowBits() + 7) / 8 * samples.height;
    if (pixels > mostPixels || decoded > mostDecoded ||
        (IsJpeg(samples) && pixels > mostJpegPixels))
        source.Damaged("a page is too large");
    const std::uint64_t most = MostOf(samples.compression);
    // Colour of a YCbCr page may be kept for each fourth or sixteenth element only.
    const std::uint64_t least = samples.photometric == photometrics::ycbcr ? decoded / 3 : decoded;
    // What little is missing is told by the decoding, which shows the rest.
    if (most != 0 && least / 16 > samples.dataBytes * most + 1024)
        source.Damaged("a page is damaged: its picture is missing");
}

} // namespace

std::string DecodeRows(Source& source, const Directory& page, const Samples& samples,
                       std::size_t held, const RowSink& sink) {
    CheckPlausible(source, samples);
    if (held > mostMemory) source.Damaged("a page is too large");
    return Decoder(source, page, samples, held).Decode(sink);
}

std::vector<std::uint8_t> DecodeSamples(Source& source, const Directory& page,
                                        const Samples& samples) {
    CheckPlausible(source, samples);
    const std::uint64_t row = (samples.RowBits() + 7) / 8, size = row * samples.height;
    if (IsJpeg(samples) || samples.photometric == photometrics::ycbcr || size > mostMemory / 3 ||
        (samples.planes && samples.bits % 8 != 0))
        return {};
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    Decoder decoder(source, page, samples, bytes.size());
    if (!decoder.DecodeRaw(bytes.data(), static_cast<std::size_t>(row)))
        source.Damaged("a page is damaged");
    return bytes;
}

} // namespace kavidex::imaging::tiff
