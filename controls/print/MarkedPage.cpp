#include "controls/print/MarkedPage.h"

#include <utility>

#include "imaging/Deepened.h"
#include "imaging/annotations/MarkPainter.h"

namespace kavidex::controls {

namespace annotations = imaging::annotations;
using imaging::PixelFormat;

namespace {

bool ShowsAny(const annotations::Annotations& marks) {
    for (std::size_t i = 0; i < marks.Count(); ++i) {
        const auto mark = marks.At(i);
        if (mark.visible && mark.IsKnown()) return true;
    }
    return false;
}

} // namespace

imaging::PageBitmap MarkedForPaper(imaging::PageBitmap page, const annotations::Annotations& marks,
                                   const platform::PrintPaper& paper,
                                   annotations::TextPainter& texts) {
    if (!ShowsAny(marks)) return page;
    // Black and white alone would drop a highlighter, or hide what is under it.
    page = Deepened(std::move(page), paper.colour ? PixelFormat::rgb24 : PixelFormat::grey8);
    annotations::MarkView view;
    if (page.xDpi > 0 && page.yDpi > 0) view.resolutions = page.xDpi / page.yDpi;
    annotations::PaintMarks(page, marks, view, texts);
    return page;
}

} // namespace kavidex::controls
