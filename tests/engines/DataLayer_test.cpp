// The data layer's own helpers and classes, over every engine.
#include <algorithm>

#include "data/Error.h"
#include "data/clsSettings.h"
#include "data/clsTable.h"
#include "data/letters.h"
#include "data/modData.h"
#include "data/schema/clsUpdateDb.h"
#include "data/schema/modDataBase.h"
#include "tests/engines/Engine.h"

namespace kavidex::tests {

using namespace kavidex::data;

namespace {

// The base schema, made as each dialect makes it.
struct DataLayerOverEngines : EngineTest {
    void SetUp() override {
        EngineTest::SetUp();
        if (!IsSkipped()) CreateSchema();
    }
    void CreateSchema() {
        if (engine.ComesWithSchema()) return;
        On<clsSettings> settings(machine, connection);
        EXPECT_EQ(
            CheckAndCreateDatabase(machine, connection, settings, IsMySqlConnection(connection)),
            1);
    }
    std::string Setting(const std::string& section, const std::string& key) {
        On<clsSettings> settings(machine, connection);
        std::string value;
        return settings.GetSetting(section, key, value) ? value : "(none)";
    }
    std::int64_t Count(const std::string& table) {
        return ToInt64(One("select count(*) from " + table));
    }
    std::string Logged() {
        std::string lines;
        for (const auto& line : machine.log.lines)
            lines += line.where + ": " + line.what.substr(0, 300) + "\n";
        return lines;
    }
};

struct Hostile {
    const char* name;
    std::string text;
};

std::vector<Hostile> HostileTexts() {
    std::string controls;
    for (char c = 1; c < 32; ++c) controls += c;
    return {{"quotes", "O'Brien ''x'' \"y\" `z`"},
            {"backslashes", "\\\\server\\share\\a\\'b\\"},
            {"percent", "50% _x_ *?#"},
            {"brackets", "[x] {y} (z) {fn now()} ]]"},
            {"question marks", "wie? :a @b ? ?"},
            {"comments", "-- x /* y */ # z ; drop table tblTree"},
            {"controls", "a" + controls + "b"},
            {"letters", "één ŁÓDŹ жук 文件 ß"},
            {"astral", "📁 𐐷 \xF4\x8F\xBF\xBF"},
            {"64 KB", std::string(60'000, 'x') + "'é📁\\" + std::string(5'500, 'y')}};
}

} // namespace

TEST_P(DataLayerOverEngines, EveryHostileTextComesBackAsItWas) {
    connection->Execute("delete from tblTreeItem");
    for (const Hostile& each : HostileTexts()) {
        const bool isLong = each.text.size() > 255;
        const std::string column = isLong ? "Memo" : "Value1",
                          table = isLong ? "tblProbe" : "tblDossierReference";
        if (isLong) {
            static const schema::Table probe = {
                "tblProbe", "Id", "IdConstProbe", {{"Memo", schema::ColumnType::LongText}}};
            connection->Execute(schema::CreateTable(probe, engine.dialect));
        }
        const std::string insert =
            "insert into " + table + " (" + column + ") values (" + SqlValue(each.text) + ")";
        const std::string read = "select " + column + " from " + table;
        // Read by the one statement that escapes once...
        OpenRecordset(machine, insert, connection);
        EXPECT_EQ(Text(One(read)), each.text) << each.name << "\n" << Logged();
        connection->Execute("delete from " + table);
        // ... and written by the one that escapes twice.
        ExecuteSql(machine, insert, connection);
        const std::string expected = engine.DoublesBackslashesOnExecute()
                                         ? platform::Replace(each.text, "\\", "\\\\")
                                         : each.text;
        EXPECT_EQ(Text(One(read)), expected) << each.name;
        // Through the recordset, without any text of a statement.
        const RecordsetPtr rows = OpenRecordset(machine, "select * from " + table, connection);
        rows->Set(column, std::string("anders"));
        rows->Update();
        rows->Set(column, each.text);
        rows->Update();
        EXPECT_EQ(Text(One(read)), each.text) << each.name;
        // Found again by what it is, where the column can be compared.
        if (!isLong) {
            const RecordsetPtr found = OpenRecordset(
                machine, read + " where " + column + " = " + SqlValue(each.text), connection);
            EXPECT_EQ(found->IsOpen() ? found->RecordCount() : -1, 1) << each.name;
        }
        connection->Execute("delete from " + table);
    }
}

TEST_P(DataLayerOverEngines, SettingsAreInsertedUpdatedWalkedAndDeleted) {
    EXPECT_EQ(Setting("Build", "DbVersion"), "1.0.8") << Logged();
    On<clsSettings> settings(machine, connection);
    settings.SetSetting("Storage", "DocumentPath", "een");
    settings.SetSetting("storage", "documentpath", "twee"); // found without case, updated
    EXPECT_EQ(Setting("STORAGE", "DocumentPath"), "twee");
    EXPECT_EQ(ToInt64(One("select count(*) from tblSettings where Section = 'Storage'")), 1);

    settings.SetSetting("Sectie o'clock", "sleutel", "waarde"); // the section is escaped
    EXPECT_EQ(Setting("Sectie o'clock", "sleutel"), "waarde");
    settings.SetSetting("Storage", "DocumentPath", "it's"); // the value is not
    EXPECT_EQ(Setting("Storage", "DocumentPath"), "twee");
    EXPECT_TRUE(machine.log.Has("clsSettings.SetSetting")) << "a refused text leaves a trace";

    for (const char* key : {"k1", "k2", "k3"})
        settings.SetSetting("Rij", key, std::string("v") + key);
    const std::string all = engine.HasAccessLikeWildcards() ? "*" : "%";
    const std::string pattern = engine.HasAccessLikeWildcards() ? "k?" : "k_";
    std::string value, section, key;
    ASSERT_TRUE(settings.GetSettingLike("R" + all, pattern, value, section, key, false))
        << Logged();
    std::vector<std::string> walked{section + key + value};
    EXPECT_GT(settings.Id(), 0);
    while (settings.GetNextSettingLike(value, section, key))
        walked.push_back(section + key + value);
    std::sort(walked.begin(), walked.end());
    EXPECT_EQ(walked, (std::vector<std::string>{"Rijk1vk1", "Rijk2vk2", "Rijk3vk3"}));
    EXPECT_EQ(value, "");

    EXPECT_TRUE(settings.DeleteSetting("Rij", "k2"));
    EXPECT_FALSE(settings.DeleteSetting("Rij", "k2"));
    EXPECT_TRUE(settings.GetSetting("Rij", "k1", value));
    EXPECT_TRUE(settings.DeleteCurrentSetting());
    EXPECT_EQ(Setting("Rij", "k1"), "(none)");
    EXPECT_EQ(Setting("Rij", "k3"), "vk3");
}

TEST_P(DataLayerOverEngines, TheSchemaIsThereOnceAndOnlyOnce) {
    EXPECT_NE(connection->DefaultDatabase(), "");
    for (const schema::Table& table : schema::Tables())
        EXPECT_GE(Count(std::string(table.name)), 0) << table.name;
    On<clsSettings> settings(machine, connection);
    EXPECT_EQ(CheckAndCreateDatabase(machine, connection, settings, IsMySqlConnection(connection)),
              0);

    std::size_t indexes = 0;
    const RecordsetPtr found = connection->OpenSchema(Schema::Indexes);
    for (; !found->Eof(); found->MoveNext())
        if (platform::LowerCase(ToText(found->Get("INDEX_NAME"))).rfind("ind", 0) == 0) ++indexes;
    EXPECT_GE(indexes, schema::CreateIndexes().size());
}

TEST_P(DataLayerOverEngines, TableRowsAreMadeByGuidChangedAndRemoved) {
    On<clsUpdateDb>(machine, connection).fncUpdateDb(); // brings the GUID columns
    On<clsTable> table(machine, connection);
    table.SetTableName("tblDocument");
    table.SetOrdering("Id");
    ASSERT_TRUE(table.OpenDbConnection()) << Logged();
    EXPECT_TRUE(table.Eof());
    std::int32_t first = 0, second = 0;
    ASSERT_TRUE(table.SaveNewRow("Id", "DocGuid", first, "DocId")) << Logged();
    table.SetField("Description", std::string("Brief van O'Brien \\ 📁"));
    table.SetField("InsertDate", std::int64_t{20261115});
    table.SetField("ReadOnly", true);
    ASSERT_TRUE(table.UpdateCurrentRow()) << Logged();
    ASSERT_TRUE(table.SaveNewRow("Id", "DocGuid", second, "DocId"));
    EXPECT_EQ(second, first + 1);

    table.ReQuery();
    EXPECT_EQ(table.RecordCount(), 2);
    table.MoveFirst();
    EXPECT_EQ(ToInt32(table.GetField("DocId")), first);
    EXPECT_EQ(ToText(table.GetField("Description")), "Brief van O'Brien \\ 📁");
    EXPECT_EQ(ToInt32(table.GetField("InsertDate")), 20261115);
    EXPECT_TRUE(ToBool(table.GetField("ReadOnly")));
    EXPECT_EQ(ToText(table.GetField("ExternalId")), "");
    EXPECT_EQ(ToInt32(table.GetField("InsertTime")), 0);
    EXPECT_EQ(ToInt32(table.GetFieldLength("Description")), 255);
    ASSERT_TRUE(table.DeleteCurrentRow()) << Logged();
    table.ReQuery();
    EXPECT_EQ(table.RecordCount(), 1);
}

TEST_P(DataLayerOverEngines, TheUpgradeChainReachesTheCurrentVersionOnce) {
    On<clsUpdateDb> upgrade(machine, connection);
    upgrade.fncUpdateDb();
    EXPECT_EQ(Setting("Build", "DbVersion"), currentVersion) << Logged();
    const std::int64_t translations = Count("tblTranslations");
    EXPECT_GT(translations, 100) << Logged();
    EXPECT_FALSE(machine.busy.open);
    EXPECT_FALSE(machine.busy.shown.empty());

    // What was lost since comes back; nothing else is missed.
    connection->Execute("DROP INDEX indParentId on tblTreeItem");
    upgrade.fncUpdateDb();
    upgrade.fncUpdateDb();
    const RecordsetPtr indexes = connection->OpenSchema(Schema::Indexes);
    indexes->SetFilter("INDEX_NAME = 'indParentId'");
    EXPECT_EQ(indexes->RecordCount(), 1);
    EXPECT_FALSE(machine.log.Has("CompleteSchema")) << Logged();
    EXPECT_TRUE(machine.messages.shown.empty());
    EXPECT_EQ(Count("tblTranslations"), translations);
    EXPECT_EQ(Setting("Build", "DbVersion"), currentVersion);
}

TEST_P(DataLayerOverEngines, TheDatabaseTellsWhichLettersItKeeps) {
    const bool keeps = KeepsEveryLetter(CollationOf(machine, connection));
    EXPECT_FALSE(machine.log.Has("OpenRecordset", "ollation")) << Logged();
    if (engine.dialect == schema::Dialect::SqlServer) return; // as its database was made
    EXPECT_TRUE(keeps);
    if (engine.dialect != schema::Dialect::MySql) return;
    connection->Execute("alter database character set latin1");
    EXPECT_FALSE(KeepsEveryLetter(CollationOf(machine, connection)));
}

KAVIDEX_OVER_ENGINES(DataLayerOverEngines);

} // namespace kavidex::tests
