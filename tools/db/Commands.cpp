#include "tools/db/Commands.h"

#include <chrono>
#include <cstdio>

#include "data/Error.h"
#include "data/clsSettings.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/modData.h"
#include "data/schema/clsUpdateDb.h"
#include "data/schema/modDataBase.h"
#include "data/transfer/CopyInstallation.h"
#include "data/transfer/Installation.h"
#include "model/IntegrityCheck.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/text.h"
#include "tools/db/Console.h"
#include "tools/db/Databases.h"

namespace kavidex::db {

namespace {

[[noreturn]] void Refuse(const std::string& text) {
    throw platform::Error(platform::errors::fail, text, "kavidex-db");
}

void OfferIndexes(const data::transfer::Installation& database, std::string_view word) {
    const auto missing = database.MissingIndexes();
    if (missing.empty()) return;
    std::printf("Worth having from some ten thousand dossiers on (kavidex-db indexes %s):\n",
                std::string(word).c_str());
    for (const auto& index : missing)
        std::printf("  %s\n", data::transfer::CreateIndex(index).c_str());
}

int Upgraded(Console& console, const data::ConnectionPtr& connection) {
    data::clsUpdateDb upgrade(console.workstation, &English);
    upgrade.SetDbConnection(connection);
    upgrade.fncUpdateDb();
    const std::string version = data::transfer::Installation(connection).Version();
    std::printf("version %s\n", version.c_str());
    if (version != data::currentVersion)
        Refuse("The current version is " + std::string(data::currentVersion) +
               "; the log tells what stood in the way.");
    return console.messages.shown == 0 ? done : found;
}

int Create(const Words& words) {
    Console console;
    const std::string file = EmbeddedFile(words[0]);
    data::ConnectionPtr connection;
    if (!file.empty()) {
        connection = data::EmbeddedDatabase::Create(file);
    } else {
        connection = OpenDatabase(words[0], Open::Existing);
        const data::transfer::Installation database(connection);
        if (!database.Tables().empty())
            Refuse("There is table " + std::string(database.Tables().front().name) +
                   " already: the database is not empty.");
        data::clsSettings settings(console.workstation);
        settings.SetDbConnection(connection);
        data::CreateBaseSchema(connection, settings, database.Speaks(), [&](std::string_view text) {
            console.busy.Show("Aanmaken database", text);
        });
    }
    const int result = Upgraded(console, connection);
    OfferIndexes(data::transfer::Installation(connection), words[0]);
    connection->Close();
    return result;
}

int Upgrade(const Words& words) {
    Console console;
    const auto connection = OpenDatabase(words[0], Open::Existing);
    if (!data::transfer::Installation(connection).Find("tblSettings"))
        Refuse("There is no table tblSettings: this is no database of dossiers.");
    const int result = Upgraded(console, connection);
    connection->Close();
    return result;
}

int Check(const Words& words) {
    Console console;
    const auto connection = OpenDatabase(words[0], Open::Existing);
    std::size_t findings = 0;
    if (!EmbeddedFile(words[0]).empty())
        for (const std::string& line : data::EmbeddedDatabase::Check(*connection)) {
            std::printf("damaged database: %s\n", line.c_str());
            ++findings;
        }
    const std::string store = words.size() > 1 ? PathOf(words[1]) : std::string();
    for (const auto& finding : model::CheckIntegrity(console.workstation, connection, store)) {
        std::printf("%s: %s\n", std::string(model::FaultName(finding.fault)).c_str(),
                    finding.detail.c_str());
        ++findings;
    }
    std::printf("%zu finding%s\n", findings, findings == 1 ? "" : "s");
    connection->Close();
    return findings == 0 ? done : found;
}

int Indexes(const Words& words) {
    const auto connection = OpenDatabase(words[0], Open::Existing);
    for (const auto& index : data::transfer::Installation(connection).MissingIndexes()) {
        const std::string statement = data::transfer::CreateIndex(index);
        std::printf("%s\n", statement.c_str());
        std::fflush(stdout);
        connection->Execute(statement);
    }
    connection->Close();
    return done;
}

// A line a table, and one every other second while a table takes long.
class ProgressLines {
public:
    void operator()(std::string_view table, std::int64_t rows, std::int64_t total) {
        const auto now = std::chrono::steady_clock::now();
        if (rows < total && now - lclLast < std::chrono::seconds(2)) return;
        lclLast = now;
        std::printf("%s: %lld of %lld rows\n", std::string(table).c_str(),
                    static_cast<long long>(rows), static_cast<long long>(total));
        std::fflush(stdout);
    }

private:
    std::chrono::steady_clock::time_point lclLast;
};

int CopyInto(Console& console, const data::ConnectionPtr& from, const data::ConnectionPtr& to) {
    data::transfer::CopyOptions options;
    options.translation = &English;
    options.progress = ProgressLines();
    // A MySQL server lets a transaction read all as it stood at the first look.
    const bool snapshot = data::IsMySqlConnection(from);
    if (snapshot)
        from->BeginTrans();
    else
        std::printf("This engine gives no view of one moment: all is read twice, and what others "
                    "change meanwhile ends it.\n");
    const auto result = data::transfer::CopyInstallation(console.workstation, from, to, options);
    if (snapshot) from->RollbackTrans();
    std::printf("%sequal on both sides, read again:\n",
                result.resumed ? "An earlier copy was gone on with. " : "");
    for (const auto& table : result.tables)
        std::printf("  %-28s %9lld rows  %016llx\n", table.name.c_str(),
                    static_cast<long long>(table.rows), static_cast<unsigned long long>(table.sum));
    for (const std::string& name : result.foreign)
        std::printf("not copied, no table of this system: %s\n", name.c_str());
    return console.messages.shown == 0 ? done : found;
}

int Copy(const Words& words) {
    Console console;
    const auto from = OpenDatabase(words[0], Open::ReadOnly);
    const auto to = OpenDatabase(words[1], Open::OrEmpty);
    const int result = CopyInto(console, from, to);
    OfferIndexes(data::transfer::Installation(to), words[1]);
    to->Close();
    from->Close();
    return result;
}

// Of a backup that was broken off: a database of ours, or nothing in it yet. Any other file of that
// name is somebody's.
void RemoveBrokenOff(platform::Files& files, const std::string& path) {
    if (files.Size(path) > 0) try {
            data::EmbeddedDatabase::Open(path)->Close();
        } catch (const platform::Error& error) {
            Refuse(path + " is in the way, and not known as a backup that was broken off: " +
                   error.what());
        }
    files.Remove(path);
}

// A server's rows go into a file of the embedded engine, beside the one that they replace.
int BackUpRows(const data::ConnectionPtr& from, const std::string& path) {
    Console console;
    platform::Files& files = console.workstation.files;
    const std::string fresh = path + ".new";
    if (files.FileExists(fresh)) RemoveBrokenOff(files, fresh);
    const auto to = data::EmbeddedDatabase::Create(fresh);
    const int result = CopyInto(console, from, to);
    data::EmbeddedDatabase::BackupTo(*to, path);
    to->Close();
    files.Remove(fresh);
    return result;
}

int Backup(const Words& words) {
    const std::string path = PathOf(words[1]);
    const bool embedded = !EmbeddedFile(words[0]).empty();
    const auto from = OpenDatabase(words[0], embedded ? Open::Existing : Open::ReadOnly);
    int result = done;
    if (embedded)
        data::EmbeddedDatabase::BackupTo(*from, path);
    else
        result = BackUpRows(from, path);
    from->Close();
    std::printf("backup in %s\n", path.c_str());
    return result;
}

constexpr Command commands[] = {
    {"create", "DATABASE", "the tables, at the current version, in an empty database", 1, 1,
     &Create},
    {"upgrade", "DATABASE", "to the current version", 1, 1, &Upgrade},
    {"check", "DATABASE [STORE]", "does it agree with itself and with its documents?", 1, 2,
     &Check},
    {"backup", "DATABASE FILE", "into a file of the embedded engine", 2, 2, &Backup},
    {"copy", "FROM TO", "moves an installation; goes on where it was broken off", 2, 2, &Copy},
    {"indexes", "DATABASE", "makes the indexes that big installations need", 1, 1, &Indexes},
};

} // namespace

std::span<const Command> Commands() { return commands; }

} // namespace kavidex::db
