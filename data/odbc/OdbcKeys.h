// Which fields of a result are the key of their table.
#pragma once

#include <vector>

#include "data/odbc/OdbcLink.h"

namespace kavidex::data::odbc {

// Sets `key` on the fields that are part of their base table's primary key; true when any is. What
// the database said is kept with the link until a table's definition changes through it.
bool MarkKeys(const LinkPtr& link, std::vector<Field>& fields);

} // namespace kavidex::data::odbc
