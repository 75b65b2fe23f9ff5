// Which database a word of the command line means.
#pragma once

#include <string>
#include <string_view>

#include "data/Connection.h"

namespace kavidex::db {

enum class Open {
    ReadOnly, // nothing of it is changed, not even its form
    Existing,
    OrEmpty, // a file that is missing is made, without tables; a server's database is there
};

// FILE.mdb: Access, through ADO. FILE: the embedded engine. odbc:STRING, ado:STRING: a connection
// string. @FILE: what stands in the first line of that file, so that a password need not stand on
// the command line. Throws platform::Error; its text holds no connection string.
data::ConnectionPtr OpenDatabase(std::string_view word, Open how);

// The file of a database of the embedded engine, empty for any other word.
std::string EmbeddedFile(std::string_view word);
std::string PathOf(std::string_view word); // in the house's form

} // namespace kavidex::db
