// Which table a plain statement reads.
#pragma once

#include <string>
#include <string_view>

namespace kavidex::data::odbc {

// The one table of "select * from t [where ...] [order by ...]", without quotes; empty for any
// other statement (expressions, joins, groups).
std::string SingleTable(std::string_view statement);

// Inserts, updates and deletes: what leaves the definitions of the tables alone.
bool ChangesRowsOnly(std::string_view statement);

} // namespace kavidex::data::odbc
