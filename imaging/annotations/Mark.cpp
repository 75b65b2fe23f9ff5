#include "imaging/annotations/Mark.h"

#include <algorithm>
#include <cstdlib>

namespace kavidex::imaging::annotations {

namespace {

// What a hostile file adds up beyond the range wraps round, as the stored numbers do.
std::int32_t Wrapped(std::int64_t value) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

std::int32_t Scaled(std::int64_t value, std::int64_t from, std::int64_t to) {
    return from == 0 ? Wrapped(value)
                     : Wrapped(static_cast<std::int64_t>(static_cast<double>(value) *
                                                         static_cast<double>(to) /
                                                         static_cast<double>(from)));
}

} // namespace

Box Box::Normal() const {
    return {std::min(left, right), std::min(top, bottom), std::max(left, right),
            std::max(top, bottom)};
}

bool Mark::HasPoints() const {
    return type == MarkType::Line || type == MarkType::Freehand ||
           type == MarkType::HollowPolygon || type == MarkType::FilledPolygon;
}

bool Mark::HasText() const {
    return (type >= MarkType::Text && type <= MarkType::Note) || type == MarkType::OcrRegion;
}

bool Mark::HasImage() const {
    return type == MarkType::Image || type == MarkType::ImageFile || type == MarkType::Form;
}

bool Mark::IsKnown() const {
    return HasPoints() || HasText() || HasImage() || type == MarkType::HollowRectangle ||
           type == MarkType::FilledRectangle;
}

double Mark::TextPixels() const {
    const double size = std::abs(static_cast<double>(font.height));
    return (size == 0 ? 12 : size) * 1000 / (creationScale == 0 ? 360 : creationScale);
}

void Mark::SetPoints(const std::vector<Point>& onPage) {
    points = onPage;
    if (points.empty()) return;
    bounds = {points[0].x, points[0].y, points[0].x, points[0].y};
    for (const Point& point : points) {
        bounds = {std::min(bounds.left, point.x), std::min(bounds.top, point.y),
                  std::max(bounds.right, point.x), std::max(bounds.bottom, point.y)};
    }
    for (Point& point : points)
        point = {Wrapped(std::int64_t{point.x} - bounds.left),
                 Wrapped(std::int64_t{point.y} - bounds.top)};
}

void Mark::Resize(const Box& to) {
    for (Point& point : points) {
        point.x = Scaled(point.x, std::int64_t{bounds.right} - bounds.left,
                         std::int64_t{to.right} - to.left);
        point.y = Scaled(point.y, std::int64_t{bounds.bottom} - bounds.top,
                         std::int64_t{to.bottom} - to.top);
    }
    bounds = to;
}

void Mark::Move(std::int32_t dx, std::int32_t dy) {
    bounds = {Wrapped(std::int64_t{bounds.left} + dx), Wrapped(std::int64_t{bounds.top} + dy),
              Wrapped(std::int64_t{bounds.right} + dx), Wrapped(std::int64_t{bounds.bottom} + dy)};
}

} // namespace kavidex::imaging::annotations
