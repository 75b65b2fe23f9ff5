#include <gtest/gtest.h>

#include <algorithm>

#include "data/clsSettings.h"
#include "data/schema/clsUpdateDb.h"
#include "data/schema/modDataBase.h"
#include "data/schema/schema.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/MemoryRows.h"
#include "tests/fakes/On.h"
#include "tests/fakes/RecordingConnection.h"

using namespace kavidex;
using namespace kavidex::data;
using namespace kavidex::tests;

namespace {

std::string Create(std::string_view name, schema::Dialect dialect) {
    for (const schema::Table& table : schema::Tables())
        if (table.name == name) return schema::CreateTable(table, dialect);
    return {};
}

} // namespace

TEST(schema, WritesEachDialectLetterForLetter) {
    using enum schema::Dialect;
    EXPECT_EQ(Create("tblSettings", SqlServer),
              "CREATE TABLE tblSettings ( Id INTEGER Identity(1000,1)  CONSTRAINT IdConstSetting "
              "PRIMARY KEY, Section CHAR(255), SKey CHAR(255), Value CHAR(255))");
    EXPECT_EQ(
        Create("tblSettings", MySql),
        "CREATE TABLE tblSettings ( Id BIGINT AUTO_INCREMENT  PRIMARY KEY, Section CHAR(255), "
        "SKey CHAR(255), Value CHAR(255)) AUTO_INCREMENT = 1000");
    EXPECT_EQ(Create("tblSettings", Access),
              "CREATE TABLE tblSettings ( Id COUNTER CONSTRAINT IdConstSetting PRIMARY KEY, "
              "[Section] TEXT(255), [SKey] TEXT(255), [Value] TEXT(255))");
    EXPECT_EQ(Create("tblDossierDbRelation", SqlServer),
              "CREATE TABLE tblDossierDbRelation ( DossierId INTEGER Identity(1000,1)  CONSTRAINT "
              "IdConstDbRel PRIMARY KEY, dbKey CHAR(255), DbRelId INTEGER)");
}

TEST(schema, BuildsTheReferenceTableInItsPieces) {
    const std::string server = Create("tblDossierReference", schema::Dialect::SqlServer);
    const std::string mySql = Create("tblDossierReference", schema::Dialect::MySql);
    EXPECT_TRUE(server.starts_with(
        "CREATE TABLE tblDossierReference ( Id INTEGER Identity(1000,1)  CONSTRAINT IdConstRef "
        "PRIMARY KEY,  DossierId INTEGER,  DossierType INTEGER,Field1 CHAR(50),Field2 CHAR(50),"));
    EXPECT_NE(server.find("Field30 CHAR(50),Value1 CHAR(100),"), std::string::npos);
    EXPECT_TRUE(server.ends_with("Value30 CHAR(100),ExternalField INTEGER,Description "
                                 "CHAR(255),Memo NTEXT, UseMemo INTEGER, "
                                 "SaveSettings CHAR(50), RefId INTEGER)"));
    EXPECT_TRUE(mySql.ends_with("Memo LONGTEXT , UseMemo INTEGER, SaveSettings CHAR(50), RefId "
                                "BIGINT) AUTO_INCREMENT = 1000"));
}

TEST(schema, HasSixteenTablesTwentyTwoIndexesNineProcedures) {
    EXPECT_EQ(schema::Tables().size(), 16u);
    EXPECT_EQ(schema::CreateIndexes().size(), 22u);
    EXPECT_EQ(schema::CreateIndexes()[12],
              "CREATE INDEX indRefVal10 on tblDossierReference (Value10 )");
    const auto procedures = schema::CreateProcedures();
    ASSERT_EQ(procedures.size(), 9u);
    EXPECT_EQ(
        procedures[0],
        "CREATE PROCEDURE AddToSettings @Section CHAR(255), @Key CHAR(255), @Value CHAR(255) AS "
        "SET NOCOUNT ON  Insert into tblSettings (Section, sKey, Value) VALUES (@Section, @Key, "
        "@Value) SELECT @@Identity Return @@IDENTITY   SET NOCOUNT OFF");
    EXPECT_NE(procedures[8].find("set TreeItemId = @@IDENTITY where Id  = @@IDENTITY Return"),
              std::string::npos);
}

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

TEST(upgradeChain, IssuesEachFormAndShowsEachPhase) {
    FakeWorkstation machine;
    const auto server = std::make_shared<RecordingConnection>("Microsoft SQL Server");
    server->schemaAnswer = [](Schema) { return TableRows({"tblDossierTypes"}); };
    server->answer = [](const Command& command) {
        const bool types = command.text.find("from tblDossierTypes") != std::string::npos;
        return types ? MemoryRows({"Id"}, {}) : MakeClosedRecordset();
    };
    On<clsUpdateDb> update(machine, server);
    std::string reached;
    EXPECT_EQ(update.fncUpTo112(reached), 0);
    EXPECT_EQ(reached, "1.1.2");
    EXPECT_EQ(server->statements, (std::vector<std::string>{
                                      "ALTER TABLE tblDossierRefTabs ADD COLUMN TabChanged Text(1)",
                                      "ALTER TABLE tblDossierRefTabs ADD TabChanged Char(1)"}));
    server->statements.clear();
    update.fncUp101(reached);
    EXPECT_EQ(
        server->statements,
        (std::vector<std::string>{
            "CREATE TABLE tblDossierTabs (Id COUNTER CONSTRAINT IdConst PRIMARY "
            "KEY,DossierTypeId LONG,TabDescription TEXT(50),TabType TEXT(50),Order LONG)",
            "CREATE TABLE tblDossierRefTabs (Id COUNTER CONSTRAINT IdConst PRIMARY "
            "KEY,DossierReferenceId LONG,TabDescription TEXT(50),TabType TEXT(50),Order LONG)",
            "Select * from tblDossierTypes"}));
    update.fncUpTo110(reached);
    EXPECT_GE(server->Count("insert into tblTranslations (strKey,NL,UK) values('"), 1u);
    EXPECT_EQ(server->Count("GE,FR) values("), 0u);
    for (const auto step :
         {&clsUpdateDb::fncUpTo108, &clsUpdateDb::fncUpTo109, &clsUpdateDb::fncUpTo111,
          &clsUpdateDb::fncUpTo113, &clsUpdateDb::fncUpTo115, &clsUpdateDb::fncUpTo118})
        EXPECT_EQ((update.*step)(reached), 0);
    EXPECT_EQ(reached, "1.1.8");
    EXPECT_EQ(machine.busy.shown.back().caption, "Bezig met aanmaken van Document Extra Info");
    EXPECT_EQ(machine.busy.shown.back().text, "Bezig met bijwerken van versienummer");
    std::vector<std::string> expected = {
        "ALTER TABLE tblDossiertypes ADD COLUMN ShowCabinet NTEXT, CreateDossier NTEXT, "
        "OpenDossier NTEXT)",
        "insert into tblTranslations (strKey,NL,UK,GE,FR) "
        "values('Map','Map','Folder','Ordner','Sous-dossier')",
        "ALTER TABLE tblDocument ADD COLUMN DocGuid Text(38)",
        "ALTER TABLE tblDocument ADD DocGuid Char(38)",
        "CREATE INDEX indDocGuid on tblDocument (DocGuid )",
        "CREATE INDEX indDocGuid on tblDocument (DocGuid(38) )",
        "DROP INDEX indRefVal10 on tblDossierReference",
        "DROP INDEX tblDossierReference.indRefVal10",
        "CREATE TABLE tblDocExtraInfo ( Id COUNTER CONSTRAINT IdDocExtraInfo PRIMARY KEY, [DocId] "
        "LONG, [SendTo] TEXT(255), [SendFrom] TEXT(255), [SendOn] TEXT(255), [RecievedOn] "
        "TEXT(255), [NrOfAttatchements] LONG)",
        "CREATE TABLE tblDocExtraInfo ( Id INTEGER Identity(1000,1)  CONSTRAINT IdDocExtraInfo "
        "PRIMARY KEY, DocId INTEGER, SendTo CHAR(255), SendFrom CHAR(255), SendOn CHAR(255), "
        "RecievedOn CHAR(255), NrOfAttatchements INTEGER)",
        "CREATE INDEX indDocExId on tblDocExtraInfo(DocId )"};
    for (const char* name :
         {"CheckListRefFields", "Document", "DossierDbRelation", "DossierReference",
          "DossierRefTabs", "DossierRelations", "Tree", "TreeItem"}) {
        const std::string plain = std::string(name) + "UpLink";
        expected.push_back("CREATE INDEX ind" + plain + " on tbl" + plain + " (RefGuid, RefId)");
        expected.push_back("CREATE TABLE tbl" + plain +
                           " ( Id BIGINT AUTO_INCREMENT  PRIMARY KEY, RefGuid CHAR(38), RefId "
                           "INTEGER, ServerRefId INTEGER) AUTO_INCREMENT = 1000");
    }
    for (const char* index :
         {"indChecklistFields on tblChecklistFields (Id)",
          "indChecklistRefFields on tblChecklistRefFields (Id)",
          "indTabChecklistRefFields on tblChecklistRefFields (TabRefId)",
          "indDossierFields on tblDossierFields (DossierId)",
          "indDossierRefTabs on tblDossierReftabs (DossierReferenceId)",
          "indRelDossierId on tblDossierRelations (DossierId)",
          "indRelTreeId on tblDossierRelations (TreeId)",
          "indtabdossierid on tblDossierTabs (DossierTypeId)",
          "indscreensettingsScreenId on tblscreensettings (ScreenId)",
          "indstrKey on tblTranslations (strKey)", "indParentId on tblTreeItem (parentId)"})
        expected.push_back("CREATE INDEX " + std::string(index));
    for (const std::string& statement : expected)
        EXPECT_TRUE(server->Issued(statement)) << statement;
}
