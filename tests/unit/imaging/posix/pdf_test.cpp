// PDF files made of scanned pages, notes and texts, as other people's programs read them.
#include <gtest/gtest.h>

#include "imaging/PageOperations.h"
#include "imaging/annotations/Annotations.h"
#include "imaging/pdf/PdfDocument.h"
#include "imaging/pdfium/Pdfium.h"
#include "imaging/tiff/Source.h"
#include "platform/Error.h"
#include "tests/unit/imaging/posix/Tools.h"

namespace kavidex::tests {
namespace {

using namespace imaging;
using annotations::Mark;
using annotations::MarkType;

class Pdf : public PageFiles {
protected:
    void SetUp() override {
        ASSERT_EQ(Run("convert -size 341x242 plasma:fractal -seed 5 -density 150x75 -units "
                      "PixelsPerInch -depth 8 -compress none rgb.tif && "
                      "convert rgb.tif -monochrome -depth 1 -type bilevel -compress none bits.tif"),
                  "");
    }
    // Adds to a document, which becomes `name` and is looked through by qpdf.
    template <class Fill>
    void Make(const std::string& name, Fill fill) {
        std::string bytes;
        PdfDocument document([&](std::string_view part) { bytes += part; });
        fill(document);
        document.Finish("Één „titel“");
        Write(name, bytes);
        EXPECT_EQ(Run("qpdf --check " + name), "");
    }
    void FromTiff(const std::string& tiff, bool marks = false) {
        Make("x.pdf",
             [&](PdfDocument& document) { document.AddTiff(files, folder.Path(tiff), marks); });
    }
    std::string Told(const std::string& command) {
        EXPECT_EQ(Run(command + " >told"), "");
        return Bytes("told");
    }
    std::uint64_t Compressed(const std::string& tiff) {
        tiff::Source source(files, folder.Path(tiff));
        const auto page = source.Page(1);
        std::uint64_t sum = 0;
        for (const std::uint64_t size : source.Numbers(*page.Find(page.Find(325) ? 325 : 279)))
            sum += size;
        return sum;
    }
    void Mark1(const std::string& tiff, const std::vector<Mark>& marks) {
        annotations::Annotations all;
        for (const Mark& mark : marks) all.Add(mark, 1600000000);
        auto pages = PagesOf(files, folder.Path(tiff));
        pages[0].marks = all.Bytes();
        WritePages(files, pages, folder.Path(tiff));
    }
};

struct Kind {
    const char *made, *filter; // the last as pdfimages names it
    int difference = 0;
};

const Kind kinds[] = {
    {"tiffcp -c g4 -r 5000 bits.tif x.tif", "ccitt"},
    {"tiffcp -c g4 -r 16 bits.tif x.tif", "ccitt"},
    {"tiffcp -c g4 -r 5000 -f lsb2msb bits.tif x.tif", "ccitt"},
    {"convert bits.tif -define quantum:polarity=min-is-black -compress Group4 x.tif", "ccitt"},
    {"tiffcp -c g3:1d -r 5000 bits.tif x.tif", "ccitt"},
    {"tiffcp -c g3:2d -r 5000 bits.tif x.tif", "ccitt"},
    {"tiffcp -c g3:2d:fill -r 5000 bits.tif x.tif", "ccitt"},
    {"tiffcp -c g3:1d -r 50 bits.tif x.tif", "ccitt"},
    {"tiffcp -c packbits bits.tif x.tif", "image"},
    {"tiffcp -c g4 -t -w 64 -l 64 bits.tif x.tif", "image"},
    {"tiffcp -c none rgb.tif x.tif", "image"},
    {"tiffcp -c lzw rgb.tif x.tif", "image"},
    {"tiffcp -c lzw:2 rgb.tif x.tif", "image"},
    {"tiffcp -c zip:2 -r 5000 rgb.tif x.tif", "image"},
    {"tiffcp -c zip:2 -r 20 rgb.tif x.tif", "image"},
    {"tiffcp -c lzw -p separate -r 30 rgb.tif x.tif", "image"},
    {"tiffcp -c zip -t -w 64 -l 48 rgb.tif x.tif", "image"},
    {"tiffcp -c lzw -p separate -t -w 64 -l 48 rgb.tif x.tif", "image"},
    {"convert rgb.tif -alpha set -channel A -evaluate set 50% +channel -compress lzw x.tif",
     "image", 1},
    {"convert rgb.tif -colors 200 -type Palette -compress lzw x.tif", "image", 1},
    {"convert rgb.tif -colors 13 -type Palette -depth 4 -compress lzw x.tif", "image"},
    {"convert rgb.tif -colorspace Gray -type Grayscale -compress zip x.tif", "image"},
    {"convert rgb.tif -colorspace Gray -type Grayscale -define quantum:polarity=min-is-white "
     "-compress lzw x.tif",
     "image"},
    {"convert rgb.tif -colorspace Gray -type Grayscale -depth 4 -compress none x.tif", "image"},
    {"tiffcp -c jpeg:90 -r 5000 rgb.tif x.tif", "jpeg", 2},
    // Colours are smoothed over the joints where strips are decoded as one.
    {"tiffcp -c jpeg:90 -r 32 rgb.tif x.tif", "jpeg", 16},
    {"tiffcp -c jpeg:r:90 -r 16 rgb.tif x.tif", "jpeg", 2},
    {"convert rgb.tif -colorspace Gray -type Grayscale -compress jpeg x.tif", "jpeg", 2},
    {"tiffcp -B -c lzw:2 rgb.tif x.tif", "image"},
};

TEST_F(Pdf, EveryKindIsEmbeddedAsItIsAndLooksTheSame) {
    for (const Kind& kind : kinds) {
        SCOPED_TRACE(kind.made);
        ASSERT_EQ(Run(std::string("rm -f x.tif p-*; ") + kind.made), "");
        FromTiff("x.tif");
        const std::string list = Told("pdfimages -list x.pdf");
        EXPECT_NE(list.find(std::string(" ") + kind.filter + " "), std::string::npos) << list;
        EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), 3) << "one picture a page\n" << list;
        ASSERT_EQ(Run("pdfimages -png x.pdf p"), "");
        EXPECT_LE(Difference(Seen("p-000.png"), Seen("x.tif")), kind.difference);
        EXPECT_LE(Bytes("x.pdf").size(), Compressed("x.tif") * 1.02 + 3072);
        // 341 and 242 elements at 150 and 75 an inch.
        EXPECT_NE(Told("pdfinfo x.pdf").find("163.68 x 232.32 pts"), std::string::npos);
    }
}

TEST_F(Pdf, ShowsWhatPicturesCannotBeTakenOutOfAlike) {
    for (const char* made : {"convert rgb.tif -colorspace CMYK -compress lzw x.tif",
                             "convert rgb.tif -colorspace CMYK -compress jpeg -quality 95 x.tif",
                             "convert rgb.tif -depth 16 -compress zip x.tif",
                             "convert rgb.tif -depth 16 -endian MSB -compress zip x.tif",
                             "tiffcp -c jpeg:95 -t -w 64 -l 48 rgb.tif x.tif",
                             "convert rgb.tif -colorspace Lab x.tif"}) {
        ASSERT_EQ(Run(made), "");
        FromTiff("x.tif");
        ASSERT_EQ(Run("pdftoppm -rx 150 -ry 75 -singlefile -png x.pdf p && "
                      "convert x.tif -colorspace sRGB -depth 8 s.png && "
                      "convert p.png s.png -resize 40x40! -compose difference -composite "
                      "-format '%[fx:mean]' info:mean"),
                  "")
            << made;
        EXPECT_LT(std::stod(Bytes("mean")), 0.1) << made;
    }
}

TEST_F(Pdf, StandsUprightInEveryOrientation) {
    // Dark in its upper left corner, as shown.
    for (int orientation = 1; orientation <= 8; ++orientation) {
        ASSERT_EQ(
            Run("convert -size 60x40 xc:white +antialias -fill black -draw 'rectangle 0,0 20,10' "
                "-fill red -draw 'rectangle 45,0 59,10' -alpha off -depth 8 -density 72 "
                "-units PixelsPerInch "
                "-compress none o.tif && "
                "tiffset -s 274 " +
                std::to_string(orientation) + " o.tif"),
            "");
        const std::string wanted = Seen("o.tif");
        const auto holds = [&] {
            ASSERT_EQ(Run("pdftoppm -r 72 -singlefile -png x.pdf p && "
                          "convert p.png -channel RGB -threshold 50% p.png"),
                      "");
            const std::string drawn = Seen("p.png");
            ASSERT_EQ(drawn.size(), wanted.size());
            std::size_t different = 0; // edges are softened in drawing
            for (std::size_t i = 0; i < drawn.size(); ++i) different += drawn[i] != wanted[i];
            EXPECT_LE(different * 100, drawn.size() * 6) << orientation;
        };
        FromTiff("o.tif");
        holds();
        // A camera tells it in a TIFF file of its own.
        ASSERT_EQ(Run("tiffset -u 274 o.tif && convert o.tif -quality 100 o.jpg"), "");
        std::string photo = Bytes("o.jpg");
        photo.insert(2, std::string("\xFF\xE1\0\x22"
                                    "Exif\0\0MM\0*\0\0\0\x08\0\1\x01\x12\0\3\0\0\0\1\0",
                                    29) +
                            static_cast<char>(orientation) + std::string(6, '\0'));
        Make("x.pdf", [&](PdfDocument& document) { EXPECT_TRUE(document.AddJpeg(photo)); });
        holds();
    }
}

TEST_F(Pdf, JoinsPagesOfSeveralFilesAndPictures) {
    ASSERT_EQ(
        Run("tiffcp -c g4 bits.tif bits.tif many.tif && convert rgb.tif -density 100 rgb.jpg"), "");
    Make("x.pdf", [&](PdfDocument& document) {
        document.AddTiff(files, folder.Path("many.tif"), false);
        EXPECT_TRUE(document.AddJpeg(Bytes("rgb.jpg")));
        EXPECT_FALSE(document.AddJpeg("GIF89a"));
        EXPECT_EQ(document.PageCount(), 3u);
    });
    ASSERT_EQ(Run("pdfimages -j -f 3 x.pdf p"), "");
    EXPECT_EQ(Bytes("p-000.jpg"), Bytes("rgb.jpg"));
    EXPECT_NE(Told("pdfinfo x.pdf").find("Één „titel“"), std::string::npos);
}

Mark Marking(MarkType type, annotations::Box bounds, annotations::Colour colour) {
    Mark mark;
    mark.type = type;
    mark.bounds = bounds;
    mark.colour = colour;
    mark.creationScale = annotations::CreationScale(150);
    mark.font.height = 12;
    mark.lineWidth = 4;
    return mark;
}

TEST_F(Pdf, DrawsMarksOverThePictureAndLeavesItAsItIs) {
    ASSERT_EQ(Run("convert -size 300x300 xc:white -monochrome -density 150 -units PixelsPerInch "
                  "-compress Group4 x.tif && convert x.tif before.png"),
              "");
    Mark text = Marking(MarkType::Text, {150, 10, 290, 60}, {0, 0, 255});
    text.text = "Akkoord naar de baas";
    Mark note = Marking(MarkType::Note, {150, 100, 290, 200}, {255, 255, 160});
    note.text = "Let op";
    Mark stamp = Marking(MarkType::TextStamp, {10, 150, 40, 290}, {0, 0, 0});
    stamp.text = "GEZIEN";
    stamp.orientation = 900;
    Mark over = Marking(MarkType::FilledRectangle, {10, 10, 50, 50}, {255, 255, 0});
    over.highlighting = true;
    Mark line = Marking(MarkType::Line, {}, {0, 128, 0});
    line.SetPoints({{10, 100}, {100, 100}});
    Mark hidden = Marking(MarkType::FilledRectangle, {200, 220, 290, 290}, {0, 0, 0});
    hidden.visible = false;
    Mark1("x.tif",
          {over, over, line, Marking(MarkType::HollowRectangle, {60, 10, 100, 50}, {255, 0, 0}),
           text, note, stamp, hidden});
    FromTiff("x.tif", true);
    ASSERT_EQ(Run("pdfimages -png x.pdf p && pdftoppm -r 150 -singlefile -png x.pdf page"), "");
    EXPECT_EQ(Seen("p-000.png"), Seen("before.png"));
    const std::string words = Told("pdftotext -layout x.pdf -");
    for (const char* word : {"Akkoord", "baas", "Let op", "GEZIEN"})
        EXPECT_NE(words.find(word), std::string::npos) << word << " in " << words;

    const std::string page = Seen("page.png");
    ASSERT_EQ(page.size(), 300u * 300 * 3);
    const auto at = [&](int x, int y) {
        const auto* p =
            reinterpret_cast<const unsigned char*>(&page[(std::size_t{300} * y + x) * 3]);
        return p[0] * 65536 + p[1] * 256 + p[2];
    };
    EXPECT_EQ(at(30, 30), 0xFFFF00);
    EXPECT_EQ(at(50, 100), 0x008000);
    EXPECT_EQ(at(62, 30), 0xFF0000) << "the border lies within";
    EXPECT_EQ(at(80, 30), 0xFFFFFF);
    EXPECT_EQ(at(280, 190), 0xFFFFA0);
    EXPECT_EQ(at(250, 250), 0xFFFFFF);

    FromTiff("x.tif", false);
    EXPECT_EQ(Told("pdftotext x.pdf -").find("Akkoord"), std::string::npos);
}

TEST_F(Pdf, LaysOutNotesInAnyScriptSoThatTheirTextIsFound) {
    std::string text = "Privé, naïef: € 12,50\r\n\r\nПриветствие и Ελληνικά\tč ž "
                       "ł\r\nחברה\r\n日本語 😀 x\u00A0y\r\n";
    for (int i = 0; i < 800; ++i) text += "woord" + std::to_string(i) + " ";
    text += "\r\n" + std::string(300, 'W') + "\r\n";
    Make("x.pdf", [&](PdfDocument& document) {
        document.AddText("Gemaakt door: 'jansen' Op: '15-11-2026' om '14:05:09'", text);
        document.AddText("", "Slot");
    });
    const std::string words = Told("pdftotext -layout x.pdf -");
    for (const char* word :
         {"Gemaakt door: 'jansen'", "Privé, naïef: € 12,50", "Приветствие и Ελληνικά", "č ž ł",
          "日本語", "😀", "woord0 ", "woord799", "Slot"})
        EXPECT_NE(words.find(word), std::string::npos) << word << " in " << words;
    EXPECT_EQ(std::count(words.begin(), words.end(), 'W'), 300);
    std::string dense = words;
    std::erase(dense, ' ');
    EXPECT_NE(dense.find("\n2/2\n"), std::string::npos) << "the number of its last page";
    const std::string fonts = Told("pdffonts x.pdf");
    EXPECT_NE(fonts.find("CID TrueType      Identity-H       yes yes yes"), std::string::npos)
        << fonts;
    EXPECT_LT(Bytes("x.pdf").size(), 100000u) << "only the letters that are shown are embedded";
}

TEST_F(Pdf, IsOpenedWithItsPasswordAndMergedWithoutLoss) {
    const Pdfium pdfium(KAVIDEX_PDFIUM);
    if (!pdfium.IsHere()) GTEST_SKIP() << "PDFium could not be fetched";
    ASSERT_EQ(Run("tiffcp -c g4 bits.tif x.tif"), "");
    FromTiff("x.tif");
    ASSERT_EQ(Run("qpdf --encrypt geheim eigenaar 256 -- x.pdf locked.pdf"), "");
    EXPECT_EQ(pdfium.Open(Bytes("locked.pdf")).outcome, PdfOpened::NeedsPassword);
    EXPECT_EQ(pdfium.Open(Bytes("locked.pdf"), "fout").outcome, PdfOpened::NeedsPassword);
    EXPECT_EQ(pdfium.Open(Bytes("locked.pdf"), "geheim").outcome, PdfOpened::Yes);
    std::string merged;
    std::size_t failed = 0;
    EXPECT_EQ(pdfium.Merge(
                  {Bytes("x.pdf"), Bytes("x.pdf")}, [&](std::string_view part) { merged += part; },
                  failed),
              PdfOpened::Yes);
    Write("m.pdf", merged);
    ASSERT_EQ(Run("qpdf --check m.pdf && pdfimages -ccitt x.pdf a && pdfimages -ccitt m.pdf b"),
              "");
    EXPECT_EQ(Bytes("b-001.ccitt"), Bytes("a-000.ccitt"));
}

TEST_F(Pdf, RefusesWhatIsNoPicture) {
    Write("x.tif", "II*\0 nonsense");
    PdfDocument document([](std::string_view) {});
    EXPECT_THROW(document.AddTiff(files, folder.Path("x.tif"), false), platform::Error);
    EXPECT_THROW(document.AddTiff(files, folder.Path("absent.tif"), false), platform::Error);
    EXPECT_THROW(document.Finish(""), platform::Error);
}

} // namespace
} // namespace kavidex::tests
