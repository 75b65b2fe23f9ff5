// JPEG pages and JPEG files. The compressed data are never decoded: tables that a TIFF keeps apart
// are put back, and strips are joined by restart marks.
#include <algorithm>
#include <array>

#include "imaging/pdf/JpegParts.h"
#include "imaging/pdf/PageImage.h"
#include "imaging/pdf/TiffSource.h"

namespace kavidex::imaging {

namespace {

std::string Entries(std::uint32_t width, std::uint32_t height, unsigned components, int transform,
                    bool inverted) {
    const char* space = components == 1   ? "/DeviceGray"
                        : components == 3 ? "/DeviceRGB"
                                          : "/DeviceCMYK";
    std::string text = SizeEntries(width, height, 8) + "/ColorSpace " + space;
    if (inverted) text += components == 1 ? " /Decode [1 0]" : " /Decode [1 0 1 0 1 0 1 0]";
    text += " /Filter /DCTDecode";
    if (components != 1)
        text += " /DecodeParms << /ColorTransform " + std::to_string(transform) + " >>";
    return text;
}

// What PDF is to make of the components; nothing where it cannot show them.
std::optional<int> Transform(const TiffFacts& facts) {
    switch (facts.photometric) {
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_MINISBLACK: return facts.samples == 1 ? std::optional(0) : std::nullopt;
    case PHOTOMETRIC_RGB: return facts.samples == 3 ? std::optional(0) : std::nullopt;
    case PHOTOMETRIC_YCBCR: return facts.samples == 3 ? std::optional(1) : std::nullopt;
    case PHOTOMETRIC_SEPARATED: return facts.samples == 4 ? std::optional(0) : std::nullopt;
    default: return std::nullopt;
    }
}

std::string SharedTables(const TiffSource& source) {
    std::uint32_t length = 0;
    const void* tables = nullptr;
    if (!TIFFGetField(source.Get(), TIFFTAG_JPEGTABLES, &length, &tables) || length < 4) return {};
    const std::string_view whole(static_cast<const char*>(tables), length);
    return std::string(whole.substr(2, whole.size() - 4)); // without begin and end
}

struct Grid {
    std::uint32_t partWidth, partHeight, across;
};

Grid GridOf(const TiffSource& source, const TiffFacts& facts) {
    if (!facts.tiled) {
        const auto rows = source.Field<std::uint32_t>(TIFFTAG_ROWSPERSTRIP, facts.height);
        return {facts.width, std::clamp<std::uint32_t>(rows, 1, facts.height), 1};
    }
    const auto width = source.Field<std::uint32_t>(TIFFTAG_TILEWIDTH, 0),
               height = source.Field<std::uint32_t>(TIFFTAG_TILELENGTH, 0);
    if (width == 0 || height == 0) source.Fail();
    return {width, height, (facts.width + width - 1) / width};
}

} // namespace

std::vector<ImagePiece> JpegImage(const TiffSource& source, const TiffFacts& facts) {
    const auto transform = Transform(facts);
    if (facts.compression != COMPRESSION_JPEG || facts.bits != 8 || !transform ||
        (facts.planes != PLANARCONFIG_CONTIG && facts.samples > 1))
        return {};
    const bool inverted = facts.photometric == PHOTOMETRIC_MINISWHITE;
    const std::string tables = SharedTables(source);
    const Grid grid = GridOf(source, facts);
    std::vector<JpegParts> parts;
    for (std::uint32_t i = 0; i < facts.parts; ++i) {
        auto part = ReadJpeg(RawPart(source, facts, i), tables);
        if (!part || part->components != facts.samples || part->width > grid.partWidth) return {};
        parts.push_back(std::move(*part));
    }
    if (!facts.tiled) {
        if (auto whole = JoinJpegs(parts, facts.width, facts.height, grid.partHeight)) {
            ImagePiece piece = WholePage(facts);
            piece.data = std::move(*whole);
            piece.entries = Entries(facts.width, facts.height, facts.samples, *transform, inverted);
            return {std::move(piece)};
        }
    }
    std::vector<ImagePiece> pieces;
    for (std::uint32_t i = 0; i < facts.parts; ++i) {
        const JpegParts& part = parts[i];
        pieces.push_back({i % grid.across * grid.partWidth, i / grid.across * grid.partHeight,
                          part.width, part.height,
                          Entries(part.width, part.height, facts.samples, *transform, inverted),
                          part.Whole()});
    }
    return pieces;
}

std::optional<JpegFile> ReadJpegFile(std::string bytes) {
    const auto parts = ReadJpeg(bytes, {});
    if (!parts || (parts->components != 1 && parts->components != 3 && parts->components != 4))
        return std::nullopt;
    // Programs that write four inks write them inverted, and name themselves in a mark.
    const bool inverted = parts->components == 4 && parts->adobe;
    // Without that mark three components are luminance and colour differences.
    JpegFile file;
    file.piece = {0,
                  0,
                  parts->width,
                  parts->height,
                  Entries(parts->width, parts->height, parts->components,
                          parts->components == 3 ? 1 : 0, inverted),
                  std::move(bytes)};
    file.xDpi = parts->xDpi;
    file.yDpi = parts->yDpi;
    file.orientation = parts->orientation;
    return file;
}

} // namespace kavidex::imaging
