// Marks drawn onto a page's picture: over the part that a screen shows, or into the whole page for
// paper.
#pragma once

#include "imaging/PageBitmap.h"
#include "imaging/annotations/Annotations.h"
#include "imaging/annotations/TextPainter.h"

namespace kavidex::imaging::annotations {

// How the stored page lies on the picture: its first element at (left, top), each element of it so
// large. The two differ where the resolutions do and the page is shown in its true form.
struct MarkView {
    double zoomX = 1, zoomY = 1;
    double left = 0, top = 0;
    double resolutions = 1; // of the page: horizontal / vertical
};

// Those that are visible, the lowest first. A picture of one bit gets what black and white can
// show; marks in colour want rgb24.
void PaintMarks(PageBitmap& picture, const Annotations& marks, const MarkView& view,
                TextPainter& texts);
void PaintMark(PageBitmap& picture, const Mark& mark, const MarkView& view, TextPainter& texts);

} // namespace kavidex::imaging::annotations
