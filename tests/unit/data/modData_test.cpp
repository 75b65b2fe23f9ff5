#include <gtest/gtest.h>

#include "data/modData.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/MemoryRows.h"
#include "tests/fakes/RecordingConnection.h"

using namespace kavidex;
using namespace kavidex::data;
using namespace kavidex::tests;

TEST(modData, MakesLiteralsLetterForLetter) {
    EXPECT_EQ(SqlValue("O'Brien"), "'O''Brien'");
    EXPECT_EQ(SqlValue("'", Quotes::None), "''");
    EXPECT_EQ(SqlValue("abc", Quotes::None), "abc");
    EXPECT_EQ(SqlValue(""), "null");
    EXPECT_EQ(SqlValue("", Quotes::None), "null");
    EXPECT_EQ(SqlValue(" "), "' '");
    EXPECT_EQ(SqlNumber(""), "0");
    EXPECT_EQ(SqlNumber("12,5"), "12,5");
    for (const char* no : {"", "0", "0x", "False", "f", "FALSE"}) EXPECT_EQ(SqlBool(no), "0") << no;
    for (const char* yes : {"True", "-1", "1", "yes", " 0"}) EXPECT_EQ(SqlBool(yes), "1") << yes;
}

TEST(modData, DoublesBackslashesForMySqlOnceOnReadingAndTwiceOnWriting) {
    FakeWorkstation machine;
    for (const auto& [name, read, written] :
         {std::tuple{"MySQL", R"(C:\\a)", R"(C:\\\\a)"}, std::tuple{"ACCESS", R"(C:\a)", R"(C:\a)"},
          std::tuple{"Microsoft SQL Server", R"(C:\a)", R"(C:\a)"}}) {
        auto connection = std::make_shared<RecordingConnection>(name);
        OpenRecordset(machine, R"(C:\a)", connection);
        EXPECT_EQ(ExecuteSql(machine, R"(C:\a)", connection), 0);
        EXPECT_EQ(connection->statements, (std::vector<std::string>{read, written})) << name;
    }
}

TEST(modData, ReadsTheDialectFromTheConnection) {
    EXPECT_TRUE(IsAccessConnection(std::make_shared<RecordingConnection>("Access")));
    EXPECT_TRUE(IsMySqlConnection(std::make_shared<RecordingConnection>("MYSQL")));
    const auto server = std::make_shared<RecordingConnection>("Microsoft SQL Server");
    EXPECT_FALSE(IsAccessConnection(server) || IsMySqlConnection(server));
    const auto mute = std::make_shared<RecordingConnection>("");
    EXPECT_FALSE(IsAccessConnection(mute) || IsMySqlConnection(mute));
    EXPECT_FALSE(IsAccessConnection(nullptr) || IsMySqlConnection(nullptr));
}

TEST(modData, SwallowsAFailingStatementWithATraceInTheLog) {
    FakeWorkstation machine;
    auto connection = std::make_shared<RecordingConnection>();
    connection->FailAt(1, true);
    const RecordsetPtr rows = OpenRecordset(machine, "select 1", connection);
    EXPECT_FALSE(rows->IsOpen());
    EXPECT_THROW(rows->Eof(), Error);
    RecordsetPtr result = MemoryRows({"x"}, {});
    EXPECT_EQ(ExecuteSql(machine, "update x", connection, &result), 0);
    EXPECT_FALSE(result->IsOpen());
    RecordsetPtr none; // a variable without a recordset gets none
    EXPECT_EQ(ExecuteSql(machine, "update x", connection, &none), 0);
    EXPECT_EQ(none, nullptr);
    EXPECT_TRUE(machine.log.Has("OpenRecordset", "select 1"));
    EXPECT_TRUE(machine.log.Has("OpenRecordset", "made to fail"));
    EXPECT_EQ(ExecuteSql(machine, "update x", nullptr), -1);
    EXPECT_FALSE(OpenRecordset(machine, "select 1", nullptr)->IsOpen());
}
