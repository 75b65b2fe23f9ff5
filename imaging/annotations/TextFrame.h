// Where the text of a mark stands, the same on screen, on paper and in a PDF file.
#pragma once

#include "imaging/annotations/Mark.h"

namespace kavidex::imaging::annotations {

struct TextFrame {
    int quarters;  // turns of the text to the left
    double x, y;   // where it begins, in pixels of the page
    bool alongX;   // its lines run along the page's rows
    double length; // room for a line, in pixels of the page; 0 where lines are not wrapped
};

inline constexpr double notePadding = 0.25; // letter heights between a note's edge and its text

// Not for texts at other angles than quarters: those stand as the nearest one.
inline TextFrame FrameOf(const Mark& mark) {
    const Box box = mark.bounds.Normal();
    const double padding = mark.type == MarkType::Note ? notePadding * mark.TextPixels() : 0;
    const double left = box.left + padding, top = box.top + padding, right = box.right - padding,
                 bottom = box.bottom - padding;
    TextFrame frame{};
    frame.quarters = ((mark.orientation % 3600 + 3600 + 450) / 900) % 4;
    frame.alongX = frame.quarters % 2 == 0;
    frame.x = frame.quarters == 0 || frame.quarters == 1 ? left : right;
    frame.y = frame.quarters == 0 || frame.quarters == 3 ? top : bottom;
    const double room = frame.alongX ? right - left : bottom - top;
    const bool wraps = mark.type != MarkType::TextStamp && room > mark.TextPixels();
    frame.length = wraps ? room : 0;
    return frame;
}

} // namespace kavidex::imaging::annotations
