// Where the servers that ODBC reaches differ.
#pragma once

#include <string>
#include <string_view>

#include "data/Recordset.h"

namespace kavidex::data::odbc {

struct Dialect {
    std::string_view dbmsName; // as "DBMS Name" answers; empty: as the driver says
    char openQuote, closeQuote;
    std::string_view identity; // reads the last auto number of this connection
    std::string_view rollback; // undoes the transaction, and is no error where there is none
    // Conditions with %1 for the quoted column and one ?, exact to the letter.
    std::string_view sameText, sameMoment, sameBytes;
};

const Dialect& DialectOf(std::string_view dbmsName);

// The name in the dialect's quotes, which are doubled inside it.
std::string Quoted(const Dialect& dialect, std::string_view name);
// Empty where the column's type cannot be compared exactly.
std::string SameAs(const Dialect& dialect, const Field& field);

} // namespace kavidex::data::odbc
