// Which mark lies under a point.
#include <algorithm>
#include <cmath>

#include "imaging/annotations/Annotations.h"

namespace kavidex::imaging::annotations {

namespace {

struct Place {
    double x, y;
};

double Distance(Place p, Place a, Place b) {
    const double dx = b.x - a.x, dy = b.y - a.y, square = dx * dx + dy * dy;
    const double along =
        square == 0 ? 0 : std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / square, 0.0, 1.0);
    return std::hypot(p.x - a.x - along * dx, p.y - a.y - along * dy);
}

bool MeetsLines(const Mark& mark, Place at, double reach) {
    const double width = mark.lineWidth / 2.0 + reach;
    const auto place = [&](const Point& point) {
        return Place{static_cast<double>(mark.bounds.left) + point.x,
                     static_cast<double>(mark.bounds.top) + point.y};
    };
    const std::size_t count = mark.points.size();
    for (std::size_t i = 0; i < count; ++i) {
        const bool last = i + 1 == count;
        if (last && count > 1 && mark.type != MarkType::HollowPolygon) break;
        if (Distance(at, place(mark.points[i]), place(mark.points[last ? 0 : i + 1])) <= width)
            return true;
    }
    return false;
}

bool Meets(const Mark& mark, Point point, double reach) {
    const Place at{static_cast<double>(point.x), static_cast<double>(point.y)};
    if (mark.HasPoints() && mark.type != MarkType::FilledPolygon)
        return MeetsLines(mark, at, reach);
    const Box box = mark.bounds.Normal();
    // How far inside the box the point lies; negative outside.
    const double inside =
        std::min({at.x - box.left, box.right - at.x, at.y - box.top, box.bottom - at.y});
    if (inside < -reach) return false;
    return mark.type != MarkType::HollowRectangle || inside <= mark.lineWidth + reach;
}

} // namespace

std::optional<std::size_t> Annotations::HitTest(Point at, double reach) const {
    for (std::size_t i = Count(); i-- > 0;) {
        const Mark mark = At(i);
        if (mark.visible && mark.IsKnown() && Meets(mark, at, reach)) return i;
    }
    return std::nullopt;
}

} // namespace kavidex::imaging::annotations
