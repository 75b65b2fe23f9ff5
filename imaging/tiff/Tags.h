// The tags that the house itself reads or writes; all others pass through as they are.
#pragma once

#include <cstdint>

namespace kavidex::imaging::tiff {

namespace tags {
constexpr std::uint16_t imageWidth = 256, imageLength = 257, bitsPerSample = 258, compression = 259,
                        photometric = 262, fillOrder = 266, stripOffsets = 273, orientation = 274,
                        samplesPerPixel = 277, rowsPerStrip = 278, stripByteCounts = 279,
                        xResolution = 282, yResolution = 283, planarConfig = 284, freeOffsets = 288,
                        freeByteCounts = 289, t4Options = 292, t6Options = 293,
                        resolutionUnit = 296, pageNumber = 297, predictor = 317, colorMap = 320,
                        tileWidth = 322, tileLength = 323, tileOffsets = 324, tileByteCounts = 325,
                        subIfds = 330, extraSamples = 338, sampleFormat = 339, jpegTables = 347,
                        jpegInterchange = 513, jpegInterchangeLength = 514, jpegQTables = 519,
                        jpegDcTables = 520, jpegAcTables = 521, ycbcrSubsampling = 530,
                        annotations = 32932, exifIfd = 34665, gpsIfd = 34853, interopIfd = 40965;
} // namespace tags

namespace types {
constexpr std::uint16_t byte = 1, ascii = 2, short16 = 3, long32 = 4, rational = 5, sbyte = 6,
                        undefined = 7, sshort = 8, slong = 9, srational = 10, float32 = 11,
                        double64 = 12, ifd = 13, long64 = 16, slong64 = 17, ifd64 = 18;
} // namespace types

constexpr std::uint64_t mostParts = 1'000'000; // strips or tiles of a page

struct TypeSize {
    std::uint8_t size, unit; // of one value, of the numbers in it
};

// {0, 0} for a type that nobody has defined.
constexpr TypeSize SizeOf(std::uint16_t type) {
    constexpr TypeSize sizes[] = {{0, 0}, {1, 1}, {1, 1}, {2, 2}, {4, 4}, {8, 4}, {1, 1},
                                  {1, 1}, {2, 2}, {4, 4}, {8, 4}, {4, 4}, {8, 8}, {4, 4},
                                  {0, 0}, {0, 0}, {8, 8}, {8, 8}, {8, 8}};
    return type < sizeof sizes / sizeof sizes[0] ? sizes[type] : TypeSize{0, 0};
}

namespace compressions {
constexpr std::uint16_t none = 1, ccittRle = 2, fax3 = 3, fax4 = 4, lzw = 5, oldJpeg = 6, jpeg = 7,
                        adobeDeflate = 8, ccittRleWords = 32771, packBits = 32773, deflate = 32946;
} // namespace compressions

} // namespace kavidex::imaging::tiff
