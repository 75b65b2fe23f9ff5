#include "data/embedded/Session.h"

#include <sqlite3.h>

#include <optional>

#include "data/Error.h"
#include "data/embedded/FileForm.h"
#include "data/embedded/FileNames.h"
#include "data/embedded/Functions.h"
#include "data/embedded/Prepared.h"
#include "data/embedded/Translator.h"
#include "data/embedded/Types.h"

namespace kavidex::data::embedded {

namespace {

constexpr int busyMilliseconds = 5000;
constexpr std::size_t keptStatements = 128;

// Marks of keys that are no shapes; shapes hold neither character.
constexpr char wholeText = '\x05', nativeText = '\x06';

int OpenFlags(Session::Mode mode) {
    switch (mode) {
    case Session::Mode::ReadOnly: return SQLITE_OPEN_READONLY;
    case Session::Mode::ReadWrite: return SQLITE_OPEN_READWRITE;
    default: return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    }
}

int BindValue(sqlite3_stmt* statement, int at, const Value& value) {
    if (const auto* flag = std::get_if<bool>(&value))
        return sqlite3_bind_int(statement, at, *flag ? -1 : 0);
    if (const auto* whole = std::get_if<std::int64_t>(&value))
        return sqlite3_bind_int64(statement, at, *whole);
    if (const auto* number = std::get_if<double>(&value))
        return sqlite3_bind_double(statement, at, *number);
    if (const auto* text = std::get_if<std::string>(&value))
        return sqlite3_bind_text64(statement, at, text->c_str(), text->size(), SQLITE_STATIC,
                                   SQLITE_UTF8);
    if (const auto* bytes = std::get_if<Bytes>(&value))
        return sqlite3_bind_blob64(statement, at,
                                   bytes->empty() ? "" : static_cast<const void*>(bytes->data()),
                                   bytes->size(), SQLITE_STATIC);
    return sqlite3_bind_null(statement, at);
}

int BindLiteral(sqlite3_stmt* statement, int at, const Literal& literal) {
    switch (literal.kind) {
    case TokenKind::Whole: return sqlite3_bind_int64(statement, at, literal.whole);
    case TokenKind::Number: return sqlite3_bind_double(statement, at, literal.number);
    default:
        return sqlite3_bind_text64(statement, at, literal.text.empty() ? "" : literal.text.data(),
                                   literal.text.size(), SQLITE_STATIC, SQLITE_UTF8);
    }
}

} // namespace

Session::Session(std::string_view path, Mode mode) : lclPath(path) {
    const std::string name = mode == Mode::Memory ? ":memory:" : NativeName(path);
    const int result = sqlite3_open_v2(name.c_str(), &lclDatabase,
                                       OpenFlags(mode) | SQLITE_OPEN_EXRESCODE, nullptr);
    try {
        if (result != SQLITE_OK) Fail(result, {});
        sqlite3_busy_timeout(lclDatabase, busyMilliseconds);
        // A name in quotes is never a text here, and a file's schema calls no functions of ours
        // beyond its checks.
        sqlite3_db_config(lclDatabase, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
        sqlite3_db_config(lclDatabase, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
        sqlite3_db_config(lclDatabase, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
        sqlite3_db_config(lclDatabase, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
        sqlite3_limit(lclDatabase, SQLITE_LIMIT_ATTACHED, 0);
        if (const int registered = RegisterFunctions(lclDatabase); registered != SQLITE_OK)
            Fail(registered, {});
        // A rollback journal works between processes and on network shares, and leaves one file.
        Exec("PRAGMA synchronous=EXTRA", {});
        Exec("PRAGMA foreign_keys=OFF", {});
        Exec("PRAGMA temp_store=MEMORY", {});
        if (mode == Mode::Create) Exec("PRAGMA journal_mode=DELETE", {});
    } catch (...) {
        Close();
        throw;
    }
}

Session::~Session() { Close(); }

void Session::Close() {
    if (!lclDatabase) return;
    Forget();
    sqlite3_close(lclDatabase); // undoes an open transaction
    lclDatabase = nullptr;
    lclLevels = 0;
    lclDoomed = false;
}

sqlite3* Session::Handle() const {
    if (!lclDatabase)
        throw Error(errors::objectClosed, "The connection is closed.", "EmbeddedDatabase");
    return lclDatabase;
}

// Statements

Session::Prepared* Session::Find(std::string_view key) {
    const auto found = lclIndex.find(key);
    if (found == lclIndex.end()) return nullptr;
    lclEntries.splice(lclEntries.begin(), lclEntries, found->second);
    return &lclEntries.front();
}

Session::Prepared& Session::Mark(std::string key) {
    lclEntries.emplace_front(std::move(key));
    lclIndex[lclEntries.front().key] = lclEntries.begin();
    while (lclEntries.size() > keptStatements) {
        lclIndex.erase(lclEntries.back().key);
        lclEntries.pop_back();
    }
    return lclEntries.front();
}

Session::Prepared& Session::Keep(std::string key, const std::string& statement,
                                 std::string_view original, const Ties& ties) {
    sqlite3_stmt* prepared = nullptr;
    const int result =
        sqlite3_prepare_v3(lclDatabase, statement.c_str(), static_cast<int>(statement.size()),
                           SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
    if (result != SQLITE_OK) Fail(result, original);
    Prepared& entry = Mark(std::move(key));
    entry.statement = prepared;
    entry.ties = ties;
    Describe(entry);
    return entry;
}

void Session::Forget() {
    lclIndex.clear();
    lclEntries.clear();
}

void Session::Describe(Prepared& prepared) {
    prepared.fields = DescribeFields(lclDatabase, prepared.statement, prepared.ties.hidden);
    prepared.computed = false;
    prepared.flags.clear();
    for (const Field& field : *prepared.fields) {
        prepared.flags.push_back(field.type == AdoType::Boolean);
        prepared.computed = prepared.computed || field.baseColumn.empty();
    }
    prepared.reprepared = sqlite3_stmt_status(prepared.statement, SQLITE_STMTSTATUS_REPREPARE, 0);
}

Translation Session::Translated(std::string_view statement) {
    try {
        return Translate(statement, [this](std::string_view table) { return ColumnsOf(table); });
    } catch (const Error& error) {
        lclErrors = {{error.Number(), error.what(), error.Source()}};
        throw;
    }
}

std::vector<TableColumn> Session::ColumnsOf(std::string_view table) {
    std::int64_t touched = 0;
    const ResultRows found =
        RunNative("SELECT name, type FROM pragma_table_info(?)", {std::string(table)}, touched);
    std::vector<TableColumn> columns;
    for (std::size_t row = 0; row < found.rows.Rows(); ++row)
        columns.push_back(
            {ToText(found.rows.Read(row, 0)), ReadDeclared(ToText(found.rows.Read(row, 1))).type});
    return columns;
}

std::vector<std::string> Session::Plan(std::string_view statement) {
    std::int64_t touched = 0;
    const Translation translation = Translated(statement);
    std::vector<std::string> steps;
    if (translation.definition) return steps;
    const ResultRows plan =
        RunNative("EXPLAIN QUERY PLAN " + translation.statements.front(), {}, touched);
    for (std::size_t row = 0; row < plan.rows.Rows(); ++row)
        steps.push_back(ToText(plan.rows.Read(row, 3)));
    return steps;
}

ResultRows Session::Run(std::string_view statement, const std::vector<Value>& values,
                        std::int64_t& touched) {
    Handle();
    CheckTransaction(statement);
    try {
        lclShape.Read(statement);
    } catch (const Error& error) {
        lclErrors = {{error.Number(), error.what(), error.Source()}};
        throw;
    }
    if (static_cast<std::size_t>(lclShape.parameters) != values.size())
        throw Error(errors::invalidArgument, "The statement needs another number of parameters.",
                    "EmbeddedDatabase", std::string(statement));
    Prepared* prepared = Find(lclShape.text);
    if (prepared && !prepared->statement) prepared = Find(wholeText + std::string(statement));
    if (!prepared) {
        const Translation translation = Translated(statement);
        if (translation.definition) {
            touched = 0;
            return Define(translation.statements, statement);
        }
        std::string key = lclShape.text;
        if (translation.fixed) {
            if (!Find(key)) Mark(std::move(key));
            key = wholeText + std::string(statement);
        }
        prepared =
            &Keep(std::move(key), translation.statements.front(), statement, translation.ties);
    }
    const int needed = sqlite3_bind_parameter_count(prepared->statement);
    int at = 0;
    int result = SQLITE_OK;
    for (const Literal& literal : lclShape.literals)
        if (++at <= needed && result == SQLITE_OK)
            result = BindLiteral(prepared->statement, at, literal);
    for (const Value& value : values)
        if (++at <= needed && result == SQLITE_OK)
            result = BindValue(prepared->statement, at, value);
    if (result != SQLITE_OK) Fail(result, statement);
    return Step(*prepared, statement, touched);
}

ResultRows Session::RunNative(const std::string& statement, const std::vector<Value>& values,
                              std::int64_t& touched) {
    Handle();
    CheckTransaction(statement);
    std::string key = nativeText + statement;
    Prepared* prepared = Find(key);
    if (!prepared) prepared = &Keep(std::move(key), statement, statement, {});
    for (std::size_t i = 0; i < values.size(); ++i)
        if (const int result = BindValue(prepared->statement, static_cast<int>(i) + 1, values[i]);
            result != SQLITE_OK)
            Fail(result, statement);
    return Step(*prepared, statement, touched);
}

ResultRows Session::Step(Prepared& prepared, std::string_view original, std::int64_t& touched) {
    sqlite3_stmt* statement = prepared.statement;
    struct Reset {
        sqlite3_stmt* statement;
        ~Reset() {
            sqlite3_reset(statement);
            sqlite3_clear_bindings(statement);
        }
    } reset{statement};
    int result = sqlite3_step(statement);
    // Another process may have changed the tables since the statement was prepared.
    if (sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_REPREPARE, 0) != prepared.reprepared)
        Describe(prepared);
    ResultRows rows;
    if (sqlite3_column_count(statement) == 0) {
        if (result != SQLITE_DONE) Fail(result, original);
        touched = sqlite3_changes64(lclDatabase);
        return rows;
    }
    touched = -1;
    rows.fields = prepared.fields;
    rows.rows.Clear(prepared.fields->size());
    if (result == SQLITE_ROW) rows.rows.Reserve(prepared.lastRows, prepared.lastBytes);
    std::optional<LastRow> last; // of TOP, which those equal to it follow
    while (result == SQLITE_ROW) {
        if (last && !last->EqualTo(statement)) {
            result = SQLITE_DONE;
            break;
        }
        ReadRow(prepared, rows.rows);
        const auto top = static_cast<std::size_t>(prepared.ties.rows);
        if (top > 0 && rows.rows.Rows() == top) last.emplace(statement, prepared.ties);
        result = sqlite3_step(statement);
    }
    if (result != SQLITE_DONE) Fail(result, original);
    prepared.lastRows = rows.rows.Rows() < 1000 ? rows.rows.Rows() : 1000;
    prepared.lastBytes = rows.rows.TextBytes() < 65536 ? rows.rows.TextBytes() : 65536;
    if (prepared.computed) rows.fields = TypedByValue(prepared.fields, rows.rows);
    return rows;
}

void Session::ReadRow(const Prepared& prepared, RowStore& rows) {
    sqlite3_stmt* statement = prepared.statement;
    const int columns = static_cast<int>(prepared.flags.size());
    for (int i = 0; i < columns; ++i) {
        switch (sqlite3_column_type(statement, i)) {
        case SQLITE_NULL: rows.AddNull(); break;
        case SQLITE_INTEGER:
            if (prepared.flags[static_cast<std::size_t>(i)])
                rows.AddBool(sqlite3_column_int64(statement, i) != 0);
            else
                rows.AddInteger(sqlite3_column_int64(statement, i));
            break;
        case SQLITE_FLOAT:
            if (prepared.flags[static_cast<std::size_t>(i)])
                rows.AddBool(sqlite3_column_double(statement, i) != 0);
            else
                rows.AddDouble(sqlite3_column_double(statement, i));
            break;
        case SQLITE_TEXT: {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
            if (!text) Fail(SQLITE_NOMEM, {});
            rows.AddText({text, static_cast<std::size_t>(sqlite3_column_bytes(statement, i))});
            break;
        }
        default: {
            const void* bytes = sqlite3_column_blob(statement, i);
            rows.AddBytes(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, i)));
        }
        }
    }
}

ResultRows Session::Define(const std::vector<std::string>& statements, std::string_view original) {
    Forget();
    Exec("SAVEPOINT kv_define", original);
    try {
        for (const std::string& statement : statements) Exec(statement.c_str(), original);
        if (!statements.front().starts_with("DROP ")) MakeLookupIndexes(*this, original);
        Exec("RELEASE kv_define", original);
    } catch (...) {
        sqlite3_exec(lclDatabase, "ROLLBACK TO kv_define", nullptr, nullptr, nullptr);
        sqlite3_exec(lclDatabase, "RELEASE kv_define", nullptr, nullptr, nullptr);
        throw;
    }
    return {};
}

void Session::Exec(const char* statement, std::string_view original) {
    const int result = sqlite3_exec(Handle(), statement, nullptr, nullptr, nullptr);
    if (result != SQLITE_OK) Fail(result, original.empty() ? statement : original);
}

std::int64_t Session::NewIdentity() const { return sqlite3_last_insert_rowid(Handle()); }

// Transactions

void Session::CheckTransaction(std::string_view statement) {
    if (lclLevels == 0 || sqlite3_get_autocommit(lclDatabase) == 0) return;
    throw Error(errors::unspecified,
                "The transaction was undone by an earlier failure; nothing more is written until "
                "it is rolled back.",
                "EmbeddedDatabase", std::string(statement));
}

void Session::BeginTrans() {
    Handle();
    if (lclLevels == 0) {
        // Taking the right to write at once keeps two writers from blocking each other later.
        const bool readOnly = sqlite3_db_readonly(lclDatabase, "main") == 1;
        Exec(readOnly ? "BEGIN" : "BEGIN IMMEDIATE", {});
        lclDoomed = false;
    }
    ++lclLevels;
}

void Session::CommitTrans() {
    Handle();
    if (lclLevels == 0)
        throw Error(errors::noTransaction, "There is no transaction to commit.",
                    "EmbeddedDatabase");
    if (lclLevels > 1) {
        --lclLevels;
        return;
    }
    CheckTransaction("COMMIT");
    if (lclDoomed) {
        RollbackTrans();
        throw Error(errors::unspecified,
                    "The transaction was undone: a part of it had been rolled back.",
                    "EmbeddedDatabase");
    }
    Exec("COMMIT", {}); // when it fails the transaction stays open, to be tried again or undone
    lclLevels = 0;
}

void Session::RollbackTrans() {
    Handle();
    if (lclLevels == 0)
        throw Error(errors::noTransaction, "There is no transaction to roll back.",
                    "EmbeddedDatabase");
    if (--lclLevels > 0) {
        lclDoomed = true;
        return;
    }
    lclDoomed = false;
    if (sqlite3_get_autocommit(lclDatabase) == 0) Exec("ROLLBACK", {});
}

} // namespace kavidex::data::embedded
