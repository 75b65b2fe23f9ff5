// Records what each dialect's server is sent, one statement a line, for validators outside: files
// statements-<dialect>.sql where the tests run.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>

#include "data/clsTable.h"
#include "data/modData.h"
#include "data/schema/clsUpdateDb.h"
#include "data/schema/modDataBase.h"
#include "data/schema/schema.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/MemoryRows.h"
#include "tests/fakes/RecordingConnection.h"

using namespace kavidex;
using namespace kavidex::data;
using namespace kavidex::tests;

namespace {

bool Has(const std::string& statement, std::initializer_list<const char*> parts) {
    for (const char* part : parts)
        if (statement.find(part) != std::string::npos) return true;
    return false;
}

struct Server {
    const char *file, *name;
    // What such a server does not know.
    std::function<bool(const std::string&)> refuses;
};

const Server servers[] = {
    {"access", "ACCESS",
     [](const std::string& s) {
         return Has(s, {"Identity(", "AUTO_INCREMENT", "(38) )", " NTEXT", " LONGTEXT"}) ||
                (Has(s, {"ALTER TABLE"}) && !Has(s, {" ADD COLUMN "}));
     }},
    {"sqlserver", "Microsoft SQL Server",
     [](const std::string& s) {
         return Has(s, {"COUNTER", "MEMO", "ADD COLUMN", "AUTO_INCREMENT", "(38) )", " LONGTEXT"});
     }},
    {"mysql", "MySQL",
     [](const std::string& s) {
         return Has(s, {"COUNTER", "MEMO", "Identity(", " NTEXT", "[", "PROCEDURE", " Text("});
     }},
};

// Settings that were never written, a table list without any of ours, one row in other tables.
RecordsetPtr Answer(const Command& command) {
    if (command.type == CommandType::StoredProcedure) return MakeClosedRecordset();
    const std::int64_t id = 1000;
    std::vector<std::vector<Value>> rows;
    if (!Has(command.text, {"tblSettings", "tblTranslations"})) rows = {{id, id, id}};
    if (Has(command.text, {"'DbVersion'"})) return MemoryRows({"Value"}, {{std::string("1.0.8")}});
    if (Has(command.text, {"tblTranslations"})) return MemoryRows({"strKey", "GE"}, rows);
    return MemoryRows({"Id", "TreeId", "RelId"}, rows);
}

void UseEverything(FakeWorkstation& machine, const ConnectionPtr& connection,
                   const Server& server) {
    clsSettings settings(machine);
    settings.SetDbConnection(connection);
    if (IsAccessConnection(connection))
        for (const std::string& statement : schema::AccessBaseStatements())
            connection->Execute(statement);
    else
        CheckAndCreateDatabase(machine, connection, settings, IsMySqlConnection(connection));
    clsUpdateDb update(machine);
    update.SetDbConnection(connection);
    update.fncUpdateDb();
    std::string value, section, key;
    settings.SetSetting("Storage", "DocumentPath", "\\\\server\\share");
    settings.GetSettingLike("Stor%", "%", value, section, key, true);
    settings.DeleteSetting("Storage", "DocumentPath");
    GetTreeIdOfTopItem(machine, 1000, connection);
    GetRelIdOfTree(machine, 1000, connection);
    clsTable table(machine);
    table.SetDbConnection(connection);
    table.SetTableName("tblDocument");
    table.SetCriteria("Description = " + SqlValue("O'Brien"));
    table.SetOrdering("Id");
    table.OpenDbConnection();
    std::int32_t id = 0;
    EXPECT_TRUE(table.SaveNewRow("Id", "DocGuid", id, "")) << server.name;
    EXPECT_EQ(id, 1000);
}

} // namespace

TEST(Statements, AreOnRecordForEachDialect) {
    for (const Server& server : servers) {
        FakeWorkstation machine;
        const auto connection = std::make_shared<RecordingConnection>(server.name);
        std::vector<std::string> accepted;
        connection->answer = Answer;
        connection->schemaAnswer = [](Schema) { return TableRows({"tblDossierTypes"}); };
        connection->refuse = [&](const std::string& statement) {
            if (server.refuses(statement)) return true;
            accepted.push_back(statement);
            return false;
        };
        UseEverything(machine, connection, server);

        const std::string file = std::string("statements-") + server.file + ".sql";
        std::ofstream out(file, std::ios::binary);
        for (std::string statement : accepted) {
            for (char& c : statement)
                if (c == '\r' || c == '\n') c = ' '; // one a line
            out << statement << '\n';
        }
        out.close();
        EXPECT_GT(accepted.size(), 400u) << server.name;
        EXPECT_TRUE(out) << std::filesystem::absolute(file);
        const auto count = [&](const char* part) {
            return std::count_if(accepted.begin(), accepted.end(),
                                 [&](const std::string& s) { return s.starts_with(part); });
        };
        EXPECT_EQ(count("CREATE TABLE"), 16 + 1 + 8 + 1) << server.name;
        EXPECT_EQ(count("ALTER TABLE"), 1 + 1 + 11 + 1) << server.name;
        EXPECT_EQ(count("CREATE PROCEDURE"), server.file == std::string("sqlserver") ? 9 : 0);
    }
}
