// The base schema (version 1.0.8): one table of tables, from which each dialect's statements come.
#pragma once

#include <string>
#include <string_view>
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
// The same statements on every dialect.
std::vector<std::string> CreateIndexes();
// SQL Server only.
std::vector<std::string> CreateProcedures();

// Everything that makes an empty Access-form database: tables, then indexes. The version row in
// tblSettings (section "Build", key "DbVersion", value baseVersion) is the caller's to write.
std::vector<std::string> AccessBaseStatements();

} // namespace kavidex::data::schema
