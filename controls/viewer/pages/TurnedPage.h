// A page of a file as it is shown: turned, and its marks with it.
#pragma once

#include <utility>

#include "controls/viewer/pages/PageSource.h"
#include "imaging/Orientation.h"
#include "imaging/Turn.h"
#include "imaging/annotations/Annotations.h"

namespace kavidex::controls {

inline bool Lies(imaging::Turn turn) {
    return turn == imaging::Turn::Right || turn == imaging::Turn::Left;
}

inline imaging::PageBitmap Turned(imaging::PageBitmap picture, imaging::Turn turn) {
    return imaging::Oriented(std::move(picture), imaging::Turned(1, turn));
}

inline PageShape Turned(PageShape shape, imaging::Turn turn) {
    if (!Lies(turn)) return shape;
    return {shape.height, shape.width, shape.yDpi, shape.xDpi};
}

inline imaging::annotations::Annotations TurnedMarks(PageSource& source, int page,
                                                     imaging::Turn turn) {
    imaging::annotations::Annotations marks(source.Marks(page).value_or(std::string()));
    const auto stored = source.Shape(page);
    marks.Rotate(turn, static_cast<std::int32_t>(stored.width),
                 static_cast<std::int32_t>(stored.height));
    return marks;
}

} // namespace kavidex::controls
