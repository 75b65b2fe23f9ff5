#include "platform/Clock.h"

#include <cstdio>

namespace kavidex::platform {

namespace {

// Wide enough for whatever the fields hold.
using Buffer = char[64];

} // namespace

std::string DateNumber(const DateTime& when) {
    Buffer text;
    std::snprintf(text, sizeof text, "%04d%02d%02d", when.year, when.month, when.day);
    return text;
}

std::string TimeNumber(const DateTime& when) {
    Buffer text;
    std::snprintf(text, sizeof text, "%02d%02d", when.hour, when.minute);
    return text;
}

std::string DayFirst(const DateTime& when) {
    Buffer text;
    std::snprintf(text, sizeof text, "%02d-%02d-%04d", when.day, when.month, when.year);
    return text;
}

} // namespace kavidex::platform
