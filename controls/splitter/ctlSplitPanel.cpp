#include "controls/splitter/ctlSplitPanel.h"

#include <algorithm>

namespace kavidex::controls {

void ctlSplitPanel::ShowControls(bool first, bool second) {
    lclVisible[0] = first;
    lclVisible[1] = second;
    CancelMove();
    Arrange();
}

void ctlSplitPanel::SetHorizontal(bool horizontal) {
    if (lclHorizontal == horizontal) return;
    CancelMove();
    lclHorizontal = horizontal;
    Arrange();
}

void ctlSplitPanel::SetPosition(std::int32_t position) {
    lclPosition = std::clamp<std::int32_t>(position, 0, wholePosition);
    lclSnapped = SnapSide::None;
    Arrange();
}

void ctlSplitPanel::SetMinPanelSize(std::int32_t size) {
    lclMinPanelSize = std::max<std::int32_t>(size, 0);
    Arrange();
}

void ctlSplitPanel::SetSplitterWidth(std::int32_t width) {
    lclSplitterWidth = std::max<std::int32_t>(width, 1);
    Arrange();
}

void ctlSplitPanel::SetSnapToEdge(bool snap) {
    lclSnapToEdge = snap;
    if (!snap) lclSnapped = SnapSide::None;
    Arrange();
}

void ctlSplitPanel::SetSize(int width, int height) {
    lclWidth = std::max(width, 0);
    lclHeight = std::max(height, 0);
    Arrange();
}

void ctlSplitPanel::SetScale(int dotsPerInch) {
    lclDotsPerInch = std::max(dotsPerInch, 1);
    Arrange();
}

int ctlSplitPanel::Room() const {
    return std::max(0, (lclHorizontal ? lclHeight : lclWidth) - Scaled(lclSplitterWidth));
}

int ctlSplitPanel::FirstSize() const {
    const int room = Room();
    if (lclSnapped == SnapSide::First) return 0;
    if (lclSnapped == SnapSide::Second) return room;
    // A room too small for both halves the loss.
    const int smallest = std::min(Scaled(lclMinPanelSize), room / 2);
    const auto wanted = static_cast<int>(std::int64_t{room} * lclPosition / wholePosition);
    return std::clamp(wanted, smallest, room - smallest);
}

Box ctlSplitPanel::Bar() const {
    if (!BarVisible()) return {};
    const int size = Scaled(lclSplitterWidth);
    return lclHorizontal ? Box{0, FirstSize(), lclWidth, size}
                         : Box{FirstSize(), 0, size, lclHeight};
}

Box ctlSplitPanel::Panel(int which) const {
    if (!lclVisible[which]) return {};
    if (!BarVisible()) return {0, 0, lclWidth, lclHeight};
    if (lclSnapped == (which == 0 ? SnapSide::First : SnapSide::Second)) return {};
    const int from = which == 0 ? 0 : FirstSize() + Scaled(lclSplitterWidth);
    const int size = which == 0 ? FirstSize() : Room() - FirstSize();
    return lclHorizontal ? Box{0, from, lclWidth, size} : Box{from, 0, size, lclHeight};
}

void ctlSplitPanel::Arrange() {
    for (int i = 0; i < 2; ++i) {
        if (!lclControls[i]) continue;
        const Box place = Panel(i);
        const bool shown = place != Box{};
        if (shown) lclControls[i]->Place(place);
        lclControls[i]->Show(shown);
    }
    Changed.Raise();
}

void ctlSplitPanel::TakeFirstSize(int size) {
    const int room = Room(), smallest = Scaled(lclMinPanelSize);
    if (room == 0) return;
    lclSnapped = SnapSide::None;
    if (lclSnapToEdge && size < smallest / 2)
        lclSnapped = SnapSide::First;
    else if (lclSnapToEdge && size > room - smallest / 2)
        lclSnapped = SnapSide::Second;
    else {
        size = std::clamp(size, std::min(smallest, room / 2), room - std::min(smallest, room / 2));
        // Rounded up, so that the same size comes back out of it.
        lclPosition =
            static_cast<std::int32_t>((std::int64_t{size} * wholePosition + room - 1) / room);
    }
    Arrange();
}

bool ctlSplitPanel::BeginMove(int x, int y) {
    if (!lclAllowMove || lclMoving || !Bar().Contains(x, y)) return false;
    lclGrip = (lclHorizontal ? y : x) - FirstSize();
    lclPositionBefore = lclPosition;
    lclSnappedBefore = lclSnapped;
    lclMoving = true;
    Changed.Raise();
    return true;
}

void ctlSplitPanel::MoveTo(int x, int y) {
    if (lclMoving) TakeFirstSize((lclHorizontal ? y : x) - lclGrip);
}

void ctlSplitPanel::EndMove() {
    if (!lclMoving) return;
    lclMoving = false;
    Changed.Raise();
    if (lclPosition != lclPositionBefore || lclSnapped != lclSnappedBefore) Moved.Raise();
}

void ctlSplitPanel::CancelMove() {
    if (!lclMoving) return;
    lclMoving = false;
    lclPosition = lclPositionBefore;
    lclSnapped = lclSnappedBefore;
    Arrange();
}

bool ctlSplitPanel::MoveBy(int steps) {
    if (!lclAllowMove || lclMoving || !BarVisible() || steps == 0) return false;
    const int step = std::max(1, Room() / 50);
    const int smallest = std::min(Scaled(lclMinPanelSize), Room() / 2);
    const int from = lclSnapped == SnapSide::First    ? smallest - step
                     : lclSnapped == SnapSide::Second ? Room() - smallest + step
                                                      : FirstSize();
    // The keyboard stops at the smallest size; folding is a step of its own.
    TakeFirstSize(std::clamp(from + steps * step, smallest, Room() - smallest));
    Moved.Raise();
    return true;
}

bool ctlSplitPanel::ToggleSnap() {
    if (!lclAllowMove || lclMoving || !BarVisible() || !lclSnapToEdge) return false;
    lclSnapped = lclSnapped == SnapSide::None ? SnapSide::First : SnapSide::None;
    Arrange();
    Moved.Raise();
    return true;
}

} // namespace kavidex::controls
