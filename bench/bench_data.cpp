// The data layer against the statements that it stands for: a new row by its GUID against SQLite
// itself, the upgrade chain against its own statements issued bare.
#include <sqlite3.h>

#include <stdexcept>
#include <string>

#include "bench/ratio.h"
#include "data/clsTable.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/RecordingConnection.h"

using namespace kavidex;
using namespace kavidex::data;
using namespace kavidex::tests;

namespace {

constexpr int newRows = 100;

// SQLite without us: journal and full sync, as the engine has them.
class Raw {
public:
    explicit Raw(const std::string& path) {
        if (sqlite3_open(path.c_str(), &lclDatabase) != SQLITE_OK) throw std::runtime_error(path);
        Run("pragma synchronous = extra");
        Run("create table tblDocument (Id integer primary key autoincrement, ExternalId text, "
            "InsertedBy text, InsertDate integer, InsertTime integer, Description text, ReadOnly "
            "integer, Type text, DocId integer, DocGuid text)");
        Run("create index indDocId on tblDocument (DocId)");
        Run("create index indDocGuid on tblDocument (DocGuid)");
    }
    ~Raw() { sqlite3_close(lclDatabase); }
    Raw(const Raw&) = delete;
    Raw& operator=(const Raw&) = delete;

    // The first column of the last row, 0 without one.
    std::int64_t Run(const std::string& text) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(lclDatabase, text.c_str(), -1, &statement, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(lclDatabase));
        std::int64_t first = 0;
        while (sqlite3_step(statement) == SQLITE_ROW) first = sqlite3_column_int64(statement, 0);
        if (sqlite3_finalize(statement) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(lclDatabase));
        return first;
    }

private:
    sqlite3* lclDatabase = nullptr;
};

bool NewRows(FakeWorkstation& machine) {
    const ConnectionPtr connection = EmbeddedDatabase::Create(machine.Path("rows.kdb"));
    clsUpdateDb update(machine);
    update.SetDbConnection(connection);
    update.fncUpdateDb();
    clsTable table(machine);
    table.SetDbConnection(connection);
    table.SetTableName("tblDocument");
    Raw raw(platform::NativePath(machine.Path("raw.db")));
    const auto times = bench::Measure(
        [&] {
            std::int32_t id = 0;
            for (int i = 0; i < newRows; ++i)
                if (!table.SaveNewRow("Id", "DocGuid", id, "DocId"))
                    throw std::runtime_error("SaveNewRow failed");
        },
        [&] {
            for (int i = 0; i < newRows; ++i) {
                std::string guid;
                platform::CreateGuid(machine, guid);
                raw.Run("Insert into tblDocument (DocGuid) Values ('" + guid + "')");
                const auto id = std::to_string(
                    raw.Run("Select * from tblDocument where DocGuid = '" + guid + "'"));
                raw.Run("update tblDocument set DocId = " + id + " where Id = " + id);
            }
        });
    return bench::AtLeast("SaveNewRow, 100 rows", times, 0.8);
}

bool Chain(FakeWorkstation& machine) {
    std::vector<std::string> accepted;
    {
        const auto connection =
            std::make_shared<RecordingConnection>("", EmbeddedDatabase::CreateInMemory());
        clsUpdateDb update(machine);
        update.SetDbConnection(connection);
        update.fncUpdateDb();
        accepted = connection->statements;
    }
    int files = 0;
    const auto fresh = [&] {
        return EmbeddedDatabase::Create(machine.Path("chain" + std::to_string(++files) + ".kdb"));
    };
    const auto times = bench::Measure(
        [&] {
            clsUpdateDb update(machine);
            update.SetDbConnection(fresh());
            update.fncUpdateDb();
        },
        [&] { // what is refused is refused here too; a version is on record before the next step
            const ConnectionPtr connection = fresh();
            connection->BeginTrans();
            for (const std::string& statement : accepted) {
                const bool version = statement.starts_with("update tblSettings");
                if (version) connection->CommitTrans();
                try {
                    connection->Open({statement});
                } catch (const platform::Error&) {
                }
                if (version) connection->BeginTrans();
            }
            connection->CommitTrans();
        },
        5);
    return bench::AtMost("The upgrade chain on a new file", times, 1.5);
}

} // namespace

int main() {
    FakeWorkstation machine;
    const bool rows = NewRows(machine), chain = Chain(machine);
    return rows && chain ? 0 : 1;
}
