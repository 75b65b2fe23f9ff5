#include "controls/viewer/pages/ThumbStrip.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace kavidex::controls {

namespace {

constexpr std::size_t mostPictures = 400;
constexpr int sideUnits = 120, gapUnits = 8, labelUnits = 18; // at 96 dots an inch

} // namespace

void ThumbStrip::SetCount(int count) {
    lclCount = count;
    lclCurrent = lclAnchor = lclTop = 0;
    lclSelected.clear();
    lclFailed.clear();
    lclPictures.clear();
    Repaint();
}

void ThumbStrip::SetCurrent(int page) {
    if (page == lclCurrent) return;
    lclCurrent = page;
    if (!lclSelected.contains(page)) {
        lclSelected = {page};
        lclAnchor = page;
        SelectionChanged.Raise();
    }
    Show(page);
    Repaint();
    if (lclWindow) lclWindow->CurrentChanged();
}

void ThumbStrip::Select(std::set<int> pages) {
    lclSelected = std::move(pages);
    SelectionChanged.Raise();
    Repaint();
}

void ThumbStrip::Repaint() const {
    if (lclWindow) lclWindow->Repaint();
}

// --- Pictures
// -------------------------------------------------------------------------------------

const imaging::PageBitmap* ThumbStrip::Picture(int page) const {
    const auto found = lclPictures.find(page);
    return found == lclPictures.end() ? nullptr : &found->second;
}

void ThumbStrip::Put(int page, imaging::PageBitmap picture) {
    lclPictures[page] = std::move(picture);
    if (lclPictures.size() > mostPictures) {
        const int here = std::max(1, PageAt(lclWidth / 2, lclHeight / 2));
        const auto first = lclPictures.begin(), last = std::prev(lclPictures.end());
        lclPictures.erase(here - first->first > last->first - here ? first : last);
    }
    if (lclWindow) lclWindow->Repaint(page);
}

void ThumbStrip::PutFailed(int page) {
    lclFailed.insert(page);
    if (lclWindow) lclWindow->Repaint(page);
}

void ThumbStrip::Forget(int page) {
    lclPictures.erase(page);
    lclFailed.erase(page);
    if (lclWindow) lclWindow->Repaint(page);
}

int ThumbStrip::Wanted() const {
    if (lclCount == 0) return 0;
    const auto missing = [this](int page) {
        return page >= 1 && page <= lclCount && !lclPictures.contains(page) &&
               !lclFailed.contains(page);
    };
    const int columns = Columns(), rowHeight = CellHeight();
    const int first = std::clamp(lclTop / rowHeight * columns + 1, 1, lclCount);
    const int last = std::clamp(((lclTop + lclHeight) / rowHeight + 1) * columns, first, lclCount);
    for (int page = first; page <= last; ++page)
        if (missing(page)) return page;
    const int around = (static_cast<int>(mostPictures) - (last - first + 1)) / 2 - 1;
    for (int away = 1; away <= around; ++away)
        for (const int page : {last + away, first - away})
            if (missing(page)) return page;
    return 0;
}

// --- Layout
// ---------------------------------------------------------------------------------------

void ThumbStrip::SetRoom(int width, int height, int dpi) {
    const auto scaled = [dpi](int units) { return units * dpi / 96; };
    const int side = scaled(sideUnits);
    if (side != lclSide) lclPictures.clear();
    lclSide = side;
    lclGap = scaled(gapUnits);
    lclLabel = scaled(labelUnits);
    lclWidth = width;
    lclHeight = height;
    ScrollTo(lclTop);
    RoomChanged.Raise();
}

int ThumbStrip::CellWidth() const { return lclSide + 2 * lclGap; }

int ThumbStrip::CellHeight() const { return lclSide + lclLabel + 2 * lclGap; }

int ThumbStrip::Columns() const { return std::max(1, lclWidth / CellWidth()); }

int ThumbStrip::ContentHeight() const {
    return (lclCount + Columns() - 1) / Columns() * CellHeight();
}

ThumbStrip::Cell ThumbStrip::CellOf(int page) const {
    const int columns = Columns();
    const int width = std::max(CellWidth(), lclWidth / columns);
    return {(page - 1) % columns * width, (page - 1) / columns * CellHeight() - lclTop, width,
            CellHeight()};
}

int ThumbStrip::PageAt(int x, int y) const {
    const int columns = Columns(), width = std::max(CellWidth(), lclWidth / columns);
    if (x < 0 || y + lclTop < 0 || x >= width * columns) return 0;
    const int page = (y + lclTop) / CellHeight() * columns + x / width + 1;
    return page <= lclCount ? page : 0;
}

void ThumbStrip::ScrollTo(int top) {
    const int before = lclTop;
    lclTop = std::clamp(top, 0, std::max(0, ContentHeight() - lclHeight));
    Repaint();
    if (lclTop != before) RoomChanged.Raise();
}

void ThumbStrip::Show(int page) {
    if (page < 1 || lclHeight <= 0) return;
    const Cell cell = CellOf(page);
    if (cell.y < 0)
        ScrollTo(lclTop + cell.y);
    else if (cell.y + cell.height > lclHeight)
        ScrollTo(lclTop + cell.y + cell.height - lclHeight);
}

// --- The user
// -------------------------------------------------------------------------------------

void ThumbStrip::SelectTo(int page) {
    const int anchor = std::max(1, lclAnchor);
    std::set<int> pages;
    for (int one = std::min(anchor, page); one <= std::max(anchor, page); ++one) pages.insert(one);
    Select(std::move(pages));
}

void ThumbStrip::Clicked(int page, bool control, bool shift) {
    if (page < 1) return;
    if (shift) {
        SelectTo(page);
    } else if (control) {
        auto pages = lclSelected;
        if (!pages.insert(page).second && pages.size() > 1) pages.erase(page);
        lclAnchor = page;
        Select(std::move(pages));
    } else {
        lclAnchor = page;
        Select({page});
    }
    if (lclSelected.contains(page)) Chosen.Raise(page);
}

void ThumbStrip::MoveTo(int page, bool shift) {
    page = std::clamp(page, 1, std::max(1, lclCount));
    if (lclCount == 0) return;
    Clicked(page, false, shift);
    Show(page);
}

bool ThumbStrip::Key(const Shortcut& key) {
    if (key.alt || lclCount == 0) return false;
    const int columns = Columns(), rows = std::max(1, lclHeight / CellHeight());
    if (key.control && key.key == 'A') {
        lclAnchor = 1;
        SelectTo(lclCount);
        return true;
    }
    if (key.control) return false;
    switch (key.key) {
    case keys::left: MoveTo(lclCurrent - 1, key.shift); return true;
    case keys::right: MoveTo(lclCurrent + 1, key.shift); return true;
    case keys::up: MoveTo(lclCurrent - columns, key.shift); return true;
    case keys::down: MoveTo(lclCurrent + columns, key.shift); return true;
    case keys::pageUp: MoveTo(lclCurrent - rows * columns, key.shift); return true;
    case keys::pageDown: MoveTo(lclCurrent + rows * columns, key.shift); return true;
    case keys::home: MoveTo(1, key.shift); return true;
    case keys::end: MoveTo(lclCount, key.shift); return true;
    case keys::del: DeleteAsked.Raise(); return true;
    default: return false;
    }
}

} // namespace kavidex::controls
