#include <gtest/gtest.h>

#include "data/schema/modDataBase.h"
#include "tests/fakes/FakeWorkstation.h"

using namespace kavidex;
using namespace kavidex::data;
using namespace kavidex::tests;

namespace {

struct RecordingRepair : AccessRepair {
    std::vector<std::string> calls;
    bool refuse = false;
    void Configure(std::string_view driver, std::string_view attributes) override {
        calls.push_back(std::string(driver) + "|" + std::string(attributes));
        if (refuse) throw platform::Error(platform::errors::fail, "refused");
    }
};

struct BackupTest : testing::Test {
    FakeWorkstation machine;
    RecordingRepair repair;
    std::string path = machine.Path("kavidex.mdb");

    void SetUp() override {
        machine.clock.now = {2006, 3, 15, 9, 30, 0, 0};
        machine.files.WriteAll(path, "contents");
    }
    std::size_t Copies() {
        return machine.files.List(machine.Folder(), "kavidex2*.mdb", false).size();
    }
};

} // namespace

TEST_F(BackupTest, CopiesAndRepairsOnceADay) {
    EXPECT_EQ(BackupAndRepair(machine, repair, path), 0);
    EXPECT_EQ(machine.files.ReadAll(machine.Path("kavidex20060315.mdb")), "contents");
    ASSERT_EQ(repair.calls.size(), 1u);
    EXPECT_EQ(repair.calls[0],
              "Microsoft Access Driver (*.MDB)|REPAIR_DB=\"" + path + "\";PWD=Kw72p5n9");
    ASSERT_EQ(machine.busy.shown.size(), 1u);
    EXPECT_EQ(machine.busy.shown[0].caption, "Database backup and compress");
    EXPECT_EQ(machine.busy.shown[0].text,
              "Bezig met het aanmaken van een backup en het vrijmaken van ruimte.\r\n"
              "Wacht totdat dit proces is afgerond en sluit Lumaform niet af.");
    EXPECT_EQ(machine.busy.pumped, 1);
    EXPECT_FALSE(machine.busy.open);

    EXPECT_EQ(BackupAndRepair(machine, repair, path), 1);
    EXPECT_EQ(repair.calls.size(), 1u);
}

TEST_F(BackupTest, SkipsADatabaseInUseAndShortPaths) {
    machine.files.WriteAll(machine.Path("kavidex.ldb"), "");
    EXPECT_EQ(BackupAndRepair(machine, repair, path), 1);
    EXPECT_EQ(BackupAndRepair(machine, repair, ".mdb"), 1);
    EXPECT_EQ(BackupAndRepair(machine, repair, ""), 1);
    EXPECT_EQ(Copies(), 0u);
    EXPECT_TRUE(repair.calls.empty());
}

TEST_F(BackupTest, KeepsTheSevenNewestCopies) {
    for (int day = 1; day <= 9; ++day)
        machine.files.WriteAll(machine.Path("kavidex2006020" + std::to_string(day) + ".mdb"), "");
    machine.files.WriteAll(machine.Path("kavidex-archive-2006.mdb"), "");
    EXPECT_EQ(BackupAndRepair(machine, repair, path), 0);
    EXPECT_EQ(Copies(), 7u);
    EXPECT_TRUE(machine.files.FileExists(machine.Path("kavidex20060315.mdb")));
    EXPECT_FALSE(machine.files.FileExists(machine.Path("kavidex20060203.mdb")));
    EXPECT_TRUE(machine.files.FileExists(machine.Path("kavidex20060204.mdb")));
    EXPECT_TRUE(machine.files.FileExists(machine.Path("kavidex-archive-2006.mdb")));
    EXPECT_TRUE(machine.files.FileExists(path));
}

TEST_F(BackupTest, LogsACopyThatCannotBeMadeAndGoesOn) {
    machine.files.Remove(path);
    repair.refuse = true;
    EXPECT_EQ(BackupAndRepair(machine, repair, path), 0);
    EXPECT_EQ(repair.calls.size(), 1u);
    EXPECT_EQ(machine.log.lines.size(), 2u);
    EXPECT_TRUE(machine.log.Has("BackupAndRepair", "refused"));
}

TEST(Retention, KnowsTheThreeFileNames) {
    const RetentionSet local = RetentionOf("C:\\Data\\LumaformLocalDb.mdb");
    EXPECT_EQ(local.folder, "C:\\Data\\");
    EXPECT_EQ(local.pattern, "LumaformlocalDb*.mdb");
    EXPECT_EQ(local.datePosition, 16u);
    EXPECT_EQ(RetentionOf("C:\\Data\\LUMAFORMDB.MDB").datePosition, 11u);
    EXPECT_EQ(RetentionOf("C:\\Data\\kavidex.mdb").folder, "C:\\Data\\");
    EXPECT_EQ(RetentionOf("C:\\Data\\dossiers.mdb").folder, "C:\\Data\\d"); // as for kavidex.mdb
}

TEST(Retention, TakesTheSmallestDatesAndIgnoresNamesWithoutOne) {
    using Names = std::vector<std::string>;
    Names names = {"kavidex.mdb", "kavidexABCDEFGH.mdb", "kavidex2006031.mdb"};
    for (int day = 9; day >= 1; --day)
        names.push_back("kavidex2006020" + std::to_string(day) + ".mdb");
    EXPECT_EQ(CopiesToDelete(names, 8), (Names{"kavidex20060201.mdb", "kavidex20060202.mdb"}));
    EXPECT_TRUE(CopiesToDelete(Names(names.begin(), names.begin() + 10), 8).empty());

    // Of equal dates the first listed goes; a date that is not before the extension is never taken.
    Names equal(8, "kavidex20060201.mdb");
    equal[0] = "KAVIDEX20060201.mdb";
    EXPECT_EQ(CopiesToDelete(equal, 8), Names{"KAVIDEX20060201.mdb"});
    EXPECT_TRUE(CopiesToDelete(Names(9, "kavidex20060201-mine.mdb"), 8).empty());

    Names many; // more than thirty
    for (int i = 0; i < 40; ++i) many.push_back("kavidex" + std::to_string(20060000 + i) + ".mdb");
    EXPECT_EQ(CopiesToDelete(many, 8).size(), 33u);
}
