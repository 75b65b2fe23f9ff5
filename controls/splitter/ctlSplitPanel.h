// The splitter control: two hosted controls side by side or one above the other, and a bar between
// them that the user can move. This is its geometry and its rules; the window only draws and asks.
#pragma once

#include <cstdint>

#include "controls/common/Event.h"

namespace kavidex::controls {

struct Box {
    int left = 0, top = 0, width = 0, height = 0;

    bool Contains(int x, int y) const {
        return x >= left && y >= top && x < left + width && y < top + height;
    }
    bool operator==(const Box&) const = default;
};

// A control that the splitter hosts; it belongs to whoever made it.
class HostedControl {
public:
    virtual ~HostedControl() = default;
    virtual void Place(const Box& place) = 0; // pixels within the splitter
    virtual void Show(bool visible) = 0;
};

enum class SnapSide { None, First, Second }; // which panel is folded away

// Sizes are pixels at 96 dots an inch; the window scales them through SetScale.
class ctlSplitPanel {
public:
    static constexpr std::int32_t wholePosition = 10000;

    HostedControl* Control1() const { return lclControls[0]; }
    HostedControl* Control2() const { return lclControls[1]; }
    void SetControl1(HostedControl* control) {
        lclControls[0] = control;
        Arrange();
    }
    void SetControl2(HostedControl* control) {
        lclControls[1] = control;
        Arrange();
    }
    bool Control1Visible() const { return lclVisible[0]; }
    bool Control2Visible() const { return lclVisible[1]; }
    void ShowControls(bool first, bool second);

    bool Horizontal() const { return lclHorizontal; } // true: the bar lies across, one panel on top
    void SetHorizontal(bool horizontal);
    // The first panel's share of the room, in ten-thousandths.
    std::int32_t Position() const { return lclPosition; }
    void SetPosition(std::int32_t position);
    std::int32_t MinPanelSize() const { return lclMinPanelSize; }
    void SetMinPanelSize(std::int32_t size);
    std::int32_t SplitterWidth() const { return lclSplitterWidth; }
    void SetSplitterWidth(std::int32_t width);
    bool AllowMove() const { return lclAllowMove; }
    void SetAllowMove(bool allow) { lclAllowMove = allow; }
    // A bar pushed far into the smallest size folds that panel away.
    bool SnapToEdge() const { return lclSnapToEdge; }
    void SetSnapToEdge(bool snap);
    SnapSide Snapped() const { return lclSnapped; }
    // 0: the system's colours.
    std::int32_t DragColor() const { return lclDragColor; }
    void SetDragColor(std::int32_t colour) {
        lclDragColor = colour;
        Changed.Raise();
    }
    std::int32_t BackColor() const { return lclBackColor; }
    void SetBackColor(std::int32_t colour) {
        lclBackColor = colour;
        Changed.Raise();
    }

    // The room that the panels share; places them anew.
    void SetSize(int width, int height);
    void SetScale(int dotsPerInch);
    bool BarVisible() const { return lclVisible[0] && lclVisible[1]; }
    Box Bar() const;            // empty while only one panel shows
    Box Panel(int which) const; // 0 or 1; empty when it does not show

    // Moving by the mouse: coordinates within the splitter.
    bool BeginMove(int x, int y); // false: not on the bar, or the bar may not move
    void MoveTo(int x, int y);
    void EndMove();
    void CancelMove(); // the bar goes back to where the move began
    bool Moving() const { return lclMoving; }
    // Moving by the keyboard: `steps` of a fiftieth of the room, below 0 towards the first panel.
    bool MoveBy(int steps);
    // Folds the first panel away or unfolds what is folded; for a double click and Enter.
    bool ToggleSnap();

    Event<> Moved;   // the user moved the bar: the position is worth keeping
    Event<> Changed; // the window has to draw anew

private:
    int Scaled(int size) const { return size * lclDotsPerInch / 96; }
    int Room() const; // what the two panels share
    int FirstSize() const;
    void TakeFirstSize(int size);
    void Arrange();

    HostedControl* lclControls[2] = {};
    bool lclVisible[2] = {true, true};
    bool lclHorizontal = false, lclAllowMove = true, lclSnapToEdge = true, lclMoving = false;
    std::int32_t lclPosition = 3300, lclMinPanelSize = 80, lclSplitterWidth = 6;
    std::int32_t lclDragColor = 0, lclBackColor = 0;
    SnapSide lclSnapped = SnapSide::None;
    int lclWidth = 0, lclHeight = 0, lclDotsPerInch = 96;
    int lclGrip = 0; // where within the bar the mouse holds it
    std::int32_t lclPositionBefore = 0;
    SnapSide lclSnappedBefore = SnapSide::None;
};

} // namespace kavidex::controls
