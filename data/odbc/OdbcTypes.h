// ODBC's column types: what ADO calls them and how their values are fetched.
#pragma once

#include "OdbcHeaders.h"
#include "data/Value.h"

namespace kavidex::data::odbc {

enum class Fetched { Bool, Long, BigInt, Double, Text, Bytes, Date, Time, TimeStamp };

struct TypeRow {
    SQLSMALLINT sqlType;
    AdoType ado;
    Fetched fetched;
};

// An unknown type is read as text.
TypeRow TypeOf(SQLSMALLINT sqlType, SQLULEN size, SQLSMALLINT digits, bool isUnsigned);

bool IsWholeNumber(SQLSMALLINT sqlType); // with or without a sign

SQLSMALLINT CTypeOf(Fetched fetched);

} // namespace kavidex::data::odbc
