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
        return InProcess([&] {
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
        });
    }
    template <class Work>
    static bool InProcess(Work work) {
        const pid_t child = ::fork();
        if (child == 0) {
            work();
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0) << "it failed by itself";
        return WIFSIGNALED(status);
    }
};

class KilledWaiting : public KilledIntake {};
class UndeletableSources : public KilledIntake {};

} // namespace

TEST_P(KilledIntake, LosesNothingAndGoesOnWhereItStopped) {
    // KAVIDEX_KILLS asks for every step, where some are enough otherwise: more of them where the
    // sources are deleted at once.
    const int stride = std::getenv("KAVIDEX_KILLS") ? 1 : GetParam() == Way::Scan ? 2 : 7;
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

// Scanned documents whose files nobody else knows of.
TEST_P(KilledWaiting, IsAskedForAFolderTheNextTime) {
    Prepare();
    EXPECT_TRUE(InProcess([&] {
        const Opened own(*this, machine);
        own.binder.OpenOrCreate(key, "Dossier", "", "", "");
        std::vector<std::string> files;
        for (const auto& [path, bytes] : sources) files.push_back(path);
        Scan(own.binder, files);
        Die();
    }));
    const Opened clean(*this, machine);
    clean.binder.OpenOrCreate(key, "Dossier", "", "", "");
    ASSERT_EQ(machine.messages.shown.size(), 1U);
    EXPECT_EQ(machine.messages.shown[0].text, "Selecteer een map om het document op te bergen");
    clean.binder.treCorr().NodeSelected(clean.binder.treCorr().Tree()->Item()->Id());
    EXPECT_EQ(clean.binder.treCorr().AllItems().size(), sources.size());
    for (const auto& [path, bytes] : sources) EXPECT_FALSE(machine.files.FileExists(path));
    EXPECT_TRUE(machine.files.List(machine.Path("temp\\Kavidex"), "*", false).empty());
}

// Another program of the same user that has the dossier open.
TEST_P(KilledWaiting, IsNotTakenFromOneThatLives) {
    Prepare();
    std::vector<std::string> files;
    for (const auto& [path, bytes] : sources) files.push_back(path);
    {
        const Opened one(*this, machine);
        one.binder.OpenOrCreate(key, "Dossier", "", "", "");
        Scan(one.binder, files);
        machine.messages.shown.clear();
        const Opened other(*this, machine);
        other.binder.OpenOrCreate(key, "Dossier", "", "", "");
        other.binder.treCorr().NodeSelected(other.binder.treCorr().Tree()->Item()->Id());
        EXPECT_TRUE(machine.messages.shown.empty());
        EXPECT_TRUE(other.binder.treCorr().AllItems().empty());
    }
    ExpectNothingLost("two programs");
}

// Locked, say, until the second time.
TEST_P(UndeletableSources, ComeInOnce) {
    Prepare();
    machine.files.refused = "Remove " + platform::FolderOf(sources.begin()->first);
    for (int run = 0; run < 3; ++run) {
        const Opened own(*this, machine);
        TakeIn(own.binder, [] {});
        for (const auto& [path, bytes] : sources) {
            EXPECT_EQ(Copies(own.binder, bytes), 1) << run;
            EXPECT_TRUE(machine.files.FileExists(path));
        }
        if (GetParam() == Way::Scan) break; // nobody reports them again
    }
    machine.files.refused.clear();
    for (const auto& [path, bytes] : sources)
        machine.files.SetAttributes(path, platform::attributes::readOnly);
    ExpectWholeTheNextTime("not deleted");
}

// A share that is away says nothing of the files on it.
TEST_P(KilledWaiting, IsNotForgottenWhileItsShareIsAway) {
    Prepare();
    EXPECT_TRUE(InProcess([&] {
        const Opened own(*this, machine);
        own.binder.OpenOrCreate(key, "Dossier", "", "", "");
        std::vector<std::string> files;
        for (const auto& [path, bytes] : sources) files.push_back(path);
        Scan(own.binder, files);
        Die();
    }));
    machine.files.away = machine.Path("in");
    for (int run = 0; run < 2; ++run) {
        machine.messages.shown.clear();
        const Opened own(*this, machine);
        TakeIn(own.binder, [] {});
        EXPECT_TRUE(own.binder.treCorr().AllItems().empty());
        ASSERT_FALSE(machine.messages.shown.empty());
        EXPECT_NE(machine.messages.shown.back().text.find("1.tif: niet bereikbaar"),
                  std::string::npos);
    }
    machine.files.away.clear();
    ExpectWholeTheNextTime("the share is back");
}

// What is filed may still lie at its source: without the store nobody can tell.
TEST_P(UndeletableSources, AreNeitherFiledAgainNorForgottenWhileTheStoreIsAway) {
    Prepare();
    machine.files.refused = "Remove " + platform::FolderOf(sources.begin()->first);
    {
        const Opened own(*this, machine);
        TakeIn(own.binder, [] {});
    }
    machine.files.refused.clear();
    machine.files.away = machine.Path("store");
    for (int run = 0; run < 2; ++run) {
        machine.messages.shown.clear();
        const Opened own(*this, machine);
        TakeIn(own.binder, [] {});
        ASSERT_FALSE(machine.messages.shown.empty());
        EXPECT_NE(machine.messages.shown.back().text.find("de map van de documentopslag"),
                  std::string::npos);
    }
    machine.files.away.clear();
    machine.files.FailAt(0);
    ExpectWholeTheNextTime("the store is back");
    const auto& calls = machine.files.calls;
    const auto looked = std::count_if(calls.begin(), calls.end(), [&](const std::string& call) {
        return call.starts_with("Size " + machine.Path("store"));
    });
    EXPECT_EQ(looked, documents) << "at each stored document once, for all that were left";
}

INSTANTIATE_TEST_SUITE_P(Ways, KilledIntake,
                         testing::Values(Way::Drop, Way::Backlog, Way::Queue, Way::Scan),
                         [](const auto& way) { return NameOf(way.param); });

INSTANTIATE_TEST_SUITE_P(Ways, UndeletableSources, testing::Values(Way::Queue, Way::Scan),
                         [](const auto& way) { return NameOf(way.param); });

INSTANTIATE_TEST_SUITE_P(Ways, KilledWaiting, testing::Values(Way::Scan),
                         [](const auto& way) { return NameOf(way.param); });

} // namespace kavidex::tests
