// Pages for paper as the viewer shows them: turned and marked, also where that is not saved yet.
// What happens to the document meanwhile is not on the paper.
#pragma once

#include <memory>
#include <vector>

#include "controls/print/PrintSource.h"
#include "controls/viewer/pages/PageDocument.h"
#include "imaging/annotations/TextPainter.h"

namespace kavidex::controls {

class ShownPages final : public PrintSource {
public:
    // `pages`: their numbers in the document, in the order of printing. Without `texts` their marks
    // stay away.
    ShownPages(PageDocument& document, const std::vector<int>& pages,
               std::unique_ptr<imaging::annotations::TextPainter> texts);

    int Count() override { return static_cast<int>(lclPages.size()); }
    bool IsWide(int page) override;
    imaging::PageBitmap Page(int page, const platform::PrintPaper& paper,
                             std::string& damage) override;

private:
    const PageCopy& At(int page) const { return lclPages[static_cast<std::size_t>(page - 1)]; }
    PageShape Shape(const PageCopy& page) const;
    imaging::PageBitmap Picture(const PageCopy& page, const platform::PrintPaper& paper,
                                std::string& damage) const;

    std::shared_ptr<PageSource> lclSource;
    std::vector<PageCopy> lclPages;
    std::unique_ptr<imaging::annotations::TextPainter> lclTexts;
};

} // namespace kavidex::controls
