#include "controls/viewer/pages/PageDocument.h"

#include <algorithm>
#include <set>
#include <utility>

#include "controls/viewer/pages/TurnedPage.h"
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

} // namespace

ChangedByAnother::ChangedByAnother(const std::string& path)
    : Error(platform::errors::sharingViolation,
            "The file was changed by another meanwhile: " + path) {}

PageDocument::PageDocument(platform::Files& files, std::string path, Opener open, bool readOnly)
    : lclFiles(files), lclPath(std::move(path)), lclOpen(open) {
    Read();
    lclEditable = lclSource->Editable() && !readOnly;
    lclIds.SetIds(Count());
}

void PageDocument::Open() {
    lclSource = lclOpen(lclFiles, lclPath);
    lclSize = lclFiles.Size(lclPath);
}

// Where that fails whoever looks at a page next tries it again, and is told.
void PageDocument::OpenAgain() {
    lclAsRead = false;
    try {
        Open();
    } catch (const platform::Error&) {
        lclSource.reset();
    }
}

void PageDocument::Read() {
    Open();
    lclAsRead = true;
    Renumber(lclSource->Count());
}

// So many pages as the file has them, nothing changed.
void PageDocument::Renumber(int count) {
    lclPages.clear();
    lclPages.resize(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) lclPages[static_cast<std::size_t>(i)].number = i + 1;
}

PageSource& PageDocument::Source() {
    if (!lclSource) Open();
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
    if (!seen.shape) seen.shape = Source().Shape(seen.number);
    return seen;
}

PageShape PageDocument::StoredShape(const Page& page) {
    return page.shape ? *page.shape : Source().Shape(page.number);
}

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
    if (!shown.marks) shown.marks = TurnedMarks(Source(), shown.number, shown.turn);
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

std::vector<PageCopy> PageDocument::Copies(const std::vector<int>& pages) {
    std::vector<PageCopy> copies;
    for (const int page : pages) {
        const Page& shown = At(page);
        copies.push_back({shown.number, shown.turn, shown.marks});
    }
    return copies;
}

std::shared_ptr<PageSource> PageDocument::Opened() {
    Source();
    return lclSource;
}

// --- Writing
// --------------------------------------------------------------------------------------

PageDocument::Prints PageDocument::PrintsInFile() const {
    const auto fresh = lclOpen(lclFiles, lclPath);
    Prints prints;
    for (int number = 1; number <= fresh->Count(); ++number)
        prints.push_back(fresh->Fingerprint(number));
    return prints;
}

// A page that nobody looked at is what the file holds that was opened then; a file that was written
// into while it is open shows itself by its size. If they all are, that is remembered of each.
bool PageDocument::AreThoseRead(const Prints& now) {
    if (now.size() != lclPages.size()) return false;
    const auto unseen = [](const Page& page) { return !page.seen; };
    if (std::any_of(lclPages.begin(), lclPages.end(), unseen) &&
        (!lclAsRead || lclFiles.Size(lclPath) != lclSize))
        return false;
    for (std::size_t i = 0; i < now.size(); ++i) {
        const auto& page = lclPages[i];
        if (now[i] != (page.seen ? *page.seen : lclSource->Fingerprint(page.number))) return false;
    }
    for (std::size_t i = 0; i < now.size(); ++i) lclPages[i].seen = now[i];
    return true;
}

PageDocument::Prints PageDocument::Confirmed() {
    auto now = PrintsInFile();
    if (!AreThoseRead(now)) throw ChangedByAnother(lclPath);
    return now;
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

// `now`: what the file holds, and still has to hold when it is replaced. `asRead`: those are the
// pages shown. Then the open file is closed before, so that it can simply be replaced, and opened
// again where that failed; a file that another replaced already stays open until then.
void PageDocument::Write(const std::vector<PlannedPage>& plan, const Prints& now, bool asRead) {
    imaging::WriteOptions options;
    options.check = [&] {
        if (PrintsInFile() != now) throw ChangedByAnother(lclPath);
    };
    if (asRead) lclSource.reset();
    try {
        imaging::WritePages(lclFiles, plan, lclPath, options);
    } catch (const std::exception&) {
        if (!lclSource) OpenAgain();
        throw;
    }
    Renumber(static_cast<int>(plan.size()));
    Learn(plan, now);
}

// A page that was copied as it was is known already, one that was turned or marked tells itself.
void PageDocument::Learn(const std::vector<PlannedPage>& plan, const Prints& before) {
    for (std::size_t i = 0; i < plan.size(); ++i)
        if (plan[i].turn == Turn::None && !plan[i].marks)
            lclPages[i].seen = before[static_cast<std::size_t>(plan[i].page - 1)];
    OpenAgain();
    try {
        for (Page& page : lclPages)
            if (!page.seen) page.seen = Source().Fingerprint(page.number);
    } catch (const platform::Error&) {
        lclSource.reset();
    }
}

std::vector<int> PageDocument::Save() {
    std::vector<int> lost;
    if (!Changed()) return lost;
    const auto now = PrintsInFile();
    if (AreThoseRead(now)) {
        std::vector<PlannedPage> plan;
        for (Page& page : lclPages) plan.push_back(PlanOf(page, page.number));
        Write(plan, now, true);
    } else {
        Write(Merged(now, lost), now, false);
        lclIds.SetIds(Count()); // whatever is there now
    }
    return lost;
}

// All pages that another left in the file, with the changes of those that are still there: at the
// place where they were, else wherever they are now.
std::vector<PlannedPage> PageDocument::Merged(const Prints& now, std::vector<int>& lost) {
    std::vector<PlannedPage> plan;
    for (std::size_t i = 0; i < now.size(); ++i)
        plan.push_back({lclPath, static_cast<int>(i) + 1, Turn::None, {}});
    std::set<std::size_t> taken;
    const auto fits = [&](std::size_t at, const Page& page) {
        return at < now.size() && now[at] == page.seen && !taken.contains(at);
    };
    const auto put = [&](std::size_t at, Page& page) {
        plan[at] = PlanOf(page, static_cast<int>(at) + 1);
        taken.insert(at);
    };
    std::vector<std::size_t> moved;
    for (std::size_t i = 0; i < lclPages.size(); ++i) {
        if (!lclPages[i].Changed()) continue;
        if (fits(i, lclPages[i]))
            put(i, lclPages[i]);
        else
            moved.push_back(i);
    }
    for (const auto i : moved) {
        std::size_t at = 0;
        while (at < now.size() && !fits(at, lclPages[i])) ++at;
        if (at < now.size())
            put(at, lclPages[i]);
        else
            lost.push_back(static_cast<int>(i) + 1);
    }
    return plan;
}

// `order`: the pages that stay, by their present numbers.
void PageDocument::Rewrite(const std::vector<int>& order) {
    const auto now = Confirmed();
    std::vector<PlannedPage> plan;
    for (const int page : order) plan.push_back(PlanOf(At(page), At(page).number));
    Write(plan, now, true);
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
