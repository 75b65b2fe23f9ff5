#include "controls/viewer/pages/ShownPages.h"

#include <utility>

#include "controls/print/MarkedPage.h"
#include "controls/print/PagePrinter.h"
#include "controls/viewer/pages/TurnedPage.h"

namespace kavidex::controls {

ShownPages::ShownPages(PageDocument& document, const std::vector<int>& pages,
                       std::unique_ptr<imaging::annotations::TextPainter> texts)
    : lclSource(document.Opened()), lclPages(document.Copies(pages)), lclTexts(std::move(texts)) {}

PageShape ShownPages::Shape(const PageCopy& page) const {
    return Turned(lclSource->Shape(page.number), page.turn);
}

bool ShownPages::IsWide(int page) {
    const auto shape = Shape(At(page));
    const bool known = shape.xDpi > 0 && shape.yDpi > 0;
    return known ? shape.width * shape.yDpi > shape.height * shape.xDpi
                 : shape.width > shape.height;
}

// A page that is drawn is drawn as large as the paper shows it.
imaging::PageBitmap ShownPages::Picture(const PageCopy& page, const platform::PrintPaper& paper,
                                        std::string& damage) const {
    if (!lclSource->DrawsAnySize())
        return Turned(lclSource->Picture(page.number, 0, 0, damage), page.turn);
    const auto shape = lclSource->Shape(page.number);
    const double width = shape.width / shape.xDpi, height = shape.height / shape.yDpi;
    const auto size = SizeForPaper(width, height, paper);
    auto picture = lclSource->Picture(page.number, size.width, size.height, damage);
    picture.xDpi = picture.width / width;
    picture.yDpi = picture.height / height;
    return Turned(std::move(picture), page.turn);
}

imaging::PageBitmap ShownPages::Page(int page, const platform::PrintPaper& paper,
                                     std::string& damage) {
    const auto& copy = At(page);
    auto picture = Picture(copy, paper, damage);
    if (!lclTexts) return picture;
    return MarkedForPaper(std::move(picture),
                          copy.marks ? *copy.marks
                                     : TurnedMarks(*lclSource, copy.number, copy.turn),
                          paper, *lclTexts);
}

} // namespace kavidex::controls
