// One ODBC statement: run once, described, and read in blocks.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "data/odbc/OdbcKeys.h"
#include "data/odbc/OdbcLink.h"
#include "data/odbc/OdbcTypes.h"
#include "data/rows/RowSource.h"

namespace kavidex::data::odbc {

class OdbcStatement {
public:
    explicit OdbcStatement(LinkPtr link);
    ~OdbcStatement();
    OdbcStatement(const OdbcStatement&) = delete;
    OdbcStatement& operator=(const OdbcStatement&) = delete;

    // Runs the text with one value for each ?.
    void Run(std::string_view text, const std::vector<Value>& values = {});
    // One of ODBC's catalog functions; `name` for its error.
    void RunCatalog(std::string_view name, const std::function<SQLRETURN(SQLHSTMT)>& call);

    bool HasRows() const { return lclColumns > 0; }
    std::int64_t RowCount();
    // Runs what else the text holds (a procedure's further statements), so that their failures
    // show, and frees the connection for other statements.
    void Finish();

    std::vector<Field> Describe(); // without base tables and keys
    Origins ReadOrigins();         // while the rows are pending
    RowStore FetchAll();

private:
    struct Column; // where a column's values of one block lie
    void Check(SQLRETURN rc);
    void Bind(SQLUSMALLINT number, const Value& value);
    void CountColumns();
    Field DescribeColumn(SQLUSMALLINT column);
    std::string Attribute(SQLUSMALLINT column, SQLUSMALLINT which);
    std::vector<Column> BindColumns(std::size_t rows, std::size_t& firstLong);
    void Append(RowStore& store, const Column& column, std::size_t row);
    void AppendLong(RowStore& store, SQLUSMALLINT number, Fetched fetched);
    void AppendText(RowStore& store, const char16_t* units, std::size_t count);

    LinkPtr lclLink;
    SQLHSTMT lclHandle = SQL_NULL_HSTMT;
    std::string lclText;
    SQLSMALLINT lclColumns = 0;
    std::vector<TypeRow> lclTypes; // by Describe
    std::vector<SQLULEN> lclSizes;
    std::string lclScratch;
    std::deque<std::u16string> lclTexts; // of the parameters, alive while the statement runs
    std::deque<SQLLEN> lclLengths;
};

} // namespace kavidex::data::odbc
