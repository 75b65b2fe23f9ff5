// Where a database is: databases of two servers may have one name.
#pragma once

#include <string>

#include "data/Connection.h"

namespace kavidex::data {

// One line: its name and, where the connection tells them, its server and data source. Empty when
// it tells no name or is not open.
std::string AddressOf(const Connection& connection);

} // namespace kavidex::data
