// One mark on a page, in pixels of the stored page: what the painter draws and the user edits.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kavidex::imaging::annotations {

enum class MarkType : std::uint32_t {
    Image = 1, // its picture lies in the mark
    ImageFile = 2,
    Line = 3,
    Freehand = 4,
    HollowRectangle = 5,
    FilledRectangle = 6, // with highlighting: the highlighter
    Text = 7,
    TextFromFile = 8,
    TextStamp = 9,
    Note = 10,
    Form = 12,
    OcrRegion = 13,
    HollowPolygon = 14,
    FilledPolygon = 15,
};

struct Colour {
    std::uint8_t red = 0, green = 0, blue = 0;
    bool operator==(const Colour&) const = default;
};

struct Point {
    std::int32_t x = 0, y = 0;
    bool operator==(const Point&) const = default;
};

// As stored: two corners in any order. `Normal` has left <= right and top <= bottom.
struct Box {
    std::int32_t left = 0, top = 0, right = 0, bottom = 0;
    Box Normal() const;
    bool operator==(const Box&) const = default;
};

struct Font {
    std::int32_t height = 0; // points, whatever the page's resolution; the sign says nothing
    std::int32_t weight = 400;
    bool italic = false, underline = false, strikeOut = false;
    std::uint8_t charSet = 0;
    std::string face;
    bool operator==(const Font&) const = default;
};

struct Mark {
    MarkType type = MarkType::Line;
    Box bounds;
    Colour colour;     // line, rectangle, text of its own, paper of a note
    Colour textColour; // of a note
    bool highlighting = false, transparent = false, visible = true;
    std::uint32_t lineWidth = 0;
    Font font;
    std::vector<Point> points;         // from the left and top of the bounds
    std::string text;                  // lines end in CR LF
    std::int32_t orientation = 0;      // of the text: tenths of a degree, counter-clockwise
    std::uint32_t creationScale = 360; // 72000 / vertical resolution of the page
    std::string image;                 // DIB without a file header
    std::int32_t imageRotation = 1;    // 1 none, 2 right, 3 half, 4 left; 5 to 8 mirrored before
    std::string group, fileName;
    std::uint32_t created = 0, changed = 0; // seconds since 1970 in UTC; 0: not known

    bool HasPoints() const;
    bool HasText() const;
    bool HasImage() const;
    bool IsKnown() const; // its kind can be drawn and edited

    // Height of the letters on the stored page.
    double TextPixels() const;
    // Puts the points, given on the page, into tight bounds.
    void SetPoints(const std::vector<Point>& onPage);
    // Into other bounds, the points along.
    void Resize(const Box& to);
    void Move(std::int32_t dx, std::int32_t dy);
};

inline std::uint32_t CreationScale(double verticalDpi) {
    return verticalDpi >= 1 ? static_cast<std::uint32_t>(72000 / verticalDpi + 0.5) : 360;
}

} // namespace kavidex::imaging::annotations
