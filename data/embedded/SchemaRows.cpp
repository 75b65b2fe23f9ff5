// Tables, columns and indexes as ADO's schema rowsets have them.
#include <sqlite3.h>

#include "data/Error.h"
#include "data/embedded/EmbeddedConnection.h"
#include "data/embedded/Translator.h"
#include "data/embedded/Types.h"

namespace kavidex::data::embedded {

namespace {

struct SchemaColumn {
    const char* name;
    AdoType type;
};

constexpr SchemaColumn tableColumns[] = {
    {"TABLE_CATALOG", AdoType::VarWChar}, {"TABLE_SCHEMA", AdoType::VarWChar},
    {"TABLE_NAME", AdoType::VarWChar},    {"TABLE_TYPE", AdoType::VarWChar},
    {"TABLE_GUID", AdoType::Guid},        {"DESCRIPTION", AdoType::VarWChar},
    {"TABLE_PROPID", AdoType::Integer},   {"DATE_CREATED", AdoType::Date},
    {"DATE_MODIFIED", AdoType::Date},
};

constexpr SchemaColumn columnColumns[] = {
    {"TABLE_CATALOG", AdoType::VarWChar},   {"TABLE_SCHEMA", AdoType::VarWChar},
    {"TABLE_NAME", AdoType::VarWChar},      {"COLUMN_NAME", AdoType::VarWChar},
    {"ORDINAL_POSITION", AdoType::Integer}, {"COLUMN_HASDEFAULT", AdoType::Boolean},
    {"COLUMN_DEFAULT", AdoType::VarWChar},  {"IS_NULLABLE", AdoType::Boolean},
    {"DATA_TYPE", AdoType::Integer},        {"CHARACTER_MAXIMUM_LENGTH", AdoType::Integer},
};

constexpr SchemaColumn indexColumns[] = {
    {"TABLE_CATALOG", AdoType::VarWChar},   {"TABLE_SCHEMA", AdoType::VarWChar},
    {"TABLE_NAME", AdoType::VarWChar},      {"INDEX_CATALOG", AdoType::VarWChar},
    {"INDEX_SCHEMA", AdoType::VarWChar},    {"INDEX_NAME", AdoType::VarWChar},
    {"PRIMARY_KEY", AdoType::Boolean},      {"UNIQUE", AdoType::Boolean},
    {"ORDINAL_POSITION", AdoType::Integer}, {"COLUMN_NAME", AdoType::VarWChar},
};

template <std::size_t Count>
ResultRows Empty(const SchemaColumn (&columns)[Count]) {
    auto fields = std::make_shared<std::vector<Field>>();
    for (const SchemaColumn& column : columns) {
        Field field;
        field.name = column.name;
        field.type = column.type;
        field.definedSize = column.type == AdoType::VarWChar ? 255 : 4;
        fields->push_back(std::move(field));
    }
    ResultRows result;
    result.fields = std::move(fields);
    result.rows.Clear(Count);
    return result;
}

ResultRows Query(Session& session, const std::string& statement,
                 const std::vector<Value>& values = {}) {
    std::int64_t touched = 0;
    return session.RunNative(statement, values, touched);
}

std::vector<std::string> TableNames(Session& session) {
    const ResultRows found =
        Query(session,
              "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' "
              "ESCAPE '\\' ORDER BY name COLLATE NOCASE");
    std::vector<std::string> names;
    for (std::size_t row = 0; row < found.rows.Rows(); ++row)
        names.push_back(ToText(found.rows.Read(row, 0)));
    return names;
}

void AddNulls(RowStore& rows, int count) {
    while (count-- > 0) rows.AddNull();
}

ResultRows Tables(Session& session) {
    ResultRows result = Empty(tableColumns);
    for (const std::string& name : TableNames(session)) {
        AddNulls(result.rows, 2);
        result.rows.AddText(name);
        result.rows.AddText("TABLE");
        AddNulls(result.rows, 5);
    }
    return result;
}

// Key, number, name, declaration, not null, default of the columns of one table.
ResultRows ColumnsOf(Session& session, const std::string& table) {
    return Query(session,
                 "SELECT pk, cid, name, type, \"notnull\", dflt_value FROM pragma_table_info(?)",
                 {table});
}

ResultRows Columns(Session& session) {
    ResultRows result = Empty(columnColumns);
    for (const std::string& table : TableNames(session)) {
        const ResultRows columns = ColumnsOf(session, table);
        for (std::size_t row = 0; row < columns.rows.Rows(); ++row) {
            const auto value = [&](std::size_t column) { return columns.rows.Read(row, column); };
            const DeclaredType type = ReadDeclared(ToText(value(3)));
            AddNulls(result.rows, 2);
            result.rows.AddText(table);
            result.rows.Add(value(2));
            result.rows.AddInteger(ToInt64(value(1)) + 1);
            result.rows.AddBool(!IsNull(value(5)));
            result.rows.Add(value(5));
            result.rows.AddBool(ToInt64(value(4)) == 0 && ToInt64(value(0)) == 0);
            result.rows.AddInteger(static_cast<int>(type.type));
            if (type.type == AdoType::VarWChar)
                result.rows.AddInteger(type.size);
            else
                result.rows.AddNull();
        }
    }
    return result;
}

struct IndexRow {
    std::string table, index, column;
    bool primary, unique;
    std::int64_t position;
};

void AddIndexRow(RowStore& rows, const IndexRow& index) {
    AddNulls(rows, 2);
    rows.AddText(index.table);
    AddNulls(rows, 2);
    rows.AddText(index.index);
    rows.AddBool(index.primary);
    rows.AddBool(index.unique);
    rows.AddInteger(index.position);
    rows.AddText(index.column);
}

ResultRows Indexes(Session& session) {
    ResultRows result = Empty(indexColumns);
    for (const std::string& table : TableNames(session)) {
        // A counter key has no index of its own in the file.
        const ResultRows keys = ColumnsOf(session, table);
        for (std::size_t row = 0; row < keys.rows.Rows(); ++row)
            if (const std::int64_t at = ToInt64(keys.rows.Read(row, 0)); at > 0)
                AddIndexRow(result.rows,
                            {table, "PrimaryKey", ToText(keys.rows.Read(row, 2)), true, true, at});
        const ResultRows columns = Query(
            session,
            "SELECT l.name, l.\"unique\", i.seqno + 1, i.name FROM pragma_index_list(?) AS l, "
            "pragma_index_info(l.name) AS i WHERE l.origin <> 'pk' ORDER BY l.name, i.seqno",
            {table});
        for (std::size_t row = 0; row < columns.rows.Rows(); ++row) {
            std::string name = ToText(columns.rows.Read(row, 0));
            if (name.size() > table.size() && name[table.size()] == '.')
                name.erase(0, table.size() + 1);
            AddIndexRow(result.rows, {table, name, ToText(columns.rows.Read(row, 3)), false,
                                      ToInt64(columns.rows.Read(row, 1)) != 0,
                                      ToInt64(columns.rows.Read(row, 2))});
        }
    }
    return result;
}

} // namespace

ResultRows ReadSchema(Session& session, Schema schema) {
    switch (schema) {
    case Schema::Tables: return Tables(session);
    case Schema::Columns: return Columns(session);
    case Schema::Indexes: return Indexes(session);
    case Schema::Procedures: break;
    }
    throw Error(errors::featureNotAvailable, "The connection does not tell this schema.",
                "EmbeddedDatabase");
}

} // namespace kavidex::data::embedded
