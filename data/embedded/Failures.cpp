// SQLite's failures in the house's words and numbers.
#include <sqlite3.h>

#include <string_view>

#include "data/Error.h"
#include "data/embedded/Prepared.h"

namespace kavidex::data::embedded {

namespace {

struct Failure {
    int code;
    const char* words; // null: SQLite's own tell more
    std::int32_t number;
};

constexpr Failure failures[] = {
    {SQLITE_ERROR, nullptr, errors::syntax},
    {SQLITE_CONSTRAINT, nullptr, errors::integrity},
    {SQLITE_MISMATCH, "A value does not fit the type of its column", errors::integrity},
    {SQLITE_BUSY, "The database is locked by another user", errors::unspecified},
    {SQLITE_LOCKED, "The database is locked by another statement", errors::unspecified},
    {SQLITE_READONLY, "The database can only be read", errors::unspecified},
    {SQLITE_FULL, "The disk is full, or the database has reached its greatest size",
     errors::unspecified},
    {SQLITE_IOERR, "The database file cannot be read or written", errors::unspecified},
    {SQLITE_CORRUPT, "The database file is damaged", errors::unspecified},
    {SQLITE_NOTADB, "The file is no database", errors::unspecified},
    {SQLITE_CANTOPEN, "The database file cannot be opened", errors::unspecified},
    {SQLITE_PERM, "Access to the database file is denied", errors::unspecified},
    {SQLITE_NOMEM, "There is not enough memory", errors::unspecified},
    {SQLITE_TOOBIG, "A value is too long", errors::unspecified},
};

bool BeginsWith(std::string_view text, std::string_view begin) {
    return text.substr(0, begin.size()) == begin;
}

// The checks that the engine gives its columns, told in words: the engine quotes them as
// length("Name") <= 50, "Name" BETWEEN ... and typeof("Name") <> 'text'.
std::string CheckWords(std::string_view check) {
    const std::size_t open = check.find('"'), close = check.rfind('"');
    if (open == std::string_view::npos || close == open) return {};
    const std::string column(check.substr(open + 1, close - open - 1));
    if (BeginsWith(check, "length(")) {
        const std::string size(check.substr(check.rfind(' ') + 1));
        return "A text is too long for the column '" + column + "', which holds " + size +
               " characters";
    }
    return "A value does not fit the number column '" + column + "'";
}

std::string Words(const Failure& failure, std::string_view own) {
    if (failure.words) return failure.words;
    constexpr std::string_view check = "CHECK constraint failed: ";
    if (BeginsWith(own, check))
        if (std::string words = CheckWords(own.substr(check.size())); !words.empty()) return words;
    return std::string(own);
}

} // namespace

void Session::Fail(int code, std::string_view statement) {
    const std::string own = lclDatabase ? sqlite3_errmsg(lclDatabase) : sqlite3_errstr(code);
    Failure failure{code, nullptr, errors::unspecified};
    for (const Failure& candidate : failures)
        if (candidate.code == (code & 0xFF)) failure = candidate;
    if (BeginsWith(own, "no such table")) failure.number = errors::noTable;
    const std::string description = Words(failure, own) + " (database '" + lclPath + "').";
    lclErrors = {{failure.number, description, "EmbeddedDatabase"}};
    throw Error(failure.number, description, "EmbeddedDatabase", std::string(statement));
}

} // namespace kavidex::data::embedded
