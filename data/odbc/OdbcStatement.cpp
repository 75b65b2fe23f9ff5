#include "data/odbc/OdbcStatement.h"

#include <algorithm>
#include <limits>

#include "data/odbc/SingleTable.h"
#include "data/odbc/Wide.h"
#include "platform/text.h"

namespace kavidex::data::odbc {

OdbcStatement::OdbcStatement(LinkPtr link) : lclLink(std::move(link)) {
    const SQLHDBC connection = lclLink->Ready();
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, connection, &lclHandle)))
        lclLink->Fail(SQL_HANDLE_DBC, connection);
}

OdbcStatement::~OdbcStatement() {
    // Closing the connection freed its statements with it.
    if (lclLink->IsOpen()) SQLFreeHandle(SQL_HANDLE_STMT, lclHandle);
}

void OdbcStatement::Check(SQLRETURN rc) {
    if (!SQL_SUCCEEDED(rc) && rc != SQL_NO_DATA) lclLink->Fail(SQL_HANDLE_STMT, lclHandle, lclText);
}

void OdbcStatement::Run(std::string_view text, const std::vector<Value>& values) {
    lclText = text;
    std::u16string wide = platform::ToUtf16(text);
    if (values.empty()) {
        Check(SQLExecDirectW(lclHandle, Raw(wide), Length<SQLINTEGER>(wide)));
    } else {
        Check(SQLPrepareW(lclHandle, Raw(wide), Length<SQLINTEGER>(wide)));
        for (std::size_t i = 0; i < values.size(); ++i)
            Bind(static_cast<SQLUSMALLINT>(i + 1), values[i]);
        Check(SQLExecute(lclHandle));
    }
    CountColumns();
    if (!HasRows() && !ChangesRowsOnly(text)) lclLink->KnownKeys().clear();
}

void OdbcStatement::RunCatalog(std::string_view name,
                               const std::function<SQLRETURN(SQLHSTMT)>& call) {
    lclText = name;
    Check(call(lclHandle));
    CountColumns();
}

void OdbcStatement::CountColumns() { Check(SQLNumResultCols(lclHandle, &lclColumns)); }

void OdbcStatement::Bind(SQLUSMALLINT number, const Value& value) {
    SQLLEN& length = lclLengths.emplace_back(0);
    const auto bind = [&](SQLSMALLINT cType, SQLSMALLINT sqlType, SQLULEN size, const void* data) {
        Check(SQLBindParameter(lclHandle, number, SQL_PARAM_INPUT, cType, sqlType, size, 0,
                               const_cast<void*>(data), std::max<SQLLEN>(length, 0), &length));
    };
    if (IsNull(value)) {
        length = SQL_NULL_DATA;
        bind(SQL_C_WCHAR, SQL_WVARCHAR, 1, nullptr);
    } else if (const auto* flag = std::get_if<bool>(&value)) {
        bind(SQL_C_BIT, SQL_BIT, 1, flag);
    } else if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        bind(SQL_C_SBIGINT, SQL_BIGINT, 19, whole);
    } else if (const auto* real = std::get_if<double>(&value)) {
        bind(SQL_C_DOUBLE, SQL_DOUBLE, 15, real);
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        constexpr std::size_t longest = 4000; // of an ordinary wide text in every server
        std::u16string& wide = lclTexts.emplace_back(platform::ToUtf16(*text));
        length = static_cast<SQLLEN>(wide.size() * sizeof(char16_t));
        bind(SQL_C_WCHAR, wide.size() > longest ? SQL_WLONGVARCHAR : SQL_WVARCHAR,
             std::max<std::size_t>(wide.size(), 1), wide.data());
    } else if (const auto* bytes = std::get_if<Bytes>(&value)) {
        constexpr std::size_t longest = 8000;
        static const std::uint8_t none = 0;
        length = static_cast<SQLLEN>(bytes->size());
        bind(SQL_C_BINARY, bytes->size() > longest ? SQL_LONGVARBINARY : SQL_VARBINARY,
             std::max<std::size_t>(bytes->size(), 1), bytes->empty() ? &none : bytes->data());
    }
}

std::int64_t OdbcStatement::RowCount() {
    SQLLEN rows = -1;
    return SQL_SUCCEEDED(SQLRowCount(lclHandle, &rows)) ? rows : -1;
}

void OdbcStatement::Finish() {
    for (;;) {
        const SQLRETURN rc = SQLMoreResults(lclHandle);
        if (rc == SQL_NO_DATA) return;
        Check(rc);
    }
}

std::string OdbcStatement::Attribute(SQLUSMALLINT column, SQLUSMALLINT which) {
    std::u16string text(256, u'\0');
    SQLSMALLINT bytes = 0;
    if (!SQL_SUCCEEDED(SQLColAttributeW(lclHandle, column, which, Raw(text),
                                        static_cast<SQLSMALLINT>(text.size() * 2), &bytes,
                                        nullptr)))
        return {};
    return UpToZero(text);
}

Field OdbcStatement::DescribeColumn(SQLUSMALLINT column) {
    std::u16string name(256, u'\0');
    SQLSMALLINT length = 0, sqlType = 0, digits = 0, nullable = SQL_NULLABLE_UNKNOWN;
    SQLULEN size = 0;
    Check(SQLDescribeColW(lclHandle, column, Raw(name), Length<SQLSMALLINT>(name), &length,
                          &sqlType, &size, &digits, &nullable));
    SQLLEN isUnsigned = SQL_FALSE;
    if (IsWholeNumber(sqlType))
        SQLColAttributeW(lclHandle, column, SQL_DESC_UNSIGNED, nullptr, 0, nullptr, &isUnsigned);
    const TypeRow type = TypeOf(sqlType, size, digits, isUnsigned == SQL_TRUE);
    lclTypes.push_back(type);
    lclSizes.push_back(size);

    Field field;
    field.name = UpToZero(name);
    field.type = type.ado;
    field.definedSize = static_cast<std::int64_t>(
        std::min<SQLULEN>(size, std::numeric_limits<std::int32_t>::max()));
    field.nullable = nullable != SQL_NO_NULLS;
    return field;
}

std::vector<Field> OdbcStatement::Describe() {
    std::vector<Field> fields;
    for (SQLUSMALLINT i = 1; i <= lclColumns; ++i) fields.push_back(DescribeColumn(i));
    return fields;
}

// Two calls a column, saved where the keys of the one table are known.
Origins OdbcStatement::ReadOrigins() {
    Origins origins{SingleTable(lclText), {}};
    const auto known = lclLink->KnownKeys().find(origins.table);
    if (known != lclLink->KnownKeys().end() && !known->second.empty()) return origins;
    for (SQLUSMALLINT i = 1; i <= lclColumns; ++i)
        origins.columns.push_back(
            {Attribute(i, SQL_DESC_BASE_TABLE_NAME), Attribute(i, SQL_DESC_BASE_COLUMN_NAME)});
    return origins;
}

} // namespace kavidex::data::odbc
