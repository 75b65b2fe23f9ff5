// One open SQLite database: prepared statements kept by shape, results in memory, errors as
// data::Error. Shared by a connection and the recordsets that came from it.
#pragma once

#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/Connection.h"
#include "data/embedded/Tokens.h"
#include "data/embedded/Translator.h"
#include "data/rows/RowSource.h"

struct sqlite3;
struct sqlite3_stmt;

namespace kavidex::data::embedded {

class Session {
public:
    enum class Mode { ReadWrite, ReadOnly, Create, Memory };

    // Opens the file and makes it ready for the dialect; throws data::Error.
    Session(std::string_view path, Mode mode);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    bool IsOpen() const { return lclDatabase != nullptr; }
    void Close(); // what a transaction has not committed is undone
    const std::string& Path() const { return lclPath; }
    sqlite3* Handle() const; // throws errors::objectClosed

    // A statement of the dialect; `values` fill its ? in order. Answers no fields when it has no
    // rows, and the rows touched (-1 for a query) in `touched`.
    ResultRows Run(std::string_view statement, const std::vector<Value>& values,
                   std::int64_t& touched);
    // A statement of SQLite itself.
    ResultRows RunNative(const std::string& statement, const std::vector<Value>& values,
                         std::int64_t& touched);
    std::int64_t NewIdentity() const;
    // A statement of the dialect as SQLite would run it: "SCAN ..." or "SEARCH ..." a step.
    std::vector<std::string> Plan(std::string_view statement);

    void BeginTrans();
    void CommitTrans();
    void RollbackTrans();

    const std::vector<ErrorDetail>& Errors() const { return lclErrors; }
    // Throws data::Error for SQLite's last failure, `statement` being what met it.
    [[noreturn]] void Fail(int code, std::string_view statement);

private:
    struct Prepared;
    using Entries = std::list<Prepared>;

    Prepared* Find(std::string_view key);
    Prepared& Keep(std::string key, const std::string& statement, std::string_view original,
                   const Ties& ties);
    Prepared& Mark(std::string key);
    Translation Translated(std::string_view statement);
    void Describe(Prepared& prepared);
    void Forget(); // all prepared statements, before the schema changes
    std::vector<TableColumn> ColumnsOf(std::string_view table);
    ResultRows Define(const std::vector<std::string>& statements, std::string_view original);
    ResultRows Step(Prepared& prepared, std::string_view original, std::int64_t& touched);
    void ReadRow(const Prepared& prepared, RowStore& rows);
    void Exec(const char* statement, std::string_view original);
    void CheckTransaction(std::string_view statement);

    sqlite3* lclDatabase = nullptr;
    std::string lclPath;
    int lclLevels = 0;      // of BeginTrans
    bool lclDoomed = false; // an inner level was rolled back
    Entries lclEntries;     // the last used first
    std::unordered_map<std::string_view, Entries::iterator> lclIndex;
    Shape lclShape;
    std::vector<ErrorDetail> lclErrors;
};

} // namespace kavidex::data::embedded
