// The marks of a page: their bytes in and out, and what editing and turning change in them.
#include <gtest/gtest.h>

#include "imaging/annotations/Annotations.h"
#include "platform/Bytes.h"
#include "platform/Error.h"

namespace {

using namespace kavidex::imaging;
using namespace kavidex::imaging::annotations;
using kavidex::platform::AppendLittle;

constexpr std::uint32_t saved = 1600000000, later = 1700000000;

std::string Words(std::initializer_list<std::uint32_t> words) {
    std::string bytes;
    for (const std::uint32_t word : words) AppendLittle(bytes, word);
    return bytes;
}

std::string Padded(std::string text, std::size_t size) {
    text.resize(size);
    return text;
}

std::string Block(std::uint32_t type, const std::string& name, const std::string& data) {
    return Words({type, 12}) + Padded(name, 8) + Words({static_cast<std::uint32_t>(data.size())}) +
           data;
}

const std::string untitled("[Untitled]\0", 11);

std::string Defaults(const std::string& next) {
    return Words({0, 1}) + Block(2, "OiGroup", untitled) + Block(2, "OiIndex", Padded(next, 10));
}

std::string GroupAndIndex(const std::string& index) {
    return Block(6, "OiGroup", untitled) + Block(6, "OiIndex", Padded(index, 10));
}

// A filled red rectangle, written out by hand.
std::string RedRectangle() {
    return Words({5, 164, 6, 100, 200, 400, 300, 0x00FF0000, 0, 0, 0, 0, 0, 0}) +
           std::string(60, '\0') + Words({0, saved, 1, 0x000FF83F}) + std::string(40, '\0') +
           GroupAndIndex("0");
}

// "Akkoord" in black Arial of 12 points on a page of 200 dpi.
std::string Akkoord() {
    return Words({5, 164, 7, 150, 120, 650, 170, 0, 0, 0, 0, 0, 0, 0}) + Words({12, 0, 0, 0, 400}) +
           std::string(8, '\0') + Padded("Arial", 32) + Words({0, saved, 1, 0x000FF83F}) +
           std::string(40, '\0') +
           Block(6, "OiAnText", Words({0, 1000, 360, 8}) + Padded("Akkoord", 12)) +
           GroupAndIndex("0");
}

Mark RectangleMark() {
    Mark mark;
    mark.type = MarkType::FilledRectangle;
    mark.bounds = {100, 200, 400, 300};
    mark.colour = {255, 0, 0};
    return mark;
}

Mark TextMark(const std::string& text) {
    Mark mark;
    mark.type = MarkType::Text;
    mark.bounds = {150, 120, 650, 170};
    mark.font.height = 12;
    mark.font.face = "Arial";
    mark.text = text;
    mark.creationScale = CreationScale(200);
    return mark;
}

Mark LineMark(std::vector<Point> points, MarkType type = MarkType::Line) {
    Mark mark;
    mark.type = type;
    mark.lineWidth = 4;
    mark.SetPoints(points);
    return mark;
}

TEST(Annotations, KeepsAndMakesTheWorkedExamplesByteForByte) {
    const std::string rectangle = Defaults("1") + RedRectangle(), text = Defaults("1") + Akkoord();
    ASSERT_EQ(rectangle.size(), 302u);
    ASSERT_EQ(text.size(), 350u);
    EXPECT_EQ(Annotations(rectangle).Bytes(), rectangle);
    EXPECT_EQ(Annotations(text).Bytes(), text);

    Annotations made;
    EXPECT_EQ(made.Bytes(), "");
    made.Add(RectangleMark(), saved);
    EXPECT_EQ(made.Bytes(), rectangle);
    Annotations written;
    written.Add(TextMark("Akkoord"), saved);
    EXPECT_EQ(written.Bytes(), text);

    const Mark read = Annotations(text).At(0);
    EXPECT_EQ(read.text, "Akkoord");
    EXPECT_EQ(read.font, TextMark("").font);
    EXPECT_NEAR(read.TextPixels(), 12 * 200 / 72.0, 0.01);
}

// An odd header, unknown records, blocks and kinds, a list of points with spare slots, a tail.
std::string Strange() {
    const std::string points = Words({5, 2, 0, 50, 30, 0, 7, 7, 8, 8, 9, 9});
    return Words({0x00030004, 1}) + Block(2, "OiOwnNm", std::string("j\0\0\xFF\x01", 5)) +
           Block(2, "OiGroup", std::string("0\0", 2)) + Block(2, "OiIndex", std::string("7\0", 2)) +
           Block(6, "OiIndex", "before any mark") + Words({99, 3}) + "xyz" + Words({5, 164, 1234}) +
           std::string(160, '\x5A') + Block(6, "PrivData", "kept") +
           Words({5, 164, 4, 10, 20, 40, 70}) + std::string(8, '\0') + Words({0, 0, 3}) +
           std::string(124, '\x7E') + Block(6, "OiAnoDat", points) + Block(6, "OiHilite", "\x01") +
           Block(6, "OiAnoDat", "second of its name") + Words({5, 7}) + "shorter" +
           Words({6, 4000}) + "cut";
}

TEST(Annotations, KeepWhatTheyDoNotUnderstandThroughEveryEdit) {
    const std::string strange = Strange();
    Annotations marks(strange);
    ASSERT_EQ(marks.Bytes(), strange);
    ASSERT_EQ(marks.Count(), 3u);
    EXPECT_FALSE(marks.At(0).IsKnown());
    EXPECT_EQ(marks.At(1).points, (std::vector<Point>{{0, 50}, {30, 0}}));

    for (int i = 0; i < 4; ++i) marks.Rotate(Turn::Right, 100 + i % 2 * 100, 200 - i % 2 * 100);
    EXPECT_EQ(marks.Bytes(), strange) << "four turns are none";

    Mark line = marks.At(1);
    line.Move(5, -3);
    marks.Change(1, line, later);
    const std::string moved = marks.Bytes();
    ASSERT_EQ(moved.size(), strange.size());
    std::size_t differing = 0;
    for (std::size_t i = 0; i < moved.size(); ++i) differing += moved[i] != strange[i];
    EXPECT_EQ(differing, 8u) << "one byte of each edge, four of the time";

    EXPECT_EQ(marks.Add(RectangleMark(), saved), 3u);
    marks.Remove(3);
    std::string expected = moved;
    expected.replace(expected.find(Block(2, "OiIndex", std::string("7\0", 2))) + 20, 2,
                     std::string("8\0", 2));
    EXPECT_EQ(marks.Bytes(), expected) << "the next number was taken";
    EXPECT_THROW(marks.Change(0, RectangleMark(), later), kavidex::platform::Error);
    EXPECT_EQ(marks.Bytes(), expected);
}

TEST(Annotations, KeepDataOfTheOldIntegerSizeAndAddNothingToIt) {
    const std::string old = Words({0, 0}) + "whatever 16-bit numbers say";
    Annotations marks(old);
    EXPECT_FALSE(marks.Editable());
    EXPECT_EQ(marks.Count(), 0u);
    marks.Rotate(Turn::Left, 10, 10);
    EXPECT_THROW(marks.Add(RectangleMark(), saved), kavidex::platform::Error);
    EXPECT_EQ(marks.Bytes(), old);
    EXPECT_EQ(Annotations("\x01\x02\x03").Bytes(), "\x01\x02\x03");
}

TEST(Annotations, NumberNewMarksFromTheDefaultAndCopyItsGroup) {
    Annotations marks(Defaults("9") + RedRectangle());
    Mark mark = RectangleMark();
    marks.Add(mark, saved);
    const std::string bytes = marks.Bytes();
    EXPECT_NE(bytes.find(Block(2, "OiIndex", Padded("10", 10))), std::string::npos);
    EXPECT_EQ(bytes.substr(bytes.size() - 30), Block(6, "OiIndex", Padded("9", 10)));
    EXPECT_EQ(marks.At(1).group, "[Untitled]");

    Annotations noDefaults(Words({0, 1}) + RedRectangle());
    noDefaults.Add(mark, saved);
    EXPECT_EQ(noDefaults.Bytes(), Words({0, 1}) + RedRectangle() +
                                      RedRectangle().replace(RedRectangle().size() - 10, 1, "1"));
}

TEST(Annotations, ChangeTextsInACharacterSetThatHoldsThem) {
    Annotations marks;
    marks.Add(TextMark("Privé"), saved);
    Mark mark = marks.At(0);
    EXPECT_EQ(mark.text, "Privé");
    mark.text = "Согласовано";
    marks.Change(0, mark, later);
    EXPECT_EQ(marks.At(0).text, "Согласовано");
    EXPECT_EQ(marks.At(0).font.charSet, 204);
    EXPECT_EQ(marks.At(0).changed, later);

    const std::string before = marks.Bytes();
    mark.text = "Согласовано שלום";
    EXPECT_THROW(marks.Change(0, mark, later), kavidex::platform::Error);
    Mark stamp = TextMark(std::string(256, 'x'));
    stamp.type = MarkType::TextStamp;
    EXPECT_THROW(marks.Add(stamp, saved), kavidex::platform::Error);
    EXPECT_EQ(marks.Bytes(), before);
}

TEST(Annotations, KeepATextOfAnotherProgramWhenOnlyItsPlaceChanges) {
    const std::string rich = "{\\rtf1 \x81\x8D hidden";
    std::string bytes = Defaults("1") + Akkoord();
    const std::string old = Block(6, "OiAnText", Words({0, 1000, 360, 8}) + Padded("Akkoord", 12));
    const std::string text = Block(
        6, "OiAnText", Words({0, 154, 360, static_cast<std::uint32_t>(rich.size())}) + rich + '\0');
    bytes.replace(bytes.find(old), old.size(), text);
    Annotations marks(bytes);
    Mark mark = marks.At(0);
    mark.orientation = 900;
    mark.bounds = {1, 2, 3, 4};
    marks.Change(0, mark, later);
    EXPECT_NE(marks.Bytes().find(Words({900, 154, 360}) + text.substr(32)), std::string::npos);
}

TEST(Annotations, TurnBoundsPointsTextAndImagesWithThePage) {
    // A page of 100 x 200; a line from (10, 40) to (30, 20).
    Annotations marks;
    marks.Add(LineMark({{10, 40}, {30, 20}}), saved);
    marks.Add(TextMark("op"), saved);
    Mark stamp;
    stamp.type = MarkType::Image;
    stamp.imageRotation = 8;
    stamp.image = "DIB";
    marks.Add(stamp, saved);

    marks.Rotate(Turn::Right, 100, 200);
    EXPECT_EQ(marks.At(0).bounds, (Box{160, 10, 180, 30}));
    EXPECT_EQ(marks.At(0).points, (std::vector<Point>{{0, 0}, {20, 20}}));
    EXPECT_EQ(marks.At(1).orientation, 2700);
    EXPECT_EQ(marks.At(2).imageRotation, 5);

    marks.Rotate(Turn::Left, 200, 100);
    EXPECT_EQ(marks.At(0).bounds, (Box{10, 20, 30, 40}));
    EXPECT_EQ(marks.At(0).points, (std::vector<Point>{{0, 20}, {20, 0}}));
    EXPECT_EQ(marks.At(1).orientation, 0);
    EXPECT_EQ(marks.At(2).imageRotation, 8);

    marks.Rotate(Turn::Half, 100, 200);
    EXPECT_EQ(marks.At(0).bounds, (Box{70, 160, 90, 180}));
    EXPECT_EQ(marks.At(0).points, (std::vector<Point>{{20, 0}, {0, 20}}));
}

TEST(Annotations, AreHitWhereTheyAreDrawnTheTopmostFirst) {
    Annotations marks;
    marks.Add(RectangleMark(), saved);
    Mark hollow = RectangleMark();
    hollow.type = MarkType::HollowRectangle;
    hollow.bounds = {600, 300, 200, 100}; // corners in any order
    hollow.lineWidth = 4;
    marks.Add(hollow, saved);
    marks.Add(LineMark({{0, 0}, {1000, 1000}}), saved);
    EXPECT_EQ(marks.HitTest({250, 250}, 3), 2u) << "the line lies on the rectangle";
    EXPECT_EQ(marks.HitTest({300, 250}, 3), 0u) << "a hollow rectangle is met at its border";
    EXPECT_EQ(marks.HitTest({450, 298}, 3), 1u);
    EXPECT_EQ(marks.HitTest({800, 10}, 3), std::nullopt);
    Mark hidden = marks.At(2);
    hidden.visible = false;
    marks.Change(2, hidden, later);
    EXPECT_EQ(marks.HitTest({250, 250}, 3), 0u);
}

TEST(Annotations, ResizeFreehandLinesWithTheirBounds) {
    Mark mark = LineMark({{10, 10}, {20, 30}, {15, 20}}, MarkType::Freehand);
    EXPECT_EQ(mark.bounds, (Box{10, 10, 20, 30}));
    mark.Resize({0, 0, 20, 10});
    EXPECT_EQ(mark.points, (std::vector<Point>{{0, 0}, {20, 10}, {10, 5}}));
}

} // namespace
