#include "controls/forms/Layout.h"

#include <algorithm>

namespace kavidex::controls::forms {

namespace {

void GrowSide(int& start, int& extent, bool atStart, bool atEnd, int growth) {
    if (atEnd && atStart)
        extent = std::max(0, extent + growth);
    else if (atEnd)
        start += growth;
}

} // namespace

Box Grown(const Box& box, unsigned anchors, int growX, int growY) {
    Box grown = box;
    GrowSide(grown.x, grown.width, anchors & anchor::left, anchors & anchor::right, growX);
    GrowSide(grown.y, grown.height, anchors & anchor::top, anchors & anchor::bottom, growY);
    return grown;
}

} // namespace kavidex::controls::forms
