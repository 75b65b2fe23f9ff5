#include <windows.h>

#include "platform/Clock.h"

namespace kavidex::platform {

std::optional<DateTime> LocalTime(std::uint64_t fileTime) {
    const FILETIME ticks{static_cast<DWORD>(fileTime), static_cast<DWORD>(fileTime >> 32)};
    SYSTEMTIME utc{}, local{};
    if (fileTime == 0 || !FileTimeToSystemTime(&ticks, &utc) ||
        !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local) || local.wYear > 9999)
        return std::nullopt;
    return DateTime{local.wYear,   local.wMonth,  local.wDay,         local.wHour,
                    local.wMinute, local.wSecond, local.wMilliseconds};
}

} // namespace kavidex::platform
