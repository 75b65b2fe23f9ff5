#include "controls/viewer/pages/PageDocument.h"

#include <algorithm>
#include <set>
#include <utility>

#include "imaging/Orientation.h"
#include "platform/Files.h"

namespace kavidex::controls {

using imaging::PlannedPage;
using imaging::Turn;
using imaging::annotations::Annotations;

namespace {

Turn Together(Turn one, Turn other) {
    return static_cast<Turn>((static_cast<int>(one) + static_cast<int>(other)) % 4);
}

Turn Back(Turn turn) { return static_cast<Turn>((4 - static_cast<int>(turn)) % 4); }

bool Lies(Turn turn) { return turn == Turn::Right || turn == Turn::Left; }

imaging::PageBitmap Turned(imaging::PageBitmap picture, Turn turn) {
    return imaging::Oriented(std::move(picture), imaging::Turned(1, turn));
}

PageShape Turned(PageShape shape, Turn turn) {
    if (!Lies(turn)) return shape;
    return {shape.height, shape.width, shape.yDpi, shape.xDpi};
}

} // namespace

ChangedByAnother::ChangedByAnother(const std::string& path)
    : Error(platform::errors::sharingViolation,
            "The file was changed by another meanwhile: " + path) {}

PageDocument::PageDocument(platform::Files& files, std::string path, Open open, bool readOnly)
    : lclFiles(files), lclPath(std::move(path)), lclOpen(open) {
    Read();
    lclEditable = lclSource->Editable() && !readOnly;
    lclIds.SetIds(Count());
}

void PageDocument::Read() {
    lclSource = lclOpen(lclFiles, lclPath);
    Renumber(lclSource->Count());
}

// So many pages as the file has them, nothing changed.
void PageDocument::Renumber(int count) {
    lclPages.clear();
    lclPages.resize(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) lclPages[static_cast<std::size_t>(i)].number = i + 1;
}

PageSource& PageDocument::Source() {
    if (!lclSource) lclSource = lclOpen(lclFiles, lclPath);
    return *lclSource;
}

PageDocument::Page& PageDocument::At(int page) {
    if (page < 1 || page > Count())
        throw platform::Error(platform::errors::invalidArgument,
                              "The document has no page " + std::to_string(page));
    return lclPages[static_cast<std::size_t>(page - 1)];
}

PageDocument::Page& PageDocument::See(int page) {
    Page& seen = At(page);
    if (!seen.seen) seen.seen = Source().Fingerprint(seen.number);
    return seen;
}

PageShape PageDocument::StoredShape(const Page& page) { return Source().Shape(page.number); }

PageShape PageDocument::Shape(int page) {
    const Page& shown = At(page);
    return Turned(StoredShape(shown), shown.turn);
}

imaging::PageBitmap PageDocument::Picture(int page, std::uint32_t width, std::uint32_t height,
                                          std::string& damage) {
    const Page& shown = See(page);
    if (Lies(shown.turn)) std::swap(width, height);
    return Turned(Source().Picture(shown.number, width, height, damage), shown.turn);
}

imaging::PageBitmap PageDocument::Thumbnail(int page, std::uint32_t width, std::uint32_t height) {
    const Page& shown = See(page);
    if (Lies(shown.turn)) std::swap(width, height);
    return Turned(Source().Thumbnail(shown.number, width, height), shown.turn);
}

// --- Changes
// --------------------------------------------------------------------------------------

Annotations& PageDocument::Marks(int page) {
    Page& shown = See(page);
    if (!shown.marks) {
        shown.marks.emplace(Source().Marks(shown.number).value_or(std::string()));
        const auto stored = StoredShape(shown);
        shown.marks->Rotate(shown.turn, static_cast<std::int32_t>(stored.width),
                            static_cast<std::int32_t>(stored.height));
    }
    return *shown.marks;
}

void PageDocument::MarksChanged(int page) { See(page).marksChanged = true; }

void PageDocument::Rotate(int page, Turn turn) {
    Page& shown = See(page);
    const auto before = Shape(page);
    if (shown.marks)
        shown.marks->Rotate(turn, static_cast<std::int32_t>(before.width),
                            static_cast<std::int32_t>(before.height));
    shown.turn = Together(shown.turn, turn);
}

bool PageDocument::Changed() const {
    return std::any_of(lclPages.begin(), lclPages.end(),
                       [](const Page& page) { return page.Changed(); });
}

// --- Writing
// --------------------------------------------------------------------------------------

bool PageDocument::IsSame(PageSource& fresh) const {
    if (fresh.Count() != Count()) return false;
    return std::all_of(lclPages.begin(), lclPages.end(), [&fresh](const Page& page) {
        return !page.seen || fresh.Fingerprint(page.number) == *page.seen;
    });
}

// The marks go into the file as they lie on the page before it is turned.
PlannedPage PageDocument::PlanOf(Page& page, int number) {
    PlannedPage plan{lclPath, number, page.turn, {}};
    if (page.marksChanged) {
        const auto shown = Turned(StoredShape(page), page.turn);
        Annotations marks = *page.marks;
        marks.Rotate(Back(page.turn), static_cast<std::int32_t>(shown.width),
                     static_cast<std::int32_t>(shown.height));
        plan.marks = marks.Bytes();
    }
    return plan;
}

// What is open of the file is closed before it is replaced, and opened again when it is needed:
// once it is written, nothing can fail that would have it written twice.
void PageDocument::Write(const std::vector<PlannedPage>& plan) {
    imaging::WriteOptions options;
    options.check = [this, size = lclFiles.Size(lclPath)] {
        if (lclFiles.Size(lclPath) != size) throw ChangedByAnother(lclPath);
    };
    lclSource.reset();
    imaging::WritePages(lclFiles, plan, lclPath, options);
    Renumber(static_cast<int>(plan.size()));
}

std::vector<int> PageDocument::Save() {
    std::vector<int> lost;
    if (!Changed()) return lost;
    auto fresh = lclOpen(lclFiles, lclPath);
    std::vector<PlannedPage> plan;
    if (IsSame(*fresh)) {
        for (Page& page : lclPages) plan.push_back(PlanOf(page, page.number));
    } else {
        std::vector<std::uint64_t> known;
        for (int number = 1; number <= fresh->Count(); ++number) {
            plan.push_back({lclPath, number, Turn::None, {}});
            known.push_back(fresh->Fingerprint(number));
        }
        for (std::size_t i = 0; i < lclPages.size(); ++i) {
            Page& page = lclPages[i];
            if (!page.Changed()) continue;
            auto same = known.end();
            if (i < known.size() && known[i] == page.seen)
                same = known.begin() + static_cast<std::ptrdiff_t>(i);
            if (same == known.end()) same = std::find(known.begin(), known.end(), page.seen);
            if (same == known.end())
                lost.push_back(static_cast<int>(i) + 1);
            else
                plan[static_cast<std::size_t>(same - known.begin())] =
                    PlanOf(page, static_cast<int>(same - known.begin()) + 1);
        }
    }
    fresh.reset();
    const int before = Count();
    Write(plan);
    if (Count() != before) lclIds.SetIds(Count());
    return lost;
}

// `order`: the pages that stay, by their present numbers.
void PageDocument::Rewrite(const std::vector<int>& order) {
    if (!IsSame(*lclOpen(lclFiles, lclPath))) throw ChangedByAnother(lclPath);
    std::vector<PlannedPage> plan;
    for (const int page : order) plan.push_back(PlanOf(At(page), At(page).number));
    Write(plan);
}

void PageDocument::Delete(const std::vector<int>& pages) {
    const std::set<int> gone(pages.begin(), pages.end());
    std::vector<int> order;
    for (int page = 1; page <= Count(); ++page)
        if (!gone.contains(page)) order.push_back(page);
    Rewrite(order);
    for (auto page = gone.rbegin(); page != gone.rend(); ++page) lclIds.Remove(*page);
}

void PageDocument::Reorder(const std::vector<int>& order) {
    std::vector<std::int32_t> ids;
    for (const int page : order) ids.push_back(lclIds.GetPageId(page));
    Rewrite(order);
    lclIds.SetIds(ids);
}

void PageDocument::ReadAgain() {
    Read();
    lclIds.SetIds(Count());
}

void PageDocument::Extract(const std::vector<int>& pages, const std::string& target) const {
    imaging::ExtractPages(lclFiles, lclPath, pages, target);
}

} // namespace kavidex::controls
