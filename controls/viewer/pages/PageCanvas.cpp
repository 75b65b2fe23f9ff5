#include "controls/viewer/pages/PageCanvas.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "controls/viewer/pages/PagePicture.h"
#include "imaging/annotations/MarkPainter.h"

namespace kavidex::controls {

using imaging::PageBitmap;
using imaging::annotations::TextPainter;

namespace {

constexpr double wheelShare = 8, arrowShare = 12; // of the room's height
constexpr double pageShare = 0.9;
constexpr int reachPixels = 4, handlePixels = 3;

} // namespace

// --- What is shown
// --------------------------------------------------------------------------------

void PageCanvas::SetPage(const PageShape& page, bool fit, bool fromItsEnd) {
    lclHasPage = true;
    lclPicture.reset();
    lclWhole.reset();
    lclMessage.clear();
    lclMarks = nullptr;
    lclWheel = 0;
    lclGeometry.SetPage(page);
    lclEditor.Reset(page);
    if (fit) lclFitted = true;
    if (lclFitted) lclGeometry.Fit(lclMode);
    lclGeometry.ScrollTo(lclGeometry.Left(), fromItsEnd ? lclGeometry.ContentHeight() : 0);
    GeometryChanged();
    ZoomChanged.Raise();
}

void PageCanvas::Clear() {
    lclHasPage = false;
    lclPicture.reset();
    lclWhole.reset();
    lclMessage.clear();
    lclMarks = nullptr;
    lclEditor.Reset({});
    GeometryChanged();
}

void PageCanvas::SetPicture(PageBitmap picture) {
    lclPicture = std::move(picture);
    lclWhole.reset();
    lclSeen.reset();
    if (lclWindow) lclWindow->Repaint();
}

void PageCanvas::SetMessage(std::string text) {
    lclMessage = std::move(text);
    if (lclWindow) lclWindow->Repaint();
}

void PageCanvas::SetMarks(const imaging::annotations::Annotations* marks) {
    lclMarks = marks;
    MarksChanged();
}

void PageCanvas::MarksChanged() {
    lclSeen.reset();
    lclDrawn.reset();
    if (lclWindow) lclWindow->Repaint();
}

void PageCanvas::GeometryChanged() {
    lclSeen.reset();
    lclDrawn.reset();
    if (lclWindow) lclWindow->RoomChanged();
}

void PageCanvas::ZoomedTo() {
    GeometryChanged();
    ZoomChanged.Raise();
}

void PageCanvas::Fit(FitMode mode) {
    lclMode = mode;
    lclFitted = true;
    if (!lclHasPage) return;
    lclGeometry.Fit(mode);
    ZoomedTo();
}

void PageCanvas::Zoom(int steps) {
    if (!CanZoom(steps)) return;
    lclFitted = false;
    lclGeometry.Zoom(steps, lclGeometry.Width() / 2, lclGeometry.Height() / 2);
    ZoomedTo();
}

void PageCanvas::AttachWindow(CanvasWindow* window) {
    lclWindow = window;
    lclPanning = false;
    if (window) window->RoomChanged();
}

// --- Seeing
// ---------------------------------------------------------------------------------------

PageCanvas::Seen PageCanvas::See(TextPainter* texts) {
    if (!lclPicture) return {};
    const bool moving = lclEditor.Moving() && lclEditor.Draft();
    const auto without = moving ? lclEditor.Selected() : std::nullopt;
    if (without != lclWithout) lclSeen.reset();
    if (!lclSeen) {
        lclWithout = without;
        SeePage();
        if (lclMarks && lclMarks->Count() > 0 && texts) SeeMarks(*texts);
        lclDrawn.reset();
    }
    const bool draws = lclEditor.Draft().has_value() || lclEditor.HasSelection();
    if (!draws) return {lclSeenX, lclSeenY, &*lclSeen};
    lclDrawn = AsColours(*lclSeen);
    if (lclEditor.Draft() && texts)
        imaging::annotations::PaintMark(*lclDrawn, *lclEditor.Draft(), View(), *texts);
    SeeHandles(*lclDrawn);
    return {lclSeenX, lclSeenY, &*lclDrawn};
}

// A page that is shown smaller than it is gets scaled once, as long as that is no great deal; of
// any other only what is in the room, from whole elements so that scrolling moves nothing else.
void PageCanvas::SeePage() {
    const auto& g = lclGeometry;
    const int left = std::max(0, -g.OriginX()), top = std::max(0, -g.OriginY());
    const int right = std::min(g.ShownWidth(), g.Width() - g.OriginX());
    const int bottom = std::min(g.ShownHeight(), g.Height() - g.OriginY());
    lclSeenX = std::max(0, g.OriginX());
    lclSeenY = std::max(0, g.OriginY());
    const PictureArea area{left, top, std::max(0, right - left), std::max(0, bottom - top)};
    const auto width = static_cast<std::uint32_t>(g.ShownWidth()),
               height = static_cast<std::uint32_t>(g.ShownHeight());
    if (!KeepsScaled(*lclPicture, width, height)) {
        lclWhole.reset();
        lclSeen = ScaledPart(*lclPicture, width, height, area);
        return;
    }
    if (!lclWhole || lclWhole->width != width || lclWhole->height != height)
        lclWhole = imaging::Scaled(*lclPicture, {0, 0, lclPicture->width, lclPicture->height},
                                   width, height);
    lclSeen = Cut(*lclWhole, area);
}

imaging::annotations::MarkView PageCanvas::View() const {
    const auto& g = lclGeometry;
    return {g.ZoomX(), g.ZoomY(), static_cast<double>(g.OriginX() - lclSeenX),
            static_cast<double>(g.OriginY() - lclSeenY), g.Page().Stretch()};
}

void PageCanvas::SeeMarks(TextPainter& texts) {
    lclSeen = AsColours(*lclSeen);
    for (std::size_t i = 0; i < lclMarks->Count(); ++i) {
        if (lclWithout == i) continue;
        const auto mark = lclMarks->At(i);
        if (mark.visible) imaging::annotations::PaintMark(*lclSeen, mark, View(), texts);
    }
}

void PageCanvas::SeeHandles(PageBitmap& picture) const {
    for (const auto& handle : lclEditor.Handles()) {
        const int x = lclGeometry.ToRoomX(handle.x) - lclSeenX,
                  y = lclGeometry.ToRoomY(handle.y) - lclSeenY;
        FillSquare(picture, x, y, handlePixels + 1, 255);
        FillSquare(picture, x, y, handlePixels, 0);
    }
}

PageBitmap PageCanvas::Draw(int width, int height, TextPainter& texts, int& x, int& y) const {
    if (!lclPicture) return {};
    PageGeometry room = lclGeometry;
    room.SetRoom(width, height, 0, 0);
    room.Fit(FitMode::Best);
    x = room.OriginX();
    y = room.OriginY();
    auto picture =
        AsColours(imaging::Scaled(*lclPicture, {0, 0, lclPicture->width, lclPicture->height},
                                  static_cast<std::uint32_t>(room.ShownWidth()),
                                  static_cast<std::uint32_t>(room.ShownHeight())));
    if (lclMarks)
        imaging::annotations::PaintMarks(
            picture, *lclMarks, {room.ZoomX(), room.ZoomY(), 0, 0, room.Page().Stretch()}, texts);
    return picture;
}

// --- The user
// -------------------------------------------------------------------------------------

void PageCanvas::SetRoom(int width, int height, int bar, int gap) {
    lclGeometry.SetRoom(width, height, bar, gap);
    if (!lclHasPage) return;
    if (lclFitted) lclGeometry.Fit(lclMode);
    ZoomedTo();
}

void PageCanvas::ScrollTo(int left, int top) {
    const int x = lclGeometry.Left(), y = lclGeometry.Top();
    lclGeometry.ScrollTo(left, top);
    if (lclGeometry.Left() != x || lclGeometry.Top() != y) GeometryChanged();
}

void PageCanvas::Wheel(double notches, int x, int y, bool control, bool shift) {
    if (!lclHasPage) return;
    if (control) {
        lclWheel += notches;
        const int steps = static_cast<int>(lclWheel);
        if (steps == 0 || !lclGeometry.CanZoom(steps)) return;
        lclWheel -= steps;
        lclFitted = false;
        lclGeometry.Zoom(steps, x, y);
        return ZoomedTo();
    }
    const int left = lclGeometry.Left(), top = lclGeometry.Top();
    const int by = static_cast<int>(std::lround(notches * lclGeometry.Height() / wheelShare));
    if (shift) return ScrollTo(left - by, top);
    ScrollTo(left, top - by);
    if (lclGeometry.Top() != top) {
        lclWheel = 0;
        return;
    }
    // At the page's end: the next whole notch goes on to the other page.
    lclWheel += notches;
    if (std::abs(lclWheel) < 1) return;
    const int step = lclWheel > 0 ? -1 : 1;
    lclWheel = 0;
    PageAsked.Raise(step);
}

double PageCanvas::Reach() const { return reachPixels / std::max(0.001, lclGeometry.ZoomX()); }

void PageCanvas::PointerDown(int x, int y) {
    if (!lclHasPage) return;
    if (lclEditor.PointerDown(lclGeometry.ToPage(x, y), Reach())) return;
    lclPanning = true;
    lclPanX = x + lclGeometry.Left();
    lclPanY = y + lclGeometry.Top();
}

void PageCanvas::PointerMoved(int x, int y) {
    if (lclPanning)
        ScrollTo(lclPanX - x, lclPanY - y);
    else
        lclEditor.PointerMoved(lclGeometry.ToPage(x, y));
}

void PageCanvas::PointerUp(int x, int y) {
    if (!std::exchange(lclPanning, false)) lclEditor.PointerUp(lclGeometry.ToPage(x, y));
}

void PageCanvas::PointerLost() {
    lclPanning = false;
    lclEditor.PointerLost();
}

void PageCanvas::DoubleClick(int x, int y) {
    if (lclHasPage) lclEditor.DoubleClick(lclGeometry.ToPage(x, y), Reach());
}

MarkEditor::Pointer PageCanvas::PointerAt(int x, int y) const {
    return lclHasPage ? lclEditor.PointerAt(lclGeometry.ToPage(x, y), Reach())
                      : MarkEditor::Pointer::Arrow;
}

void PageCanvas::PageKey(int step) {
    const int top = lclGeometry.Top();
    ScrollTo(lclGeometry.Left(), top + static_cast<int>(step * lclGeometry.Height() * pageShare));
    if (lclGeometry.Top() == top) PageAsked.Raise(step);
}

bool PageCanvas::Key(const Shortcut& key) {
    if (!lclHasPage || key.control || key.alt) return false;
    if (lclEditor.Key(key.key, 1 / lclGeometry.ZoomX())) return true;
    const int by = std::max(1, static_cast<int>(lclGeometry.Height() / arrowShare));
    const int left = lclGeometry.Left(), top = lclGeometry.Top();
    const auto sideways = [&](int step) {
        if (!lclGeometry.HasHorizontalBar()) return PageAsked.Raise(step);
        ScrollTo(left + step * by, top);
    };
    switch (key.key) {
    case keys::pageDown: PageKey(1); return true;
    case keys::pageUp: PageKey(-1); return true;
    case keys::space: PageKey(key.shift ? -1 : 1); return true;
    case keys::home: ScrollTo(left, 0); return true;
    case keys::end: ScrollTo(left, lclGeometry.ContentHeight()); return true;
    case keys::up: ScrollTo(left, top - by); return true;
    case keys::down: ScrollTo(left, top + by); return true;
    case keys::left: sideways(-1); return true;
    case keys::right: sideways(1); return true;
    default: return false;
    }
}

} // namespace kavidex::controls
