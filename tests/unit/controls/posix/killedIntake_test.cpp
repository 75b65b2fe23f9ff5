// A process that takes documents in is killed at every step: nothing is lost, and the next one goes
// on where it stopped.
#include <sys/wait.h>

#include <cstdio>

#include "tests/fakes/DyingFiles.h"
#include "tests/unit/controls/IntakeWays.h"

namespace kavidex::tests {
namespace {

class KilledIntake : private MemoryDisk, public IntakeWays {
protected:
    // True when it died before it was done.
    bool TakeInAndDie(int databaseStep, int fileStep) {
        const pid_t child = ::fork();
        if (child == 0) {
            DyingFiles files(platform::TheWorkstation().files, 0);
            const platform::Workstation own{
                machine.registry, files,        machine.clock, machine.user, machine.guids,
                machine.messages, machine.busy, machine.shell, machine.log,  machine.clipboard};
            auto connection =
                std::make_shared<FaultyConnection>(data::EmbeddedDatabase::Open(File()));
            Binder binder(own);
            binder.SetDbConnection(connection);
            TakeIn(binder, [&] {
                files.DieAt(fileStep);
                connection->steps = 0;
                connection->onStep = [databaseStep](int step) {
                    if (step == databaseStep) Die();
                };
            });
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0) << "it failed by itself";
        return WIFSIGNALED(status);
    }
};

} // namespace

TEST_P(KilledIntake, LosesNothingAndGoesOnWhereItStopped) {
    // KAVIDEX_KILLS asks for every step, where some are enough otherwise.
    const int stride = std::getenv("KAVIDEX_KILLS") ? 1 : 7;
    int kills = 0;
    for (const bool files : {true, false})
        for (int step = 1; step < 1000; step += stride) {
            Prepare();
            if (HasFatalFailure()) return;
            const bool died = TakeInAndDie(files ? 0 : step, files ? step : 0);
            const auto where = std::string(NameOf(GetParam())) + " killed at " +
                               (files ? "file" : "database") + " step " + std::to_string(step);
            ExpectNothingLost(where);
            ExpectWholeTheNextTime(where);
            if (HasFailure()) return;
            if (!died) break;
            ++kills;
        }
    EXPECT_GE(kills, 5);
    std::printf("%s: %d kills, none lost\n", NameOf(GetParam()), kills);
}

INSTANTIATE_TEST_SUITE_P(Ways, KilledIntake, testing::Values(Way::Drop, Way::Backlog, Way::Queue),
                         [](const auto& way) { return NameOf(way.param); });

} // namespace kavidex::tests
