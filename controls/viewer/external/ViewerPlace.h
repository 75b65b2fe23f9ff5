// Where the external viewer window stands, in twips, as the workstation keeps it.
#pragma once

#include <cstdint>
#include <span>

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls {

struct ViewerPlace {
    std::int32_t top = 0, left = 512, height = 4000, width = 2000;
    bool operator==(const ViewerPlace&) const = default;
};

// Of one monitor, without what the system keeps for itself.
struct ScreenArea {
    std::int32_t left = 0, top = 0, right = 0, bottom = 0;
};

// What is missing, or is no size, has its default; a size that is too small to see a document in is
// made larger.
ViewerPlace ReadViewerPlace(const platform::Workstation& workstation);
void SaveViewerPlace(const platform::Workstation& workstation, const ViewerPlace& place);

// The place pulled back onto the screen: the monitors that its caption touches, else those that any
// of it touches, else the first. A window beyond the right or the bottom edge ends at it, one
// beyond the left or the top begins there, and what then still reaches out is cut off.
ViewerPlace OnScreen(ViewerPlace place, std::span<const ScreenArea> monitors);

// The least that the user can make a window of that opened so: the viewer with its toolbar and
// status bar, or what it opened with where that is less.
struct ViewerSize {
    std::int32_t width = 0, height = 0;
    bool operator==(const ViewerSize&) const = default;
};
ViewerSize LeastSize(const ViewerPlace& opened);

} // namespace kavidex::controls
