// What the Access dialect computes and SQLite does not: the collation without case, and functions.
#pragma once

#include <string_view>

struct sqlite3;

namespace kavidex::data::embedded {

// Registers everything with one open database; answers SQLite's result code.
int RegisterFunctions(sqlite3* database);
// The order of texts that files of an earlier form keep: by lower-cased bytes.
int RegisterEarlierOrder(sqlite3* database);

// The parts of RegisterFunctions.
int RegisterStoredForms(sqlite3* database); // kv_bit, kv_whole, kv_date, the collation of dates
int RegisterDates(sqlite3* database);       // kv_year and its like, kv_format
int RegisterFirstAndLast(sqlite3* database);

struct Function {
    std::string_view word; // in a statement of the dialect
    std::string_view name; // in SQLite
    int fewest, most;      // arguments
};

// Null for a word that is no function of the dialect.
const Function* FunctionOfWord(std::string_view word);

} // namespace kavidex::data::embedded
