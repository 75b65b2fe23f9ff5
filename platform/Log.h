// The text log, for what the failure rules swallow. The workstation may name the file (section
// "DebugFlags", key "LogFile": the full path, empty for no log).
#pragma once

#include <string_view>

namespace kavidex::platform {

class Log {
public:
    virtual ~Log() = default;
    // One line: time, `where` (the routine), `what`. Never throws.
    virtual void Write(std::string_view where, std::string_view what) noexcept = 0;
};

} // namespace kavidex::platform
