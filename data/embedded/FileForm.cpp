#include "data/embedded/FileForm.h"

#include <sqlite3.h>

#include "data/embedded/Functions.h"
#include "data/embedded/Session.h"
#include "data/embedded/Types.h"
#include "data/schema/schema.h"
#include "platform/text.h"

namespace kavidex::data::embedded {

namespace {

ResultRows Native(Session& session, const std::string& statement,
                  const std::vector<Value>& values = {}) {
    std::int64_t touched = 0;
    return session.RunNative(statement, values, touched);
}

std::string TextAt(const ResultRows& rows, std::size_t row, std::size_t column) {
    return ToText(rows.rows.Read(row, column));
}

// The place behind the definition of a column that begins at `at`.
std::size_t EndOfColumn(const std::string& definition, std::size_t at) {
    int depth = 0;
    for (; at < definition.size(); ++at) {
        const char c = definition[at];
        if (c == '\'' || c == '"') {
            at = definition.find(c, at + 1);
            if (at == std::string::npos) return definition.size();
        } else if (c == '(') {
            ++depth;
        } else if ((c == ')' && depth-- == 0) || (c == ',' && depth == 0)) {
            break;
        }
    }
    return at;
}

// The value that a column of an earlier form is to have, and the rows that have another.
std::string Correction(const std::string& table, const std::string& column, AdoType type) {
    const std::string set = "UPDATE OR IGNORE " + table + " SET " + column + " = ";
    if (type == AdoType::Boolean)
        return set + "CASE typeof(" + column +
               ") WHEN 'null' THEN 0 WHEN 'text' THEN -(lower(trim(" + column +
               ")) IN ('true', 'yes')) ELSE -(" + column + " <> 0) END WHERE " + column +
               " IS NULL OR " + column + " NOT IN (0, -1)";
    if (type == AdoType::Date)
        return set + "kv_anydate(" + column + ") WHERE kv_anydate(" + column + ") <> " + column +
               " COLLATE BINARY";
    if (IsWholeNumber(type))
        return set + "kv_whole(" + column + ") WHERE typeof(" + column + ") = 'real'";
    return {};
}

// Corrects the values of one table, and answers its definition in the new form.
std::string Corrected(Session& session, const std::string& table, std::string definition) {
    const ResultRows columns =
        Native(session, "SELECT name, type, dflt_value, pk FROM pragma_table_info(?)", {table});
    for (std::size_t row = 0; row < columns.rows.Rows(); ++row) {
        if (ToInt64(columns.rows.Read(row, 3)) != 0) continue;
        const std::string name = QuotedName(TextAt(columns, row, 0));
        const std::string declared = TextAt(columns, row, 1);
        const AdoType type = ReadDeclared(declared).type;
        const std::string correction = Correction(QuotedName(table), name, type);
        if (!correction.empty()) Native(session, correction);
        const std::string form = FormOf(type, TextAt(columns, row, 2));
        const std::size_t at = definition.find(name + " " + declared);
        if (!form.empty() && at != std::string::npos)
            definition.insert(EndOfColumn(definition, at + name.size() + 1), form);
    }
    return definition;
}

// A change of definitions that needs no change of rows is written straight into the file's list of
// them.
void WriteDefinition(Session& session, const std::string& table, const std::string& definition) {
    Native(session, "UPDATE sqlite_master SET sql = ? WHERE type = 'table' AND name = ?",
           {definition, table});
}

void CorrectTables(Session& session) {
    const ResultRows tables = Native(
        session, "SELECT name, sql FROM sqlite_master WHERE type = 'table' AND name NOT LIKE "
                 "'sqlite\\_%' ESCAPE '\\'");
    const std::string version = TextAt(Native(session, "PRAGMA schema_version"), 0, 0);
    std::vector<std::pair<std::string, std::string>> changed;
    for (std::size_t row = 0; row < tables.rows.Rows(); ++row) {
        const std::string name = TextAt(tables, row, 0), definition = TextAt(tables, row, 1);
        std::string corrected = Corrected(session, name, definition);
        if (corrected != definition) changed.emplace_back(name, std::move(corrected));
    }
    if (changed.empty()) return;
    sqlite3* const database = session.Handle();
    sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 0, nullptr);
    Native(session, "PRAGMA writable_schema=ON");
    for (const auto& [name, definition] : changed) WriteDefinition(session, name, definition);
    Native(session, "PRAGMA schema_version=" + std::to_string(std::stoll(version) + 1));
    Native(session, "PRAGMA writable_schema=RESET");
    sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
}

void MakeIndex(Session& session, const schema::LookupIndex& index) {
    const std::string table(index.table), column(index.column);
    const ResultRows found = Native(
        session,
        "SELECT (SELECT count(*) FROM pragma_table_info(?1) WHERE lower(name) = lower(?2)), "
        "(SELECT count(*) FROM sqlite_master WHERE type = 'index' AND lower(name) = lower(?3))",
        {table, column, table + "." + std::string(index.name)});
    if (ToInt64(found.rows.Read(0, 0)) == 0 || ToInt64(found.rows.Read(0, 1)) != 0) return;
    Native(session, "CREATE INDEX " + IndexName(table, index.name) + " ON " + QuotedName(table) +
                        " (" + QuotedName(column) + ")");
}

} // namespace

int FormOf(Session& session) {
    return static_cast<int>(ToInt64(Native(session, "PRAGMA user_version").rows.Read(0, 0)));
}

void WriteForm(Session& session) {
    Native(session, "PRAGMA user_version=" + std::to_string(currentForm));
}

void ReadInOwnOrder(Session& session) {
    if (FormOf(session) >= currentForm) return;
    if (const int result = RegisterEarlierOrder(session.Handle()); result != SQLITE_OK)
        session.Fail(result, {});
}

void BringIntoForm(Session& session) {
    if (FormOf(session) >= currentForm) return;
    if (sqlite3_db_readonly(session.Handle(), "main") == 1) return ReadInOwnOrder(session);
    session.BeginTrans();
    try {
        if (FormOf(session) < currentForm) { // no other process was first
            CorrectTables(session);
            Native(session, std::string("REINDEX ") + collation);
            Native(session, std::string("REINDEX ") + dateCollation);
            MakeLookupIndexes(session);
            WriteForm(session);
        }
        session.CommitTrans();
    } catch (...) {
        sqlite3_exec(session.Handle(), "PRAGMA writable_schema=RESET", nullptr, nullptr, nullptr);
        sqlite3_db_config(session.Handle(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
        session.RollbackTrans();
        throw;
    }
}

void MakeLookupIndexes(Session& session) {
    for (const schema::LookupIndex& index : schema::LookupIndexes()) MakeIndex(session, index);
}

void MakeLookupIndexes(Session& session, std::string_view definition) {
    const std::string lower = platform::LowerCase(definition);
    for (const schema::LookupIndex& index : schema::LookupIndexes())
        if (lower.find(platform::LowerCase(index.table)) != std::string::npos)
            MakeIndex(session, index);
}

} // namespace kavidex::data::embedded
