#include "imaging/pdf/TiffSource.h"

namespace kavidex::imaging {

TiffFacts::TiffFacts(const TiffSource& source)
    : width(source.Field<std::uint32_t>(TIFFTAG_IMAGEWIDTH, 0)),
      height(source.Field<std::uint32_t>(TIFFTAG_IMAGELENGTH, 0)),
      bits(source.Field<std::uint16_t>(TIFFTAG_BITSPERSAMPLE, 1)),
      samples(source.Field<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL, 1)),
      compression(source.Field<std::uint16_t>(TIFFTAG_COMPRESSION, COMPRESSION_NONE)),
      photometric(source.Field<std::uint16_t>(TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE)),
      planes(source.Field<std::uint16_t>(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG)),
      fillOrder(source.Field<std::uint16_t>(TIFFTAG_FILLORDER, FILLORDER_MSB2LSB)),
      sampleFormat(source.Field<std::uint16_t>(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT)),
      tiled(TIFFIsTiled(source.Get()) != 0),
      parts(tiled ? TIFFNumberOfTiles(source.Get()) : TIFFNumberOfStrips(source.Get())) {
    if (width == 0 || height == 0 || samples == 0) source.Fail();
    if (compression == COMPRESSION_LZW || compression == COMPRESSION_DEFLATE ||
        compression == COMPRESSION_ADOBE_DEFLATE)
        predictor = source.Field<std::uint16_t>(TIFFTAG_PREDICTOR, 1);
    std::uint16_t count = 0, *kinds = nullptr;
    if (!TIFFGetFieldDefaulted(source.Get(), TIFFTAG_EXTRASAMPLES, &count, &kinds) ||
        count >= samples)
        return;
    extras = count;
    for (unsigned i = 0; i < count; ++i) alpha = alpha || kinds[i] != EXTRASAMPLE_UNSPECIFIED;
}

} // namespace kavidex::imaging
