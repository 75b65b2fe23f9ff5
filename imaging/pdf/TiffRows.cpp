#include "imaging/pdf/TiffRows.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "imaging/pdf/TiffSource.h"

namespace kavidex::imaging {

namespace {

std::size_t BytesFor(std::uint64_t samples, unsigned bits) {
    return static_cast<std::size_t>((samples * bits + 7) / 8);
}

// One row of a band: `planes` rows of samples that belong side by side.
class RowMaker {
public:
    RowMaker(const TiffFacts& facts, const RowTaker& take) : lclFacts(facts), lclTake(take) {}

    void Chunky(const char* from) {
        if (lclFacts.extras == 0) {
            lclRow.assign(
                from, BytesFor(std::uint64_t{lclFacts.width} * lclFacts.samples, lclFacts.bits));
        } else {
            Start();
            for (std::uint64_t x = 0; x < lclFacts.width; ++x)
                for (unsigned c = 0; c < lclFacts.Colours(); ++c)
                    PutSample(x * lclFacts.Colours() + c, from, x * lclFacts.samples + c);
        }
        Finish();
    }

    void Planar(const std::vector<const char*>& planes) {
        Start();
        for (unsigned c = 0; c < lclFacts.Colours(); ++c)
            for (std::uint64_t x = 0; x < lclFacts.width; ++x)
                PutSample(x * lclFacts.Colours() + c, planes[c], x);
        Finish();
    }

private:
    void Start() {
        lclRow.assign(BytesFor(std::uint64_t{lclFacts.width} * lclFacts.Colours(), lclFacts.bits),
                      '\0');
    }

    void PutSample(std::uint64_t to, const char* bytes, std::uint64_t from) {
        if (lclFacts.bits >= 8) {
            const unsigned size = lclFacts.bits / 8;
            std::memcpy(lclRow.data() + to * size, bytes + from * size, size);
            return;
        }
        const unsigned perByte = 8 / lclFacts.bits, mask = (1u << lclFacts.bits) - 1;
        const auto shift = [&](std::uint64_t i) {
            return static_cast<unsigned>((perByte - 1 - i % perByte) * lclFacts.bits);
        };
        const unsigned value =
            (static_cast<unsigned char>(bytes[from / perByte]) >> shift(from)) & mask;
        lclRow[static_cast<std::size_t>(to / perByte)] |= static_cast<char>(value << shift(to));
    }

    void Finish() {
        // The library gives numbers in this machine's order, lowest byte first.
        if (lclFacts.bits == 16)
            for (std::size_t i = 0; i + 1 < lclRow.size(); i += 2)
                std::swap(lclRow[i], lclRow[i + 1]);
        lclTake(lclRow);
    }

    const TiffFacts& lclFacts;
    const RowTaker& lclTake;
    std::string lclRow;
};

std::string Buffer(const TiffSource& source, std::uint64_t size) {
    if (size == 0 || size > TiffSource::mostForOnePart) source.Fail();
    return std::string(static_cast<std::size_t>(size), '\0');
}

void ReadLines(const TiffSource& source, const TiffFacts& facts, RowMaker& rows) {
    std::string row = Buffer(source, static_cast<std::uint64_t>(TIFFScanlineSize64(source.Get())));
    for (std::uint32_t y = 0; y < facts.height; ++y) {
        if (TIFFReadScanline(source.Get(), row.data(), y, 0) != 1) source.Fail();
        rows.Chunky(row.data());
    }
}

// Strips of planes that lie apart: those of one height side by side.
void ReadPlanes(const TiffSource& source, const TiffFacts& facts, RowMaker& rows) {
    TIFF* file = source.Get();
    const auto perStrip = std::clamp<std::uint32_t>(
        source.Field<std::uint32_t>(TIFFTAG_ROWSPERSTRIP, facts.height), 1, facts.height);
    const std::size_t stride = BytesFor(facts.width, facts.bits);
    std::vector<std::string> planes;
    for (unsigned c = 0; c < facts.Colours(); ++c)
        planes.push_back(Buffer(source, std::uint64_t{stride} * perStrip * facts.Colours()));
    for (std::uint32_t top = 0; top < facts.height; top += perStrip) {
        for (std::uint16_t c = 0; c < facts.Colours(); ++c)
            if (TIFFReadEncodedStrip(file, TIFFComputeStrip(file, top, c), planes[c].data(),
                                     static_cast<tmsize_t>(planes[c].size())) < 0)
                source.Fail();
        for (std::uint32_t y = 0; y < std::min(perStrip, facts.height - top); ++y) {
            std::vector<const char*> row;
            for (const std::string& plane : planes) row.push_back(plane.data() + y * stride);
            rows.Planar(row);
        }
    }
}

// Copies one row of a tile to its place among the samples of the page's row.
void CopyBits(char* to, std::uint64_t toBit, const char* from, std::uint64_t bits) {
    if (toBit % 8 == 0) {
        std::memcpy(to + toBit / 8, from, static_cast<std::size_t>((bits + 7) / 8));
        return;
    }
    for (std::uint64_t i = 0; i < bits; ++i)
        if ((from[i / 8] >> (7 - i % 8)) & 1)
            to[(toBit + i) / 8] |= static_cast<char>(0x80 >> (toBit + i) % 8);
}

void ReadTiles(const TiffSource& source, const TiffFacts& facts, RowMaker& rows) {
    TIFF* file = source.Get();
    const auto width = source.Field<std::uint32_t>(TIFFTAG_TILEWIDTH, 0),
               height = source.Field<std::uint32_t>(TIFFTAG_TILELENGTH, 0);
    const bool apart = facts.planes != PLANARCONFIG_CONTIG && facts.samples > 1;
    const unsigned planes = apart ? facts.Colours() : 1, perPixel = apart ? 1 : facts.samples;
    if (width == 0 || height == 0) source.Fail();
    const std::uint64_t pixelBits = std::uint64_t{perPixel} * facts.bits;
    const std::uint64_t wide = (std::uint64_t{facts.width} + width - 1) / width * width;
    const auto stride = static_cast<std::size_t>((wide * pixelBits + 7) / 8 + 8);
    const std::size_t tileStride = BytesFor(std::uint64_t{width} * perPixel, facts.bits);
    std::string tile = Buffer(source, static_cast<std::uint64_t>(TIFFTileSize64(file)));
    std::string band = Buffer(source, std::uint64_t{stride} * height * planes);
    if (tile.size() < std::uint64_t{tileStride} * height) source.Fail();
    for (std::uint32_t top = 0; top < facts.height; top += height) {
        std::fill(band.begin(), band.end(), '\0');
        for (unsigned c = 0; c < planes; ++c)
            for (std::uint32_t x = 0; x < facts.width; x += width) {
                if (TIFFReadTile(file, tile.data(), x, top, 0, static_cast<std::uint16_t>(c)) < 0)
                    source.Fail();
                for (std::uint32_t y = 0; y < height; ++y)
                    CopyBits(band.data() + (std::size_t{c} * height + y) * stride, x * pixelBits,
                             tile.data() + y * tileStride, width * pixelBits);
            }
        for (std::uint32_t y = 0; y < std::min(height, facts.height - top); ++y) {
            std::vector<const char*> row;
            for (unsigned c = 0; c < planes; ++c)
                row.push_back(band.data() + (std::size_t{c} * height + y) * stride);
            apart ? rows.Planar(row) : rows.Chunky(row[0]);
        }
    }
}

} // namespace

void ReadRows(const TiffSource& source, const TiffFacts& facts, const RowTaker& take) {
    RowMaker rows(facts, take);
    if (facts.tiled)
        ReadTiles(source, facts, rows);
    else if (facts.planes != PLANARCONFIG_CONTIG && facts.samples > 1)
        ReadPlanes(source, facts, rows);
    else
        ReadLines(source, facts, rows);
}

void ReadColourRows(const TiffSource& source, const TiffFacts& facts, const RowTaker& take) {
    TIFF* file = source.Get();
    // The rows are to come as they are stored; the page is turned elsewhere.
    TIFFSetField(file, TIFFTAG_ORIENTATION, static_cast<std::uint16_t>(ORIENTATION_TOPLEFT));
    TIFFRGBAImage image{};
    char trouble[1024] = "";
    if (!TIFFRGBAImageOK(file, trouble) || !TIFFRGBAImageBegin(&image, file, 1, trouble))
        source.Fail();
    image.req_orientation = ORIENTATION_TOPLEFT;
    const auto part = facts.tiled ? source.Field<std::uint32_t>(TIFFTAG_TILELENGTH, 1)
                                  : source.Field<std::uint32_t>(TIFFTAG_ROWSPERSTRIP, facts.height);
    const std::uint32_t step = std::clamp<std::uint32_t>(part, 1, facts.height);
    const std::uint64_t count = std::uint64_t{facts.width} * step;
    std::vector<std::uint32_t> band;
    bool whole = count * sizeof(std::uint32_t) <= TiffSource::mostForOnePart;
    if (whole) band.resize(static_cast<std::size_t>(count));
    std::string row;
    for (std::uint32_t top = 0; whole && top < facts.height; top += step) {
        const std::uint32_t rows = std::min(step, facts.height - top);
        image.row_offset = static_cast<int>(top);
        image.col_offset = 0;
        whole = TIFFRGBAImageGet(&image, band.data(), facts.width, rows) == 1;
        for (std::uint32_t y = 0; whole && y < rows; ++y) {
            row.clear();
            for (std::uint32_t x = 0; x < facts.width; ++x) {
                const std::uint32_t pixel = band[std::size_t{y} * facts.width + x];
                for (const std::uint32_t c : {TIFFGetR(pixel), TIFFGetG(pixel), TIFFGetB(pixel)})
                    row += static_cast<char>(std::min(255u, c + 255 - TIFFGetA(pixel)));
            }
            take(row);
        }
    }
    TIFFRGBAImageEnd(&image);
    if (!whole) source.Fail();
}

} // namespace kavidex::imaging
