// Fax pages: one strip goes as it is; several are joined into one without loss.
#include <algorithm>

#include "imaging/pdf/PageImage.h"
#include "imaging/pdf/TiffSource.h"

namespace kavidex::imaging {

namespace {

bool IsFax(std::uint16_t compression) {
    return compression == COMPRESSION_CCITTRLE || compression == COMPRESSION_CCITTRLEW ||
           compression == COMPRESSION_CCITTFAX3 || compression == COMPRESSION_CCITTFAX4;
}

// Whether the data begin with the mark of a line's end: eleven or more zeros and a one.
bool BeginsWithEndOfLine(std::string_view data) {
    int zeros = 0;
    for (const char c : data.substr(0, 8))
        for (int bit = 7; bit >= 0; --bit) {
            if ((c >> bit) & 1) return zeros >= 11;
            ++zeros;
        }
    return false;
}

std::string Parameters(const TiffSource& source, const TiffFacts& facts, std::string_view data) {
    std::string text = "/K ";
    if (facts.compression == COMPRESSION_CCITTFAX4) {
        text += "-1";
    } else if (facts.compression == COMPRESSION_CCITTFAX3) {
        const auto options = source.Field<std::uint32_t>(TIFFTAG_GROUP3OPTIONS, 0);
        text += options & GROUP3OPT_2DENCODING ? "4" : "0";
        if (BeginsWithEndOfLine(data)) text += " /EndOfLine true";
    } else {
        text += "0 /EncodedByteAlign true";
    }
    return text;
}

std::string Entries(const TiffFacts& facts, const std::string& parameters) {
    const std::string size = " /Columns " + std::to_string(facts.width) + " /Rows " +
                             std::to_string(facts.height) + " /EndOfBlock false";
    const char* black = facts.photometric == PHOTOMETRIC_MINISBLACK ? " /BlackIs1 true" : "";
    return SizeEntries(facts.width, facts.height, 1) +
           "/ColorSpace /DeviceGray /Filter /CCITTFaxDecode /DecodeParms << " + parameters + size +
           black + " >>";
}

// Decoded row by row and coded anew as one strip of the densest kind.
std::string Joined(const TiffSource& source, const TiffFacts& facts) {
    std::string memory;
    const tiff::LibTiff target(memory, tiff::Order::little, TiffSource::mostForOnePart);
    TIFF* file = target.Get();
    if (!file) source.Fail();
    TIFFSetField(file, TIFFTAG_IMAGEWIDTH, facts.width);
    TIFFSetField(file, TIFFTAG_IMAGELENGTH, facts.height);
    TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, facts.height);
    TIFFSetField(file, TIFFTAG_COMPRESSION, COMPRESSION_CCITTFAX4);
    TIFFSetField(file, TIFFTAG_PHOTOMETRIC, facts.photometric);
    std::string row(static_cast<std::size_t>(TIFFScanlineSize(source.Get())), '\0');
    for (std::uint32_t y = 0; y < facts.height; ++y) {
        if (TIFFReadScanline(source.Get(), row.data(), y, 0) != 1) source.Fail();
        if (TIFFWriteScanline(file, row.data(), y, 0) != 1) source.Fail();
    }
    TIFFFlushData(file);
    const std::uint64_t place = TIFFGetStrileOffset(file, 0),
                        size = TIFFGetStrileByteCount(file, 0);
    if (place > memory.size()) source.Fail();
    return memory.substr(static_cast<std::size_t>(place), static_cast<std::size_t>(size));
}

} // namespace

std::optional<ImagePiece> FaxImage(const TiffSource& source, const TiffFacts& facts) {
    if (!IsFax(facts.compression) || facts.bits != 1 || facts.samples != 1 || facts.tiled ||
        facts.photometric > PHOTOMETRIC_MINISBLACK)
        return std::nullopt;
    ImagePiece piece = WholePage(facts);
    if (facts.parts == 1 && facts.compression != COMPRESSION_CCITTRLEW) {
        piece.data = RawPart(source, facts, 0);
        piece.entries = Entries(facts, Parameters(source, facts, piece.data));
    } else {
        piece.data = Joined(source, facts);
        piece.entries = Entries(facts, "/K -1");
    }
    return piece;
}

} // namespace kavidex::imaging
