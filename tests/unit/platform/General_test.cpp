#include "platform/General.h"

#include <gtest/gtest.h>

#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::platform {

using tests::FakeGuids;
using tests::FakeWorkstation;

TEST(General, ReadsOptionsWithTheMissingValueRule) {
    FakeWorkstation machine;
    EXPECT_EQ(GetRegSetting(machine, "Kavidex", "CorrespSetting", "DbCheck", "1"), "1");
    SaveRegSetting(machine, "Kavidex", "CorrespSetting", "DbCheck", " 0 ");
    EXPECT_EQ(GetRegSetting(machine, "kavidex", "CORRESPSETTING", "dbcheck", "1"), " 0 ");
    SaveRegSetting(machine, "Kavidex", "CorrespSetting", "DbCheck", "  $%$ ");
    EXPECT_EQ(GetRegSetting(machine, "Kavidex", "CorrespSetting", "DbCheck", "1"), "1");
    SaveRegSetting(machine, "Kavidex", "CorrespSetting", "DbCheck", "");
    EXPECT_EQ(GetRegSetting(machine, "Kavidex", "CorrespSetting", "DbCheck", "1"), "");
}

TEST(General, ARefusingRegistryGivesTheFallbackAndATraceInTheLog) {
    FakeWorkstation machine;
    machine.registry.refuse = true;
    EXPECT_EQ(GetRegSetting(machine, "Kavidex", "S", "K", "d"), "d");
    EXPECT_NO_THROW(SaveRegSetting(machine, "Kavidex", "S", "K", "v"));
    EXPECT_TRUE(machine.log.Has("GetRegSetting", "closed"));
    EXPECT_TRUE(machine.log.Has("SaveRegSetting", "closed"));
}

TEST(General, FlagsAreTheTextsTrueAndFalse) {
    FakeWorkstation machine;
    EXPECT_FALSE(GetRegFlag(machine, "TreeSettings", "FullExpand"));
    SaveRegFlag(machine, "TreeSettings", "FullExpand", true);
    EXPECT_EQ(machine.registry.Read("Kavidex", "TreeSettings", "FullExpand"), "True");
    EXPECT_TRUE(GetRegFlag(machine, "TreeSettings", "FullExpand"));
    machine.registry.Write("Kavidex", "TreeSettings", "FullExpand", "1");
    EXPECT_FALSE(GetRegFlag(machine, "TreeSettings", "FullExpand"));
}

TEST(CreateGuid, GivesTheBracedUpperCaseFormOrLeavesTheTextAlone) {
    FakeWorkstation machine;
    std::string guid = "old";
    machine.guids.refuse = true;
    EXPECT_EQ(CreateGuid(machine, guid), -1);
    EXPECT_EQ(guid, "old");
    machine.guids.refuse = false;
    EXPECT_EQ(CreateGuid(machine, guid), 0);
    EXPECT_EQ(guid, "{00000000-0000-0000-0000-000000000001}");
    EXPECT_EQ(FakeGuids::TextOf(1), guid);

    std::string first, second;
    EXPECT_EQ(CreateGuid(TheWorkstation(), first), 0);
    EXPECT_EQ(CreateGuid(TheWorkstation(), second), 0);
    EXPECT_NE(first, second);
    ASSERT_EQ(first.size(), 38u);
    EXPECT_EQ(first[15], '4'); // version: random
    EXPECT_EQ(first, UpperCase(first));
}

TEST(BusyScope, NestedScopesCloseWithTheOutermost) {
    FakeWorkstation machine;
    {
        BusyScope outer(machine.busy, "Controle database", "een");
        {
            BusyScope inner(machine.busy, "Controle database", "twee");
            inner.Progress(1, 3);
        }
        EXPECT_TRUE(machine.busy.open);
        outer.Text("Controle database", "drie");
    }
    EXPECT_FALSE(machine.busy.open);
    EXPECT_EQ(machine.busy.closed, 1);
    ASSERT_EQ(machine.busy.shown.size(), 3u);
    EXPECT_EQ(machine.busy.shown[2].text, "drie");
    EXPECT_GT(machine.busy.pumped, 0);
}

} // namespace kavidex::platform
