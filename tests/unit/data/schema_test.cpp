#include <gtest/gtest.h>

#include "data/clsSettings.h"
#include "data/schema/modDataBase.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/MemoryRows.h"
#include "tests/fakes/RecordingConnection.h"

using namespace kavidex;
using namespace kavidex::data;
using namespace kavidex::tests;

struct modDataBaseTest : testing::Test {
    FakeWorkstation machine;
    clsSettings settings{machine};
    std::shared_ptr<RecordingConnection> connection =
        std::make_shared<RecordingConnection>("Microsoft SQL Server");
    std::vector<std::string> tables = {"other"};

    void SetUp() override {
        connection->schemaAnswer = [this](Schema) { return TableRows(tables); };
        connection->answer = [](const Command& command) {
            if (command.type == CommandType::StoredProcedure) return MakeClosedRecordset();
            return MemoryRows({"Id", "Section", "SKey", "Value"}, {});
        };
        settings.SetDbConnection(connection);
    }
};

TEST_F(modDataBaseTest, CreatesAServersSchemaInItsOrderAndSaysSo) {
    EXPECT_EQ(CheckAndCreateDatabase(machine, connection, settings, false), 1);
    ASSERT_EQ(connection->statements.size(), 16u + 9u + 22u + 2u); // the last two: the version
    EXPECT_TRUE(connection->statements[0].starts_with("CREATE TABLE tblCheckListFields "));
    EXPECT_TRUE(connection->statements[16].starts_with("CREATE PROCEDURE AddToSettings "));
    EXPECT_TRUE(connection->statements[25].starts_with("CREATE INDEX indDocId "));
    const Command& version = connection->commands.back();
    EXPECT_EQ(version.text, "AddToSettings");
    ASSERT_EQ(version.parameters.size(), 3u);
    EXPECT_EQ(ToText(version.parameters[2].value), "1.0.8");
    EXPECT_EQ(version.parameters[0].size, 5);
    EXPECT_EQ(version.parameters[0].type, AdoType::Char);
    const std::vector<FakeBusyDialog::Shown> shown = {
        {"Controle database", "Bezig met het controleren van de database."},
        {"Aanmaken database", "Bezig met het aanmaken van tabellen."},
        {"Aanmaken database", "Bezig met het aanmaken van Stored Procedures."},
        {"Aanmaken database", "Bezig met het aanmaken van indexen."},
        {"Aanmaken database", "Bezig met het bijwerken van het versienummer."}};
    EXPECT_EQ(machine.busy.shown, shown);
    EXPECT_FALSE(machine.busy.open);
}

TEST_F(modDataBaseTest, EndsAtTheFirstFailingStatementAndLeavesWhatIsThereAlone) {
    for (std::size_t n = 1; n <= 47; ++n) {
        connection->statements.clear();
        connection->FailAt(n);
        EXPECT_EQ(CheckAndCreateDatabase(machine, connection, settings, false), 1);
        EXPECT_EQ(connection->statements.size(), n);
        EXPECT_FALSE(machine.busy.open);
    }
    EXPECT_EQ(machine.log.lines.size(), 47u);
    tables = {"other", "TBLSETTINGS"}; // there, in any case of its letters
    connection->statements.clear();
    EXPECT_EQ(CheckAndCreateDatabase(machine, connection, settings, false), 0);
    EXPECT_TRUE(connection->statements.empty());
}
