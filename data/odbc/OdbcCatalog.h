// What a database holds, as ADO's schema rowsets tell it.
#pragma once

#include "data/Connection.h"
#include "data/odbc/OdbcLink.h"
#include "data/rows/RowSource.h"

namespace kavidex::data::odbc {

ResultRows ReadSchema(const LinkPtr& link, Schema schema);

} // namespace kavidex::data::odbc
