// Which letters a database keeps.
#pragma once

#include <string>
#include <string_view>

#include "data/Connection.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::data {

// The collation of the columns that the schema makes; empty for an engine that keeps every letter
// by nature, and where the database does not tell (the log says so).
std::string CollationOf(const platform::Workstation& workstation, const ConnectionPtr& connection);

// CHAR columns of any other collation hold the letters of one code page: a server stores the rest
// as "?" without a word, or refuses it.
bool KeepsEveryLetter(std::string_view collation);

} // namespace kavidex::data
