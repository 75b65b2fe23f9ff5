// Database files of the embedded engine: SQLite underneath, the Access dialect on top.
//
// Paths are UTF-8 with backslashes. A file is made whole under a temporary name beside its target
// and then renamed, so that it is there with everything in it or not at all. All throw data::Error
// with a text that names the file; a file that cannot be opened stays as it was, byte for byte.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/Connection.h"

namespace kavidex::data {

class EmbeddedDatabase {
public:
    // A new file with the base tables and indexes at schema version "1.0.8"; refused when a file of
    // that name exists.
    static ConnectionPtr Create(std::string_view path);
    // Refused when the file is missing, is no database, has no table tblSettings, or is damaged.
    static ConnectionPtr Open(std::string_view path);
    // As Open, but every write is refused, and the file stays as it is even where an earlier
    // program made it.
    static ConnectionPtr OpenReadOnly(std::string_view path);
    static ConnectionPtr OpenOrCreate(std::string_view path);

    // A new file without any table, for databases of another schema.
    static ConnectionPtr CreateEmpty(std::string_view path);
    // The base tables in memory only; gone when the connection closes.
    static ConnectionPtr CreateInMemory();

    // The findings of a full integrity check, one line each; empty when the file is sound.
    static std::vector<std::string> Check(std::string_view path);
    static std::vector<std::string> Check(Connection& connection);

    // A copy of an open database as it stands, others may go on writing meanwhile; an existing file
    // at `path` is replaced only once the copy is whole. Refused for connections of other engines,
    // for the database's own path and for the path of a file that is no database.
    static void BackupTo(Connection& connection, std::string_view path);
};

} // namespace kavidex::data
