// Pages of every kind, as other programs write them, read as those programs read them.
#include "imaging/PageOperations.h"
#include "imaging/RowScaler.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "tests/fakes/SmallTiff.h"
#include "tests/unit/imaging/posix/Tools.h"

namespace kavidex::tests {
namespace {

using imaging::PageBitmap;
using imaging::PageFacts;
using imaging::PageFile;
using imaging::PixelFormat;

struct Kind {
    const char* command; // makes t.tif of bits.tif, grey.tif and rgb.tif
    PixelFormat format;
    int tolerance = 0;
};

constexpr PixelFormat b = PixelFormat::bits1, g = PixelFormat::grey8, c = PixelFormat::rgb24;
const Kind kinds[] = {
    {"tiffcp -c g3 bits.tif t.tif", b},
    {"tiffcp -c g3:2d:fill bits.tif t.tif", b},
    {"tiffcp -c g4 -r 20 bits.tif t.tif", b},
    {"tiffcp -c g4 -f lsb2msb bits.tif t.tif", b},
    {"tiffcp -c lzw bits.tif t.tif", b},
    {"tiffcp -c lzw:2 rgb.tif t.tif", c},
    {"tiffcp -c packbits grey.tif t.tif", g},
    {"tiffcp -c zip:2 rgb.tif t.tif", c},
    {"tiffcp -B -c none rgb.tif t.tif", c},
    {"tiffcp -8 -c lzw rgb.tif t.tif", c},
    {"tiffcp -p separate -r 16 -c lzw rgb.tif t.tif", c},
    {"tiffcp -t -w 32 -l 48 -c zip rgb.tif t.tif", c},
    {"tiffcp -t -w 32 -l 32 -p separate rgb.tif t.tif", c},
    {"tiffcp -t -w 64 -l 16 -c g4 bits.tif t.tif", b},
    {"tiffcp -c jpeg:95 -r 16 rgb.tif t.tif", c, 3},
    {"tiffcp -c jpeg:95:r -r 16 rgb.tif t.tif", c, 3},
    {"tiffcp -c jpeg:95 -r 16 grey.tif t.tif", g, 2},
    {"tiffcp -t -w 64 -l 64 -c jpeg:95 rgb.tif t.tif", c, 3},
    {"convert rgb.tif -colorspace CMYK -compress jpeg -quality 98 t.tif", c, 12},
    {"convert rgb.tif -colors 200 -type palette -compress lzw t.tif", c, 1},
    {"convert rgb.tif -colors 14 -type palette -compress none t.tif", c, 1},
    {"convert grey.tif -depth 2 -compress lzw t.tif", g, 1},
    {"convert grey.tif -depth 4 -compress none t.tif", g, 1},
    {"convert grey.tif -depth 16 -compress lzw -endian MSB t.tif", g, 1},
    {"convert rgb.tif -depth 16 -compress zip t.tif", c, 1},
    {"convert grey.tif -define quantum:polarity=min-is-white -compress none t.tif", g},
    {"convert rgb.tif -colorspace CMYK -compress lzw t.tif", c, 2},
    {"convert rgb.tif -colorspace CMYK -interlace plane -compress none t.tif", c, 2},
    {"convert rgb.tif -alpha set -channel A -evaluate set 40% +channel -compress lzw t.tif", c, 2},
    {"convert rgb.tif -colorspace YCbCr -compress lzw t.tif", c, 3},
    {"tiffcp -c g4 bits.tif t.tif && tiffset -s 274 6 t.tif", b},
    {"tiffcp grey.tif t.tif && tiffset -s 274 5 t.tif", g},
};

TEST_F(PageFiles, PagesOfEveryKindAreSeenAsOthersSeeThem) {
    ASSERT_EQ(Run("convert -size 155x111 -seed 5 plasma:fractal -depth 8 -compress none rgb.tif && "
                  "convert rgb.tif -colorspace gray -depth 8 -compress none grey.tif && "
                  "convert grey.tif -monochrome -compress group4 b.tif && "
                  "tiffcp -c none b.tif bits.tif"),
              "");
    for (const Kind& kind : kinds) {
        SCOPED_TRACE(kind.command);
        EXPECT_EQ(Run(kind.command), "");
        PageFile file = Open("t.tif");
        EXPECT_EQ(file.Count(), 1);
        const PageFacts facts = file.Facts(1);
        const PageBitmap page = file.Decode(1);
        EXPECT_TRUE(page.format == kind.format && facts.format == kind.format);
        EXPECT_EQ(facts.width, page.width);
        EXPECT_EQ(facts.height, page.height);
        EXPECT_EQ(page.width * page.height, 155u * 111u);
        const std::string ours = Colours(page);
        EXPECT_LE(Difference(ours, Seen("t.tif")), kind.tolerance);

        // Scaled to its own size it is the same page, on the way that keeps no page in memory.
        EXPECT_EQ(Difference(Colours(file.DecodeScaled(1, page.width, page.height)), ours), 0);
        if (facts.orientation != 1) continue;
        EXPECT_EQ(Run("tiffset -s 274 7 t.tif"), "");
        EXPECT_EQ(Open("t.tif").Decode(1).bytes, imaging::Oriented(page, 7).bytes);
    }
}

TEST_F(PageFiles, ScalesAsImageMagickDoesAndKeepsThinLines) {
    ASSERT_EQ(Run("convert -size 600x800 xc:white -fill black -draw 'line 0,0 599,799' "
                  "-draw 'rectangle 100,100 300,101' -monochrome -compress group4 t.tif && "
                  "convert -size 300x200 plasma:tomato -depth 8 -compress lzw u.tif"),
              "");
    ASSERT_EQ(Run("convert t.tif -colorspace gray -filter box -resize '150x200!' -depth 8 RGB:a && "
                  "convert u.tif -filter box -resize '100x50!' -depth 8 RGB:b"),
              "");
    EXPECT_LE(Difference(Colours(Open("t.tif").DecodeScaled(1, 150, 200)), Bytes("a")), 2);
    EXPECT_LE(Difference(Colours(Open("u.tif").DecodeScaled(1, 100, 50)), Bytes("b")), 2);

    // A part of the page in memory, enlarged and made smaller.
    const PageBitmap page = Open("t.tif").Decode(1);
    const PageBitmap part = imaging::Scaled(page, {93, 91, 60, 40}, 120, 80);
    EXPECT_EQ(part.Row(18)[14], 0);
    EXPECT_EQ(part.Row(17)[14], 255);
    EXPECT_EQ(part.Row(18)[13], 255);
}

TEST_F(PageFiles, TellsAPagesFactsAndFitsFaxPagesWithoutSqueezingThem) {
    ASSERT_EQ(
        Run("convert -size 1728x1100 xc:white -monochrome -compress fax f.tif && "
            "tiffset -s 282 204 f.tif && tiffset -s 283 98 f.tif && tiffset -s 296 2 f.tif && "
            "convert -size 100x50 xc:red -units PixelsPerCentimeter -density 118 "
            "-compress lzw c.tif && tiffset -s 274 6 c.tif && tiffcp f.tif c.tif t.tif"),
        "");
    PageFile file = Open("t.tif");
    ASSERT_EQ(file.Count(), 2);
    const PageFacts fax = file.Facts(1), photo = file.Facts(2);
    EXPECT_NEAR(fax.xDpi, 204, 0.1);
    EXPECT_NEAR(fax.yDpi, 98, 0.1);
    EXPECT_EQ(fax.compression, 3);
    EXPECT_NEAR(photo.xDpi, 299.7, 0.2);
    EXPECT_EQ(photo.width, 50u) << "upright";
    const imaging::PageSize size = imaging::FittingSize(fax, 500, 500);
    EXPECT_NEAR(static_cast<double>(size.width) / size.height, (1728 / 204.0) / (1100 / 98.0),
                0.01);
    const PageBitmap thumb = imaging::Thumbnail(file, 2, 40, 40);
    EXPECT_EQ(thumb.width, 20u);
    EXPECT_EQ(thumb.height, 40u);
    EXPECT_LE(Difference(Colours(thumb).substr(0, 3), std::string("\xFF\0\0", 3)), 0);
    EXPECT_THROW(file.Facts(3), platform::Error);
}

TEST_F(PageFiles, OldJpegIsShown) {
    // No program writes it any more: a whole JPEG stream, and a directory that points at it.
    ASSERT_EQ(Run("convert -size 64x48 gradient:red-blue -sampling-factor 2x2 -quality 95 o.jpg"),
              "");
    const std::string stream = Bytes("o.jpg");
    const auto length = static_cast<std::uint32_t>(stream.size());
    constexpr std::uint32_t at = 8 + 2 + 12 * 12 + 4;
    Write("t.tif", TiffOf({{256, 3, 1, 64},
                           {257, 3, 1, 48},
                           {258, 3, 1, 8},
                           {259, 3, 1, 6},
                           {262, 3, 1, 6},
                           {273, 4, 1, at},
                           {277, 3, 1, 3},
                           {278, 3, 1, 48},
                           {279, 4, 1, length},
                           {512, 3, 1, 1},
                           {513, 4, 1, at},
                           {514, 4, 1, length}},
                          stream));
    const PageBitmap page = Open("t.tif").Decode(1);
    ASSERT_EQ(Run("convert o.jpg -depth 8 RGB:seen"), "");
    EXPECT_LE(Difference(Colours(page), Bytes("seen")), 6);
}

// Cut short, or with a byte turned: a message or a page, never more.
TEST_F(PageFiles, DamagedFilesGiveAMessage) {
    ASSERT_EQ(Run("convert -size 200x200 -seed 3 plasma: -depth 8 rgb.tif && "
                  "convert rgb.tif -monochrome -compress group4 g4.tif && tiffcp -c zip rgb.tif "
                  "zip.tif && "
                  "tiffcp -c jpeg -r 16 rgb.tif jpeg.tif && tiffcp -c lzw -8 rgb.tif lzw.tif"),
              "");
    int told = 0;
    for (const char* name : {"g4.tif", "zip.tif", "jpeg.tif", "lzw.tif"}) {
        const std::string whole = Bytes(name);
        for (std::size_t part = 0; part < 40; ++part) {
            std::string bytes = whole.substr(0, whole.size() * part / 40);
            if (part % 4 == 0) bytes = whole, bytes[whole.size() * part / 40] ^= 0x55;
            Write("t.tif", bytes);
            try {
                std::string damage;
                Open("t.tif").DecodeScaled(1, 50, 50, &damage);
                told += !damage.empty();
            } catch (const platform::Error& error) {
                EXPECT_NE(std::string(error.what()).find("t.tif"), std::string::npos);
                ++told;
            }
        }
    }
    EXPECT_GT(told, 100);
    for (const char* text : {"", "II", "II*", "MM\0*\0\0\0\x08", "%PDF-1.4 not a TIFF"}) {
        Write("t.tif", text);
        EXPECT_THROW(Open("t.tif").Count(), platform::Error);
    }
}

// What can be read of a page is shown to whoever asks for it; others are told.
TEST_F(PageFiles, HalfAPageIsShownWithAMessage) {
    ASSERT_EQ(Run("convert -size 300x300 xc:black -depth 8 -type TrueColor x.tif && "
                  "tiffcp -c none -r 30 x.tif t.tif"),
              "");
    // Written by us the directory stands first, so that a page cut short is still a page.
    imaging::StapleFiles(files, {folder.Path("t.tif")}, folder.Path("u.tif"));
    Write("u.tif", Bytes("u.tif").substr(0, 140000));
    EXPECT_THROW(Open("u.tif").Decode(1), platform::Error);
    std::string damage;
    const PageBitmap page = Open("u.tif").Decode(1, &damage);
    EXPECT_NE(damage, "");
    EXPECT_EQ(page.Row(100)[0], 0);
    EXPECT_EQ(page.Row(299)[899], 255);
}

} // namespace
} // namespace kavidex::tests
