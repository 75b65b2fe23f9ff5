// How a page lies in the room that shows it: zoom, fit, scrolling. Pixels of the screen unless it
// says otherwise.
#pragma once

#include <string_view>

#include "controls/viewer/pages/PageSource.h"

namespace kavidex::controls {

enum class FitMode { Best, Height, Width };

// As it is kept: "best", "height", "width"; anything else is the best.
std::string_view NameOf(FitMode mode);
FitMode FitModeOf(std::string_view name);

struct PagePlace {
    double x = 0, y = 0;
};

class PageGeometry {
public:
    // The room with its scroll bars, if there were any; how thick those are; the gap around the
    // page.
    void SetRoom(int width, int height, int bar, int gap);
    void SetPage(const PageShape& page) { lclPage = page; }
    const PageShape& Page() const { return lclPage; }

    // Screen pixels a pixel of the page; they differ where its resolutions do.
    double ZoomX() const { return lclZoom; }
    double ZoomY() const { return lclZoom * lclPage.Stretch(); }
    int Percent() const;

    void Fit(FitMode mode);
    // By even steps, the place under that point of the room stays there.
    void Zoom(int steps, int x, int y);
    bool CanZoom(int steps) const;

    // The room between the bars, and the page in it at its full size.
    int Width() const { return lclWidth - (HasVerticalBar() ? lclBar : 0); }
    int Height() const { return lclHeight - (HasHorizontalBar() ? lclBar : 0); }
    bool HasHorizontalBar() const;
    bool HasVerticalBar() const;
    int ShownWidth() const;
    int ShownHeight() const;
    int ContentWidth() const { return ShownWidth() + 2 * lclGap; } // what is scrolled over
    int ContentHeight() const { return ShownHeight() + 2 * lclGap; }
    int Left() const { return lclLeft; } // how far it is scrolled
    int Top() const { return lclTop; }
    void ScrollTo(int left, int top); // as far as there is something
    int OriginX() const;              // where the page begins in the room
    int OriginY() const;

    PagePlace ToPage(int x, int y) const; // from a point of the room
    int ToRoomX(double x) const;
    int ToRoomY(double y) const;

private:
    PageShape lclPage;
    int lclWidth = 0, lclHeight = 0, lclBar = 0, lclGap = 0;
    double lclZoom = 1;
    int lclLeft = 0, lclTop = 0;
};

} // namespace kavidex::controls
