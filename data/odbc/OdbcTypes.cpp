#include "data/odbc/OdbcTypes.h"

namespace kavidex::data::odbc {

namespace {

constexpr TypeRow types[] = {
    {SQL_BIT, AdoType::Boolean, Fetched::Bool},
    {SQL_TINYINT, AdoType::TinyInt, Fetched::Long},
    {SQL_SMALLINT, AdoType::SmallInt, Fetched::Long},
    {SQL_INTEGER, AdoType::Integer, Fetched::Long},
    {SQL_BIGINT, AdoType::BigInt, Fetched::BigInt},
    {SQL_REAL, AdoType::Single, Fetched::Double},
    {SQL_FLOAT, AdoType::Double, Fetched::Double},
    {SQL_DOUBLE, AdoType::Double, Fetched::Double},
    {SQL_DECIMAL, AdoType::Numeric, Fetched::Double},
    {SQL_NUMERIC, AdoType::Numeric, Fetched::Double},
    {SQL_CHAR, AdoType::Char, Fetched::Text},
    {SQL_VARCHAR, AdoType::VarChar, Fetched::Text},
    {SQL_LONGVARCHAR, AdoType::LongVarChar, Fetched::Text},
    {SQL_WCHAR, AdoType::WChar, Fetched::Text},
    {SQL_WVARCHAR, AdoType::VarWChar, Fetched::Text},
    {SQL_WLONGVARCHAR, AdoType::LongVarWChar, Fetched::Text},
    {SQL_GUID, AdoType::Guid, Fetched::Text},
    {SQL_BINARY, AdoType::Binary, Fetched::Bytes},
    {SQL_VARBINARY, AdoType::VarBinary, Fetched::Bytes},
    {SQL_LONGVARBINARY, AdoType::LongVarBinary, Fetched::Bytes},
    {SQL_TYPE_DATE, AdoType::DBDate, Fetched::Date},
    {SQL_TYPE_TIME, AdoType::DBTime, Fetched::Time},
    {SQL_TYPE_TIMESTAMP, AdoType::DBTimeStamp, Fetched::TimeStamp},
};

AdoType Unsigned(AdoType type) {
    switch (type) {
    case AdoType::TinyInt: return AdoType::UnsignedTinyInt;
    case AdoType::SmallInt: return AdoType::UnsignedSmallInt;
    case AdoType::Integer: return AdoType::UnsignedInt;
    case AdoType::BigInt: return AdoType::UnsignedBigInt;
    default: return type;
    }
}

} // namespace

TypeRow TypeOf(SQLSMALLINT sqlType, SQLULEN size, SQLSMALLINT digits, bool isUnsigned) {
    TypeRow row{sqlType, AdoType::VarWChar, Fetched::Text};
    for (const TypeRow& known : types)
        if (known.sqlType == sqlType) row = known;
    if (isUnsigned) {
        row.ado = Unsigned(row.ado);
        if (row.ado == AdoType::UnsignedInt) row.fetched = Fetched::BigInt;
        if (row.ado == AdoType::UnsignedBigInt) row.fetched = Fetched::Double;
    }
    constexpr SQLULEN exactDigits = 18; // that a 64-bit number always holds
    if (row.ado == AdoType::Numeric && digits == 0 && size <= exactDigits)
        row.fetched = Fetched::BigInt;
    return row;
}

bool IsWholeNumber(SQLSMALLINT sqlType) {
    for (const TypeRow& known : types)
        if (known.sqlType == sqlType) return Unsigned(known.ado) != known.ado;
    return false;
}

SQLSMALLINT CTypeOf(Fetched fetched) {
    switch (fetched) {
    case Fetched::Bool: return SQL_C_BIT;
    case Fetched::Long: return SQL_C_SLONG;
    case Fetched::BigInt: return SQL_C_SBIGINT;
    case Fetched::Double: return SQL_C_DOUBLE;
    case Fetched::Text: return SQL_C_WCHAR;
    case Fetched::Bytes: return SQL_C_BINARY;
    case Fetched::Date: return SQL_C_TYPE_DATE;
    case Fetched::Time: return SQL_C_TYPE_TIME;
    case Fetched::TimeStamp: return SQL_C_TYPE_TIMESTAMP;
    }
    return SQL_C_WCHAR;
}

} // namespace kavidex::data::odbc
