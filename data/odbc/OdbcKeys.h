// Which fields of a result are the key of their table.
#pragma once

#include <string>
#include <vector>

#include "data/odbc/OdbcLink.h"

namespace kavidex::data::odbc {

// Where the columns of a result come from. The driver tells only while the rows are pending; the
// keys are asked for once they are read, since many servers run one statement at a time.
struct Origins {
    struct Base {
        std::string table, column;
    };
    std::string table;         // the one table of a plain statement
    std::vector<Base> columns; // as the driver names them; empty where the table says enough
};

// Sets base table, base column and `key` of the fields. What the database said is kept with the
// link until a table's definition changes through it. Returns why the keys could not be asked for,
// empty when they could.
std::string MarkKeys(const LinkPtr& link, const Origins& origins, std::vector<Field>& fields);

} // namespace kavidex::data::odbc
