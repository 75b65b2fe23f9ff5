// The embedded engine against loops over the SQL library itself with the same statements.
#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "data/embedded/EmbeddedConnection.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/embedded/FileNames.h"
#include "data/embedded/Functions.h"

namespace {

using namespace kavidex;

constexpr int folders = 5000, itemsPerFolder = 20;

std::string MakeDatabase() {
    const std::string path =
        (std::filesystem::temp_directory_path() / "kavidex-bench.kdb").string();
    std::filesystem::remove(path);
    const data::ConnectionPtr connection = data::EmbeddedDatabase::Create(path);
    connection->BeginTrans();
    connection->Execute("CREATE INDEX indParentId on tblTreeItem (parentId)");
    for (int folder = 1; folder <= folders; ++folder)
        for (int item = 0; item < itemsPerFolder; ++item)
            connection->Execute("Insert into tblTreeItem (Type, ItemId, ParentId, Description, "
                                "TreeItemId) Values ('tif', 1, " +
                                std::to_string(folder) + ", 'Document number " +
                                std::to_string(item) + "', " +
                                std::to_string(folder * itemsPerFolder + item) + ")");
    connection->CommitTrans();
    return path;
}

std::string Statement(int folder) {
    return "Select * from tblTreeItem where ParentId = " + std::to_string(folder) +
           " ORDER BY TreeItemId";
}

// What a plain program does: prepares each text, copies every value.
struct PlainRow {
    std::int64_t id, itemId, parentId, treeItemId;
    std::string type, description;
};

std::string Text(sqlite3_stmt* statement, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return text ? text : "";
}

void ReadPlain(sqlite3_stmt* statement, std::vector<PlainRow>& rows) {
    while (sqlite3_step(statement) == SQLITE_ROW)
        rows.push_back({sqlite3_column_int64(statement, 0), sqlite3_column_int64(statement, 2),
                        sqlite3_column_int64(statement, 3), sqlite3_column_int64(statement, 5),
                        Text(statement, 1), Text(statement, 4)});
}

class Benchmarks {
public:
    explicit Benchmarks(const std::string& path)
        : lclConnection(data::EmbeddedDatabase::Open(path)) {
        sqlite3_open(data::embedded::NativeName(path).c_str(), &lclRaw);
        data::embedded::RegisterFunctions(lclRaw);
        Raw("PRAGMA synchronous=EXTRA"); // as the engine has it
    }
    ~Benchmarks() { sqlite3_close(lclRaw); }
    Benchmarks(const Benchmarks&) = delete;
    Benchmarks& operator=(const Benchmarks&) = delete;

    // Translating, finding and binding a statement without rows to read, against preparing it.
    bool Translation() {
        return Within(
            "translator and cache against raw prepare", 1.1,
            [&] {
                for (int i = 1; i <= folders; ++i)
                    lclConnection->Open({.text = Statement(-i), .parameters = {}});
            },
            [&] {
                for (int i = 1; i <= folders; ++i) {
                    sqlite3_stmt* statement = nullptr;
                    sqlite3_prepare_v2(lclRaw, Statement(-i).c_str(), -1, &statement, nullptr);
                    sqlite3_step(statement);
                    sqlite3_finalize(statement);
                }
            });
    }

    // 5,000 folders of 20 items, every value read.
    bool Tree() {
        return Within(
            "5,000 selects of 20 rows", 1.5, [&] { ReadThroughEngine(); },
            [&] {
                for (int i = 1; i <= folders; ++i) {
                    std::vector<PlainRow> rows;
                    sqlite3_stmt* statement = nullptr;
                    sqlite3_prepare_v2(lclRaw, Statement(i).c_str(), -1, &statement, nullptr);
                    ReadPlain(statement, rows);
                    sqlite3_finalize(statement);
                }
            });
    }

    // The same against a loop that prepares once.
    bool TreePrepared() {
        return Within(
            "the same, raw statement prepared once", 2.0, [&] { ReadThroughEngine(); },
            [&] {
                sqlite3_stmt* statement = nullptr;
                sqlite3_prepare_v2(
                    lclRaw, "Select * from tblTreeItem where ParentId = ? ORDER BY TreeItemId", -1,
                    &statement, nullptr);
                for (int i = 1; i <= folders; ++i) {
                    std::vector<PlainRow> rows;
                    sqlite3_bind_int(statement, 1, i);
                    ReadPlain(statement, rows);
                    sqlite3_reset(statement);
                }
                sqlite3_finalize(statement);
            });
    }

    // A row inserted, found by its key and numbered, as every record class does; 200 a transaction.
    bool NewRows() {
        return Within(
            "new rows, found and numbered", 1.25,
            [&] {
                lclConnection->BeginTrans();
                for (int i = 0; i < 200; ++i) NewRow(i);
                lclConnection->RollbackTrans();
            },
            [&] {
                Raw("BEGIN IMMEDIATE");
                for (int i = 0; i < 200; ++i) NewRowRaw(i);
                Raw("ROLLBACK");
            });
    }

private:
    static bool Within(const char* name, double limit, const auto& ours, const auto& peer) {
        return bench::AtMost(name, bench::Measure(ours, peer), limit);
    }

    void ReadThroughEngine() {
        for (int i = 1; i <= folders; ++i) {
            const data::RecordsetPtr rows =
                lclConnection->Open({.text = Statement(i), .parameters = {}});
            for (; !rows->Eof(); rows->MoveNext())
                for (std::size_t field = 0; field < 6; ++field) rows->Get(field);
        }
    }

    void NewRow(int number) {
        const std::string key = "'{guid-" + std::to_string(number) + "}'";
        lclConnection->Execute("Insert into tblDossierDbRelation (dbKey) Values (" + key + ")");
        const data::RecordsetPtr row = lclConnection->Open(
            {.text = "Select * from tblDossierDbRelation where dbKey = " + key, .parameters = {}});
        row->Set("DbRelId", row->Get("DossierId"));
        row->Update();
    }

    void NewRowRaw(int number) {
        const std::string key = "'{guid-" + std::to_string(number) + "}'";
        Raw("Insert into tblDossierDbRelation (dbKey) Values (" + key + ")");
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(lclRaw,
                           ("Select * from tblDossierDbRelation where dbKey = " + key).c_str(), -1,
                           &statement, nullptr);
        sqlite3_step(statement);
        const std::string id = Text(statement, 0);
        sqlite3_finalize(statement);
        Raw("Update tblDossierDbRelation set DbRelId = " + id + " where DossierId = " + id);
    }

    void Raw(const std::string& statement) {
        sqlite3_exec(lclRaw, statement.c_str(), nullptr, nullptr, nullptr);
    }

    data::ConnectionPtr lclConnection;
    sqlite3* lclRaw = nullptr;
};

} // namespace

int main() {
    const std::string path = MakeDatabase();
    bool kept = true;
    {
        Benchmarks benchmarks(path);
        kept = benchmarks.Translation() && kept;
        kept = benchmarks.Tree() && kept;
        kept = benchmarks.TreePrepared() && kept;
        kept = benchmarks.NewRows() && kept;
    }
    std::filesystem::remove(path);
    return kept ? 0 : 1;
}
