#include "controls/print/TiffPages.h"

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

bool TiffPages::IsWide(int page) {
    const auto facts = lclFile.Facts(page);
    const bool known = facts.xDpi > 0 && facts.yDpi > 0;
    return known ? facts.width * facts.yDpi > facts.height * facts.xDpi
                 : facts.width > facts.height;
}

imaging::PageBitmap TiffPages::Page(int page, const platform::PrintPaper& paper,
                                    std::string& damage) {
    auto bitmap = lclFile.Decode(page, &damage);
    const auto bytes = lclTexts ? lclFile.Marks(page) : std::nullopt;
    if (!bytes) return bitmap;
    const annotations::Annotations marks(*bytes);
    if (!ShowsAny(marks)) return bitmap;
    // Black and white alone would drop a highlighter, or hide what is under it.
    bitmap = Deepened(std::move(bitmap), paper.colour ? PixelFormat::rgb24 : PixelFormat::grey8);
    annotations::MarkView view;
    if (bitmap.xDpi > 0 && bitmap.yDpi > 0) view.resolutions = bitmap.xDpi / bitmap.yDpi;
    annotations::PaintMarks(bitmap, marks, view, *lclTexts);
    return bitmap;
}

} // namespace kavidex::controls
