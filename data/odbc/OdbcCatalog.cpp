#include "data/odbc/OdbcCatalog.h"

#include <span>

#include "data/odbc/OdbcStatement.h"
#include "data/odbc/Wide.h"
#include "platform/text.h"

namespace kavidex::data::odbc {

namespace {

// A column of ADO's rowset and the column of ODBC's (from 1) that it is taken from.
struct SchemaColumn {
    std::string_view name;
    AdoType type;
    int from;
};

constexpr SchemaColumn tables[] = {
    {"TABLE_CATALOG", AdoType::VarWChar, 1}, {"TABLE_SCHEMA", AdoType::VarWChar, 2},
    {"TABLE_NAME", AdoType::VarWChar, 3},    {"TABLE_TYPE", AdoType::VarWChar, 4},
    {"DESCRIPTION", AdoType::VarWChar, 5},
};
constexpr SchemaColumn columns[] = {
    {"TABLE_CATALOG", AdoType::VarWChar, 1},    {"TABLE_SCHEMA", AdoType::VarWChar, 2},
    {"TABLE_NAME", AdoType::VarWChar, 3},       {"COLUMN_NAME", AdoType::VarWChar, 4},
    {"ORDINAL_POSITION", AdoType::Integer, 17}, {"IS_NULLABLE", AdoType::Boolean, 11},
    {"DATA_TYPE", AdoType::Integer, 5},         {"CHARACTER_MAXIMUM_LENGTH", AdoType::Integer, 7},
};
constexpr SchemaColumn indexes[] = {
    {"TABLE_CATALOG", AdoType::VarWChar, 1}, {"TABLE_SCHEMA", AdoType::VarWChar, 2},
    {"TABLE_NAME", AdoType::VarWChar, 3},    {"INDEX_NAME", AdoType::VarWChar, 6},
    {"UNIQUE", AdoType::Boolean, 4},         {"ORDINAL_POSITION", AdoType::Integer, 8},
    {"COLUMN_NAME", AdoType::VarWChar, 9},
};
constexpr SchemaColumn procedures[] = {
    {"PROCEDURE_CATALOG", AdoType::VarWChar, 1},
    {"PROCEDURE_SCHEMA", AdoType::VarWChar, 2},
    {"PROCEDURE_NAME", AdoType::VarWChar, 3},
};

std::span<const SchemaColumn> ColumnsOf(Schema schema) {
    switch (schema) {
    case Schema::Tables: return tables;
    case Schema::Columns: return columns;
    case Schema::Indexes: return indexes;
    case Schema::Procedures: return procedures;
    }
    return {};
}

// ODBC's own coding of a few columns in ADO's words.
Value Translated(std::string_view name, Value value) {
    if (name == "UNIQUE") return ToInt32(value) == SQL_FALSE; // ODBC says "non-unique"
    if (name == "IS_NULLABLE") return ToInt32(value) != SQL_NO_NULLS;
    if (name == "DATA_TYPE")
        return std::int64_t{
            static_cast<int>(TypeOf(static_cast<SQLSMALLINT>(ToInt32(value)), 0, 0, false).ado)};
    if (name == "TABLE_TYPE" && platform::EqualAsciiNoCase(ToText(value), "BASE TABLE"))
        return std::string("TABLE");
    return value;
}

void Append(ResultRows& result, OdbcStatement& statement, std::span<const SchemaColumn> wanted) {
    statement.Describe();
    const RowStore rows = statement.FetchAll();
    for (std::size_t row = 0; row < rows.Rows(); ++row) {
        // Statistics of a table come among its indexes, without a name.
        if (wanted.data() == indexes && IsNull(rows.Read(row, 5))) continue;
        for (const SchemaColumn& column : wanted)
            result.rows.Add(
                Translated(column.name, rows.Read(row, static_cast<std::size_t>(column.from) - 1)));
    }
}

ResultRows Empty(std::span<const SchemaColumn> wanted) {
    auto fields = std::make_shared<std::vector<Field>>();
    for (const SchemaColumn& column : wanted) {
        Field field;
        field.name = column.name;
        field.type = column.type;
        field.definedSize = column.type == AdoType::VarWChar ? 128 : 4;
        fields->push_back(std::move(field));
    }
    return {fields, RowStore(wanted.size())};
}

} // namespace

ResultRows ReadSchema(const LinkPtr& link, Schema schema) {
    const std::span<const SchemaColumn> wanted = ColumnsOf(schema);
    // Without a catalog some drivers list the tables of every database of the server.
    std::u16string catalog = platform::ToUtf16(link->CurrentCatalog());
    SQLWCHAR* const name = catalog.empty() ? nullptr : Raw(catalog);
    const auto length = Length<SQLSMALLINT>(catalog);
    // No name means every name, but not every driver takes it.
    SQLWCHAR all[] = {u'%', 0};
    ResultRows result = Empty(wanted);

    if (schema == Schema::Columns) {
        OdbcStatement statement(link);
        statement.RunCatalog("SQLColumns", [&](SQLHSTMT handle) {
            return SQLColumnsW(handle, name, length, nullptr, 0, all, 1, all, 1);
        });
        Append(result, statement, wanted);
        return result;
    }
    if (schema == Schema::Procedures) {
        OdbcStatement statement(link);
        statement.RunCatalog("SQLProcedures", [&](SQLHSTMT handle) {
            return SQLProceduresW(handle, name, length, nullptr, 0, all, 1);
        });
        Append(result, statement, wanted);
        return result;
    }
    ResultRows names = Empty(tables);
    { // ends before the next one begins: a server may run one at a time
        OdbcStatement statement(link);
        statement.RunCatalog("SQLTables", [&](SQLHSTMT handle) {
            return SQLTablesW(handle, name, length, nullptr, 0, nullptr, 0, nullptr, 0);
        });
        Append(names, statement, tables);
    }
    if (schema == Schema::Tables) return names;

    for (std::size_t row = 0; row < names.rows.Rows(); ++row) {
        if (ToText(names.rows.Read(row, 3)) != "TABLE") continue;
        std::u16string table = platform::ToUtf16(ToText(names.rows.Read(row, 2)));
        OdbcStatement each(link);
        each.RunCatalog("SQLStatistics", [&](SQLHSTMT handle) {
            return SQLStatisticsW(handle, name, length, nullptr, 0, Raw(table),
                                  Length<SQLSMALLINT>(table), SQL_INDEX_ALL, SQL_QUICK);
        });
        Append(result, each, wanted);
    }
    return result;
}

} // namespace kavidex::data::odbc
