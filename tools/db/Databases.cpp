#include "tools/db/Databases.h"

#include "data/ConnectionOpener.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/odbc/OdbcConnection.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "platform/text.h"
#include "tools/db/machine.h"

namespace kavidex::db {

namespace {

constexpr std::int32_t readMode = 1; // ADO's adModeRead

[[noreturn]] void Refuse(const std::string& text) {
    throw platform::Error(platform::errors::invalidArgument, text, "kavidex-db");
}

bool IsAccessFile(std::string_view word) {
    const std::string extension = platform::LowerCase(platform::Extension(PathOf(word)));
    return extension == "mdb" || extension == "accdb";
}

std::shared_ptr<data::AdoConnection> NewAdoConnection(Open how) {
    const auto factory = MakeAdoFactory();
    if (!factory) Refuse("Access files and ADO connections are opened on Windows only.");
    auto connection = factory->Create();
    if (how == Open::ReadOnly) connection->SetMode(readMode);
    return connection;
}

// With the built-in password, or without one where the file has none yet.
data::ConnectionPtr OpenAccess(const std::string& path, Open how) {
    if (!platform::TheWorkstation().files.FileExists(path))
        Refuse("There is no file " + path + ". An empty Access file is made with Access.");
    auto connection = NewAdoConnection(how);
    try {
        connection->OpenDatabase(data::AccessConnectionString(path, true));
    } catch (const platform::Error&) {
        connection = NewAdoConnection(how);
        connection->OpenDatabase(data::AccessConnectionString(path, false));
    }
    return connection;
}

data::ConnectionPtr OpenEmbedded(const std::string& path, Open how) {
    if (how == Open::ReadOnly) return data::EmbeddedDatabase::OpenReadOnly(path);
    if (how == Open::OrEmpty) return data::EmbeddedDatabase::OpenOrCreate(path);
    return data::EmbeddedDatabase::Open(path);
}

std::string FileOf(std::string_view word) {
    // A drive's letter is no kind.
    if (const auto colon = word.find(':'); colon != std::string_view::npos && colon > 1)
        Refuse("There is no kind of database \"" + std::string(word.substr(0, colon)) +
               "\": it is a file, odbc: or ado:.");
    return PathOf(word);
}

std::string Prefixed(std::string_view word, std::string_view prefix) {
    return word.starts_with(prefix) ? std::string(word.substr(prefix.size())) : std::string();
}

// What is meant by a word that names a file with it.
std::string Meant(std::string_view word) {
    const std::string file = Prefixed(word, "@");
    if (file.empty()) return std::string(word);
    const std::string text = platform::TheWorkstation().files.ReadAll(PathOf(file));
    std::string line = platform::Trim(text.substr(0, text.find_first_of("\r\n")));
    if (line.empty() || line[0] == '@') Refuse("The file " + file + " names no database.");
    return line;
}

} // namespace

std::string PathOf(std::string_view word) { return platform::Replace(word, "/", "\\"); }

std::string EmbeddedFile(std::string_view word) {
    const std::string meant = Meant(word);
    for (const std::string_view prefix : {"odbc:", "ado:"})
        if (meant.starts_with(prefix)) return {};
    return IsAccessFile(meant) ? std::string() : FileOf(meant);
}

data::ConnectionPtr OpenDatabase(std::string_view named, Open how) {
    const std::string word = Meant(named);
    if (const std::string text = Prefixed(word, "odbc:"); !text.empty())
        return data::OpenOdbc(text);
    if (const std::string text = Prefixed(word, "ado:"); !text.empty()) {
        const auto connection = NewAdoConnection(how);
        connection->OpenDatabase(text);
        return connection;
    }
    const std::string path = FileOf(word);
    return IsAccessFile(word) ? OpenAccess(path, how) : OpenEmbedded(path, how);
}

} // namespace kavidex::db
