#include <gtest/gtest.h>

#include "data/ConnectionAssignment.h"
#include "data/schema/clsUpdateDb.h"
#include "data/schema/translations.h"
#include "data/schema/upgradeSteps.h"
#include "tests/fakes/Databases.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/FaultyConnection.h"
#include "tests/fakes/MemoryRows.h"
#include "tests/fakes/On.h"
#include "tests/fakes/RecordingConnection.h"

using namespace kavidex;
using namespace kavidex::data;
using namespace kavidex::tests;

namespace {

// A server to the chain, with the rows and transactions of an embedded database.
struct Server : RecordingConnection {
    using RecordingConnection::RecordingConnection;
    int begun = 0, open = 0;
    bool refuseBegin = false, refuseCommit = false;
    std::string serverName;

    Value Property(std::string_view property) const override {
        if (property == "Provider Name") return std::string("MSDASQL");
        if (property == "Server Name") return serverName;
        if (property == "Transaction DDL") return std::int64_t{8};
        return RecordingConnection::Property(property);
    }
    std::string DefaultDatabase() const override { return database; }
    RecordsetPtr OpenSchema(Schema schema) override {
        if (schema != Schema::Procedures) return RecordingConnection::OpenSchema(schema);
        return MemoryRows({"PROCEDURE_NAME"}, {{std::string("addtosettings;1")}});
    }
    static void FailIf(bool refused) {
        if (refused) throw Error(errors::unspecified, "made to fail", "Server");
    }
    void BeginTrans() override {
        FailIf(refuseBegin);
        RecordingConnection::BeginTrans(), ++begun, ++open;
    }
    void CommitTrans() override {
        FailIf(refuseCommit);
        RecordingConnection::CommitTrans(), --open;
    }
    void RollbackTrans() override { RecordingConnection::RollbackTrans(), --open; }
};

using Recorded = std::shared_ptr<RecordingConnection>;

Recorded NewDatabase() {
    return std::make_shared<RecordingConnection>("", EmbeddedDatabase::CreateInMemory());
}

// Statements that hold one of these.
template <class... Parts>
auto With(Parts... parts) {
    return [=](const std::string& s) { return ((s.find(parts) < s.size()) || ...); };
}

struct clsUpdateDbTest : testing::Test {
    FakeWorkstation machine;

    std::int32_t Upgrade(const ConnectionPtr& connection) {
        return On<clsUpdateDb>(machine, connection).fncUpdateDb();
    }
    std::string Version(const ConnectionPtr& connection) {
        std::string version;
        On<clsSettings>(machine, connection).GetSetting("Build", "DbVersion", version);
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

TEST_F(clsUpdateDbTest, BringsANewDatabaseToTheCurrentVersionOnce) {
    const Recorded connection = NewDatabase();
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

    connection->statements.clear();
    machine.busy.shown.clear();
    Upgrade(connection);
    EXPECT_EQ(connection->statements.size(), 2u); // the look-ups of version and texts
    EXPECT_EQ(Printout(*connection->inner), text);
    EXPECT_TRUE(machine.busy.shown.empty());
}

TEST_F(clsUpdateDbTest, ConvertsAnOldDatabaseWithItsRows) {
    const ConnectionPtr connection = OldDatabase(true);
    Upgrade(connection);
    EXPECT_EQ(Version(connection), "1.1.8");
    EXPECT_EQ(First(connection, "tblSettings", "SKey"), "DocumentPath");
    const std::pair<const char*, const char*> workingIds[] = {
        {"tblDocument", "DocId"},         {"tblTree", "TreeId"},
        {"tblTreeItem", "TreeItemId"},    {"tblDossierDbRelation", "DbRelId"},
        {"tblDossierRelations", "RelId"}, {"tblDossierTypes", "TypeId"},
        {"tblDossierReference", "RefId"}, {"tblDossierTabs", "TabId"}};
    for (const auto& [table, column] : workingIds)
        EXPECT_EQ(First(connection, table, column), "1") << table;
    EXPECT_EQ(First(connection, "tblDossierFields", "intOrder"), "3");
    EXPECT_EQ(First(connection, "tblDossierTabs", "TabDescription"), "Dossier");
    EXPECT_EQ(First(connection, "tblDossierTabs", "intOrder"), "1");
    EXPECT_EQ(First(connection, "tblDossierTypes", "ShowCabinet"), "");
    EXPECT_FALSE(With(" Order ", " Key ")(Printout(*connection)));
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
    const Recorded connection = NewDatabase();
    connection->Execute("insert into tblCheckListRefFields (FieldType) values ('b')");
    Upgrade(connection);
    const std::string before = Printout(*connection->inner);
    connection->statements.clear();
    connection->refuse = With("tblSettings");
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

// Neither rows that cannot be read nor work that cannot be kept are passed over.
TEST_F(clsUpdateDbTest, HaltsAtAStepThatItCannotReadOrKeep) {
    const std::pair<const char*, std::function<void(Server&)>> faults[] = {
        {"1.0.5", [](Server& s) { s.refuse = With("Select * from tblDocument"); }},
        {"1.0.5", [](Server& s) { s.refuseBegin = true; }},
        {"1.0.5", [](Server& s) { s.refuseCommit = true; }},
        {"1.0.8", [](Server& s) { s.refuse = With("Select strKey,GE"); }},
        {"1.1.6", [](Server& s) { s.refuse = With("where DocGuid is null"); }}};
    for (const auto& [version, fault] : faults) {
        const auto server = std::make_shared<Server>("", OldDatabase(false));
        fault(*server);
        EXPECT_EQ(Upgrade(server), -1) << version;
        EXPECT_EQ(Version(server->inner), version);
        EXPECT_EQ(server->open, 0);
        if (server->refuseBegin || server->refuseCommit) {
            EXPECT_EQ(First(server->inner, "tblDocument", "DocId"), "") << "undone, not done again";
        }
        server->refuse = nullptr;
        server->refuseBegin = server->refuseCommit = false;
        EXPECT_EQ(Upgrade(server), 0);
        EXPECT_EQ(Version(server->inner), "1.1.8");
        EXPECT_EQ(First(server->inner, "tblDocument", "DocId"), "1");
    }
    EXPECT_EQ(machine.messages.shown.size(), std::size(faults));
    // A column that was refused is not one that cannot be read: the chain passes it.
    const auto server = std::make_shared<Server>("", OldDatabase(false));
    server->refuse = With("DocGuid");
    EXPECT_EQ(Upgrade(server), 0);
    EXPECT_EQ(Version(server->inner), "1.1.8");
}

// Steps that run again and again would give rows new guids each time.
TEST_F(clsUpdateDbTest, HaltsWhereAVersionIsNotRecorded) {
    const Recorded connection = NewDatabase();
    connection->Execute("insert into tblCheckListRefFields (FieldType) values ('b')");
    connection->Execute("delete from tblSettings");
    const auto upgraded = [&](const char* refused) {
        connection->refuse = [refused](const std::string& s) { return s.ends_with(refused); };
        const auto result = Upgrade(connection);
        connection->refuse = nullptr;
        return result;
    };
    EXPECT_EQ(upgraded("('Build','DbVersion','1.0.1')"), -1);
    EXPECT_EQ(Version(connection), "");
    EXPECT_EQ(machine.messages.shown.size(), 1u);
    connection->Execute("insert into tblSettings (Section, SKey, [Value]) values ('Build', "
                        "'DbVersion', '1.1.6')");
    EXPECT_EQ(upgraded(" WHERE  Section = 'Build' and sKey = 'DbVersion'"), -1);
    EXPECT_EQ(Version(connection), "1.1.6");
    EXPECT_EQ(machine.messages.shown.size(), 2u);
    EXPECT_EQ(Upgrade(connection), 0);
    EXPECT_EQ(Version(connection), currentVersion);
}

// Where a step is no transaction it may have ended between its two tables, or before its rows.
TEST_F(clsUpdateDbTest, GoesOnWithTheDossierTabsWhereItEnded) {
    const auto server = std::make_shared<Server>("", OldDatabase(true));
    server->refuse = With("CREATE TABLE tblDossierRefTabs", "Select * from tblDossierTypes");
    EXPECT_EQ(Upgrade(server), -1);
    server->refuse = nullptr;
    EXPECT_EQ(Upgrade(server), 0);
    EXPECT_EQ(Count(server, "tblDossierTabs"), Count(server, "tblDossierTypes"));
    EXPECT_EQ(Count(server, "tblDossierRefTabs"), 0);
    // Types that have a tab keep it alone.
    server->inner->Execute("delete from tblSettings where SKey = 'DbVersion'");
    EXPECT_EQ(Upgrade(server), 0);
    EXPECT_EQ(Count(server, "tblDossierTabs"), Count(server, "tblDossierTypes"));
}

// Without its working id a row is not found any more.
TEST_F(clsUpdateDbTest, GivesOldRowsTheirWorkingIdsWhateverWasRefusedAtFirst) {
    const auto faulty = std::make_shared<FaultyConnection>(OldDatabase(true));
    bool failed = false;
    faulty->onStep = [&](int) {
        if (failed || faulty->statements.empty()) return;
        if (faulty->statements.back() != "Select * from tblTreeItem") return;
        failed = true; // the first row, as when somebody else has locked it
        throw Error(errors::unspecified, "locked", "driver");
    };
    EXPECT_EQ(Upgrade(faulty), -1);
    EXPECT_TRUE(failed);
    EXPECT_EQ(Upgrade(faulty), 0);
    EXPECT_EQ(Count(faulty, "tblTreeItem where TreeItemId is null"), 0);

    const auto connection = std::make_shared<Server>("", OldDatabase(true));
    connection->serverName = "working ids";
    connection->refuse =
        With("tblTreeItem ADD COLUMN TreeItemId", "tblTreeItem ADD COLUMN [TreeItemId]",
             "tblTreeItem ADD TreeItemId", "ALTER TABLE tblDossierFields ADD ");
    machine.messages.shown.clear();
    EXPECT_EQ(Upgrade(connection), 0);
    ASSERT_EQ(machine.messages.shown.size(), 1u);
    for (const char* part : {"tblTreeItem.TreeItemId", "tblDossierFields.IntOrder"})
        EXPECT_NE(machine.messages.shown[0].text.find(part), std::string::npos)
            << machine.messages.shown[0].text;
    connection->refuse = nullptr;
    EXPECT_EQ(Upgrade(connection), 0);
    EXPECT_EQ(Count(connection, "tblTreeItem where TreeItemId = Id"), 2);
    EXPECT_EQ(First(connection, "tblDossierFields", "intOrder"), "3");
    EXPECT_EQ(machine.messages.shown.size(), 1u);
}

// What a timer of the host writes must not become a part of a transaction; one refused statement
// undoes the whole of one on some servers.
TEST_F(clsUpdateDbTest, LetsTheMessageLoopRunBetweenItsTransactions) {
    for (const bool embedded : {false, true}) {
        const ConnectionPtr inner = OldDatabase(false);
        for (int i = 0; i < 600; ++i)
            inner->Execute("insert into tblDocument (Description) values ('x')");
        const auto server = std::make_shared<Server>("", inner);
        machine.busy.pumped = machine.busy.painted = 0;
        machine.busy.onPump = [&] { EXPECT_EQ(server->open, 0); };
        On<clsUpdateDb> update(machine, embedded ? inner : server);
        std::string reached;
        update.fncUpTo106(reached);
        const int texts = static_cast<int>(machine.busy.shown.size());
        if (embedded) { // the whole step is one transaction
            EXPECT_EQ(machine.busy.pumped, 0);
            EXPECT_GE(machine.busy.painted, 600 / 256);
        } else {
            EXPECT_GE(machine.busy.pumped, texts + 600 / 256);
            EXPECT_GE(server->begun, 600 / 256);
            server->begun = 0;
            update.fncUpTo112(reached);
            EXPECT_EQ(server->begun, 0) << "definitions stand for themselves";
        }
        machine.busy.onPump = nullptr;
        machine.busy.shown.clear();
    }
}

TEST_F(clsUpdateDbTest, TriesAgainWhatTheDatabaseRefusedAndTellsItOnce) {
    const ConnectionPtr inner = EmbeddedDatabase::Create(machine.Path("x.kdb"));
    const auto connection = std::make_shared<RecordingConnection>("", inner);
    inner->Execute("insert into tblDocument (Description) values ('a')");
    connection->refuse = With("CREATE TABLE tblTranslations", "ADD COLUMN DocGuid", "indParentId");
    EXPECT_EQ(Upgrade(connection), 0);
    EXPECT_EQ(Version(inner), "1.1.8");
    ASSERT_EQ(machine.messages.shown.size(), 1u);
    EXPECT_TRUE(With("tblTranslations, tblDocument.DocGuid, indDocGuid, indParentId")(
        machine.messages.shown[0].text))
        << machine.messages.shown[0].text;
    connection->statements.clear();
    Upgrade(connection);
    EXPECT_EQ(connection->Count("CREATE TABLE tblTranslations"), 3u);
    EXPECT_EQ(machine.messages.shown.size(), 1u);
    connection->refuse = nullptr;
    Upgrade(connection);
    EXPECT_EQ(First(inner, "tblDocument", "DocGuid").size(), 38u);
    EXPECT_EQ(Count(inner, "tblTranslations"), static_cast<std::int64_t>(Translations().size()));
    EXPECT_TRUE(With("tblDocument.indDocGuid")(Printout(*inner)));
    EXPECT_TRUE(With("tblTreeItem.indParentId")(Printout(*inner)));
    connection->statements.clear();
    Upgrade(connection);
    EXPECT_EQ(connection->statements.size(), 2u);
}

// On a server the base schema counts as well; two servers may have a database of one name.
TEST_F(clsUpdateDbTest, HoldsAServersIndexesAndProceduresAgainstTheSchemaToo) {
    const ConnectionPtr inner = EmbeddedDatabase::CreateInMemory();
    Upgrade(inner);
    inner->Execute("DROP INDEX indTreeId on tblTree");
    for (const char* const name : {"eerste", "tweede", "eerste"}) {
        const auto server = std::make_shared<Server>("Microsoft SQL Server", inner);
        server->serverName = name;
        server->database = "zelfde";
        server->refuse = With("indTreeId");
        Upgrade(server);
        EXPECT_EQ(server->Count("CREATE INDEX "), 1u);
        EXPECT_EQ(server->Count("CREATE PROCEDURE AddTotblTree "), 1u);
        EXPECT_EQ(server->Count("CREATE PROCEDURE AddToSettings"), 0u);
    }
    ASSERT_EQ(machine.messages.shown.size(), 2u);
    EXPECT_NE(machine.messages.shown[1].text.find("indTreeId"), std::string::npos);
    const auto here = std::make_shared<Server>("Microsoft SQL Server", inner);
    const auto there = std::make_shared<Server>("Microsoft SQL Server", inner);
    here->database = there->database = "zelfde";
    ConnectionAssignment assignment(machine, {});
    here->serverName = "eerste";
    EXPECT_TRUE(assignment.SetDbConnection(here));
    EXPECT_FALSE(assignment.SetDbConnection(there)) << "it does not tell its server";
    there->serverName = "tweede";
    EXPECT_TRUE(assignment.SetDbConnection(there));
}

TEST_F(clsUpdateDbTest, BringsTextsThatCameLaterAndLeavesWhatAnInstallationWrote) {
    const Recorded connection = NewDatabase();
    Upgrade(connection);
    const std::int64_t all = Count(connection, "tblTranslations");
    const auto earlier = [&](const std::string& mark) { // as a program with fewer texts left it
        connection->inner->Execute(
            "delete from tblTranslations where strKey in ('Mappen', 'Plakken')");
        connection->inner->Execute(
            "update tblTranslations set UK = 'Own words' where strKey = 'Map'");
        connection->inner->Execute("update tblSettings set [Value] = '" + mark +
                                   "' where SKey = 'Translations'");
        connection->statements.clear();
        Upgrade(connection);
        return Count(connection, "tblTranslations");
    };
    EXPECT_EQ(earlier("12-34"), all);
    EXPECT_EQ(First(connection, "tblTranslations where strKey = 'Mappen'", "GE"), "Ordner");
    EXPECT_EQ(First(connection, "tblTranslations where strKey = 'Map'", "UK"), "Own words");
    connection->statements.clear();
    Upgrade(connection);
    EXPECT_EQ(connection->statements.size(), 2u) << "looked at once, not each time";
    EXPECT_EQ(earlier("9999-1"), all - 2) << "a later program was here";
    connection->refuse = With("'Plakken'");
    EXPECT_EQ(earlier("12-34"), all - 2) << "all or none";
    connection->refuse = nullptr;
    Upgrade(connection);
    EXPECT_EQ(Count(connection, "tblTranslations"), all);
    EXPECT_TRUE(machine.messages.shown.empty());
}
