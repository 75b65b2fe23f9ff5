// Every statement that the data layer, the model and the controls issue: held against those that
// were agreed, and left in statements-<dialect>.sql beside the test program, one a line, for
// validators of that dialect.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>

#include "data/clsSettings.h"
#include "data/clsTable.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "data/schema/modDataBase.h"
#include "data/schema/schema.h"
#include "tests/engines/EveryStatement.h"
#include "tests/fakes/Databases.h"
#include "tests/fakes/MemoryRows.h"
#include "tests/fakes/On.h"

namespace kavidex::tests {

using namespace kavidex::data;

namespace {

struct Form {
    const char* name;
    const char* dbmsName;
    schema::Dialect dialect;
};

const Form forms[] = {
    {"access", "ACCESS", schema::Dialect::Access},
    {"sqlserver", "Microsoft SQL Server", schema::Dialect::SqlServer},
    {"mysql", "MySQL", schema::Dialect::MySql},
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

// A statement without what differs from run to run: numbers of rows, guids, the test's own folder.
// Definitions stay whole; of a translation the columns are told.
std::string Agreed(std::string statement, const std::string& folder) {
    if (statement.find(" tblTranslations ") != std::string::npos)
        for (const char* const texts : {" values('", " = '"})
            if (const auto at = statement.find(texts); at != std::string::npos) statement.erase(at);
    if (statement.starts_with("CREATE") || statement.starts_with("ALTER")) return statement;
    for (const std::string& own : {folder, platform::Replace(folder, "\\", "\\\\")})
        statement = platform::Replace(statement, own, "{folder}");
    std::string agreed;
    for (std::size_t at = 0; at < statement.size(); ++at) {
        const bool guid = statement[at] == '{' && statement.find('}', at) == at + 37;
        const bool digit = std::isdigit(static_cast<unsigned char>(statement[at])) != 0;
        if (guid) at += 37;
        while (digit && at + 1 < statement.size() && std::isdigit(statement[at + 1])) ++at;
        agreed += guid ? "{guid}" : digit ? "0" : std::string(1, statement[at]);
    }
    return agreed;
}

// Hosts, databases and archives rely on them letter for letter. KAVIDEX_RENEW writes the file anew;
// what it then changes is for the reviewer to judge.
void ExpectAgreed([[maybe_unused]] const std::map<std::string, std::string>& issued) {
#ifdef KAVIDEX_SOURCES
    const std::string path = KAVIDEX_SOURCES "/tests/engines/statements.txt";
    std::set<std::string> agreed, present;
    for (const auto& [statement, dialects] : issued) present.insert(dialects + statement);
    if (std::getenv("KAVIDEX_RENEW")) {
        std::ofstream file(path, std::ios::trunc);
        for (const auto& [statement, dialects] : issued) file << dialects << statement << '\n';
    }
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) agreed.insert(line);
    for (const std::string& line : agreed)
        EXPECT_TRUE(present.contains(line)) << "agreed, and gone is: " << line;
    for (const std::string& line : present)
        EXPECT_TRUE(agreed.contains(line)) << "statements.txt lacks (KAVIDEX_RENEW): " << line;
#endif
}

} // namespace

TEST(Statements, AreTheAgreedOnesAndLeftForValidators) {
    std::map<std::string, std::string> issued; // with the dialects
    for (const Form& form : forms) {
        FakeWorkstation machine;
        std::vector<std::string> all;
        CreateIn(form, machine, all);
        WorkIn(form, machine, all);
        if (form.dialect == schema::Dialect::SqlServer) ExpectOneFormForSqlServer(all);
        const auto old = std::make_shared<RecordingConnection>(form.dbmsName, OldDatabase(true));
        On<clsUpdateDb>(machine, old).fncUpdateDb();
        all.insert(all.end(), old->statements.begin(), old->statements.end());
        const std::vector<std::string> more = EveryStatement(machine, form.dbmsName).Run();
        all.insert(all.end(), more.begin(), more.end());
        ExpectAllOfTheSources(more);
        for (std::string& statement : all) {
            // A few texts of the translations hold a line break.
            std::replace(statement.begin(), statement.end(), '\r', ' ');
            std::replace(statement.begin(), statement.end(), '\n', ' ');
            auto& dialects = issued[Agreed(statement, machine.Folder())];
            if (dialects.find(form.name) == std::string::npos)
                dialects += std::string(form.name) + " ";
        }

        const std::string path = std::string("statements-") + form.name + ".sql";
        std::ofstream file(path, std::ios::binary | std::ios::trunc);
        for (const std::string& statement : all) file << statement << '\n';
        file.close();
        EXPECT_TRUE(file.good()) << path;
    }
    ExpectAgreed(issued);
}

} // namespace kavidex::tests
