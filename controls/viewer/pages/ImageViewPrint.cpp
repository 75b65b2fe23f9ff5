// Pages on paper, as they are shown.
#include <numeric>

#include "controls/viewer/PrintShown.h"
#include "controls/viewer/pages/ImageView.h"
#include "controls/viewer/pages/ShownPages.h"

namespace kavidex::controls {

void ImageView::Print() {
    if (!lclDocument) return;
    std::vector<int> pages(static_cast<std::size_t>(Count()));
    std::iota(pages.begin(), pages.end(), 1);
    PrintThese(pages, Count());
}

// They are chosen already: no range of them is asked for.
void ImageView::PrintSelectedThumbs() {
    const auto pages = SelectedPages();
    if (lclDocument && !pages.empty()) PrintThese(pages, 0);
}

void ImageView::PrintThese(const std::vector<int>& pages, int choosable) {
    const auto title = Description();
    ShownPages source(*lclDocument, pages,
                      MarksShown() ? imaging::annotations::MakeTextPainter() : nullptr);
    PrintShown(lclFrame, lclPrinting, title, source, choosable);
}

} // namespace kavidex::controls
