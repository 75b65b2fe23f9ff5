// Asks the embedded engine how it would run every statement that the controls and the model issue:
// none may read a table from end to end that grows with use.
#include <gtest/gtest.h>

#include <algorithm>

#include "data/clsSettings.h"
#include "data/embedded/EmbeddedConnection.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "platform/General.h"
#include "platform/text.h"
#include "tests/engines/EveryStatement.h"

namespace kavidex::controls {
namespace {

constexpr std::string_view growing[] = {
    "tblDocument",       "tblDocExtraInfo",   "tblDossierDbRelation", "tblDossierRelations",
    "tblTree",           "tblTreeItem",       "tblDossierReference",  "tblDossierRefTabs",
    "tblDocumentUpLink", "tblTreeItemUpLink", "tblSettings",          "tblCheckListRefFields",
};

struct Exception {
    std::string_view begin, why;
};
constexpr Exception exceptions[] = {
    {"Select Id, DocId, InsertDate, Type, Description from tblDocument",
     "the integrity check reads everything"},
    {"Select Id, TreeId, TopItemId from tblTree", "the integrity check"},
    {"Select Id, TreeItemId, ParentId, ItemId, Type from tblTreeItem", "the integrity check"},
    {"Select DossierId, DbRelId from tblDossierDbRelation", "the integrity check"},
    {"Select Id, RelId, DossierId, TreeId, ChildDossierId from tblDossierRelations",
     "the integrity check"},
    {"Select Id, DocId from tblDocExtraInfo", "the integrity check"},
    {"Select * from tblSettings where Section like", "a pattern that its caller brings"},
};

struct Plans : testing::Test {
    tests::FakeWorkstation machine;
    data::ConnectionPtr database = data::EmbeddedDatabase::CreateInMemory();
    std::shared_ptr<tests::RecordingConnection> connection =
        std::make_shared<tests::RecordingConnection>("", database);

    void SetUp() override {
        machine.guids.real = true;
        // The steps of the upgrade read what they convert, once.
        tests::On<data::clsUpdateDb>(machine, database).fncUpdateDb();
        tests::On<data::clsSettings> settings(machine, connection);
        std::string value, section, key;
        settings.SetSetting("Storage", "DocumentPath", machine.Path("store"));
        settings.GetSettingLike("Stor%", "%", value, section, key, true);
        settings.SetSetting("A", "B", "c");
        settings.DeleteSetting("A", "B");
        machine.files.CreateDirectories(machine.Path("store"));
    }
};

TEST_F(Plans, ReadNoGrowingTableFromEndToEnd) {
    platform::SaveRegFlag(machine, "TreeSettings", "ShowDeleted", true);
    auto statements = tests::EveryStatement(machine, "ACCESS").Run();
    statements.insert(statements.end(), connection->statements.begin(),
                      connection->statements.end());
    auto& session = dynamic_cast<data::embedded::EmbeddedConnection&>(*database).OwnSession();
    std::size_t asked = 0;
    std::vector<bool> used(std::size(exceptions));
    for (const std::string& statement : statements) {
        const auto excepted =
            std::find_if(std::begin(exceptions), std::end(exceptions),
                         [&](const Exception& e) { return statement.starts_with(e.begin); });
        ++asked;
        for (const std::string& step : session.Plan(statement)) {
            const std::string table = step.substr(0, step.find(' ', 5)).substr(5);
            const bool grows =
                std::any_of(std::begin(growing), std::end(growing), [&](std::string_view name) {
                    return platform::EqualAsciiNoCase(name, table);
                });
            if (!step.starts_with("SCAN ") || !grows) continue;
            if (excepted == std::end(exceptions))
                ADD_FAILURE() << step << " by: " << statement;
            else
                used[static_cast<std::size_t>(excepted - std::begin(exceptions))] = true;
        }
    }
    EXPECT_GT(asked, 80u);
    for (std::size_t i = 0; i < used.size(); ++i)
        EXPECT_TRUE(used[i]) << "no exception is needed for: " << exceptions[i].begin;
}

} // namespace
} // namespace kavidex::controls
