// Connections through ODBC: MySQL, MariaDB and SQL Server without ADO, on every system.
#pragma once

#include <string_view>

#include "data/Connection.h"

namespace kavidex::data {

// `connectionString` as ODBC takes it: "DRIVER=...;SERVER=...;DATABASE=...;UID=...;PWD=...".
// Throws data::Error; its text never holds the connection string.
// A MariaDB server answers "MySQL" as its "DBMS Name", since that is the dialect it speaks.
ConnectionPtr OpenOdbc(std::string_view connectionString);

} // namespace kavidex::data
