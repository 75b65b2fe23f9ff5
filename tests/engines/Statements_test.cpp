// Leaves every statement that the data layer, the model and the controls issue in a dialect in
// statements-<dialect>.sql beside the test program, one a line, for validators of that dialect.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "data/clsSettings.h"
#include "data/clsTable.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "data/schema/modDataBase.h"
#include "data/schema/schema.h"
#include "tests/engines/EveryStatement.h"
#include "tests/fakes/MemoryRows.h"
#include "tests/fakes/On.h"

namespace kavidex::tests {

using namespace kavidex::data;

namespace {

struct Form {
    const char* name;
    const char* dbmsName;
    schema::Dialect dialect;
    const char* createStart; // of the first table
};

const Form forms[] = {
    {"access", "ACCESS", schema::Dialect::Access, "CREATE TABLE tblCheckListFields ( Id COUNTER"},
    {"sqlserver", "Microsoft SQL Server", schema::Dialect::SqlServer,
     "CREATE TABLE tblCheckListFields ( Id INTEGER Identity(1000,1)"},
    {"mysql", "MySQL", schema::Dialect::MySql,
     "CREATE TABLE tblCheckListFields ( Id BIGINT AUTO_INCREMENT"},
};

void CreateIn(const Form& form, const platform::Workstation& machine,
              std::vector<std::string>& all) {
    if (form.dialect == schema::Dialect::Access) {
        for (const std::string& statement : schema::AccessBaseStatements())
            all.push_back(statement);
        return;
    }
    const auto recorder = std::make_shared<RecordingConnection>(form.dbmsName);
    recorder->schemaAnswer = [](Schema) { return TableRows({}); }; // it creates them all
    On<clsSettings> settings(machine, recorder);
    CheckAndCreateDatabase(machine, recorder, settings, form.dialect == schema::Dialect::MySql);
    all.insert(all.end(), recorder->statements.begin(), recorder->statements.end());
}

// Upgrade, settings and rows; the rows come from an embedded database, whatever the name says.
void WorkIn(const Form& form, const platform::Workstation& machine, std::vector<std::string>& all) {
    const auto recorder =
        std::make_shared<RecordingConnection>(form.dbmsName, EmbeddedDatabase::CreateInMemory());
    On<clsUpdateDb>(machine, recorder).fncUpdateDb();
    On<clsSettings> settings(machine, recorder);
    std::string value;
    settings.SetSetting("Storage", "DocumentPath", "D:\\Archief");
    settings.SetSetting("Build", "DbVersion", currentVersion);
    settings.GetSetting("Storage", "DocumentPath", value);
    settings.DeleteSetting("Build", "DbVersion");
    On<clsTable> table(machine, recorder);
    table.SetTableName("tblDocument");
    std::int32_t id = 0;
    if (table.OpenDbConnection() && table.SaveNewRow("Id", "DocGuid", id, "DocId"))
        table.DeleteCurrentRow();
    all.insert(all.end(), recorder->statements.begin(), recorder->statements.end());
}

// Of all forms of a definition this server, which is none of ours, knows one.
void ExpectOneFormForSqlServer(const std::vector<std::string>& all) {
    const auto known = [&](const std::string& start) {
        return std::count_if(all.begin(), all.end(), [&](const std::string& statement) {
            const char* const foreign[] = {"COUNTER",        "MEMO",   "ADD COLUMN",
                                           "AUTO_INCREMENT", "(38) )", " LONGTEXT"};
            return statement.starts_with(start) &&
                   std::none_of(std::begin(foreign), std::end(foreign), [&](const char* word) {
                       return statement.find(word) != std::string::npos;
                   });
        });
    };
    EXPECT_EQ(known("CREATE TABLE"), 16 + 1 + 8 + 1);
    EXPECT_EQ(known("ALTER TABLE"), 1 + 1 + 11 + 1);
    EXPECT_EQ(known("CREATE PROCEDURE"), 9);
}

#ifdef KAVIDEX_SOURCES
// Texts of the sources that begin as a statement does, up to their first quote.
std::vector<std::string> StatementsIn(const std::filesystem::path& file) {
    std::ifstream stream(file);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    const std::string lower = platform::LowerCase(text);
    std::vector<std::string> found;
    for (const std::string verb : {"\"select ", "\"insert into ", "\"update ", "\"delete from "})
        for (auto at = lower.find(verb); at != std::string::npos; at = lower.find(verb, at + 1))
            found.push_back(text.substr(at + 1, text.find('"', at + 1) - at - 1));
    return found;
}
#endif

// Natively: a Windows program has no sources beside it.
void ExpectAllOfTheSources([[maybe_unused]] const std::vector<std::string>& issued) {
#ifdef KAVIDEX_SOURCES
    std::size_t checked = 0;
    for (const char* room : {"/model", "/controls"})
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(std::string(KAVIDEX_SOURCES) + room)) {
            if (entry.path().extension() != ".cpp") continue;
            for (const std::string& start : StatementsIn(entry.path())) {
                ++checked;
                EXPECT_TRUE(std::any_of(
                    issued.begin(), issued.end(),
                    [&](const auto& statement) { return statement.rfind(start, 0) == 0; }))
                    << entry.path().filename()
                    << " has a statement that is not recorded: " << start;
            }
        }
    EXPECT_GT(checked, 40u);
#endif
}

} // namespace

TEST(Statements, EveryDialectsStatementsAreLeftForValidators) {
    for (const Form& form : forms) {
        FakeWorkstation machine;
        std::vector<std::string> all;
        CreateIn(form, machine, all);
        const std::size_t created = all.size();
        WorkIn(form, machine, all);
        if (form.dialect == schema::Dialect::SqlServer) ExpectOneFormForSqlServer(all);
        const std::vector<std::string> more = EveryStatement(machine, form.dbmsName).Run();
        all.insert(all.end(), more.begin(), more.end());
        ExpectAllOfTheSources(more);
        ASSERT_GE(created, schema::Tables().size() + schema::CreateIndexes().size()) << form.name;
        EXPECT_EQ(all.front().rfind(form.createStart, 0), 0u) << all.front();
        EXPECT_GT(all.size(), created + 100) << form.name;

        const std::string path = std::string("statements-") + form.name + ".sql";
        std::ofstream file(path, std::ios::binary | std::ios::trunc);
        for (std::string statement : all) {
            // A few texts of the translations hold a line break.
            std::replace(statement.begin(), statement.end(), '\r', ' ');
            std::replace(statement.begin(), statement.end(), '\n', ' ');
            file << statement << '\n';
        }
        file.close();
        EXPECT_TRUE(file.good()) << path;
    }
}

} // namespace kavidex::tests
