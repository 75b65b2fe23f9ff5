#include <gtest/gtest.h>

#include "platform/UnattendedMessages.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::tests {

using namespace platform;

TEST(UnattendedMessages, LogsAndAnswersWithCareWhereNobodyIsThere) {
    FakeWorkstation machine;
    UnattendedMessages messages(machine.messages, machine.registry, machine.log);
    EXPECT_EQ(messages.Show({"Doorgaan?", "Vraag", Buttons::YesNo}), Answer::Yes);
    ASSERT_EQ(machine.messages.shown.size(), 1u);

    machine.registry.Write("Kavidex", "DebugFlags", "Unattended", "True");
    EXPECT_EQ(messages.Show({"Doorgaan?", "Vraag", Buttons::YesNo}), Answer::No);
    EXPECT_EQ(messages.Show({"Weg ermee", "Vraag", Buttons::OkCancel}), Answer::Cancel);
    EXPECT_EQ(messages.Show({"Mislukt", "Melding"}), Answer::Ok);
    EXPECT_EQ(machine.messages.shown.size(), 1u) << "no box appears";
    EXPECT_EQ(machine.log.lines.size(), 3u);

    machine.registry.refuse = true;
    EXPECT_EQ(messages.Show({"Doorgaan?", "Vraag", Buttons::YesNo}), Answer::Yes)
        << "an option that cannot be read leaves the boxes on";
}

} // namespace kavidex::tests
