#include "platform/posix/OptionFile.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::platform::posix {

using tests::FakeWorkstation;

TEST(OptionFile, KeepsAnyTextUnderAnyName) {
    FakeWorkstation machine;
    const std::string path = NativePath(machine.Path("map\\options.ini"));
    OptionFile options(path);
    EXPECT_EQ(options.Read("Kavidex", "S", "K"), std::nullopt);
    const std::string odd = " [a]=b\\n\r\n#é\xff;/ ";
    options.Write("Kavidex", "S", "K", "een");
    options.Write("Kavidex", odd, odd, odd);
    options.Write("Kavidex", "T", "K", "");
    options.Write("Ander", "S", "K", "drie");
    options.Write("KAVIDEX", "s", "k", "twee");
    options.Write("Kavidex", "S", "L", "vier");

    OptionFile again(path);
    EXPECT_EQ(again.Read("Kavidex", "S", "K"), "twee");
    EXPECT_EQ(again.Read("Kavidex", "S", "L"), "vier");
    EXPECT_EQ(again.Read("Kavidex", odd, odd), odd);
    EXPECT_EQ(again.Read("Kavidex", "T", "K"), "");
    EXPECT_EQ(again.Read("Ander", "S", "K"), "drie");
    EXPECT_EQ(again.Read("Ander", "S", "L"), std::nullopt);
    EXPECT_EQ(again.Read("Kavidex/S", "", "K"), std::nullopt);
}

TEST(OptionFile, WritesOfTwoProcessesAllArrive) {
    FakeWorkstation machine;
    const std::string path = NativePath(machine.Path("options.ini"));
    const auto writeAll = [&](const std::string& name) {
        for (int i = 0; i < 30; ++i)
            OptionFile(path).Write("Kavidex", "S", name + std::to_string(i), "v");
    };
    const pid_t child = fork();
    if (child == 0) {
        writeAll("kind");
        _exit(0);
    }
    writeAll("ouder");
    int status = 0;
    waitpid(child, &status, 0);
    for (int i = 0; i < 30; ++i) {
        EXPECT_EQ(OptionFile(path).Read("Kavidex", "S", "kind" + std::to_string(i)), "v") << i;
        EXPECT_EQ(OptionFile(path).Read("Kavidex", "S", "ouder" + std::to_string(i)), "v") << i;
    }
}

} // namespace kavidex::platform::posix
