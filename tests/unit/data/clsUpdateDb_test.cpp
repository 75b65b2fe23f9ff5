#include <gtest/gtest.h>

#include <algorithm>

#include "data/schema/clsUpdateDb.h"
#include "data/schema/translations.h"
#include "data/schema/upgradeSteps.h"
#include "tests/fakes/Databases.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/MemoryRows.h"
#include "tests/fakes/RecordingConnection.h"

using namespace kavidex;
using namespace kavidex::data;
using namespace kavidex::tests;

namespace {

struct clsUpdateDbTest : testing::Test {
    FakeWorkstation machine;

    std::int32_t Upgrade(const ConnectionPtr& connection) {
        clsUpdateDb update(machine);
        update.SetDbConnection(connection);
        return update.fncUpdateDb();
    }
    std::string Version(const ConnectionPtr& connection) {
        clsSettings settings(machine);
        settings.SetDbConnection(connection);
        std::string version;
        settings.GetSetting("Build", "DbVersion", version);
        return version;
    }
    std::int64_t Count(const ConnectionPtr& connection, const std::string& from) {
        return connection->Open({"select * from " + from})->RecordCount();
    }
    std::string First(const ConnectionPtr& connection, const std::string& table,
                      const std::string& column) {
        return ToText(connection->Open({"select * from " + table})->Get(column));
    }
};

} // namespace

TEST_F(clsUpdateDbTest, BringsANewDatabaseToTheCurrentVersion) {
    const ConnectionPtr connection = EmbeddedDatabase::CreateInMemory();
    connection->Execute("insert into tblDocument (Description) values ('a')");
    connection->Execute("insert into tblCheckListRefFields (FieldType) values ('b')");
    EXPECT_EQ(Upgrade(connection), 0);
    EXPECT_EQ(Version(connection), "1.1.8");
    EXPECT_EQ(TablesOf(*connection).size(), 16u + 1 + 8 + 1);
    EXPECT_EQ(Count(connection, "tblTranslations"),
              static_cast<std::int64_t>(Translations().size()));
    EXPECT_EQ(Count(connection, "tblTranslations where GE is null or FR is null or NL is null"), 0);
    EXPECT_EQ(First(connection, "tblDocument", "DocGuid").size(), 38u);
    EXPECT_EQ(First(connection, "tblCheckListRefFields", "clGuid").size(), 38u);
    const std::string text = Printout(*connection);
    EXPECT_EQ(text.find("indRefVal10"), std::string::npos);
    for (const char* name : {"indParentId", "indTreeItemGuid", "indCheckGuid", "indDocExId",
                             "indTreeItemUpLink", "DossierIdText", "TabChanged", "indstrKey"})
        EXPECT_NE(text.find(name), std::string::npos) << name;
    EXPECT_FALSE(machine.busy.open);
}

TEST_F(clsUpdateDbTest, ChangesNothingTheSecondTime) {
    const auto connection =
        std::make_shared<RecordingConnection>("", EmbeddedDatabase::CreateInMemory());
    Upgrade(connection);
    const std::string before = Printout(*connection->inner);
    connection->statements.clear();
    machine.busy.shown.clear();
    Upgrade(connection);
    EXPECT_EQ(connection->statements.size(), 1u); // the version's look-up
    EXPECT_EQ(Printout(*connection->inner), before);
    EXPECT_TRUE(machine.busy.shown.empty());
}

TEST_F(clsUpdateDbTest, ConvertsAnOldDatabaseWithItsRows) {
    const ConnectionPtr connection = OldDatabase(true);
    Upgrade(connection);
    EXPECT_EQ(Version(connection), "1.1.8");
    EXPECT_EQ(First(connection, "tblSettings", "SKey"), "DocumentPath");
    for (const auto& [table, column] : {std::pair{"tblDocument", "DocId"},
                                        {"tblTree", "TreeId"},
                                        {"tblTreeItem", "TreeItemId"},
                                        {"tblDossierDbRelation", "DbRelId"},
                                        {"tblDossierRelations", "RelId"},
                                        {"tblDossierTypes", "TypeId"},
                                        {"tblDossierReference", "RefId"},
                                        {"tblDossierTabs", "TabId"}})
        EXPECT_EQ(First(connection, table, column), "1") << table;
    EXPECT_EQ(First(connection, "tblDossierFields", "intOrder"), "3");
    EXPECT_EQ(First(connection, "tblDossierTabs", "TabDescription"), "Dossier");
    EXPECT_EQ(First(connection, "tblDossierTabs", "intOrder"), "1");
    EXPECT_EQ(First(connection, "tblDossierTypes", "ShowCabinet"), "");
    const std::string text = Printout(*connection);
    for (const char* gone : {" Order", " Key"})
        EXPECT_EQ(text.find(std::string(gone) + " "), std::string::npos) << gone;
}

TEST_F(clsUpdateDbTest, SkipsTheDossierStepsWithoutTheirTables) {
    const ConnectionPtr inner = OldDatabase(false);
    const auto connection = std::make_shared<RecordingConnection>("", inner);
    Upgrade(connection);
    EXPECT_EQ(Version(inner), "1.1.8");
    EXPECT_EQ(connection->Count("CREATE TABLE tblDossierTabs"), 0u);
    EXPECT_EQ(connection->Count("SaveSettings"), 0u);
    EXPECT_EQ(connection->Count("AutoCreate"), 0u);
    EXPECT_EQ(connection->Count("CREATE TABLE tblScreens "), 0u);
    EXPECT_EQ(connection->Count("CREATE TABLE tblCheckListFields"), 1u);
    EXPECT_EQ(First(inner, "tblTreeItem", "TreeItemId"), "1");
    for (const UpgradeStep& step : UpgradeSteps()) // every version was on record once
        EXPECT_GE(connection->Count("'" + std::string(step.to) + "'"), 1u) << step.to;
}

TEST_F(clsUpdateDbTest, GoesOnFromEveryVersion) {
    const ConnectionPtr whole = OldDatabase(true);
    Upgrade(whole);
    const std::string expected = Printout(*whole, "DocGuid");
    for (std::size_t steps = 1; steps < UpgradeSteps().size(); steps += 3) {
        const ConnectionPtr inner = OldDatabase(true);
        const auto connection = std::make_shared<RecordingConnection>("", inner);
        const std::string stop = "'" + std::string(UpgradeSteps()[steps].to) + "'";
        bool stopped = false; // the connection drops when the next version would be recorded
        connection->refuse = [&](const std::string& statement) {
            if (statement.find("tblSettings") != std::string::npos &&
                statement.find(stop) != std::string::npos)
                stopped = true;
            return stopped;
        };
        Upgrade(connection);
        EXPECT_EQ(Version(inner), UpgradeSteps()[steps].from);
        Upgrade(inner);
        EXPECT_EQ(Version(inner), "1.1.8");
        EXPECT_EQ(Printout(*inner, "DocGuid"), expected) << "stopped before " << stop;
    }
}

TEST_F(clsUpdateDbTest, LeavesDeletedRowsDeletedWhenTheVersionIsLost) {
    const ConnectionPtr connection = EmbeddedDatabase::CreateInMemory();
    connection->Execute("insert into tblTreeItem (Description,TreeItemId) values ('gone',-1)");
    connection->Execute("insert into tblDossierRelations (DossierId,RelId) values (4,-1)");
    connection->Execute("delete from tblSettings");
    Upgrade(connection);
    EXPECT_EQ(Version(connection), "1.1.8");
    EXPECT_EQ(First(connection, "tblTreeItem", "TreeItemId"), "-1");
    EXPECT_EQ(First(connection, "tblDossierRelations", "RelId"), "-1");
}

// What cannot be read is not taken for what is not there: rows keep their guids, and no step of the
// dossiers is passed over.
TEST_F(clsUpdateDbTest, WaitsForTheNextTimeWhenTheWayCannotBeRead) {
    const auto connection =
        std::make_shared<RecordingConnection>("", EmbeddedDatabase::CreateInMemory());
    connection->Execute("insert into tblCheckListRefFields (FieldType) values ('b')");
    Upgrade(connection);
    const std::string before = Printout(*connection->inner);
    connection->statements.clear();
    connection->refuse = [](const std::string& s) { return s.find("tblSettings") < s.size(); };
    EXPECT_EQ(Upgrade(connection), -1);
    EXPECT_EQ(connection->statements.size(), connection->Count("elect * from tbl"));
    connection->refuse = nullptr;
    EXPECT_EQ(Printout(*connection->inner), before);
    ASSERT_EQ(machine.messages.shown.size(), 1u);
    EXPECT_EQ(machine.messages.shown[0].caption, "Error in fncUpdateDb");

    const auto old = std::make_shared<RecordingConnection>("", OldDatabase(true));
    old->schemaAnswer = [](Schema) -> RecordsetPtr {
        throw Error(errors::unspecified, "dropped", "driver");
    };
    EXPECT_EQ(Upgrade(old), -1);
    EXPECT_EQ(old->Count("DbVersion','"), 0u);
    old->schemaAnswer = nullptr;
    EXPECT_EQ(Upgrade(old), 0);
    EXPECT_EQ(Version(old), "1.1.8");
    EXPECT_EQ(First(old, "tblDossierReference", "SaveSettings"), "");
}

TEST_F(clsUpdateDbTest, TriesAgainWhatTheDatabaseRefusedAndTellsItOnce) {
    const ConnectionPtr inner = EmbeddedDatabase::Create(machine.Path("x.kdb"));
    const auto connection = std::make_shared<RecordingConnection>("", inner);
    inner->Execute("insert into tblDocument (Description) values ('a')");
    connection->refuse = [](const std::string& s) {
        return s.find("CREATE TABLE tblTranslations") < s.size() ||
               s.find("ADD COLUMN DocGuid") < s.size();
    };
    EXPECT_EQ(Upgrade(connection), 0);
    EXPECT_EQ(Version(inner), "1.1.8");
    ASSERT_EQ(machine.messages.shown.size(), 1u);
    EXPECT_NE(machine.messages.shown[0].text.find("tblTranslations, tblDocument.DocGuid"),
              std::string::npos)
        << machine.messages.shown[0].text;
    connection->statements.clear();
    Upgrade(connection);
    EXPECT_EQ(connection->Count("CREATE TABLE tblTranslations"), 3u);
    EXPECT_EQ(machine.messages.shown.size(), 1u);
    connection->refuse = nullptr;
    Upgrade(connection);
    EXPECT_EQ(First(inner, "tblDocument", "DocGuid").size(), 38u);
    EXPECT_EQ(Count(inner, "tblTranslations"), static_cast<std::int64_t>(Translations().size()));
    connection->statements.clear();
    Upgrade(connection);
    EXPECT_EQ(connection->statements.size(), 1u);
}

// One refused statement undoes the whole of a transaction on some servers.
TEST_F(clsUpdateDbTest, MakesAStepOneTransactionOnTheEmbeddedEngineAlone) {
    struct Server : RecordingConnection {
        using RecordingConnection::RecordingConnection;
        int begun = 0;
        Value Property(std::string_view property) const override {
            if (property == "Transaction DDL") return std::int64_t{8};
            return RecordingConnection::Property(property);
        }
        void BeginTrans() override {
            ++begun;
            RecordingConnection::BeginTrans();
        }
    };
    for (const bool embedded : {true, false}) {
        const auto server = embedded
                                ? std::make_shared<Server>("", EmbeddedDatabase::CreateInMemory())
                                : std::make_shared<Server>("Microsoft SQL Server");
        clsUpdateDb update(machine);
        update.SetDbConnection(server);
        std::string reached;
        update.fncUpTo112(reached);
        EXPECT_EQ(server->begun, embedded ? 1 : 0);
    }
}

TEST_F(clsUpdateDbTest, LetsTheMessageLoopRunWhileRowsAreConverted) {
    const ConnectionPtr connection = OldDatabase(false);
    for (int i = 0; i < 300; ++i)
        connection->Execute("insert into tblDocument (Description) values ('x')");
    clsUpdateDb update(machine);
    update.SetDbConnection(connection);
    std::string reached;
    update.fncUpTo106(reached);
    EXPECT_GE(machine.busy.pumped, static_cast<int>(machine.busy.shown.size()) + 300 / 64);
}

TEST_F(clsUpdateDbTest, IssuesEachFormAndShowsEachPhase) {
    const auto server = std::make_shared<RecordingConnection>("Microsoft SQL Server");
    server->schemaAnswer = [](Schema) { return TableRows({"tblDossierTypes"}); };
    clsUpdateDb update(machine);
    update.SetDbConnection(server);
    std::string reached;
    EXPECT_EQ(update.fncUpTo112(reached), 0);
    EXPECT_EQ(reached, "1.1.2");
    EXPECT_EQ(server->statements, (std::vector<std::string>{
                                      "ALTER TABLE tblDossierRefTabs ADD COLUMN TabChanged Text(1)",
                                      "ALTER TABLE tblDossierRefTabs ADD TabChanged Char(1)"}));
    server->statements.clear();
    EXPECT_EQ(update.fncUpTo118(reached), 0);
    EXPECT_EQ(reached, "1.1.8");
    EXPECT_EQ(
        server->statements,
        (std::vector<std::string>{
            "CREATE TABLE tblDocExtraInfo ( Id COUNTER CONSTRAINT IdDocExtraInfo PRIMARY KEY, "
            "[DocId] "
            "LONG, [SendTo] TEXT(255), [SendFrom] TEXT(255), [SendOn] TEXT(255), [RecievedOn] "
            "TEXT(255), [NrOfAttatchements] LONG)",
            "CREATE TABLE tblDocExtraInfo ( Id INTEGER Identity(1000,1)  CONSTRAINT IdDocExtraInfo "
            "PRIMARY KEY, DocId INTEGER, SendTo CHAR(255), SendFrom CHAR(255), SendOn CHAR(255), "
            "RecievedOn CHAR(255), NrOfAttatchements INTEGER)",
            "CREATE TABLE tblDocExtraInfo ( Id BIGINT AUTO_INCREMENT  PRIMARY KEY, DocId INTEGER, "
            "SendTo CHAR(255), SendFrom CHAR(255), SendOn CHAR(255), RecievedOn CHAR(255), "
            "NrOfAttatchements INTEGER) AUTO_INCREMENT = 1000",
            "CREATE INDEX indDocExId on tblDocExtraInfo(DocId )"}));
    EXPECT_EQ(machine.busy.shown.back().caption, "Bezig met aanmaken van Document Extra Info");
    EXPECT_EQ(machine.busy.shown.back().text, "Bezig met bijwerken van versienummer");
    update.fncUpTo115(reached);
    for (const char* statement : {"ALTER TABLE tblDocument ADD COLUMN DocGuid Text(38)",
                                  "ALTER TABLE tblDocument ADD DocGuid Char(38)",
                                  "CREATE INDEX indDocGuid on tblDocument (DocGuid )",
                                  "CREATE INDEX indDocGuid on tblDocument (DocGuid(38) )",
                                  "DROP INDEX indRefVal10 on tblDossierReference",
                                  "DROP INDEX tblDossierReference.indRefVal10"})
        EXPECT_TRUE(server->Issued(statement)) << statement;
    update.fncUpTo113(reached);
    for (const char* name :
         {"CheckListRefFields", "Document", "DossierDbRelation", "DossierReference",
          "DossierRefTabs", "DossierRelations", "Tree", "TreeItem"}) {
        const std::string plain = std::string(name) + "UpLink";
        EXPECT_TRUE(
            server->Issued("CREATE INDEX ind" + plain + " on tbl" + plain + " (RefGuid, RefId)"));
        EXPECT_TRUE(server->Issued("CREATE TABLE tbl" + plain +
                                   " ( Id BIGINT AUTO_INCREMENT  PRIMARY KEY, RefGuid CHAR(38), "
                                   "RefId INTEGER, ServerRefId INTEGER) AUTO_INCREMENT = 1000"));
    }
    update.fncUpTo111(reached);
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
        EXPECT_TRUE(server->Issued("CREATE INDEX " + std::string(index))) << index;
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
    update.fncUpTo109(reached);
    EXPECT_TRUE(server->Issued("insert into tblTranslations (strKey,NL,UK,GE,FR) "
                               "values('Map','Map','Folder','Ordner','Sous-dossier')"));
    update.fncUpTo108(reached);
    EXPECT_TRUE(server->Issued("ALTER TABLE tblDossiertypes ADD COLUMN ShowCabinet NTEXT, "
                               "CreateDossier NTEXT, OpenDossier NTEXT)"));
}
