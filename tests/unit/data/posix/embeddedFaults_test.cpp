// Faults that a process can only be given here: killed while writing, a file that may not grow, a
// file that may only be read.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "data/Error.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "tests/fakes/Failures.h"
#include "tests/unit/data/TemporaryFolder.h"

namespace kavidex::data {
namespace {

class EmbeddedFaults : public testing::Test {
protected:
    tests::TemporaryFolder folder;
    std::string path = folder.Path("x.kdb");

    static std::int64_t Number(Connection& connection, const std::string& statement) {
        return ToInt64(connection.Open({statement})->Get(0));
    }
    // Runs `work` in a process of its own and answers its id.
    template <class Work>
    static pid_t Start(Work work) {
        const pid_t child = fork();
        if (child == 0) {
            int code = 0;
            try {
                work();
            } catch (const std::exception&) {
                code = 1;
            }
            _exit(code);
        }
        return child;
    }
    static int Wait(pid_t child) {
        int status = 0;
        waitpid(child, &status, 0);
        return status;
    }
};

// Each transaction adds one tree and two items; whatever the moment of the kill, both are there.
TEST_F(EmbeddedFaults, KilledWritersLeaveWholeTransactions) {
    EmbeddedDatabase::Create(path)->Close();
    std::int64_t before = 0;
    for (int round = 0; round < 15; ++round) {
        const pid_t child = Start([&] {
            const ConnectionPtr connection = EmbeddedDatabase::Open(path);
            for (;;) {
                connection->BeginTrans();
                connection->Execute("Insert into tblTree (Description) Values ('tree')");
                connection->Execute(
                    "Insert into tblTreeItem (ParentId, Description) Values (1, 'one')");
                connection->Execute(
                    "Insert into tblTreeItem (ParentId, Description) Values (2, 'two')");
                connection->CommitTrans();
            }
        });
        usleep(static_cast<useconds_t>(20000 + round * 3777));
        kill(child, SIGKILL);
        EXPECT_TRUE(WIFSIGNALED(Wait(child)));
        const ConnectionPtr connection = EmbeddedDatabase::Open(path);
        const std::int64_t trees = Number(*connection, "Select count(*) from tblTree");
        EXPECT_EQ(Number(*connection, "Select count(*) from tblTreeItem"), trees * 2);
        EXPECT_GE(trees, before);
        EXPECT_TRUE(EmbeddedDatabase::Check(*connection).empty());
        before = trees;
    }
    EXPECT_GT(before, 0);
}

TEST_F(EmbeddedFaults, KilledMakersLeaveAWholeFileOrNone) {
    int whole = 0;
    for (int round = 0; round < 15; ++round) {
        std::filesystem::remove(folder.Native("x.kdb"));
        const pid_t child = Start([&] { EmbeddedDatabase::Create(path)->Close(); });
        usleep(static_cast<useconds_t>(round * 2500));
        kill(child, SIGKILL);
        Wait(child);
        if (std::filesystem::exists(folder.Native("x.kdb"))) ++whole;
        const ConnectionPtr connection = EmbeddedDatabase::OpenOrCreate(path);
        EXPECT_EQ(Number(*connection, "Select count(*) from tblSettings"), 1);
        connection->Close();
    }
    RecordProperty("filesMadeBeforeTheKill", whole);
}

TEST_F(EmbeddedFaults, ManyProcessesMakeOneFileTogether) {
    std::vector<pid_t> children;
    for (int i = 0; i < 4; ++i)
        children.push_back(Start([&] {
            const ConnectionPtr connection = EmbeddedDatabase::OpenOrCreate(path);
            for (int row = 0; row < 10; ++row)
                connection->Execute("Insert into tblTree (Description) Values ('tree')");
        }));
    for (const pid_t child : children) EXPECT_EQ(Wait(child), 0);
    EXPECT_EQ(Number(*EmbeddedDatabase::Open(path), "Select count(*) from tblTree"), 40);
}

// A limit on the size of files stands for a full disk.
TEST_F(EmbeddedFaults, AFullDiskIsToldAndLosesNothing) {
    const ConnectionPtr connection = EmbeddedDatabase::Create(path);
    connection->Execute("Insert into tblTree (Description) Values ('kept')");
    connection->Close();
    const rlim_t limit = std::filesystem::file_size(folder.Native("x.kdb")) + 20000;
    const pid_t child = Start([&] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit room{limit, limit};
        setrlimit(RLIMIT_FSIZE, &room);
        const ConnectionPtr full = EmbeddedDatabase::Open(path);
        const std::string text(2000, 'x');
        full->BeginTrans();
        const std::string words = tests::WordsOf([&] {
            for (int i = 0; i < 1000; ++i)
                full->Execute("Insert into tblDossierReference ([Memo]) Values ('" + text + "')");
            full->CommitTrans();
        });
        if (words.find(path) == std::string::npos) _exit(2);
        if (tests::NumberOf([&] { full->RollbackTrans(); }) != 0) _exit(3);
        if (Number(*full, "Select count(*) from tblTree") != 1) _exit(4);
    });
    EXPECT_EQ(Wait(child), 0);
    const ConnectionPtr again = EmbeddedDatabase::Open(path);
    EXPECT_EQ(Number(*again, "Select count(*) from tblTree"), 1);
    EXPECT_EQ(Number(*again, "Select count(*) from tblDossierReference"), 0);
    EXPECT_TRUE(EmbeddedDatabase::Check(*again).empty());
}

TEST_F(EmbeddedFaults, NoHandleRemainsAfterClose) {
    const auto handles = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    const auto before = handles();
    const ConnectionPtr connection = EmbeddedDatabase::Create(path);
    const RecordsetPtr rows = connection->Open({"Select * from tblSettings"});
    EXPECT_GT(handles(), before);
    connection->Close();
    EXPECT_EQ(handles(), before);
    EXPECT_EQ(rows->RecordCount(), 1);
}

TEST_F(EmbeddedFaults, AReadOnlyFileIsReadAndRefusesWritesByName) {
    EmbeddedDatabase::Create(path)->Close();
    chmod(folder.Native("x.kdb").c_str(), 0444);
    chmod(folder.Folder().c_str(), 0777);
    const pid_t child = Start([&] {
        // The administrator may write anything; an unprivileged user stands in.
        if (geteuid() == 0 && setuid(65534) != 0) _exit(9);
        const ConnectionPtr connection = EmbeddedDatabase::Open(path);
        if (Number(*connection, "Select count(*) from tblSettings") != 1) _exit(2);
        const std::string words =
            tests::WordsOf([&] { connection->Execute("Delete from tblSettings"); });
        if (words.find("only be read") == std::string::npos) _exit(3);
    });
    EXPECT_EQ(Wait(child), 0);
}

} // namespace
} // namespace kavidex::data
