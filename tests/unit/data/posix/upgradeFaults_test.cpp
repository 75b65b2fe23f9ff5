// The steps of the upgrade chain fail: each alone, and with all after it.
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "data/schema/clsUpdateDb.h"
#include "tests/fakes/Databases.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/FaultyConnection.h"
#include "tests/fakes/On.h"

using namespace kavidex;
using namespace kavidex::data;
using namespace kavidex::tests;

namespace {

namespace fs = std::filesystem;
using Faulty = std::shared_ptr<FaultyConnection>;

// A file for each fault, in memory where the system has such a folder: hundreds of databases would
// wait for a disk.
struct UpgradeFaults : testing::Test {
    FakeWorkstation machine;
    fs::path folder =
        (access("/dev/shm", W_OK) == 0 ? fs::path("/dev/shm") : fs::temp_directory_path()) /
        ("kavidex-upgrade-" + std::to_string(getpid()));

    UpgradeFaults() { fs::create_directories(folder); }
    ~UpgradeFaults() override { fs::remove_all(folder); }

    std::string PathOf(const std::string& name) const {
        return platform::Replace((folder / name).string(), "/", "\\");
    }
    Faulty Opened(const std::string& name) {
        auto connection = std::make_shared<FaultyConnection>(EmbeddedDatabase::Open(PathOf(name)));
        connection->countsAll = true;
        return connection;
    }
    Faulty CopyOf(const std::string& name) {
        fs::copy_file(folder / name, folder / "copy", fs::copy_options::overwrite_existing);
        return Opened("copy");
    }
    // Upgrades until a version was recorded, then the connection is gone. Step `failing` fails, and
    // with `onwards` all after it. The steps, each named by the statement before it.
    std::vector<std::string> OneVersion(const Faulty& connection, int failing = 0,
                                        bool onwards = false) {
        std::vector<std::string> steps;
        connection->statements.clear();
        connection->steps = 0;
        connection->onStep = [&](int step) {
            const auto& issued = connection->statements;
            if (!steps.empty() && RecordsVersion(issued)) Fail();
            steps.push_back(issued.empty() ? "the start" : issued.back());
            if (step == failing || (onwards && step > failing)) Fail();
        };
        On<clsUpdateDb>(machine, connection).fncUpdateDb();
        connection->onStep = nullptr;
        return steps;
    }
    static bool RecordsVersion(const std::vector<std::string>& issued) {
        return std::any_of(issued.begin(), issued.end(), [](const std::string& statement) {
            return statement.starts_with("update tblSettings") ||
                   statement.starts_with("Insert into tblSettings");
        });
    }
    [[noreturn]] static void Fail() {
        throw Error(errors::unspecified, "made to fail", "UpgradeFaults");
    }
    std::string Version(const Faulty& connection) {
        On<clsSettings> settings(machine, connection->inner);
        std::string version;
        settings.GetSetting("Build", "DbVersion", version);
        return version;
    }
    static std::string Printed(const Faulty& connection) {
        return Printout(*connection->inner, "DocGuid");
    }
    bool LeftATrace() const {
        const auto& lines = machine.log.lines;
        return std::any_of(lines.begin(), lines.end(), [](const FakeLog::Line& line) {
            return line.what.find("made to fail") != std::string::npos;
        });
    }
    // "CREATE INDEX # on # (# )"; empty for what reads, writes or ends rows.
    static std::string ShapeOf(const std::string& statement) {
        std::string shape;
        for (const std::string& word : platform::Split(statement, ' '))
            shape += platform::UpperCase(word) == word ? word + " " : "# ";
        return shape.starts_with("CREATE ") || shape.starts_with("ALTER ") ? shape : "";
    }
    // Whether to fail there. Definitions of one shape are issued and skipped by the same code: of
    // those of a version the first and the last stand for the others, and of the translations every
    // fortieth.
    static bool Tried(const std::vector<std::string>& steps, std::size_t at) {
        if (steps[at].find(" tblTranslations ") != std::string::npos) return at % 40 == 0;
        const std::string shape = ShapeOf(steps[at]);
        const auto alike = [&](const std::string& step) { return ShapeOf(step) == shape; };
        const auto place = steps.begin() + static_cast<std::ptrdiff_t>(at);
        return shape.empty() || std::none_of(steps.begin(), place, alike) ||
               std::none_of(place + 1, steps.end(), alike);
    }
    // All faults of the step that begins at the version of that file.
    void FailEverywhere(const std::string& before, const std::vector<std::string>& steps,
                        const std::string& versionAfter, const std::string& printoutAfter) {
        for (std::size_t n = 1; n <= steps.size(); ++n) {
            if (!Tried(steps, n - 1)) continue;
            for (const bool onwards : {false, true}) {
                // Wherever the connection drops, one and the same transaction is undone: of its
                // steps every fourth is enough, and its end.
                if (onwards && n % 4 != 1 && n + 3 < steps.size()) continue;
                SCOPED_TRACE((onwards ? "dropped after " : "refused after ") + steps[n - 1]);
                const Faulty connection = CopyOf(before);
                const std::string versionBefore = Version(connection);
                machine.log.lines.clear();
                OneVersion(connection, static_cast<int>(n), onwards);
                EXPECT_TRUE(LeftATrace());
                EXPECT_FALSE(machine.busy.open);
                if (Version(connection) == versionBefore) OneVersion(connection);
                EXPECT_EQ(Version(connection), versionAfter);
                // What a single refused statement would have done is not done again.
                if (onwards) {
                    EXPECT_EQ(Printed(connection), printoutAfter);
                }
            }
        }
    }
};

} // namespace

TEST_F(UpgradeFaults, AreSkippedWithATraceAndResumedFromAtEveryStatement) {
    const std::string first = "0";
    EmbeddedDatabase::BackupTo(*OldDatabase(true), PathOf(first));
    std::size_t walked = 0;
    for (std::string before = first, after; before != currentVersion; before = after) {
        const Faulty whole = CopyOf(before);
        const std::vector<std::string> steps = OneVersion(whole);
        walked += steps.size();
        after = Version(whole);
        ASSERT_NE(after, before);
        const std::string printout = Printed(whole);
        EmbeddedDatabase::BackupTo(*whole->inner, PathOf(after));
        whole->Close();
        FailEverywhere(before, steps, after, printout);
    }
    EXPECT_GT(walked, 500u);
}
