#include <gtest/gtest.h>

#include "platform/Guids.h"
#include "platform/TemporaryFolder.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::platform {
namespace {

TEST(TemporaryFolder, GoesWithAllThatIsInItAndTakesOldOnesOfItsKindAlong) {
    tests::FakeWorkstation machine;
    machine.guids.real = true;
    const auto temporary = machine.files.TemporaryFolder();
    const auto guid = GuidText(*machine.guids.New()).substr(1, 36);
    const auto old = temporary + "Kavidex-Mail-20261113-" + guid,
               yesterday = temporary + "Kavidex-Mail-20261114-" + guid,
               exported = temporary + "Kavidex-Export-20261113-" + guid;
    for (const auto& left : {old, yesterday, exported}) {
        machine.files.CreateDirectories(left);
        machine.files.WriteAll(JoinPath(left, "a.pdf"), "x");
    }
    std::string path;
    {
        const TemporaryFolder folder(machine, "Mail");
        path = folder.Path();
        const auto file = JoinPath(path, "vast.doc");
        machine.files.WriteAll(file, "x");
        machine.files.SetAttributes(file, attributes::readOnly);
        EXPECT_FALSE(machine.files.DirectoryExists(old));
        EXPECT_TRUE(machine.files.DirectoryExists(yesterday)) << "it may be open over midnight";
    }
    EXPECT_FALSE(machine.files.DirectoryExists(path));
    machine.clock.now.day = 16;
    { const TemporaryFolder later(machine, "Mail"); }
    EXPECT_FALSE(machine.files.DirectoryExists(yesterday));
    RemoveTemporaryFolder(machine, MakeTemporaryFolder(machine, "Export", 3));
    EXPECT_TRUE(machine.files.DirectoryExists(exported));
    machine.clock.now.day = 17;
    RemoveTemporaryFolder(machine, MakeTemporaryFolder(machine, "Export", 3));
    EXPECT_FALSE(machine.files.DirectoryExists(exported));
    EXPECT_FALSE(machine.log.Has("TemporaryFolder", path));
}

} // namespace
} // namespace kavidex::platform
