#include <gtest/gtest.h>

#include <algorithm>

#include "data/ConnectionAssignment.h"
#include "data/ConnectionOpener.h"
#include "data/Error.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/MemoryRows.h"
#include "tests/fakes/RecordingConnection.h"

using namespace kavidex;
using namespace kavidex::data;
using namespace kavidex::tests;

namespace {

// Keeps what was asked of the connections that a factory made, in one list; opens by a rule.
struct FakeAdo : AdoFactory, AccessRepair {
    struct Made : AdoConnection {
        explicit Made(FakeAdo& owner) : ado(owner), number(++owner.made) {}
        FakeAdo& ado;
        int number;
        bool open = false;

        void Note(const std::string& what) {
            ado.calls.push_back(std::to_string(number) + " " + what);
        }
        static void Refuse(std::int32_t error, const char* words = "refused") {
            if (error != 0) throw Error(error, words, "driver");
        }
        void FailIfDue() const { Refuse(++ado.steps == ado.failAt ? ado.failure : 0); }
        void SetMode(std::int32_t mode) override { Note("mode " + std::to_string(mode)); }
        void OpenDatabase(std::string_view text) override {
            Note("open " + std::string(text));
            FailIfDue();
            Refuse(ado.refuse(std::string(text)));
            open = true;
        }
        bool IsOpen() const override { return open; }
        void Close() override {
            Note("close");
            open = false;
            Refuse(ado.refuseClose ? errors::unspecified : 0, "refused to close");
        }
        RecordsetPtr Open(const Command&) override { return MakeClosedRecordset(); }
        std::int64_t Execute(std::string_view text) override {
            Note("execute " + std::string(text));
            FailIfDue();
            Refuse(ado.refuseExecute ? errors::unspecified : 0);
            return -1;
        }
        Value Property(std::string_view) const override { return std::string("ACCESS"); }
        std::string DefaultDatabase() const override { return {}; }
        RecordsetPtr OpenSchema(Schema) override { return MakeClosedRecordset(); }
        std::vector<ErrorDetail> Errors() const override { return {}; }
        void BeginTrans() override {}
        void CommitTrans() override {}
        void RollbackTrans() override {}
    };
    std::vector<std::string> calls;
    int made = 0, repairs = 0;
    bool refuseExecute = false, refuseClose = false, noAdo = false;
    int steps = 0, failAt = 0; // opens and executes; from 1
    std::int32_t failure = 0;
    std::function<std::int32_t(const std::string&)> refuse = [](const std::string&) { return 0; };

    std::shared_ptr<AdoConnection> Create() override {
        if (noAdo) throw platform::Error(static_cast<std::int32_t>(0x80040154), "no such class");
        return std::make_shared<Made>(*this);
    }
    void Configure(std::string_view, std::string_view) override { ++repairs; }
};

struct OpenerTest : testing::Test {
    FakeWorkstation machine;
    FakeAdo ado;
    bool opened = false;
    std::vector<ConnectionPtr> assigned;
    std::string path = machine.Path("kavidex.mdb");

    OpenResult Open(std::string_view provider, std::string_view where) {
        return ConnectionOpener(machine, ado, ado)
            .DbOpenConnection(provider, where, opened,
                              [this](const ConnectionPtr& c) { assigned.push_back(c); });
    }
    std::string Plain() const {
        return "open driver={Microsoft Access Driver (*.mdb)};DBQ=" + path;
    }
};

// At the current version.
std::shared_ptr<RecordingConnection> Current(const char* dbmsName, std::string collation = {}) {
    auto connection = std::make_shared<RecordingConnection>(dbmsName);
    connection->answer = [collation](const Command& command) {
        const bool asked = command.text.find("ollation") != std::string::npos;
        return MemoryRows({"Value"}, {{asked ? collation : std::string("1.1.8")}});
    };
    return connection;
}

} // namespace

TEST_F(OpenerTest, SetsThePasswordOnAnOpenFileThenOpensWithIt) {
    EXPECT_EQ(Open("MsAccess", path), 0);
    EXPECT_EQ(ado.calls, (std::vector<std::string>{
                             "1 " + Plain(), "1 close", "3 mode 12",
                             "3 open Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path,
                             "3 execute ALTER DATABASE PASSWORD Kw72p5n9``", "3 close",
                             "2 " + Plain() + ";Password=Kw72p5n9"}));
    EXPECT_TRUE(opened);
    EXPECT_EQ(ado.repairs, 1);
    ASSERT_EQ(assigned.size(), 1u);
    EXPECT_TRUE(assigned[0]->IsOpen());
}

TEST_F(OpenerTest, SwallowsARefusalToCloseAndNeverLeavesTheExclusiveConnectionOpen) {
    ado.refuseClose = ado.refuseExecute = true;
    EXPECT_EQ(Open("msaccess", path), 0);
    EXPECT_TRUE(machine.messages.shown.empty());
    EXPECT_TRUE(machine.log.Has("DbOpenConnection", "refused to close"));
    EXPECT_EQ(std::count(ado.calls.begin(), ado.calls.end(), "3 close"), 1);
    EXPECT_EQ(ado.calls.back(), "2 " + Plain() + ";Password=Kw72p5n9");
}

TEST_F(OpenerTest, SwallowsOrShowsTheFailureOfEachOfItsSteps) {
    for (int n = 1; n <= 4; ++n)
        for (const std::int32_t number :
             {errors::authentication, errors::unspecified, errors::syntax}) {
            SCOPED_TRACE(std::to_string(n) + " fails with " + std::to_string(number));
            const bool told = number == errors::syntax;
            assigned.clear();
            machine.messages.shown.clear();
            ado.steps = 0;
            ado.failAt = n;
            ado.failure = number;
            opened = false;
            EXPECT_EQ(Open("msaccess", path), told ? -99 : 0);
            EXPECT_EQ(ado.steps, told ? n : n == 1 ? 2 : n == 2 ? 3 : 4);
            EXPECT_EQ(opened, !told);
            EXPECT_EQ(machine.messages.shown.size(), told ? 1u : 0u);
            ASSERT_EQ(assigned.size(), told ? 0u : 1u);
            if (!told) {
                EXPECT_EQ(assigned[0]->IsOpen(), n != 4);
            }
        }
}

TEST_F(OpenerTest, ShowsOtherErrorsAndAssignsNothing) {
    ado.refuse = [](const std::string&) { return errors::syntax; };
    EXPECT_EQ(Open("sqlserver", "server;UID=x"), -99);
    ASSERT_EQ(machine.messages.shown.size(), 1u);
    EXPECT_EQ(machine.messages.shown[0].text, "-2147217900 refused");
    EXPECT_EQ(machine.messages.shown[0].caption, "Error in DbOpenConnection of Correspondence");
    EXPECT_TRUE(assigned.empty());
    EXPECT_EQ(ado.calls,
              std::vector<std::string>{"1 open DRIVER={SQL Server};SERVER=server;UID=x"});
    ado.refuse = [](const std::string&) { return errors::unspecified; };
    EXPECT_EQ(Open("SQLServer", "server"), 0); // a connection that is not open
    EXPECT_TRUE(opened && !assigned.at(0)->IsOpen());
    EXPECT_EQ(machine.messages.shown.size(), 1u);
    ado.refuse = [](const std::string&) { return errors::badEof; };
    EXPECT_EQ(Open("sqlserver", "server"), -99);
    EXPECT_EQ(machine.messages.shown.back().text, "3021 refused") << "as Basic counts errors";
    machine.messages.shown.pop_back();
    ado.noAdo = true;
    EXPECT_EQ(Open("msaccess", path), -99);
    EXPECT_EQ(machine.messages.shown[1].text, "-2147221164 no such class");
}

TEST_F(OpenerTest, RefusesBlanksBeforeAnythingElseAndTellsAnUnknownProvider) {
    EXPECT_EQ(Open("", "  "), -1);
    EXPECT_EQ(Open("  ", "x"), -2);
    EXPECT_TRUE(ado.made == 0 && assigned.empty());
    EXPECT_EQ(Open(" msaccess", path), -3);
    ASSERT_EQ(machine.messages.shown.size(), 1u);
    EXPECT_EQ(machine.messages.shown[0].text, "Not yet implemented ( msaccess)");
    EXPECT_FALSE(opened);
    ASSERT_EQ(assigned.size(), 1u);
    EXPECT_FALSE(assigned[0]->IsOpen());
}

TEST(ConnectionAssignment, WorksOnceADatabaseAndInItsOrder) {
    FakeWorkstation machine;
    std::vector<std::string> order;
    ConnectionAssignment assignment(
        machine, {.changed = [&] { order.push_back("changed"); },
                  .handOver = [&](const ConnectionPtr& c) { order.push_back(c ? "hand" : "none"); },
                  .ready = [&](const ConnectionPtr&) { order.push_back("ready"); }});
    EXPECT_FALSE(assignment.SetDbConnection(nullptr));

    const auto rows = [](const Command& command) {
        const bool template_ = command.text.find("'Template'") != std::string::npos;
        return MemoryRows(
            {"Section", "SKey", "Value"},
            {{std::string(), std::string(), std::string(template_ ? "C:\\letters  " : "1.1.8")}});
    };
    const auto server = std::make_shared<RecordingConnection>("MySQL");
    server->answer = rows;
    server->schemaAnswer = [](Schema) { return TableRows({"tblSettings"}); };
    EXPECT_TRUE(assignment.SetDbConnection(server));
    EXPECT_EQ(order, (std::vector<std::string>{"changed", "hand", "ready"}));
    EXPECT_EQ(assignment.TemplatePath(), "C:\\letters");
    EXPECT_EQ(machine.registry.Read("Kavidex", "CorrespSetting", "DbCheck"), "0");
    EXPECT_EQ(machine.busy.shown.size(), 1u); // the check; nothing to upgrade

    const auto same = std::make_shared<RecordingConnection>("MySQL");
    EXPECT_FALSE(assignment.SetDbConnection(same));
    EXPECT_TRUE(same->statements.empty());

    EXPECT_TRUE(assignment.SetDbConnection(nullptr));
    EXPECT_EQ(order.back(), "none");
}

TEST(ConnectionAssignment, ChecksAServerOnceWhateverComesOfIt) {
    FakeWorkstation machine;
    const auto failing = std::make_shared<RecordingConnection>("Microsoft SQL Server");
    failing->schemaAnswer = [](Schema) -> RecordsetPtr {
        throw Error(errors::unspecified, "dropped", "driver");
    };
    ConnectionAssignment(machine, {}).SetDbConnection(failing);
    EXPECT_TRUE(machine.log.Has("CheckAndCreateDatabase", "dropped"));
    EXPECT_EQ(machine.registry.Read("Kavidex", "CorrespSetting", "DbCheck"), "0");
    machine.busy.shown.clear();
    ConnectionAssignment(machine, {}).SetDbConnection(Current("MySQL"));
    EXPECT_TRUE(machine.busy.shown.empty());
}

TEST(ConnectionAssignment, TellsOnceInTheLogThatLettersWillBeLost) {
    const auto linesFor = [](const char* dbmsName, const char* collation) {
        FakeWorkstation machine;
        ConnectionAssignment(machine, {}).SetDbConnection(Current(dbmsName, collation));
        return std::count_if(
            machine.log.lines.begin(), machine.log.lines.end(),
            [](const auto& line) { return line.what.find("are lost") != std::string::npos; });
    };
    EXPECT_EQ(linesFor("Microsoft SQL Server", "SQL_Latin1_General_CP1_CI_AS"), 1);
    EXPECT_EQ(linesFor("Microsoft SQL Server", "Latin1_General_100_CI_AS_SC_UTF8"), 0);
    EXPECT_EQ(linesFor("MySQL", "latin1_swedish_ci"), 1);
    EXPECT_EQ(linesFor("ACCESS", "none"), 0);
}

TEST(ConnectionAssignment, NeverChecksAnAccessFileNorAClosedConnection) {
    FakeWorkstation machine;
    ConnectionAssignment assignment(machine, {});
    EXPECT_TRUE(assignment.SetDbConnection(Current("ACCESS")));
    const auto closed = std::make_shared<RecordingConnection>("");
    closed->open = false;
    closed->database = "";
    EXPECT_TRUE(assignment.SetDbConnection(closed));
    EXPECT_TRUE(closed->statements.empty());
    EXPECT_EQ(machine.registry.writes, 0);
    EXPECT_TRUE(machine.busy.shown.empty());
}

TEST(ConnectionAssignment, TakesADatabaseAgainOnceItsConnectionWasClosed) {
    FakeWorkstation machine;
    ConnectionAssignment assignment(machine, {});
    const auto open = [&](const char* name) {
        return EmbeddedDatabase::OpenOrCreate(machine.Path(name));
    };
    const ConnectionPtr first = open("x.kdb");
    EXPECT_TRUE(assignment.SetDbConnection(first));
    EXPECT_FALSE(assignment.SetDbConnection(open("x.kdb")));
    EXPECT_TRUE(assignment.SetDbConnection(open("x.old"))) << "another file";
    EXPECT_TRUE(assignment.SetDbConnection(first));
    first->Close();
    const ConnectionPtr again = open("x.kdb");
    EXPECT_TRUE(assignment.SetDbConnection(again));
    EXPECT_EQ(assignment.DbConnection(), again);

    const auto late = std::make_shared<RecordingConnection>("ACCESS");
    late->open = false;
    EXPECT_TRUE(assignment.SetDbConnection(late));
    EXPECT_FALSE(assignment.SetDbConnection(late));
    late->open = true;
    EXPECT_TRUE(assignment.SetDbConnection(late)) << "opened by its owner since";
    EXPECT_FALSE(assignment.SetDbConnection(late));

    // Those that do not name their database may be on any.
    const auto nameless = [] {
        auto made = std::make_shared<RecordingConnection>("ACCESS");
        made->database.clear();
        return made;
    };
    const auto one = nameless(), two = nameless();
    EXPECT_TRUE(assignment.SetDbConnection(one) && assignment.SetDbConnection(two));
    EXPECT_FALSE(assignment.SetDbConnection(two));
}
