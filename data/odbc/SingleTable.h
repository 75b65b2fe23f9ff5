// Which table a plain statement reads, and which of the fields are its key.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/odbc/OdbcLink.h"

namespace kavidex::data::odbc {

// The one table of "select * from t [where ...] [order by ...]", without quotes; empty for any
// other statement (expressions, joins, groups).
std::string SingleTable(std::string_view statement);

// Sets `key` on the fields that are part of their base table's primary key.
void MarkKeys(const LinkPtr& link, std::vector<Field>& fields);

} // namespace kavidex::data::odbc
