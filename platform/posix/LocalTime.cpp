#include <time.h>

#include "platform/Clock.h"

namespace kavidex::platform {

std::optional<DateTime> LocalTime(std::uint64_t fileTime) {
    constexpr std::uint64_t second = 10000000, end = std::uint64_t{1} << 62;
    constexpr std::int64_t from1601To1970 = 11644473600;
    if (fileTime == 0 || fileTime >= end) return std::nullopt;
    const time_t seconds = static_cast<std::int64_t>(fileTime / second) - from1601To1970;
    tm local{};
    if (!::localtime_r(&seconds, &local) || local.tm_year + 1900 > 9999) return std::nullopt;
    return DateTime{local.tm_year + 1900,
                    local.tm_mon + 1,
                    local.tm_mday,
                    local.tm_hour,
                    local.tm_min,
                    local.tm_sec,
                    static_cast<int>(fileTime % second / 10000)};
}

} // namespace kavidex::platform
