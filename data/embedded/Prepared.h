// What the session keeps of a prepared statement.
#pragma once

#include <sqlite3.h>

#include "data/embedded/Session.h"
#include "data/embedded/Translator.h"

namespace kavidex::data::embedded {

struct Session::Prepared {
    explicit Prepared(std::string k) : key(std::move(k)) {}
    ~Prepared() { sqlite3_finalize(statement); }
    Prepared(const Prepared&) = delete;
    Prepared& operator=(const Prepared&) = delete;

    std::string key;
    sqlite3_stmt* statement =
        nullptr; // null: statements of this shape are kept by their whole text
    Ties ties;
    FieldsPtr fields;         // without the hidden columns
    std::vector<char> flags;  // per column: yes/no
    bool computed = false;    // has columns that come from no table
    int reprepared = 0;       // SQLite's count when `fields` were described
    std::size_t lastRows = 0; // of the last result, as a guess for the next
    std::size_t lastBytes = 0;
};

// Names, types, base tables and keys of the columns of a statement, save its last `hidden`.
FieldsPtr DescribeFields(sqlite3* database, sqlite3_stmt* statement, int hidden);
// Computed columns take the type of their first value.
FieldsPtr TypedByValue(const FieldsPtr& fields, const RowStore& rows);

// What orders the last row of a TOP, kept to tell the rows that are equal to it.
class LastRow {
public:
    LastRow(sqlite3_stmt* statement, const Ties& ties);
    ~LastRow();
    LastRow(const LastRow&) = delete;
    LastRow& operator=(const LastRow&) = delete;
    bool EqualTo(sqlite3_stmt* statement) const; // the row where it stands now

private:
    std::vector<int> lclColumns;
    std::vector<sqlite3_value*> lclValues;
};

} // namespace kavidex::data::embedded
