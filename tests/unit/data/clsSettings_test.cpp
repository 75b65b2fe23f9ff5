#include <gtest/gtest.h>

#include "data/clsSettings.h"
#include "tests/fakes/Databases.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/RecordingConnection.h"

using namespace kavidex;
using namespace kavidex::data;
using namespace kavidex::tests;

namespace {

struct clsSettingsTest : testing::Test {
    FakeWorkstation machine;
    std::shared_ptr<RecordingConnection> connection =
        std::make_shared<RecordingConnection>("", EmbeddedDatabase::CreateInMemory());
    clsSettings settings{machine};
    std::string value, section, key;

    void SetUp() override { settings.SetDbConnection(connection); }
    std::int64_t Rows(const std::string& where) {
        return connection->inner->Open({"select * from tblSettings where " + where})->RecordCount();
    }
};

} // namespace

TEST_F(clsSettingsTest, SendsNoTextThatEndsItsQuotes) {
    settings.SetSetting("O'Neil", "Key", "kept");
    settings.SetSetting("Rights", "Use", "True");
    connection->statements.clear();
    for (const char* text : {"it's", "x' where Section = 'Rights'", "'",
                             "''"
                             "'"}) {
        settings.SetSetting("O'Neil", "Key", text);
        EXPECT_NE(settings.Failure(), "") << text;
        settings.SetSetting("New", text, "x");
        EXPECT_NE(settings.Failure(), "") << text;
    }
    EXPECT_EQ(connection->Count("nsert") + connection->Count("pdate"), 0u);
    EXPECT_TRUE(machine.log.Has("clsSettings.SetSetting", "it's"));
    EXPECT_TRUE(settings.GetSetting("O'Neil", "Key", value));
    EXPECT_EQ(value, "kept");
    EXPECT_EQ(settings.Failure(), "");
    settings.SetSetting("O'Neil", "Key", "it''s"); // doubled by the caller
    EXPECT_TRUE(settings.GetSetting("O'Neil", "Key", value));
    EXPECT_EQ(value, "it's");
}

TEST_F(clsSettingsTest, TellsAReadThatFailedFromASettingThatIsNotThere) {
    EXPECT_FALSE(settings.GetSetting("No", "Such", value));
    EXPECT_EQ(settings.Failure(), "");
    settings.SetSetting("A", "B", "C");
    for (const char* part : {"elect", "where"}) { // all, or though the table itself can be read
        connection->refuse = [&](const std::string& s) { return s.find(part) < s.size(); };
        EXPECT_FALSE(settings.GetSetting("A", "B", value));
        EXPECT_NE(settings.Failure(), "");
        EXPECT_FALSE(settings.GetNextSetting(value));
        EXPECT_FALSE(settings.GetSettingLike("A", "B", value, section, key, false));
        EXPECT_EQ(value + section + key + std::to_string(settings.Id()), "0");
        settings.SetSetting("No", "Such", "x");
        EXPECT_NE(settings.Failure(), "");
    }
    connection->refuse = [](const std::string& s) { return s.rfind("Insert", 0) == 0; };
    settings.SetSetting("No", "Such", "x");
    EXPECT_NE(settings.Failure(), "") << "a write that failed";
    connection->refuse = nullptr;
    settings.SetSetting("No", "Such", "x");
    EXPECT_EQ(settings.Failure(), "");
    settings.SetDbConnection(nullptr);
    settings.SetSetting("A", "B", "C");
    EXPECT_FALSE(settings.GetSetting("A", "B", value));
}

TEST_F(clsSettingsTest, ReadsMissingNullAndPaddedValues) {
    value = "before";
    EXPECT_FALSE(settings.GetSetting("No", "Such", value));
    EXPECT_EQ(value, "");
    EXPECT_EQ(settings.Id(), 0);
    connection->Execute("insert into tblSettings (Section,sKey) values ('A','Null')");
    EXPECT_TRUE(settings.GetSetting("A", "Null", value));
    EXPECT_EQ(value, "");
    connection->Execute("insert into tblSettings (Section,sKey,[Value]) values ('A','B','x    ')");
    EXPECT_TRUE(settings.GetSetting("A", "B", value));
    EXPECT_EQ(value, "x");
}

TEST_F(clsSettingsTest, WalksToTheEndOfWhatMatchesUnlessItIsClosed) {
    for (const char* name : {"One", "Two"}) settings.SetSetting("Fax", name, name);
    EXPECT_TRUE(settings.GetSettingLike("Fa%", "%", value, section, key, false));
    EXPECT_TRUE(settings.GetNextSetting(value));
    for (int past = 0; past < 2; ++past) {
        EXPECT_FALSE(settings.GetNextSetting(value));
        EXPECT_EQ(value, "");
    }
    EXPECT_TRUE(settings.GetSettingLike("Fa%", "%", value, section, key, true));
    EXPECT_FALSE(settings.GetNextSetting(value));
    EXPECT_FALSE(settings.DeleteCurrentSetting());
    EXPECT_EQ(Rows("Section = 'Fax'"), 2);
}

TEST_F(clsSettingsTest, ConvertsTheKeyColumnOfAnOldTable) {
    const auto old = std::make_shared<RecordingConnection>("", OldDatabase(false));
    settings.SetDbConnection(old);
    EXPECT_TRUE(settings.GetSettingLike("Stor%", "%", value, section, key, false));
    EXPECT_EQ(key + value, "DocumentPathC:\\d");
    EXPECT_TRUE(old->Issued("ALTER TABLE tblSettings DROP COLUMN [Key]"));
    const std::size_t before = old->statements.size();
    settings.GetSetting("Storage", "None", value);
    EXPECT_EQ(old->statements.size(), before + 1);
}

TEST_F(clsSettingsTest, ReadsAnIdOfZeroOnceMore) {
    for (const char* statement : {"DROP TABLE tblSettings",
                                  "CREATE TABLE tblSettings (Id LONG, Section TEXT(255), SKey "
                                  "TEXT(255), [Value] TEXT(255))",
                                  "insert into tblSettings (Id,Section,SKey) values (0,'A','B')"})
        connection->Execute(statement);
    EXPECT_TRUE(settings.GetSetting("A", "B", value));
    EXPECT_EQ(settings.Id(), 0);
    connection->Execute("update tblSettings set Id = 7");
    EXPECT_EQ(settings.Id(), 7);
}
