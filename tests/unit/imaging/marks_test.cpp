// Marks as they are painted onto a picture, with letters that are plain blocks.
#include <gtest/gtest.h>

#include "imaging/WrapText.h"
#include "imaging/annotations/Dib.h"
#include "imaging/annotations/MarkPainter.h"
#include "platform/Bytes.h"

namespace {

using namespace kavidex::imaging;
using namespace kavidex::imaging::annotations;

// Each letter is a block as wide as half its height, solid but for its lowest row.
class BlockLetters : public TextPainter {
public:
    double Width(const TextLook& look, std::string_view line) override {
        return static_cast<double>(line.size()) * look.height * look.stretch / 2;
    }
    double LineHeight(const TextLook& look) override { return look.height; }
    Coverage Line(const TextLook& look, std::string_view line) override {
        Coverage coverage{static_cast<std::uint32_t>(Width(look, line)),
                          static_cast<std::uint32_t>(look.height),
                          {}};
        coverage.values.assign(std::size_t{coverage.width} * (coverage.height - 1), 255);
        coverage.values.resize(std::size_t{coverage.width} * coverage.height);
        return coverage;
    }
};

class MarkPainter : public testing::Test {
protected:
    PageBitmap picture = MakeBitmap(PixelFormat::rgb24, 100, 80);
    MarkView view;
    BlockLetters letters;

    void Paint(const Mark& mark) { PaintMark(picture, mark, view, letters); }
    int At(int x, int y) {
        const std::uint8_t* at = picture.Row(static_cast<std::uint32_t>(y)) + 3 * x;
        return at[0] << 16 | at[1] << 8 | at[2];
    }
    // The box of all that is not white, and how much of it there is.
    Box Painted(int* count = nullptr) {
        Box box{1000, 1000, -1, -1};
        int painted = 0;
        for (int y = 0; y < static_cast<int>(picture.height); ++y)
            for (int x = 0; x < static_cast<int>(picture.width); ++x)
                if (At(x, y) != 0xFFFFFF) {
                    box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
                           std::max(box.bottom, y + 1)};
                    ++painted;
                }
        if (count) *count = painted;
        return box;
    }
};

Mark Of(MarkType type, Box bounds, Colour colour) {
    Mark mark;
    mark.type = type;
    mark.bounds = bounds;
    mark.colour = colour;
    mark.lineWidth = 2;
    return mark;
}

TEST_F(MarkPainter, FillsOverlaysAndFrames) {
    Paint(Of(MarkType::FilledRectangle, {40, 30, 10, 10}, {0, 0, 255}));
    EXPECT_EQ(Painted(), (Box{10, 10, 40, 30})) << "corners in any order";
    Mark over = Of(MarkType::FilledRectangle, {30, 0, 60, 30}, {255, 255, 0});
    over.highlighting = true;
    Paint(over);
    EXPECT_EQ(At(50, 5), 0xFFFF00);
    EXPECT_EQ(At(35, 20), 0x000000) << "yellow over blue";
    Paint(Of(MarkType::HollowRectangle, {60, 40, 90, 70}, {255, 0, 0}));
    EXPECT_EQ(At(61, 41), 0xFF0000);
    EXPECT_EQ(At(89, 69), 0xFF0000);
    EXPECT_EQ(At(75, 55), 0xFFFFFF);
    EXPECT_EQ(At(59, 55), 0xFFFFFF) << "the border lies inside";
}

TEST_F(MarkPainter, FollowsZoomOnEachAxis) {
    view = {2, 0.5, 10, 5, 4};
    Paint(Of(MarkType::FilledRectangle, {0, 0, 20, 40}, {1, 2, 3}));
    EXPECT_EQ(Painted(), (Box{10, 5, 50, 25}));
    picture = MakeBitmap(PixelFormat::rgb24, 100, 80);
    Mark line;
    line.lineWidth = 4;
    line.SetPoints({{5, 80}, {35, 80}}); // level, at y = 45: 8 wide across, 2 high
    Paint(line);
    EXPECT_EQ(Painted(), (Box{15, 44, 85, 46})) << "with soft ends";
}

TEST_F(MarkPainter, MarksALineThatCrossesItselfOnce) {
    Mark pen = Of(MarkType::Freehand, {}, {255, 255, 100});
    pen.lineWidth = 10;
    pen.highlighting = true;
    pen.SetPoints({{10, 40}, {90, 40}, {50, 10}, {50, 70}});
    Paint(pen);
    EXPECT_EQ(At(50, 40), 0xFFFF64);
    EXPECT_EQ(At(20, 40), 0xFFFF64);
    EXPECT_EQ(At(50, 36), 0xFFFF64);
}

TEST_F(MarkPainter, TurnsTextAroundItsCorner) {
    Mark text = Of(MarkType::TextStamp, {20, 20, 60, 60}, {0, 0, 0});
    text.font.height = 10;
    text.creationScale = 1000; // ten elements high, five wide
    text.text = "abcd";
    const Box boxes[] = {{20, 20, 40, 29}, {20, 40, 29, 60}, {40, 51, 60, 60}, {51, 20, 60, 40}};
    for (int i = 0; i < 4; ++i) {
        picture = MakeBitmap(PixelFormat::rgb24, 100, 80);
        text.orientation = 900 * i;
        Paint(text);
        EXPECT_EQ(Painted(), boxes[i]) << i;
    }
}

TEST_F(MarkPainter, WrapsANoteInItsPaperAndCutsItThere) {
    Mark note = Of(MarkType::Note, {10, 10, 50, 50}, {255, 255, 0});
    note.font.height = 10;
    note.creationScale = 1000;
    note.text = "aa bb cc dddddddddddddddddddddddddddddddd";
    note.textColour = {0, 0, 255};
    Paint(note);
    EXPECT_EQ(Painted(), (Box{10, 10, 50, 50}));
    EXPECT_EQ(At(10, 10), 0x000000) << "its edge";
    EXPECT_EQ(At(15, 15), 0x0000FF);
    EXPECT_EQ(At(48, 15), 0xFFFF00) << "the third word stands on the second line";
    EXPECT_EQ(At(15, 25), 0x0000FF);
}

TEST_F(MarkPainter, PaintsOnBlackAndWhiteAndGrey) {
    for (const PixelFormat format : {PixelFormat::bits1, PixelFormat::grey8}) {
        picture = MakeBitmap(format, 16, 4);
        Mark over = Of(MarkType::FilledRectangle, {0, 0, 16, 2}, {255, 255, 0});
        over.highlighting = true;
        Paint(over);
        Paint(Of(MarkType::FilledRectangle, {3, 1, 5, 4}, {0, 0, 128}));
        const bool bits = format == PixelFormat::bits1;
        EXPECT_EQ(picture.Row(1)[bits ? 0 : 3], bits ? 0xE7 : 14);
        EXPECT_EQ(picture.Row(0)[0], bits ? 0xFF : 225) << "light colours stay white";
    }
}

TEST_F(MarkPainter, StretchesAnImageIntoItsBoxAndKeepsWhiteClear) {
    // Two by two: red, white; blue, green from the top.
    std::string dib;
    for (const std::uint32_t word : {40u, 2u, 2u, 1u | 24u << 16, 0u, 16u, 0u, 0u, 0u, 0u})
        kavidex::platform::AppendLittle(dib, word);
    dib += std::string("\xFF\0\0\0\xFF\0\0\0", 8) + std::string("\0\0\xFF\xFF\xFF\xFF\0\0", 8);
    Mark stamp = Of(MarkType::Image, {10, 10, 50, 30}, {});
    stamp.image = dib;
    stamp.transparent = true;
    picture = MakeBitmap(PixelFormat::rgb24, 100, 80, 0, 0, 0x80);
    Paint(stamp);
    EXPECT_EQ(At(15, 12), 0xFF0000);
    EXPECT_EQ(At(45, 12), 0x808080);
    EXPECT_EQ(At(15, 28), 0x0000FF);
    EXPECT_EQ(At(45, 28), 0x00FF00);
    stamp.imageRotation = 2; // blue comes to the upper left
    Paint(stamp);
    EXPECT_EQ(At(15, 12), 0x0000FF);
    EXPECT_EQ(At(45, 12), 0xFF0000);
    for (std::size_t i = 0; i < dib.size(); ++i) ReadDib(dib.substr(0, i));
    EXPECT_FALSE(ReadDib(dib.substr(0, dib.size() - 1)));
}

TEST_F(MarkPainter, EndsOnHostileSizes) {
    Mark mark = Of(MarkType::Freehand, {}, {});
    mark.lineWidth = 0xFFFFFFFF;
    mark.SetPoints({{-2147483647, -2147483647}, {2147483647, 2147483647}, {0, 5}});
    Paint(mark);
    Mark text = Of(MarkType::Note, {-2147483647, -2147483647, 2147483647, 2147483647}, {9, 9, 9});
    text.text = "x";
    text.creationScale = 1;
    Paint(text);
    EXPECT_EQ(At(50, 40), 0x090909);
}

TEST(WrapText, BreaksAtBlanksAndWithinWordsThatAreTooWide) {
    const auto measure = [](std::string_view text) { return static_cast<double>(text.size()); };
    using Lines = std::vector<std::string>;
    EXPECT_EQ(WrapText("een twee drie", 8, measure), (Lines{"een twee", "drie"}));
    EXPECT_EQ(WrapText("abcdefghij k", 4, measure), (Lines{"abcd", "efgh", "ij k"}));
    EXPECT_EQ(WrapText("a\r\n\r\nb\tc\n", 0, measure), (Lines{"a", "", "b    c", ""}));
    EXPECT_EQ(WrapText("", 5, measure), (Lines{""}));
}

} // namespace
