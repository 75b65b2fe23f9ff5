// Rows of a statement into memory: short columns bound and fetched in blocks, long ones piece by
// piece.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>

#include "data/Error.h"
#include "data/odbc/OdbcStatement.h"
#include "data/odbc/Wide.h"

namespace kavidex::data::odbc {

struct OdbcStatement::Column {
    Fetched fetched = Fetched::Text;
    std::size_t width = 0; // bytes of one value
    std::unique_ptr<unsigned char[]> data;
    std::unique_ptr<SQLLEN[]> lengths;
};

namespace {

constexpr SQLULEN longestBound = 2000; // characters or bytes of a bound column
constexpr std::size_t blockBytes = std::size_t{64} * 1024, mostRows = 256;

// A character outside the basic plane takes two units, and the last is the terminating zero.
std::size_t WidthOf(Fetched fetched, SQLULEN size) {
    switch (fetched) {
    case Fetched::Bool: return 1;
    case Fetched::Long: return sizeof(SQLINTEGER);
    case Fetched::BigInt: return sizeof(SQLBIGINT);
    case Fetched::Double: return sizeof(SQLDOUBLE);
    case Fetched::Text: return (size * 2 + 1) * sizeof(char16_t);
    case Fetched::Bytes: return size;
    case Fetched::Date: return sizeof(SQL_DATE_STRUCT);
    case Fetched::Time: return sizeof(SQL_TIME_STRUCT);
    case Fetched::TimeStamp: return sizeof(SQL_TIMESTAMP_STRUCT);
    }
    return 0;
}

bool IsLong(Fetched fetched, SQLULEN size) {
    return (fetched == Fetched::Text || fetched == Fetched::Bytes) &&
           (size == 0 || size > longestBound);
}

template <class Plain>
Plain As(const unsigned char* data) {
    Plain value;
    std::memcpy(&value, data, sizeof value);
    return value;
}

std::string MomentText(Fetched fetched, const unsigned char* data) {
    char text[96] = "";
    if (fetched == Fetched::Date) {
        const auto day = As<SQL_DATE_STRUCT>(data);
        std::snprintf(text, sizeof text, "%04d-%02d-%02d", day.year, day.month, day.day);
    } else if (fetched == Fetched::Time) {
        const auto time = As<SQL_TIME_STRUCT>(data);
        std::snprintf(text, sizeof text, "%02d:%02d:%02d", time.hour, time.minute, time.second);
    } else {
        const auto moment = As<SQL_TIMESTAMP_STRUCT>(data);
        std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", moment.year, moment.month,
                      moment.day, moment.hour, moment.minute, moment.second);
    }
    return text;
}

} // namespace

std::vector<OdbcStatement::Column> OdbcStatement::BindColumns(std::size_t rows,
                                                              std::size_t& firstLong) {
    std::vector<Column> columns(firstLong);
    for (std::size_t i = 0; i < firstLong; ++i) {
        Column& column = columns[i];
        column.fetched = lclTypes[i].fetched;
        column.width = WidthOf(column.fetched, lclSizes[i]);
        column.data.reset(new unsigned char[column.width * rows]);
        column.lengths.reset(new SQLLEN[rows]);
        Check(SQLBindCol(lclHandle, static_cast<SQLUSMALLINT>(i + 1), CTypeOf(column.fetched),
                         column.data.get(), static_cast<SQLLEN>(column.width),
                         column.lengths.get()));
    }
    return columns;
}

RowStore OdbcStatement::FetchAll() {
    // From the first long column on, values are asked for one by one, in order: not every driver
    // answers before a bound column, or in a block of several rows.
    std::size_t firstLong = lclTypes.size(), rowBytes = 1;
    for (std::size_t i = 0; i < lclTypes.size(); ++i) {
        if (IsLong(lclTypes[i].fetched, lclSizes[i])) {
            firstLong = i;
            break;
        }
        rowBytes += WidthOf(lclTypes[i].fetched, lclSizes[i]);
    }
    std::size_t rows = std::clamp<std::size_t>(blockBytes / rowBytes, 1, mostRows);
    if (firstLong < lclTypes.size()) rows = 1;

    SQLULEN fetched = 0;
    Check(
        SQLSetStmtAttrW(lclHandle, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(rows), 0));
    Check(SQLSetStmtAttrW(lclHandle, SQL_ATTR_ROWS_FETCHED_PTR, &fetched, 0));
    std::vector<SQLUSMALLINT> states(rows, SQL_ROW_SUCCESS);
    Check(SQLSetStmtAttrW(lclHandle, SQL_ATTR_ROW_STATUS_PTR, states.data(), 0));
    const std::vector<Column> columns = BindColumns(rows, firstLong);

    RowStore store(lclTypes.size());
    do {
        const SQLRETURN rc = SQLFetch(lclHandle);
        if (rc == SQL_NO_DATA) break;
        Check(rc);
        for (std::size_t row = 0; row < fetched; ++row) {
            // One row of a block may fail, and the fetch succeed; its values are not there.
            if (states[row] == SQL_ROW_ERROR) lclLink->Fail(SQL_HANDLE_STMT, lclHandle, lclText);
            for (const Column& column : columns) Append(store, column, row);
            for (std::size_t i = firstLong; i < lclTypes.size(); ++i)
                AppendLong(store, static_cast<SQLUSMALLINT>(i + 1), lclTypes[i].fetched);
        }
    } while (fetched == rows); // a block that is not full was the last
    SQLSetStmtAttrW(lclHandle, SQL_ATTR_ROWS_FETCHED_PTR, nullptr, 0);
    SQLSetStmtAttrW(lclHandle, SQL_ATTR_ROW_STATUS_PTR, nullptr, 0);
    return store;
}

void OdbcStatement::Append(RowStore& store, const Column& column, std::size_t row) {
    const SQLLEN length = column.lengths[row];
    const unsigned char* data = column.data.get() + column.width * row;
    if (length == SQL_NULL_DATA) return store.AddNull();
    switch (column.fetched) {
    case Fetched::Bool: return store.AddBool(*data != 0);
    case Fetched::Long: return store.AddInteger(As<SQLINTEGER>(data));
    case Fetched::BigInt: return store.AddInteger(As<SQLBIGINT>(data));
    case Fetched::Double: return store.AddDouble(As<SQLDOUBLE>(data));
    case Fetched::Date:
    case Fetched::Time:
    case Fetched::TimeStamp: return store.AddText(MomentText(column.fetched, data));
    case Fetched::Text:
    case Fetched::Bytes: break;
    }
    const bool text = column.fetched == Fetched::Text;
    const std::size_t room = column.width - (text ? sizeof(char16_t) : 0);
    if (length < 0 || static_cast<std::size_t>(length) > room)
        throw Error(errors::unspecified, "The driver answers a value longer than its column",
                    "ODBC", lclText);
    if (text)
        AppendText(store, reinterpret_cast<const char16_t*>(data),
                   static_cast<std::size_t>(length) / 2);
    else
        store.AddBytes(data, static_cast<std::size_t>(length));
}

void OdbcStatement::AppendLong(RowStore& store, SQLUSMALLINT number, Fetched fetched) {
    const bool text = fetched == Fetched::Text, growing = text || fetched == Fetched::Bytes;
    const std::size_t zero = text ? sizeof(char16_t) : 0;
    std::vector<unsigned char> all(growing ? 4096 : sizeof(SQL_TIMESTAMP_STRUCT));
    std::size_t filled = 0;
    for (;;) {
        SQLLEN length = 0;
        const SQLRETURN rc = SQLGetData(lclHandle, number, CTypeOf(fetched), all.data() + filled,
                                        static_cast<SQLLEN>(all.size() - filled), &length);
        if (rc == SQL_NO_DATA) break;
        Check(rc);
        if (length == SQL_NULL_DATA) return store.AddNull();
        if (!growing) {
            Column one{fetched, all.size(), std::make_unique<unsigned char[]>(all.size()),
                       std::make_unique<SQLLEN[]>(1)};
            std::memcpy(one.data.get(), all.data(), all.size());
            return Append(store, one, 0);
        }
        const std::size_t room = all.size() - filled - zero;
        const bool whole = length != SQL_NO_TOTAL && static_cast<std::size_t>(length) <= room;
        filled += whole ? static_cast<std::size_t>(length) : room;
        if (whole) break;
        // What is left is known, or doubled room is offered.
        const std::size_t left =
            length == SQL_NO_TOTAL ? all.size() : static_cast<std::size_t>(length) - room;
        all.resize(filled + left + zero);
    }
    if (text)
        AppendText(store, reinterpret_cast<const char16_t*>(all.data()), filled / 2);
    else
        store.AddBytes(all.data(), filled);
}

void OdbcStatement::AppendText(RowStore& store, const char16_t* units, std::size_t count) {
    lclScratch.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (units[i] >= 0x80) return store.AddText(platform::ToUtf8({units, count}));
        lclScratch[i] = static_cast<char>(units[i]);
    }
    store.AddText(lclScratch);
}

} // namespace kavidex::data::odbc
