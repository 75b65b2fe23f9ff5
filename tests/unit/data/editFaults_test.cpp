// Every statement, row update and deletion of settings and table edits fails once: alone, and with
// all after it.
#include <gtest/gtest.h>

#include <functional>

#include "data/clsSettings.h"
#include "data/clsTable.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/FaultyConnection.h"
#include "tests/fakes/On.h"

using namespace kavidex;
using namespace kavidex::data;
using namespace kavidex::tests;

namespace {

using Faulty = std::shared_ptr<FaultyConnection>;
using Work = std::function<void(const Faulty&)>;

struct EditFaults : testing::Test {
    FakeWorkstation machine;

    static Faulty Prepared(const Work& prepare) {
        auto connection = std::make_shared<FaultyConnection>(EmbeddedDatabase::CreateInMemory());
        prepare(connection);
        connection->countsAll = true;
        connection->steps = 0;
        return connection;
    }
    // `check` sees the database after the fault, which is over by then. The number of faults.
    int FailEverywhere(const Work& prepare, const Work& scenario, const Work& check) {
        const Faulty whole = Prepared(prepare);
        scenario(whole);
        const int steps = whole->steps;
        for (int n = 1; n <= steps; ++n)
            for (const bool onwards : {false, true}) {
                SCOPED_TRACE("step " + std::to_string(n) + (onwards ? " and all after it" : ""));
                const Faulty connection = Prepared(prepare);
                machine.log.lines.clear();
                connection->FailStep(n, onwards);
                EXPECT_NO_THROW(scenario(connection));
                EXPECT_FALSE(machine.log.lines.empty());
                connection->onStep = nullptr;
                check(connection);
            }
        return steps;
    }
    std::string Setting(const Faulty& connection, const char* section, const char* key) {
        On<clsSettings> settings(machine, connection->inner);
        std::string value;
        return settings.GetSetting(section, key, value) ? value : "(none)";
    }
    static std::int64_t Count(const Faulty& connection, const std::string& from) {
        return ToInt64(connection->inner->Open({"select count(*) from " + from})->Get(0));
    }
};

} // namespace

TEST_F(EditFaults, OfSettingsLeaveAnOldOrANewValueAndNoOtherSettingTouched) {
    const Work prepare = [&](const Faulty& connection) {
        On<clsSettings> settings(machine, connection);
        settings.SetSetting("Kept", "Key", "kept");
        settings.SetSetting("Changed", "Key", "old");
        settings.SetSetting("Gone", "Key", "old");
    };
    bool deleted = false;
    const Work scenario = [&](const Faulty& connection) {
        On<clsSettings> settings(machine, connection);
        std::string value, section, key;
        settings.SetSetting("Changed", "Key", "new");
        settings.SetSetting("Made", "Key", "new");
        settings.GetSettingLike("*", "Key", value, section, key, false);
        settings.GetNextSetting(value);
        deleted = settings.DeleteSetting("Gone", "Key");
    };
    const int steps = FailEverywhere(prepare, scenario, [&](const Faulty& connection) {
        EXPECT_EQ(Setting(connection, "Kept", "Key"), "kept");
        const std::string changed = Setting(connection, "Changed", "Key");
        EXPECT_TRUE(changed == "old" || changed == "new") << changed;
        const std::string made = Setting(connection, "Made", "Key");
        EXPECT_TRUE(made == "(none)" || made == "new") << made;
        if (!deleted) {
            EXPECT_EQ(Setting(connection, "Gone", "Key"), "old");
        }
        scenario(connection); // as if nothing had been
        EXPECT_EQ(Setting(connection, "Changed", "Key"), "new");
        EXPECT_EQ(Setting(connection, "Made", "Key"), "new");
        EXPECT_EQ(Setting(connection, "Gone", "Key"), "(none)");
        EXPECT_EQ(Count(connection, "tblSettings where SKey = 'Key'"), 3);
    });
    EXPECT_EQ(steps, 7);
}

TEST_F(EditFaults, OfTheKeyColumnsConversionLoseNoSetting) {
    const Work prepare = [&](const Faulty& connection) {
        for (const char* statement :
             {"DROP TABLE tblSettings",
              "CREATE TABLE tblSettings (Id COUNTER CONSTRAINT c PRIMARY KEY, Section TEXT(255), "
              "[Key] TEXT(255), [Value] TEXT(255))",
              "insert into tblSettings (Section,[Key],[Value]) values ('A','One','1')",
              "insert into tblSettings (Section,[Key],[Value]) values ('A','Two','2')",
              "insert into tblSettings (Section,[Key],[Value]) values ('B','One','3')"})
            connection->Execute(statement);
    };
    const Work scenario = [&](const Faulty& connection) {
        On<clsSettings> settings(machine, connection);
        std::string value;
        settings.GetSetting("A", "One", value);
    };
    const int steps = FailEverywhere(prepare, scenario, [&](const Faulty& connection) {
        EXPECT_EQ(Setting(connection, "A", "One"), "1");
        EXPECT_EQ(Setting(connection, "A", "Two"), "2");
        EXPECT_EQ(Setting(connection, "B", "One"), "3");
        EXPECT_EQ(Count(connection, "tblSettings"), 3);
    });
    EXPECT_GE(steps, 8); // the look-up twice, two definitions, two reads, three rows
}

TEST_F(EditFaults, OfTableEditsAreAnsweredWithFalse) {
    const Work prepare = [](const Faulty& connection) {
        for (const char* statement :
             {"ALTER TABLE tblDossierReference ADD COLUMN RefGuid Text(38)",
              "CREATE TABLE tblDossierReferenceUpLink (Id COUNTER CONSTRAINT u PRIMARY KEY, "
              "ServerRefId LONG)",
              "insert into tblDossierReference (RefId,Description) values (31,'old')",
              "insert into tblDossierReferenceUpLink (ServerRefId) values (31)",
              "insert into tblDossierReferenceUpLink (ServerRefId) values (32)"})
            connection->Execute(statement);
    };
    bool saved = false, updated = false, deleted = false;
    std::int32_t id = 0;
    const Work scenario = [&](const Faulty& connection) {
        saved = updated = deleted = false;
        id = -1;
        On<clsTable> table(machine, connection);
        table.SetTableName("tblDossierReference");
        saved = table.SaveNewRow("Id", "RefGuid", id, "RefId");
        table.SetCriteria("RefId = 31");
        if (!table.OpenDbConnection()) return;
        table.SetField("Description", std::string("new"));
        updated = table.UpdateCurrentRow();
        table.ReQuery();
        if (!table.Eof()) deleted = table.DeleteCurrentRow();
    };
    const int steps = FailEverywhere(prepare, scenario, [&](const Faulty& connection) {
        // An id is one of a row, also where the copy of the id did not get into it.
        const std::string made = "tblDossierReference where Id = " + std::to_string(id);
        EXPECT_EQ(Count(connection, made), id == -1 ? 0 : 1);
        EXPECT_EQ(Count(connection, made + " and RefId = Id"), saved ? 1 : 0);
        EXPECT_EQ(Count(connection, "tblDossierReference where RefId = 31"), deleted ? 0 : 1);
        if (!deleted) {
            const std::string expected = updated ? "new" : "old";
            EXPECT_EQ(Count(connection, "tblDossierReference where RefId = 31 and Description = '" +
                                            expected + "'"),
                      1);
            EXPECT_EQ(Count(connection, "tblDossierReferenceUpLink where ServerRefId = 31"), 1);
        }
        EXPECT_EQ(Count(connection, "tblDossierReferenceUpLink where ServerRefId = 32"), 1);
    });
    EXPECT_EQ(steps, 10);
    const Faulty whole = Prepared(prepare);
    scenario(whole);
    EXPECT_TRUE(saved && updated && deleted);
    EXPECT_EQ(Count(whole, "tblDossierReferenceUpLink"), 1);
    EXPECT_TRUE(whole->Issued("Delete from tblDossierReferenceuplink where serverrefid = 31"));
}
