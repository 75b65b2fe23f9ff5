#include "data/embedded/EmbeddedDatabase.h"

#include <sqlite3.h>

#include "data/Error.h"
#include "data/embedded/EmbeddedConnection.h"
#include "data/embedded/FileForm.h"
#include "data/embedded/FileNames.h"
#include "data/schema/schema.h"

namespace kavidex::data {

namespace {

using embedded::EmbeddedConnection;
using embedded::FileSize;
using embedded::Session;
using SessionPtr = std::shared_ptr<Session>;

constexpr std::uint64_t checkedWhole = 4u << 20; // bytes; larger files are checked in parts

[[noreturn]] void Refuse(std::string_view path, const std::string& what) {
    throw Error(errors::unspecified, "The file '" + std::string(path) + "' " + what + ".",
                "EmbeddedDatabase");
}

ConnectionPtr Connect(SessionPtr session) {
    return std::make_shared<EmbeddedConnection>(std::move(session));
}

std::vector<std::string> Lines(Session& session, const std::string& statement) {
    std::int64_t touched = 0;
    const ResultRows result = session.RunNative(statement, {}, touched);
    std::vector<std::string> lines;
    for (std::size_t row = 0; row < result.rows.Rows(); ++row)
        lines.push_back(ToText(result.rows.Read(row, 0)));
    return lines;
}

std::vector<std::string> Findings(Session& session, const std::string& check) {
    std::vector<std::string> lines = Lines(session, check);
    if (lines.size() == 1 && lines.front() == "ok") lines.clear();
    return lines;
}

void WriteBase(Session& session) {
    std::int64_t touched = 0;
    session.BeginTrans();
    for (const std::string& statement : schema::AccessBaseStatements())
        session.Run(statement, {}, touched);
    session.Run("Insert into tblSettings (Section,sKey,[Value]) Values('Build','DbVersion','" +
                    std::string(schema::baseVersion) + "')",
                {}, touched);
    embedded::WriteForm(session);
    session.CommitTrans();
}

std::string JournalOf(std::string_view path) { return std::string(path) + "-journal"; }

// A new file is filled under another name; whoever gives it its own name first wins.
void MakeFile(std::string_view path, bool base) {
    if (FileSize(path)) Refuse(path, "exists already");
    embedded::RemoveFile(JournalOf(path)); // of a file that is gone: not to be played back here
    const std::string temporary = embedded::TemporaryBeside(path);
    embedded::RemoveFile(temporary); // of a process killed long ago
    bool made = false;
    try {
        Session session(temporary, Session::Mode::Create);
        if (base)
            WriteBase(session);
        else
            embedded::WriteForm(session); // without it nothing is written
        session.Close();
        made = embedded::RenameFile(temporary, path, false);
    } catch (...) {
        embedded::RemoveFile(temporary);
        embedded::RemoveFile(JournalOf(temporary));
        throw;
    }
    if (!made) {
        embedded::RemoveFile(temporary);
        Refuse(path, "exists already");
    }
}

bool HasJournal(std::string_view path) { return FileSize(JournalOf(path)) > 0u; }

// What can be told before SQLite touches the file.
constexpr std::string_view signature("SQLite format 3\0", 16);

void CheckHeader(std::string_view path) {
    const std::optional<std::uint64_t> size = FileSize(path);
    if (!size) Refuse(path, "does not exist");
    constexpr std::size_t headerSize = 100;
    const std::string header = embedded::FirstBytes(path, headerSize);
    if (header.size() < headerSize || header.compare(0, signature.size(), signature) != 0)
        Refuse(path, "is no database of this program");
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(header[at]); };
    std::uint64_t pageSize = (byte(16) << 8) | byte(17);
    if (pageSize == 1) pageSize = 65536;
    const std::uint64_t pages = (static_cast<std::uint64_t>(byte(28)) << 24) | (byte(29) << 16) |
                                (byte(30) << 8) | byte(31);
    // A journal left behind brings back what a broken write has cut.
    if (*size < pages * pageSize && !HasJournal(path))
        Refuse(path, "is damaged: its end is missing");
}

// A journal that a killed process left is played back now, while it is about this file, and not
// into the one that takes its place.
void SettleJournal(std::string_view path) {
    if (!HasJournal(path)) return;
    bool database = true;
    try {
        CheckHeader(path);
    } catch (const Error&) {
        database = false;
    }
    if (database) {
        Session session(path, Session::Mode::ReadWrite);
        Lines(session, "SELECT count(*) FROM sqlite_master");
        if (HasJournal(path)) Refuse(path, "is being written");
    }
    embedded::RemoveFile(JournalOf(path));
}

SessionPtr OpenChecked(std::string_view path, Session::Mode mode) {
    CheckHeader(path);
    auto session = std::make_shared<Session>(path, mode);
    const std::vector<std::string> names = Lines(
        *session,
        "SELECT name FROM sqlite_master WHERE type = 'table' AND lower(name) = 'tblsettings'");
    if (names.empty()) Refuse(path, "is no database of this program: it has no table tblSettings");
    if (FileSize(path).value_or(0) <= checkedWhole) {
        const auto findings = Findings(*session, "PRAGMA quick_check(1)");
        if (!findings.empty()) Refuse(path, "is damaged: " + findings.front());
    }
    embedded::BringIntoForm(*session);
    return session;
}

Session& SessionOf(Connection& connection) {
    auto* own = dynamic_cast<EmbeddedConnection*>(&connection);
    if (!own)
        throw Error(errors::featureNotAvailable,
                    "Only a database of the embedded engine can be checked or copied so.",
                    "EmbeddedDatabase");
    own->OwnSession().Handle();
    return own->OwnSession();
}

void CopyPages(Session& from, Session& to) {
    sqlite3_backup* backup = sqlite3_backup_init(to.Handle(), "main", from.Handle(), "main");
    if (!backup) to.Fail(sqlite3_errcode(to.Handle()), "backup");
    int waits = 0;
    int result = SQLITE_OK;
    do {
        result = sqlite3_backup_step(backup, 1000);
        if (result == SQLITE_BUSY || result == SQLITE_LOCKED) {
            if (++waits > 100) break;
            sqlite3_sleep(50);
            result = SQLITE_OK;
        }
    } while (result == SQLITE_OK);
    const int finished = sqlite3_backup_finish(backup);
    if (result != SQLITE_DONE) to.Fail(finished != SQLITE_OK ? finished : result, "backup");
}

} // namespace

ConnectionPtr EmbeddedDatabase::Create(std::string_view path) {
    MakeFile(path, true);
    return Open(path);
}

ConnectionPtr EmbeddedDatabase::Open(std::string_view path) {
    return Connect(OpenChecked(path, Session::Mode::ReadWrite));
}

ConnectionPtr EmbeddedDatabase::OpenReadOnly(std::string_view path) {
    return Connect(OpenChecked(path, Session::Mode::ReadOnly));
}

ConnectionPtr EmbeddedDatabase::OpenOrCreate(std::string_view path) {
    if (!FileSize(path)) {
        try {
            MakeFile(path, true);
        } catch (const Error&) {
            if (!FileSize(path)) throw; // else another process was first
        }
    }
    return Open(path);
}

ConnectionPtr EmbeddedDatabase::CreateEmpty(std::string_view path) {
    MakeFile(path, false);
    return Connect(std::make_shared<Session>(path, Session::Mode::ReadWrite));
}

ConnectionPtr EmbeddedDatabase::CreateInMemory() {
    auto session = std::make_shared<Session>(":memory:", Session::Mode::Memory);
    WriteBase(*session);
    return Connect(std::move(session));
}

std::vector<std::string> EmbeddedDatabase::Check(std::string_view path) {
    try {
        CheckHeader(path);
        Session session(path, Session::Mode::ReadOnly);
        embedded::ReadInOwnOrder(session);
        return Findings(session, "PRAGMA integrity_check");
    } catch (const Error& error) {
        return {error.what()};
    }
}

std::vector<std::string> EmbeddedDatabase::Check(Connection& connection) {
    Session& session = SessionOf(connection);
    try {
        return Findings(session, "PRAGMA integrity_check");
    } catch (const Error& error) {
        return {error.what()};
    }
}

void EmbeddedDatabase::BackupTo(Connection& connection, std::string_view path) {
    Session& from = SessionOf(connection);
    if (embedded::SameFile(from.Path(), path)) Refuse(path, "is the database itself");
    // An older copy gives way, be it damaged; a letter or a picture of that name does not.
    if (FileSize(path).value_or(0) > 0 && embedded::FirstBytes(path, signature.size()) != signature)
        Refuse(path, "is another file than a database, and is kept");
    const std::string temporary = embedded::TemporaryBeside(path);
    embedded::RemoveFile(temporary);
    try {
        Session to(temporary, Session::Mode::Create);
        CopyPages(from, to);
        to.Close();
        SettleJournal(path);
        embedded::RenameFile(temporary, path, true);
    } catch (...) {
        embedded::RemoveFile(temporary);
        embedded::RemoveFile(JournalOf(temporary));
        throw;
    }
}

} // namespace kavidex::data
