// Pages whose samples PDF knows: decoded and packed anew without loss, or taken over where they are
// packed in PDF's own way already.
#include <algorithm>

#include "imaging/pdf/Flate.h"
#include "imaging/pdf/PageImage.h"
#include "imaging/pdf/TiffRows.h"
#include "imaging/pdf/TiffSource.h"
#include "platform/Bytes.h"

namespace kavidex::imaging {

namespace {

bool IsDeflate(const TiffFacts& facts) {
    return facts.compression == COMPRESSION_DEFLATE ||
           facts.compression == COMPRESSION_ADOBE_DEFLATE;
}

std::string Palette(const TiffSource& source, const TiffFacts& facts) {
    std::uint16_t* colours[3] = {};
    if (!TIFFGetField(source.Get(), TIFFTAG_COLORMAP, &colours[0], &colours[1], &colours[2]))
        source.Fail();
    const unsigned count = 1u << facts.bits;
    // Some writers tell 8 bits where 16 are due.
    unsigned most = 0;
    for (const std::uint16_t* row : colours)
        most = std::max<unsigned>(most, *std::max_element(row, row + count));
    const unsigned whole = most > 255 ? 65535 : 255;
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text = "[/Indexed /DeviceRGB " + std::to_string(count - 1) + " <";
    for (unsigned i = 0; i < count; ++i)
        for (const std::uint16_t* row : colours) {
            const unsigned value = (row[i] * 255u + whole / 2) / whole;
            text += digits[value >> 4];
            text += digits[value & 15];
        }
    return text + ">]";
}

// Nothing for samples that PDF has no such space for.
std::optional<std::string> ColourSpace(const TiffSource& source, const TiffFacts& facts) {
    const bool small = facts.bits == 1 || facts.bits == 2 || facts.bits == 4 || facts.bits == 8;
    if (facts.sampleFormat != SAMPLEFORMAT_UINT || !(small || facts.bits == 16))
        return std::nullopt;
    const unsigned colours = facts.Colours();
    switch (facts.photometric) {
    case PHOTOMETRIC_MINISWHITE:
        if (colours == 1) return "/DeviceGray /Decode [1 0]";
        break;
    case PHOTOMETRIC_MINISBLACK:
        if (colours == 1) return "/DeviceGray";
        break;
    case PHOTOMETRIC_RGB:
        if (colours == 3) return "/DeviceRGB";
        break;
    case PHOTOMETRIC_PALETTE:
        if (colours == 1 && small) return Palette(source, facts);
        break;
    case PHOTOMETRIC_SEPARATED:
        if (colours == 4 && source.Field<std::uint16_t>(TIFFTAG_INKSET, INKSET_CMYK) == INKSET_CMYK)
            return "/DeviceCMYK";
        break;
    default: break;
    }
    return std::nullopt;
}

// Differences between neighbours, as the source had them: they pack better.
void Difference(std::string& row, unsigned colours) {
    for (std::size_t i = row.size(); i-- > colours;)
        row[i] = static_cast<char>(row[i] - row[i - colours]);
}

bool CanBeTakenOver(const TiffSource& source, const TiffFacts& facts) {
    if (!IsDeflate(facts) || facts.parts != 1 || facts.tiled || facts.predictor > 2 ||
        facts.extras != 0 || (facts.planes != PLANARCONFIG_CONTIG && facts.samples > 1))
        return false;
    if (facts.bits == 16) return TIFFIsBigEndian(source.Get()) != 0;
    return facts.predictor == 1 || facts.bits == 8;
}

} // namespace

std::optional<ImagePiece> PackedImage(const TiffSource& source, const TiffFacts& facts) {
    const bool known =
        facts.compression == COMPRESSION_NONE || facts.compression == COMPRESSION_LZW ||
        facts.compression == COMPRESSION_PACKBITS || IsDeflate(facts) ||
        facts.compression == COMPRESSION_CCITTRLE || facts.compression == COMPRESSION_CCITTRLEW ||
        facts.compression == COMPRESSION_CCITTFAX3 || facts.compression == COMPRESSION_CCITTFAX4;
    if (!known || facts.alpha) return std::nullopt;
    const auto space = ColourSpace(source, facts);
    if (!space) return std::nullopt;
    ImagePiece piece = WholePage(facts);
    bool differences = facts.predictor == 2;
    if (CanBeTakenOver(source, facts)) {
        piece.data = RawPart(source, facts, 0);
    } else {
        differences = differences && facts.bits == 8;
        Deflater packer(IsDeflate(facts) ? 9 : 6);
        ReadRows(source, facts, [&](std::string& row) {
            if (differences) Difference(row, facts.Colours());
            packer.Add(row);
        });
        piece.data = packer.Finish();
    }
    piece.entries = SizeEntries(facts.width, facts.height, facts.bits) + "/ColorSpace " + *space +
                    " /Filter /FlateDecode";
    if (differences)
        piece.entries += " /DecodeParms << /Predictor 2 /Colors " +
                         std::to_string(facts.Colours()) + " /BitsPerComponent " +
                         std::to_string(facts.bits) + " /Columns " + std::to_string(facts.width) +
                         " >>";
    return piece;
}

// Any other page: as red, green and blue over white, whatever the library makes of it.
ImagePiece ColourImage(const TiffSource& source, const TiffFacts& facts) {
    Deflater packer(6);
    ReadColourRows(source, facts, [&](std::string& row) { packer.Add(row); });
    ImagePiece piece = WholePage(facts);
    piece.data = packer.Finish();
    piece.entries =
        SizeEntries(facts.width, facts.height, 8) + "/ColorSpace /DeviceRGB /Filter /FlateDecode";
    return piece;
}

} // namespace kavidex::imaging
