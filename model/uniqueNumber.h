// The running number of letters, shared by all users of a database.
#pragma once

#include <cstdint>

#include "data/Connection.h"

namespace kavidex::model {

// Raises the number (setting "Unique"/"Number") by one and gives it, in two statements. The second
// writes only where the first one's answer still stands, and both are repeated where it does not:
// no two callers get one number. Throws data::Error; the number is not raised then.
std::int64_t RaiseUniqueNumber(const data::ConnectionPtr& connection);

} // namespace kavidex::model
