// Opening one dossier among very many against opening one among few, by the host's key.
#include <sqlite3.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "bench/ratio.h"
#include "controls/binder/ctrlCorrespondence.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/embedded/FileNames.h"
#include "data/embedded/Functions.h"
#include "data/schema/clsUpdateDb.h"
#include "platform/Workstation.h"

namespace {

using namespace kavidex;

constexpr int many = 500000, few = 500, opened = 50; // dossiers

// Each with four items and two documents, written as rows of numbers.
constexpr const char* rows =
    "CREATE TEMP TABLE n (d INTEGER PRIMARY KEY);"
    "WITH RECURSIVE c(d) AS (SELECT 1 UNION ALL SELECT d + 1 FROM c LIMIT %d)"
    " INSERT INTO n SELECT d FROM c;"
    "INSERT INTO tblDossierDbRelation (DossierId, dbKey, DbRelId)"
    " SELECT d, 'Klant-' || d, d FROM n;"
    "INSERT INTO tblDossierRelations (Id, DossierId, Type, TreeId, RelId)"
    " SELECT d, d, 'Correspondence', d, d FROM n;"
    "INSERT INTO tblTree (Id, Description, TopItemId, TreeId)"
    " SELECT d, 'Dossier ' || d, d * 4, d FROM n;"
    "INSERT INTO tblTreeItem (Id, Type, ItemId, ParentId, Description, TreeItemId)"
    " SELECT d * 4, 'tab', 0, 0, 'Dossier ' || d, d * 4 FROM n UNION ALL"
    " SELECT d * 4 + 1, 'tab', 0, d * 4, 'Post', d * 4 + 1 FROM n UNION ALL"
    " SELECT d * 4 + 2, 'tif', d * 2, d * 4 + 1, 'Brief', d * 4 + 2 FROM n UNION ALL"
    " SELECT d * 4 + 3, 'pdf', d * 2 + 1, d * 4 + 1, 'Nota', d * 4 + 3 FROM n ORDER BY 1;"
    "INSERT INTO tblDocument (Id, Description, InsertDate, Type, DocId)"
    " SELECT d * 2, 'Brief', 20260101, 'tif', d * 2 FROM n UNION ALL"
    " SELECT d * 2 + 1, 'Nota', 20260101, 'pdf', d * 2 + 1 FROM n ORDER BY 1;";

std::string MakeDatabase(const char* name, int dossiers) {
    const std::string path = (std::filesystem::temp_directory_path() / name).string();
    std::filesystem::remove(path);
    data::ConnectionPtr connection = data::EmbeddedDatabase::Create(path);
    data::clsUpdateDb update(platform::TheWorkstation());
    update.SetDbConnection(connection);
    update.fncUpdateDb();
    connection->Close();
    sqlite3* raw = nullptr;
    sqlite3_open(data::embedded::NativeName(path).c_str(), &raw);
    data::embedded::RegisterFunctions(raw);
    char statements[4096];
    std::snprintf(statements, sizeof statements, rows, dossiers);
    char* error = nullptr;
    sqlite3_exec(raw, "PRAGMA synchronous=OFF; BEGIN", nullptr, nullptr, nullptr);
    if (sqlite3_exec(raw, statements, nullptr, nullptr, &error) != SQLITE_OK)
        std::fprintf(stderr, "%s: %s\n", name, error);
    sqlite3_exec(raw, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(raw);
    return path;
}

class Binder {
public:
    Binder(const char* name, int dossiers)
        : lclPath(MakeDatabase(name, dossiers)), lclCount(dossiers) {
        lclBinder.SetDbConnection(data::EmbeddedDatabase::Open(lclPath));
    }
    ~Binder() {
        lclBinder.CloseObject();
        lclBinder.SetDbConnection(nullptr);
        std::filesystem::remove(lclPath);
    }
    Binder(const Binder&) = delete;
    Binder& operator=(const Binder&) = delete;

    // Dossiers from all over the file. False when one of them was not there.
    bool OpenSome() {
        bool found = true;
        for (int i = 0; i < opened; ++i) {
            const int dossier = 1 + static_cast<int>((i * 7919LL * (lclCount / few)) % lclCount);
            found =
                lclBinder.OpenOrCreate("Klant-" + std::to_string(dossier), "", "", "", "") == 0 &&
                lclBinder.Id() == dossier && found;
        }
        return found;
    }

private:
    std::string lclPath;
    int lclCount;
    controls::ctrlCorrespondence lclBinder{platform::TheWorkstation()};
};

} // namespace

int main() {
    Binder large("kavidex-bench-many.kdb", many), small("kavidex-bench-few.kdb", few);
    if (!large.OpenSome() || !small.OpenSome()) {
        std::puts("a dossier was not found");
        return 1;
    }
    const bench::Times times = bench::Measure([&] { large.OpenSome(); }, [&] { small.OpenSome(); });
    return bench::AtMost("opening one of 500,000 dossiers, of 500", times, 1.5) ? 0 : 1;
}
