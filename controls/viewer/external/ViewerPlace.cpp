#include "controls/viewer/external/ViewerPlace.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/General.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::string_view section = "ViewerSetting";
constexpr std::int32_t captionHeight = 400, farthest = 1000000;
constexpr ViewerSize least{4800, 3600}; // 320 by 240 pixels at 96 dots an inch

struct Row {
    std::string_view key;
    std::int32_t ViewerPlace::*member;
    std::int32_t least = 0; // of a size
};
constexpr Row rows[] = {{"Top", &ViewerPlace::top},
                        {"Left", &ViewerPlace::left},
                        {"Height", &ViewerPlace::height, least.height},
                        {"Width", &ViewerPlace::width, ViewerPlace{}.width}};

bool Touches(const ViewerPlace& place, const ScreenArea& area) {
    return place.left < area.right && place.left + place.width > area.left &&
           place.top < area.bottom && place.top + place.height > area.top;
}

// The smallest area around the monitors that the place touches; nothing when it touches none.
bool AreaOf(const ViewerPlace& place, std::span<const ScreenArea> monitors, ScreenArea& area) {
    bool any = false;
    for (const auto& monitor : monitors) {
        if (!Touches(place, monitor)) continue;
        if (!std::exchange(any, true)) {
            area = monitor;
            continue;
        }
        area.left = std::min(area.left, monitor.left);
        area.top = std::min(area.top, monitor.top);
        area.right = std::max(area.right, monitor.right);
        area.bottom = std::max(area.bottom, monitor.bottom);
    }
    return any;
}

void PullBack(std::int32_t& start, std::int32_t& size, std::int32_t low, std::int32_t high) {
    if (start >= high) start = high - size;
    start = std::max(start, low);
    size = std::min(size, high - start);
}

} // namespace

ViewerPlace ReadViewerPlace(const platform::Workstation& workstation) {
    ViewerPlace place;
    for (const auto& row : rows) {
        const auto text =
            platform::GetRegSetting(workstation, platform::applicationName, section, row.key, "");
        const double number = platform::Val(text);
        if (platform::Trim(text).empty() || (row.least > 0 && number < 1)) continue;
        place.*row.member = static_cast<std::int32_t>(
            std::clamp<double>(number, row.least > 0 ? row.least : -farthest, farthest));
    }
    return place;
}

void SaveViewerPlace(const platform::Workstation& workstation, const ViewerPlace& place) {
    for (const auto& row : rows)
        platform::SaveRegSetting(workstation, platform::applicationName, section, row.key,
                                 std::to_string(place.*row.member));
}

ViewerPlace OnScreen(ViewerPlace place, std::span<const ScreenArea> monitors) {
    if (monitors.empty()) return place;
    auto caption = place;
    caption.height = std::min(captionHeight, place.height);
    ScreenArea area = monitors.front();
    if (!AreaOf(caption, monitors, area)) AreaOf(place, monitors, area);
    PullBack(place.top, place.height, area.top, area.bottom);
    PullBack(place.left, place.width, area.left, area.right);
    return place;
}

ViewerSize LeastSize(const ViewerPlace& opened) {
    return {std::min(least.width, opened.width), std::min(least.height, opened.height)};
}

} // namespace kavidex::controls
