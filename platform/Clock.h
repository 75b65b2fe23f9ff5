// The local date and time, and the number and text forms that the records keep.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kavidex::platform {

struct DateTime {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, millisecond = 0;
};

class Clock {
public:
    virtual ~Clock() = default;
    virtual DateTime Now() = 0;
};

// Of a time counted as Windows does, in 100 ns since 1601 in UTC; null for 0 and for what lies
// outside the calendar.
std::optional<DateTime> LocalTime(std::uint64_t fileTime);

std::string DateNumber(const DateTime& when); // yyyymmdd
std::string TimeNumber(const DateTime& when); // hhmm
std::string DayFirst(const DateTime& when);   // dd-mm-yyyy

} // namespace kavidex::platform
