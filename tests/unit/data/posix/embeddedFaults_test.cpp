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
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::data {
namespace {

class EmbeddedFaults : public testing::Test {
protected:
    tests::FakeWorkstation machine;
    std::string path = machine.Path("x.kdb");
    std::filesystem::path native = tests::FakeWorkstation::Native(path);

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

// Each transaction adds one tree and two items; whatever the moment of the kill, all that was
// committed is there, and both items of each tree.
TEST_F(EmbeddedFaults, KilledWritersLeaveWholeTransactions) {
    EmbeddedDatabase::Create(path)->Close();
    std::int64_t before = 0;
    for (int round = 0; round < 15; ++round) {
        int committed[2]; // a byte for each
        ASSERT_EQ(pipe(committed), 0);
        const pid_t child = Start([&] {
            const ConnectionPtr connection = EmbeddedDatabase::Open(path);
            for (;;) {
                connection->BeginTrans();
                connection->Execute("Insert into tblTree (Description) Values ('tree')");
                for (const char* item : {"(1, 'one')", "(2, 'two')"})
                    connection->Execute(
                        std::string("Insert into tblTreeItem (ParentId, Description) Values ") +
                        item);
                connection->CommitTrans();
                if (write(committed[1], "x", 1) != 1) break;
            }
        });
        close(committed[1]);
        char bytes[4096];
        std::int64_t told = read(committed[0], bytes, 1); // it is at work, however slow the machine
        usleep(static_cast<useconds_t>(round * 777));
        kill(child, SIGKILL);
        EXPECT_TRUE(WIFSIGNALED(Wait(child)));
        for (ssize_t more; (more = read(committed[0], bytes, sizeof bytes)) > 0;) told += more;
        close(committed[0]);
        EXPECT_GT(told, 0);
        const ConnectionPtr connection = EmbeddedDatabase::Open(path);
        const std::int64_t trees = Number(*connection, "Select count(*) from tblTree");
        EXPECT_EQ(Number(*connection, "Select count(*) from tblTreeItem"), trees * 2);
        EXPECT_GE(trees, before + told);
        EXPECT_LE(trees, before + told + 1);
        EXPECT_TRUE(EmbeddedDatabase::Check(*connection).empty());
        before = trees;
    }
}

TEST_F(EmbeddedFaults, KilledMakersLeaveAWholeFileOrNone) {
    int whole = 0;
    for (int round = 0; round < 15; ++round) {
        std::filesystem::remove(native);
        const pid_t child = Start([&] { EmbeddedDatabase::Create(path)->Close(); });
        usleep(static_cast<useconds_t>(round * 2500));
        kill(child, SIGKILL);
        Wait(child);
        if (std::filesystem::exists(native)) ++whole;
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
    const rlim_t limit = std::filesystem::file_size(native) + 20000;
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
    chmod(native.c_str(), 0444);
    chmod(native.parent_path().c_str(), 0777);
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
