// Every step of the disk and of the database fails once, while documents come in.
#include "tests/fakes/DyingFiles.h"
#include "tests/unit/controls/IntakeWays.h"

namespace kavidex::tests {
namespace {

class IntakeFaults : private MemoryDisk, public IntakeWays {
protected:
    // What fails, and stays failed where `onwards` says so. False: it was not reached.
    bool TakeInWithout(int step, bool ofFiles, bool onwards) {
        auto connection = std::make_shared<FaultyConnection>(data::EmbeddedDatabase::Open(File()));
        bool reached = false;
        {
            Binder binder(machine);
            binder.SetDbConnection(connection);
            TakeIn(binder, [&] {
                machine.messages.shown.clear();
                if (ofFiles)
                    machine.files.FailAt(step, platform::errors::diskFull, onwards);
                else
                    connection->FailStep(step, onwards);
            });
            reached = ofFiles ? machine.files.operations >= step : connection->steps >= step;
            machine.files.FailAt(0);
            connection->onStep = nullptr;
        }
        if (connection->IsOpen()) connection->Close();
        return reached;
    }
};

} // namespace

TEST_P(IntakeFaults, NothingIsLostAndWhatWasLeftComesInTheNextTime) {
    // KAVIDEX_KILLS asks for every step, where some are enough otherwise.
    const int stride = std::getenv("KAVIDEX_KILLS") ? 1 : 4;
    for (const bool ofFiles : {true, false})
        for (const bool onwards : {false, true})
            for (int step = 1; step < 1000; step += onwards ? 5 * stride : stride) {
                Prepare();
                if (HasFatalFailure()) return;
                const bool reached = TakeInWithout(step, ofFiles, onwards);
                const auto where = std::string(NameOf(GetParam())) + " without " +
                                   (ofFiles ? "file" : "database") + " step " +
                                   std::to_string(step) + (onwards ? " and all after" : "");
                ExpectNothingLost(where);
                ExpectWholeTheNextTime(where);
                if (HasFailure()) return;
                if (!reached) break;
            }
}

INSTANTIATE_TEST_SUITE_P(Ways, IntakeFaults,
                         testing::Values(Way::Drop, Way::Backlog, Way::Queue, Way::Scan),
                         [](const auto& way) { return NameOf(way.param); });

} // namespace kavidex::tests
