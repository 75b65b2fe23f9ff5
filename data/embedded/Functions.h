// What the Access dialect computes and SQLite does not: the collation without case, and functions.
#pragma once

#include <string_view>

struct sqlite3;

namespace kavidex::data::embedded {

// Registers everything with one open database; answers SQLite's result code.
int RegisterFunctions(sqlite3* database);

struct Function {
    std::string_view word; // in a statement of the dialect
    std::string_view name; // in SQLite
    int fewest, most;      // arguments
};

// Null for a word that is no function of the dialect.
const Function* FunctionOfWord(std::string_view word);

} // namespace kavidex::data::embedded
