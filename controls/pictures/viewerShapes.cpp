// The buttons of the document viewer: its toolbar, and the annotation toolbox.
#include <initializer_list>

#include "controls/pictures/NamedPictures.h"

namespace kavidex::controls {

namespace {

using Layer = PictureLayer;
using Point = PicturePoint;

constexpr std::uint32_t dark = 0x4A4A4A, blue = 0x2E5E91, green = 0x2E8B3D, red = 0xC62828,
                        yellow = 0xFFD600, white = 0xFFFFFF, light = 0xD6E6F5;

constexpr Layer Shape(std::uint32_t colour, std::initializer_list<Point> points,
                      bool back = false) {
    Layer layer{colour, back, false, static_cast<int>(points.size()), {}};
    std::size_t i = 0;
    for (const Point& point : points) layer.points[i++] = point;
    return layer;
}
constexpr Layer Bar(std::uint32_t colour, float left, float top, float right, float bottom,
                    bool back = false) {
    return Shape(colour, {{left, top}, {right, top}, {right, bottom}, {left, bottom}}, back);
}
constexpr Layer Disc(std::uint32_t colour, float x, float y, float radius, bool back = false) {
    return {colour, back, true, 2, {{{x, y}, {radius, radius}}}};
}
constexpr Layer ArrowLeft(std::uint32_t colour, float x, float y) {
    return Shape(colour, {{x, y},
                          {x + 4.5F, y - 4},
                          {x + 4.5F, y - 1.5F},
                          {x + 8, y - 1.5F},
                          {x + 8, y + 1.5F},
                          {x + 4.5F, y + 1.5F},
                          {x + 4.5F, y + 4}});
}
constexpr Layer ArrowRight(std::uint32_t colour, float x, float y) {
    return Shape(colour, {{x, y},
                          {x - 4.5F, y - 4},
                          {x - 4.5F, y - 1.5F},
                          {x - 8, y - 1.5F},
                          {x - 8, y + 1.5F},
                          {x - 4.5F, y + 1.5F},
                          {x - 4.5F, y + 4}});
}

constexpr Layer backPage[] = {Bar(dark, 5, 1, 15, 15), Bar(white, 6, 2, 14, 14, true),
                              ArrowLeft(blue, 1, 8)};
constexpr Layer nextPage[] = {Bar(dark, 1, 1, 11, 15), Bar(white, 2, 2, 10, 14, true),
                              ArrowRight(blue, 15, 8)};

constexpr Layer glass = Disc(dark, 6.5F, 6.5F, 5.5F), lens = Disc(light, 6.5F, 6.5F, 4.2F, true),
                handle = Shape(dark, {{9.5F, 11.2F}, {11.2F, 9.5F}, {15, 13.3F}, {13.3F, 15}});
constexpr Layer zoomIn[] = {glass, lens, handle, Bar(blue, 3.8F, 5.8F, 9.2F, 7.2F),
                            Bar(blue, 5.8F, 3.8F, 7.2F, 9.2F)};
constexpr Layer zoomOut[] = {glass, lens, handle, Bar(blue, 3.8F, 5.8F, 9.2F, 7.2F)};
constexpr Layer fit[] = {
    Bar(dark, 1, 1, 15, 15),
    Bar(light, 2, 2, 14, 14, true),
    Bar(dark, 4.5F, 3.5F, 11.5F, 12.5F),
    Bar(white, 5.5F, 4.5F, 10.5F, 11.5F, true),
    Shape(blue, {{8, 2}, {10, 4.5F}, {6, 4.5F}}),
    Shape(blue, {{8, 14}, {6, 11.5F}, {10, 11.5F}}),
    Shape(blue, {{2, 8}, {4.5F, 6}, {4.5F, 10}}),
    Shape(blue, {{14, 8}, {11.5F, 10}, {11.5F, 6}}),
};

constexpr Layer rotateRight[] = {
    Bar(blue, 2, 5, 5.5F, 15),
    Shape(blue, {{2, 5}, {9, 5}, {9, 1.5F}, {15, 6.8F}, {9, 12}, {9, 8.5F}, {2, 8.5F}}),
};
constexpr Layer rotateLeft[] = {
    Bar(blue, 10.5F, 5, 14, 15),
    Shape(blue, {{14, 5}, {7, 5}, {7, 1.5F}, {1, 6.8F}, {7, 12}, {7, 8.5F}, {14, 8.5F}}),
};
constexpr Layer rotateHalf[] = {
    Bar(blue, 2, 2, 5, 14),
    Bar(blue, 2, 2, 13, 5),
    Bar(blue, 10, 2, 13, 9),
    Shape(blue, {{7.5F, 8.5F}, {15.5F, 8.5F}, {11.5F, 14.5F}}),
};

constexpr Layer annotations[] = {
    Bar(dark, 2, 1, 14, 15),
    Bar(white, 3, 2, 13, 14, true),
    Bar(yellow, 4, 4, 12, 6.5F),
    Bar(dark, 4, 8, 12, 8.8F),
    Bar(dark, 4, 10, 10, 10.8F),
    Shape(red, {{4, 13.4F}, {11.6F, 11.4F}, {12, 12.4F}, {4.4F, 14.2F}}),
};
constexpr Layer toolbox[] = {
    Bar(dark, 5, 3, 11, 6),  Bar(white, 6.2F, 4.2F, 9.8F, 6, true), Bar(red, 1, 6, 15, 14),
    Bar(dark, 1, 9, 15, 10), Bar(yellow, 7, 8.5F, 9, 11),
};
constexpr Layer thumbnails[] = {
    Bar(dark, 1, 1, 7, 7.4F),   Bar(white, 2, 2, 6, 6.4F, true),
    Bar(dark, 9, 1, 15, 7.4F),  Bar(white, 10, 2, 14, 6.4F, true),
    Bar(dark, 1, 8.6F, 7, 15),  Bar(white, 2, 9.6F, 6, 14, true),
    Bar(dark, 9, 8.6F, 15, 15), Bar(light, 10, 9.6F, 14, 14, true),
};
constexpr Layer moveUp[] = {
    Bar(dark, 2, 8, 14, 15),
    Bar(white, 3, 9, 13, 14, true),
    Shape(
        green,
        {{8, 1}, {12.5F, 5.5F}, {9.8F, 5.5F}, {9.8F, 11}, {6.2F, 11}, {6.2F, 5.5F}, {3.5F, 5.5F}}),
};
constexpr Layer print[] = {
    Bar(dark, 4, 1, 12, 7),     Bar(white, 5, 2, 11, 7, true),
    Bar(dark, 1, 6, 15, 12),    Bar(light, 12, 7.2F, 13.6F, 8.6F),
    Bar(dark, 4, 9.5F, 12, 15), Bar(white, 5, 10.5F, 11, 14, true),
};

constexpr Layer select[] = {
    Shape(dark, {{3.5F, 1},
                 {13, 9.6F},
                 {8.6F, 9.8F},
                 {11.2F, 14.4F},
                 {9, 15.4F},
                 {6.6F, 10.8F},
                 {3.5F, 13.6F}}),
    Shape(white, {{4.5F, 3.4F}, {10.4F, 8.8F}, {4.5F, 11.2F}}, true),
};
constexpr Layer line[] = {Shape(red, {{1.5F, 13}, {13, 1.5F}, {14.5F, 3}, {3, 14.5F}})};
constexpr Layer freehand[] = {
    Shape(red, {{1, 12}, {4, 4}, {6, 4}, {8, 11}, {7, 12.5F}, {5, 7}, {3, 13}}),
    Shape(red, {{6.6F, 11}, {11, 3}, {13, 4}, {15, 10}, {13.6F, 11}, {11.6F, 6}, {8, 12.6F}}),
};
constexpr Layer hollowRectangle[] = {Bar(red, 1.5F, 3, 14.5F, 13),
                                     Bar(white, 3.5F, 5, 12.5F, 11, true)};
constexpr Layer filledRectangle[] = {Bar(0x202020, 1.5F, 3, 14.5F, 13)};
constexpr Layer highlighter[] = {
    Bar(yellow, 1, 11, 15, 15),
    Shape(dark, {{9, 1}, {14, 4.4F}, {9.4F, 10.6F}, {4.8F, 7.4F}}),
    Shape(0xF0B400, {{4.4F, 8}, {8.8F, 11}, {4.6F, 12}}),
};
constexpr Layer text[] = {Bar(0x202020, 2.5F, 2, 13.5F, 4.6F), Bar(0x202020, 6.6F, 2, 9.4F, 14.5F)};
constexpr Layer note[] = {
    Shape(dark, {{1.5F, 1.5F}, {14.5F, 1.5F}, {14.5F, 10.5F}, {10.5F, 14.5F}, {1.5F, 14.5F}}),
    Shape(0xFFF59D, {{2.5F, 2.5F}, {13.5F, 2.5F}, {13.5F, 10}, {10, 13.5F}, {2.5F, 13.5F}}, true),
    Shape(dark, {{10, 14}, {10, 10}, {14, 10}}),
    Bar(dark, 4, 5, 12, 6),
    Bar(dark, 4, 8, 9, 9),
};
constexpr Layer stamp[] = {
    Disc(0x8D5A2B, 8, 4, 3),
    Shape(0x8D5A2B, {{6.6F, 5}, {9.4F, 5}, {10.4F, 9.5F}, {5.6F, 9.5F}}),
    Bar(dark, 2.5F, 9, 13.5F, 12),
    Bar(red, 2.5F, 13, 13.5F, 15),
};
constexpr Layer colour[] = {Disc(red, 5.4F, 5.6F, 4), Disc(green, 10.6F, 5.6F, 4),
                            Disc(0x2E5EC8, 8, 10.6F, 4)};
constexpr Layer lineWidth[] = {Bar(0x202020, 1.5F, 2.6F, 14.5F, 3.6F),
                               Bar(0x202020, 1.5F, 6, 14.5F, 8.2F),
                               Bar(0x202020, 1.5F, 10.4F, 14.5F, 14)};
constexpr Layer editText[] = {
    Bar(0x202020, 1, 2, 10, 4.2F),
    Bar(0x202020, 4.4F, 2, 6.6F, 14),
    Shape(0xF0B400, {{12.6F, 5}, {15, 7.2F}, {10, 13}, {7.6F, 10.8F}}),
    Shape(dark, {{7.4F, 11.4F}, {9.6F, 13.4F}, {6.8F, 14.4F}}),
};
constexpr Layer deleteMark[] = {
    Shape(red, {{2, 4}, {4, 2}, {14, 12}, {12, 14}}),
    Shape(red, {{12, 2}, {14, 4}, {4, 14}, {2, 12}}),
};

constexpr NamedPicture rows[] = {
    {"BackPage", backPage},
    {"NextPage", nextPage},
    {"ZoomIn", zoomIn},
    {"ZoomOut", zoomOut},
    {"Fit", fit},
    {"Rotate90L", rotateLeft},
    {"Rotate90R", rotateRight},
    {"Rotate180", rotateHalf},
    {"Annotations", annotations},
    {"Toolbox", toolbox},
    {"ThumbNails", thumbnails},
    {"Move up", moveUp},
    {"Print", print},
    {"Select", select},
    {"Line", line},
    {"Freehand", freehand},
    {"HollowRectangle", hollowRectangle},
    {"FilledRectangle", filledRectangle},
    {"Highlighter", highlighter},
    {"Text", text},
    {"Note", note},
    {"Stamp", stamp},
    {"Colour", colour},
    {"LineWidth", lineWidth},
    {"EditText", editText},
    {"DeleteMark", deleteMark},
};

} // namespace

std::span<const NamedPicture> ViewerPictures() { return rows; }

} // namespace kavidex::controls
