// A whole installation is moved from the embedded engine to MariaDB and back, the process killed on
// its way again and again.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "data/clsSettings.h"
#include "data/schema/clsUpdateDb.h"
#include "data/transfer/CopyInstallation.h"
#include "data/transfer/Installation.h"
#include "model/clsDocument.h"
#include "model/clsTree.h"
#include "tests/engines/MariaDbServer.h"
#include "tests/engines/MySqlDatabase.h"
#include "tests/fakes/Databases.h"
#include "tests/fakes/FaultyConnection.h"

namespace kavidex::tests {

using namespace kavidex::data;
using transfer::CopyInstallation;

namespace {

class CopiedInstallation : public testing::Test {
protected:
    void SetUp() override {
        if (!MariaDbServer::Instance().Missing().empty())
            GTEST_SKIP() << MariaDbServer::Instance().Missing();
        server = std::make_unique<MySqlDatabase>(MariaDbServer::Instance().ConnectionString(""));
        machine.guids.real = true;
    }

    ConnectionPtr Filled(const std::string& path) {
        const ConnectionPtr connection = EmbeddedDatabase::Create(path);
        On<clsUpdateDb>(machine, connection).fncUpdateDb();
        On<model::clsTree> tree(machine, connection);
        tree.SetDescription("Dossier van O'Brien \\\\server\\deel\\ ŁÓDŹ жук 文件 📁");
        tree.SetUpdateEnabled(true);
        tree.CreateNew();
        for (int i = 0; i < 700; ++i) {
            const std::string text = "?:% '\"`\\ " + std::to_string(i);
            connection->Open(
                {"insert into tblTreeItem (Type, ItemId, ParentId, Description) values "
                 "('tif', " +
                     std::to_string(i) + ", 1, ?)",
                 CommandType::Text,
                 {{"", AdoType::VarWChar, 1, 255, text}}});
        }
        connection->Execute("insert into tblDossierReference (Value1, Memo) values ('', '" +
                            std::string(70000, 'm') + "')");
        connection->Execute(
            "insert into tblDocument (Id, DocId, ReadOnly) values (-41, -41, True)");
        connection->Execute("insert into tblDocument (Id, DocId, ReadOnly) values (7, 7, False)");
        connection->Execute("CREATE TABLE tblOfTheHost (Id COUNTER PRIMARY KEY)");
        return connection;
    }

    // In a process of its own, which dies at that step on the target's connection (0: at the second
    // report of progress); whether it was killed.
    bool CopyAndDie(const std::string& from, int step) {
        const pid_t child = ::fork();
        if (child == 0) {
            const auto to =
                std::make_shared<FaultyConnection>(OpenOdbc(server->ConnectionString()));
            const auto die = [] { ::kill(::getpid(), SIGKILL); };
            to->onStep = [&](int now) { step == now ? die() : void(); };
            int reports = 0;
            transfer::CopyOptions options{.block = 100, .progress = [&](auto, auto, auto) {
                                              if (step == 0 && ++reports == 2) die();
                                          }};
            try {
                CopyInstallation(machine, EmbeddedDatabase::OpenReadOnly(from), to, options);
            } catch (const std::exception& error) {
                std::fprintf(stderr, "%s\n", error.what());
            }
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFSIGNALED(status);
    }
    // The exit code of the tool that backs up the server's rows into that file.
    int BackUp(const std::string& path) {
        const std::string command =
            "'" KAVIDEX_DB_PROGRAM "' backup 'odbc:" + server->ConnectionString() + "' '" +
            platform::NativePath(path) + "' > /dev/null 2>&1";
        return WEXITSTATUS(std::system(command.c_str()));
    }
    std::string Refusal(const ConnectionPtr& from, const ConnectionPtr& to) {
        try {
            CopyInstallation(machine, from, to);
        } catch (const platform::Error& error) {
            return error.what();
        }
        return "copied";
    }

    FakeWorkstation machine;
    std::unique_ptr<MySqlDatabase> server;
};

TEST_F(CopiedInstallation, ArrivesWholeAfterAnyNumberOfKillsAndComesBackTheSame) {
    const std::string path = machine.Path("a.kdb"), back = machine.Path("b.kdb");
    Filled(path)->Close();
    const std::string before = machine.files.ReadAll(path);
    for (const int step : {2, 60, 500}) EXPECT_TRUE(CopyAndDie(path, step)) << step;
    { // what was given up, and is used for dossiers since
        const ConnectionPtr source = EmbeddedDatabase::OpenReadOnly(path);
        const ConnectionPtr used = OpenOdbc(server->ConnectionString());
        used->Execute("insert into tblTree (Description) values ('new')");
        EXPECT_NE(Refusal(source, used).find("not empty: tblTree (1)"), std::string::npos);
        used->Execute("delete from tblTree");
    }
    int kills = 0;
    while (CopyAndDie(path, 0)) ASSERT_LT(++kills, 100);
    EXPECT_GT(kills, 3);

    const ConnectionPtr source = EmbeddedDatabase::OpenReadOnly(path);
    const ConnectionPtr there = OpenOdbc(server->ConnectionString());
    const transfer::Installation arrived(there);
    EXPECT_FALSE(arrived.HasTransferTable());
    EXPECT_EQ(arrived.Version(), currentVersion);
    EXPECT_EQ(arrived.MissingIndexes().size(), schema::LookupIndexes().size());
    for (const auto& index : arrived.MissingIndexes()) there->Execute(transfer::CreateIndex(index));
    EXPECT_TRUE(arrived.MissingIndexes().empty());

    const ConnectionPtr again = EmbeddedDatabase::Create(back);
    const auto result = CopyInstallation(machine, there, again);
    EXPECT_FALSE(result.resumed);
    source->Close();
    EXPECT_EQ(machine.files.ReadAll(path), before) << "the source was touched";
    const ConnectionPtr first = EmbeddedDatabase::Open(path);
    first->Execute("DROP TABLE tblOfTheHost");
    EXPECT_EQ(Printout(*again), Printout(*first));
    // What a backup that was broken off has left gives way, another's file does not.
    const std::string copy = machine.Path("c.kdb"), beside = copy + ".new";
    machine.files.WriteAll(beside, "a letter");
    EXPECT_EQ(BackUp(copy), 2);
    EXPECT_EQ(machine.files.ReadAll(beside), "a letter");
    machine.files.Copy(path, beside, false);
    EXPECT_EQ(BackUp(copy), 0);
    EXPECT_FALSE(machine.files.FileExists(beside));
    EXPECT_EQ(Printout(*EmbeddedDatabase::OpenReadOnly(copy)), Printout(*again));
    const std::string told = machine.Path("told.txt"), third = machine.Path("d.kdb");
    EXPECT_EQ(std::system(("'" KAVIDEX_DB_PROGRAM "' copy '" + platform::NativePath(path) + "' '" +
                           platform::NativePath(third) + "' > '" + platform::NativePath(told) + "'")
                              .c_str()),
              0);
    EXPECT_NE(machine.files.ReadAll(told).find("no view of one moment"), std::string::npos);
    // A deleted row's number is not given to another.
    again->Execute("insert into tblDocument (Description) values ('new')");
    EXPECT_EQ(transfer::Installation(again).Number("select max(Id) from tblDocument"), 42);
    for (const auto& message : machine.messages.shown) ADD_FAILURE() << message.text;
}

TEST_F(CopiedInstallation, IsRefusedBeforeAnythingIsWritten) {
    const auto contains = [](const std::string& text, const char* part) {
        EXPECT_NE(text.find(part), std::string::npos) << text;
    };
    const ConnectionPtr source = Filled(machine.Path("a.kdb"));
    const ConnectionPtr full = Filled(machine.Path("full.kdb"));
    const std::string before = Printout(*full);
    contains(Refusal(source, full), "not empty: tblDocument (2)");
    EXPECT_EQ(Printout(*full), before);
    contains(Refusal(source, source), "not empty");
    contains(Refusal(source, std::make_shared<RecordingConnection>("PostgreSQL", full)),
             "PostgreSQL");

    const ConnectionPtr old = EmbeddedDatabase::Create(machine.Path("old.kdb"));
    contains(Refusal(old, full), "bring it to the current version");
    const ConnectionPtr locked = EmbeddedDatabase::OpenReadOnly(machine.Path("old.kdb"));
    EXPECT_NE(Refusal(source, locked), "copied");

    const ConnectionPtr there = OpenOdbc(server->ConnectionString());
    source->Execute("ALTER TABLE tblTree ADD COLUMN OfTheHost LONG");
    contains(Refusal(source, there), "tblTree.OfTheHost");
    contains(Refusal(full, there), "unfinished copy of another database");
    // What cannot be kept is told, and never taken for done.
    there->Execute("ALTER TABLE tblTree ADD OfTheHost INTEGER");
    there->Execute("ALTER TABLE tblTree MODIFY Description CHAR(255) CHARACTER SET latin1");
    EXPECT_NE(Refusal(source, there), "copied");
    there->Execute("ALTER TABLE tblTree MODIFY Description CHAR(255) CHARACTER SET utf8mb4");
    // The last row goes in, and the proof finds another.
    there->Execute("CREATE TRIGGER Spoils BEFORE INSERT ON tblSettings FOR EACH ROW SET "
                   "NEW.Value = IF(NEW.SKey = 'Last', 'other', NEW.Value)");
    source->Execute("insert into tblSettings (Section, SKey, [Value]) values ('Z', 'Last', 'x')");
    contains(Refusal(source, there), "differs from its source");
    EXPECT_EQ(transfer::Installation(there).Version(), "copying");
    there->Execute("DROP TRIGGER Spoils");
    EXPECT_EQ(Refusal(source, there), "copied");
    EXPECT_EQ(transfer::Installation(there).Version(), currentVersion);
}

} // namespace
} // namespace kavidex::tests
