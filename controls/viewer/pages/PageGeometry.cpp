#include "controls/viewer/pages/PageGeometry.h"

#include <algorithm>
#include <cmath>

namespace kavidex::controls {

namespace {

// Each step makes the page larger by a quarter; 100 % is one of them.
constexpr double step = 1.25;
constexpr double leastZoom = 0.02, mostZoom = 16;

constexpr struct {
    FitMode mode;
    std::string_view name;
} fitModes[] = {{FitMode::Best, "best"}, {FitMode::Height, "height"}, {FitMode::Width, "width"}};

double Stepped(double zoom, int steps) {
    const double at = std::log(zoom) / std::log(step);
    // What lies between two steps goes to the next one that way.
    const double from = steps > 0 ? std::floor(at + 1e-6) : std::ceil(at - 1e-6);
    return std::clamp(std::pow(step, from + steps), leastZoom, mostZoom);
}

} // namespace

std::string_view NameOf(FitMode mode) {
    for (const auto& row : fitModes)
        if (row.mode == mode) return row.name;
    return fitModes[0].name;
}

FitMode FitModeOf(std::string_view name) {
    for (const auto& row : fitModes)
        if (row.name == name) return row.mode;
    return FitMode::Best;
}

void PageGeometry::SetRoom(int width, int height, int bar, int gap) {
    lclWidth = std::max(0, width);
    lclHeight = std::max(0, height);
    lclBar = bar;
    lclGap = gap;
    ScrollTo(lclLeft, lclTop);
}

int PageGeometry::Percent() const { return static_cast<int>(std::lround(lclZoom * 100)); }

int PageGeometry::ShownWidth() const {
    return std::max(1, static_cast<int>(std::lround(lclPage.width * ZoomX())));
}

int PageGeometry::ShownHeight() const {
    return std::max(1, static_cast<int>(std::lround(lclPage.height * ZoomY())));
}

// A bar takes room, and so may call for the other one.
bool PageGeometry::HasHorizontalBar() const {
    return ContentWidth() > lclWidth ||
           (ContentWidth() > lclWidth - lclBar && ContentHeight() > lclHeight);
}

bool PageGeometry::HasVerticalBar() const {
    return ContentHeight() > lclHeight ||
           (ContentHeight() > lclHeight - lclBar && ContentWidth() > lclWidth);
}

void PageGeometry::Fit(FitMode mode) {
    const double width = std::max(1U, lclPage.width),
                 height = std::max(1U, lclPage.height) * lclPage.Stretch();
    const int roomX = std::max(1, lclWidth - 2 * lclGap),
              roomY = std::max(1, lclHeight - 2 * lclGap);
    const double fitX = roomX / width, fitY = roomY / height;
    lclZoom = std::min(fitX, fitY);
    // Where the other side does not fit, its bar takes room of this one.
    if (mode == FitMode::Width && fitX * height > roomY)
        lclZoom = std::max(1, roomX - lclBar) / width;
    else if (mode == FitMode::Width)
        lclZoom = fitX;
    if (mode == FitMode::Height && fitY * width > roomX)
        lclZoom = std::max(1, roomY - lclBar) / height;
    else if (mode == FitMode::Height)
        lclZoom = fitY;
    lclZoom = std::clamp(lclZoom, leastZoom / 10, mostZoom);
    ScrollTo(lclLeft, lclTop);
}

bool PageGeometry::CanZoom(int steps) const {
    return steps > 0 ? lclZoom < mostZoom : lclZoom > leastZoom;
}

void PageGeometry::Zoom(int steps, int x, int y) {
    if (!CanZoom(steps)) return;
    const PagePlace under = ToPage(x, y);
    lclZoom = Stepped(lclZoom, steps);
    ScrollTo(static_cast<int>(std::lround(under.x * ZoomX())) + lclGap - x,
             static_cast<int>(std::lround(under.y * ZoomY())) + lclGap - y);
}

void PageGeometry::ScrollTo(int left, int top) {
    lclLeft = std::clamp(left, 0, std::max(0, ContentWidth() - Width()));
    lclTop = std::clamp(top, 0, std::max(0, ContentHeight() - Height()));
}

int PageGeometry::OriginX() const {
    return ContentWidth() <= Width() ? (Width() - ShownWidth()) / 2 : lclGap - lclLeft;
}

int PageGeometry::OriginY() const {
    return ContentHeight() <= Height() ? (Height() - ShownHeight()) / 2 : lclGap - lclTop;
}

PagePlace PageGeometry::ToPage(int x, int y) const {
    return {(x - OriginX()) / ZoomX(), (y - OriginY()) / ZoomY()};
}

int PageGeometry::ToRoomX(double x) const {
    return OriginX() + static_cast<int>(std::lround(x * ZoomX()));
}

int PageGeometry::ToRoomY(double y) const {
    return OriginY() + static_cast<int>(std::lround(y * ZoomY()));
}

} // namespace kavidex::controls
