#include "controls/print/PagePrinter.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace kavidex::controls {

namespace {

// The pages of the job in their order, those that follow each other equal where a page is repeated.
std::vector<int> PagesOf(const platform::PrintChoice& choice, int count) {
    const int first = std::max(choice.from, 1);
    const int last = choice.to > 0 ? std::min(choice.to, count) : count;
    const int copies = std::max(choice.copies, 1);
    std::vector<int> pages;
    for (int copy = 0; copy < (choice.collate ? copies : 1); ++copy)
        for (int page = first; page <= last; ++page)
            pages.insert(pages.end(), static_cast<std::size_t>(choice.collate ? 1 : copies), page);
    return pages;
}

} // namespace

DrawnSize SizeForPaper(double width, double height, const platform::PrintPaper& paper) {
    constexpr double sharpest = 300; // dots an inch: more only costs memory
    // What would be made smaller on the paper anyway is drawn at that size.
    const double fitting =
        std::min({1.0, paper.width / (width * paper.xDpi), paper.height / (height * paper.yDpi)});
    const auto elements = [&](double inches, double dpi) {
        return static_cast<std::uint32_t>(
            std::max(std::lround(inches * fitting * std::min(dpi, sharpest)), 1L));
    };
    return {elements(width, paper.xDpi), elements(height, paper.yDpi)};
}

platform::PrintPlace PlaceOnPaper(const imaging::PageBitmap& page,
                                  const platform::PrintPaper& paper) {
    const bool known = page.xDpi > 0 && page.yDpi > 0;
    const double width = known ? page.width / page.xDpi * paper.xDpi : page.width * paper.xDpi;
    const double height = known ? page.height / page.yDpi * paper.yDpi : page.height * paper.yDpi;
    const double fitting = std::min(paper.width / width, paper.height / height);
    const double scale = known ? std::min(fitting, 1.0) : fitting;
    platform::PrintPlace place;
    place.width = std::max(static_cast<int>(std::lround(width * scale)), 1);
    place.height = std::max(static_cast<int>(std::lround(height * scale)), 1);
    place.x = (paper.width - place.width) / 2;
    place.y = (paper.height - place.height) / 2;
    return place;
}

PagesPrinted PrintPages(platform::Printers& printers, const platform::PrintChoice& choice,
                        std::string_view title, PrintSource& source,
                        const std::function<bool(int, int)>& step) {
    PagesPrinted result;
    const auto pages = PagesOf(choice, source.Count());
    const auto job = printers.Begin(choice, title);
    if (!job) return {true, {}};
    imaging::PageBitmap bitmap;
    int done = 0, drawn = 0;
    for (const int page : pages) {
        if (!step(done++, static_cast<int>(pages.size()))) return {true, {}};
        const auto paper = job->BeginPage(source.IsWide(page));
        if (page != drawn) {
            std::string damage;
            bitmap = {}; // two of them at once may be more than there is room for
            bitmap = source.Page(page, paper, damage);
            if (!damage.empty() && result.damage.find(damage) == result.damage.npos)
                result.damage += (result.damage.empty() ? "" : "; ") + damage;
            drawn = page;
        }
        job->Draw({static_cast<unsigned>(bitmap.format), bitmap.width, bitmap.height, bitmap.bytes},
                  PlaceOnPaper(bitmap, paper));
        job->EndPage();
    }
    job->End();
    return result;
}

} // namespace kavidex::controls
