// Marks follow pixels that were turned.
#include "imaging/annotations/Annotations.h"
#include "imaging/annotations/Attributes.h"
#include "platform/Bytes.h"

namespace kavidex::imaging::annotations {

namespace {

using platform::ReadLittle;
using platform::WriteLittle;

std::int32_t Minus(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

Box Turned(const Box& box, Turn turn, std::int32_t width, std::int32_t height) {
    switch (turn) {
    case Turn::Right:
        return {Minus(height, box.bottom), box.left, Minus(height, box.top), box.right};
    case Turn::Left: return {box.top, Minus(width, box.right), box.bottom, Minus(width, box.left)};
    default:
        return {Minus(width, box.right), Minus(height, box.bottom), Minus(width, box.left),
                Minus(height, box.top)};
    }
}

// Within bounds of that size before the turn.
Point Turned(Point point, Turn turn, std::int32_t width, std::int32_t height) {
    switch (turn) {
    case Turn::Right: return {Minus(height, point.y), point.x};
    case Turn::Left: return {point.y, Minus(width, point.x)};
    default: return {Minus(width, point.x), Minus(height, point.y)};
    }
}

// Slots beyond the count, and a list that cannot be read, stay.
void TurnPoints(std::string& data, const Mark& mark, Turn turn) {
    const std::int32_t width = Minus(mark.bounds.right, mark.bounds.left),
                       height = Minus(mark.bounds.bottom, mark.bounds.top);
    for (std::size_t i = 0; i < mark.points.size(); ++i) {
        const Point point = Turned(mark.points[i], turn, width, height);
        WriteLittle(data, 8 + 8 * i, point.x);
        WriteLittle(data, 12 + 8 * i, point.y);
    }
}

void TurnText(std::string& data, Turn turn) {
    if (data.size() < 4) return;
    const std::int64_t by = turn == Turn::Right ? -900 : turn == Turn::Left ? 900 : 1800;
    const std::int64_t sum = ReadLittle<std::int32_t>(data, 0) + by;
    WriteLittle(data, 0, static_cast<std::int32_t>((sum % 3600 + 3600) % 3600));
}

// 1 to 4 turn to the right one by one; 5 to 8 likewise, mirrored before.
void TurnImage(std::string& data, Turn turn) {
    if (data.size() < 4) return;
    const auto code = ReadLittle<std::int32_t>(data, 0);
    if (code < 1 || code > 8) return;
    const int steps = turn == Turn::Right  ? 1
                      : turn == Turn::Left ? 3
                                           : 2,
              first = code > 4 ? 5 : 1;
    WriteLittle<std::int32_t>(data, 0, first + (code - first + steps) % 4);
}

} // namespace

void Annotations::Rotate(Turn turn, std::int32_t width, std::int32_t height) {
    if (turn == Turn::None) return;
    for (std::size_t i = 0; i < Count(); ++i) {
        const std::size_t start = lclStarts[i];
        const Mark mark = At(i);
        if (!mark.IsKnown()) continue;
        SetBounds(lclRecords.records[start].body, Turned(mark.bounds, turn, width, height));
        if (Record* found = Block(start, "OiAnoDat")) {
            if (mark.HasPoints()) TurnPoints(found->data, mark, turn);
            if (mark.HasImage()) TurnImage(found->data, turn);
        }
        if (mark.HasText())
            if (Record* found = Block(start, "OiAnText")) TurnText(found->data, turn);
    }
}

} // namespace kavidex::imaging::annotations
