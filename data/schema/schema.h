// The base schema (version 1.0.8): one table of tables, from which each dialect's statements come.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kavidex::data::schema {

enum class Dialect { Access, SqlServer, MySql };

inline constexpr std::string_view baseVersion = "1.0.8";

enum class ColumnType {
    Integer,
    OwnId, // the row's working id: INTEGER, BIGINT on MySQL
    Bit,
    Text38, // a GUID's text
    Text50,
    Text100,
    Text255,
    Text255Null, // with the word NULL on the servers
    LongText,
    Memo, // as LongText; its MySQL word carries a trailing blank
};

struct Column {
    std::string_view name;
    ColumnType type;
    std::string_view lead = ", "; // what stands before it on the servers
    int count = 0;                // above 0: that many columns, numbered from 1
};

struct Table {
    std::string_view name;
    std::string_view key;        // the auto-numbered primary key
    std::string_view constraint; // the key's constraint name (SQL Server, Access)
    std::vector<Column> columns; // after the key
};

// In the order of creation.
const std::vector<Table>& Tables();
std::string CreateTable(const Table& table, Dialect dialect);
// Each column after the key, with the statement that adds it to an older table in every dialect.
std::vector<std::pair<std::string, std::vector<std::string>>> AddColumns(const Table& table);
// The same statements on every dialect.
std::vector<std::string> CreateIndexes();
// SQL Server only.
std::vector<std::string> CreateProcedures();

// Columns by which the system finds rows and which neither the base schema nor an upgrade gives an
// index. Files of the embedded engine have them all; on other databases they are the owner's
// choice.
struct LookupIndex {
    std::string_view name, table, column;
};
const std::vector<LookupIndex>& LookupIndexes();

// Everything that makes an empty Access-form database: tables, then indexes. The version row in
// tblSettings (section "Build", key "DbVersion", value baseVersion) is the caller's to write.
std::vector<std::string> AccessBaseStatements();

} // namespace kavidex::data::schema
