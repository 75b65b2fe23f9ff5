// The folders that a new tree starts with.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/Connection.h"
#include "platform/Clock.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls {

// The names in a list: "a;b;c", or "Dossiertype=" and a type for the folders that tblDossierTabs
// keeps for it. A name with backslashes is a path: "a\b" is b within a. A database without those
// tables has none for any type (the log tells); throws data::Error where they cannot be read.
std::vector<std::string> DefaultTabs(std::string_view list, const data::ConnectionPtr& connection,
                                     const platform::Workstation& workstation);

// %DD %MM %YYYY %hh %mm %ss by the time, and a percent sign with number signs by `number`, padded
// with zeros to as many digits.
std::string FillTokens(std::string_view name, const platform::DateTime& now, int number);

} // namespace kavidex::controls
