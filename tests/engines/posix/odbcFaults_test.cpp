// What a server does to a connection's transactions and questions, through the strict driver.
#include "data/Error.h"
#include "tests/engines/Engine.h"
#include "tests/fakes/Failures.h"

namespace kavidex::tests {

using namespace kavidex::data;

namespace {

struct OdbcFaults : EngineTest {
    void SetUp() override {
        EngineTest::SetUp();
        if (IsSkipped()) return;
        connection->Execute("create table tblProbe (Id integer primary key, Getal integer)");
        connection->Execute("insert into tblProbe (Id, Getal) values (1, 10)");
    }
    void SetNumber(int number) {
        connection->Execute("update tblProbe set Getal = " + std::to_string(number));
    }
    std::int64_t Stored() {
        return ToInt64(database->Connect()->Open({"select Getal from tblProbe"})->Get(0));
    }
};

std::vector<Engine> Strict() {
    std::vector<Engine> engines;
    for (const Engine& engine : Engines())
        if (engine.name == "strict") engines.push_back(engine);
    return engines;
}

} // namespace

TEST_P(OdbcFaults, ATransactionThatCannotBeEndedLosesNoLaterWrite) {
    for (const bool commit : {true, false}) {
        connection->BeginTrans();
        SetNumber(5);
        connection->Execute("strict: end");
        const auto end = [&] { commit ? connection->CommitTrans() : connection->RollbackTrans(); };
        EXPECT_EQ(NumberOf(end) != 0, commit) << "undone is what a rollback asks for";
        EXPECT_EQ(Stored(), 10);
        SetNumber(6);
        EXPECT_EQ(Stored(), 6);
        SetNumber(10);
    }
}

TEST_P(OdbcFaults, WhatTheServerUndoesIsNotHalfDone) {
    connection->BeginTrans();
    SetNumber(5);
    EXPECT_EQ(WordsOf([&] { connection->Execute("strict: victim"); }), "Chosen as a victim");
    EXPECT_NE(NumberOf([&] { SetNumber(6); }), 0);
    EXPECT_NE(NumberOf([&] { connection->CommitTrans(); }), 0);
    EXPECT_EQ(Stored(), 10);
    SetNumber(7);
    EXPECT_EQ(Stored(), 7);
}

TEST_P(OdbcFaults, KeysThatCannotBeAskedForAreToldWhenARowIsWritten) {
    connection->Execute("strict: keys");
    const RecordsetPtr rows = Open("select * from tblProbe");
    EXPECT_EQ(ToInt64(rows->Get("Getal")), 10);
    rows->Set("Getal", std::int64_t{11});
    EXPECT_NE(WordsOf([&] { rows->Update(); }).find("No keys today"), std::string::npos);
    rows->CancelUpdate();
    rows->AddNew();
    rows->Set("Id", std::int64_t{2});
    EXPECT_NE(WordsOf([&] { rows->Update(); }).find("No keys today"), std::string::npos);
    rows->CancelUpdate();
    rows->Requery(); // a passing failure
    rows->Set("Getal", std::int64_t{12});
    rows->Update();
    EXPECT_EQ(Stored(), 12);
}

TEST_P(OdbcFaults, ARowThatFailsWithinABlockIsNotReadAsRubbish) {
    connection->Execute("insert into tblProbe (Id, Getal) values (2, 20)");
    connection->Execute("strict: row");
    EXPECT_NE(WordsOf([&] { Open("select * from tblProbe"); }).find("out of range"),
              std::string::npos);
    EXPECT_EQ(Open("select * from tblProbe")->RecordCount(), 2);
}

INSTANTIATE_TEST_SUITE_P(Engines, OdbcFaults, testing::ValuesIn(Strict()),
                         [](const auto& param) { return param.param.name; });

} // namespace kavidex::tests
