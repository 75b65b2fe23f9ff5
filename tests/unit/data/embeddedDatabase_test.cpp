// Files of the embedded engine: making, opening, damage, several users, transactions, copies.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <iterator>

#include "data/Error.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/embedded/FileNames.h"
#include "data/embedded/Functions.h"
#include "tests/fakes/Failures.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::data {
namespace {

using tests::WordsOf;

class EmbeddedFiles : public testing::Test {
protected:
    tests::FakeWorkstation machine;
    std::string path = machine.Path("x.kdb");

    std::filesystem::path Native(const std::string& name) {
        return tests::FakeWorkstation::Native(machine.Path(name));
    }
    static std::string Count(Connection& connection, const std::string& table) {
        return ToText(connection.Open({"Select count(*) from " + table})->Get(0));
    }
    std::string Bytes(const std::string& name) {
        std::ifstream file(Native(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void Write(const std::string& name, const std::string& bytes) {
        std::ofstream(Native(name), std::ios::binary) << bytes;
    }
    std::size_t Entries() {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(Native("").parent_path()), {}));
    }
};

TEST_F(EmbeddedFiles, HoldTheBaseSchemaAndNothingBeside) {
    const ConnectionPtr connection = EmbeddedDatabase::Create(path);
    EXPECT_EQ(Count(*connection, "tblSettings where Section = 'build' and sKey = 'dbversion' and "
                                 "[Value] = '1.0.8'"),
              "1");
    const auto schema = [&](Schema of, const char* filter) {
        RecordsetPtr rows = connection->OpenSchema(of);
        rows->SetFilter(filter);
        return rows;
    };
    EXPECT_EQ(schema(Schema::Tables, "TABLE_TYPE = 'TABLE'")->RecordCount(), 16);
    EXPECT_EQ(schema(Schema::Tables, "TABLE_NAME = 'tblsettings'")->RecordCount(), 1);
    const RecordsetPtr indexes = schema(Schema::Indexes, "INDEX_NAME = 'indSectionKey'");
    EXPECT_EQ(indexes->RecordCount(), 2);
    EXPECT_EQ(ToText(indexes->Get("COLUMN_NAME")), "Section");
    EXPECT_EQ(schema(Schema::Columns, "TABLE_NAME = 'tblDocument' and COLUMN_NAME = 'ReadOnly'")
                  ->Get("DATA_TYPE"),
              Value(std::int64_t{11}));
    EXPECT_EQ(ToText(connection->Property("dbms name")), "ACCESS");
    EXPECT_EQ(ToText(connection->Property("Data Source Name")), path);
    EXPECT_EQ(connection->DefaultDatabase(), path);
    EXPECT_NE(WordsOf([&] { connection->Property("None"); }), "");
    connection->Close();
    EXPECT_NE(WordsOf([&] { connection->DefaultDatabase(); }), "");
    EXPECT_EQ(Entries(), 1u);
    EXPECT_TRUE(EmbeddedDatabase::Check(path).empty());
    EXPECT_NE(WordsOf([&] { EmbeddedDatabase::Create(path); }).find("exists already"),
              std::string::npos);
    EXPECT_EQ(Count(*EmbeddedDatabase::OpenOrCreate(path), "tblSettings"), "1");
    const std::string hard = machine.Path("O'Brien 100% [é中] file.x.kdb");
    EXPECT_EQ(Count(*EmbeddedDatabase::OpenOrCreate(hard), "tblTree"), "0");
    EXPECT_NE(
        WordsOf([&] { EmbeddedDatabase::Open(machine.Path("none.kdb")); }).find("does not exist"),
        std::string::npos);
    EXPECT_NE(WordsOf([&] { EmbeddedDatabase::Create(machine.Path("none\\x.kdb")); }), "");
    EXPECT_EQ(Entries(), 2u);
}

TEST_F(EmbeddedFiles, OfOtherKindsAreRefusedAndLeftAsTheyWere) {
    EmbeddedDatabase::Create(path)->Close();
    const std::string whole = Bytes("x.kdb");
    std::string scrambled = whole;
    for (std::size_t i = 4096; i < scrambled.size(); ++i) scrambled[i] = static_cast<char>(i * 7);
    EmbeddedDatabase::CreateEmpty(machine.Path("foreign.kdb"))->Close();
    const std::pair<const char*, std::string> files[] = {
        {"empty.kdb", ""},
        {"text.kdb", std::string(5000, 't')},
        {"cut.kdb", whole.substr(0, whole.size() - 5000)},
        {"header.kdb", whole.substr(0, 100)},
        {"scrambled.kdb", scrambled},
        {"foreign.kdb", Bytes("foreign.kdb")},
    };
    for (const auto& [name, bytes] : files) {
        Write(name, bytes);
        const std::string message =
            WordsOf([&, file = name] { EmbeddedDatabase::Open(machine.Path(file)); });
        EXPECT_NE(message.find(name), std::string::npos) << name << ": " << message;
        EXPECT_NE(WordsOf([&, file = name] { EmbeddedDatabase::OpenOrCreate(machine.Path(file)); }),
                  "");
        EXPECT_EQ(Bytes(name), bytes) << name;
    }
    EXPECT_FALSE(EmbeddedDatabase::Check(machine.Path("scrambled.kdb")).empty());
    EXPECT_EQ(Entries(), 7u);
}

TEST_F(EmbeddedFiles, ServeSeveralConnections) {
    const ConnectionPtr one = EmbeddedDatabase::Create(path), two = EmbeddedDatabase::Open(path);
    EXPECT_EQ(two->Open({"Select * from tblTree"})->Fields().size(), 7u);
    one->Execute("ALTER TABLE tblTree ADD COLUMN TreeGuid TEXT(38)");
    one->Execute("Insert into tblTree (TreeGuid) Values ('g')");
    const RecordsetPtr rows = two->Open({"Select * from tblTree"});
    EXPECT_EQ(ToText(rows->Get("TreeGuid")), "g");
    one->BeginTrans();
    one->Execute("Insert into tblTree (TreeGuid) Values ('h')");
    EXPECT_EQ(Count(*two, "tblTree"), "1");
    const std::string message = WordsOf([&] { two->Execute("Delete from tblTree"); });
    EXPECT_NE(message.find("locked"), std::string::npos) << message;
    EXPECT_NE(message.find(path), std::string::npos) << message;
    one->CommitTrans();
    EXPECT_EQ(two->Execute("Delete from tblTree"), 2);
    // What no transaction has committed is undone by closing, definitions too.
    one->BeginTrans();
    one->Execute("Insert into tblTree (TreeGuid) Values ('i')");
    one->Execute("ALTER TABLE tblTree ADD COLUMN Extra LONG");
    one->Close();
    EXPECT_EQ(Count(*two, "tblTree"), "0");
    EXPECT_EQ(two->Open({"Select * from tblTree"})->Fields().size(), 8u);
}

TEST_F(EmbeddedFiles, AreCopiedWholeWhileInUse) {
    const ConnectionPtr connection = EmbeddedDatabase::Create(path);
    connection->Execute("Insert into tblTree (Description) Values ('a')");
    EmbeddedDatabase::BackupTo(*connection, machine.Path("copy.kdb"));
    connection->Execute("Insert into tblTree (Description) Values ('b')");
    EXPECT_EQ(Count(*EmbeddedDatabase::Open(machine.Path("copy.kdb")), "tblTree"), "1");
    EmbeddedDatabase::BackupTo(*connection, machine.Path("copy.kdb"));
    EXPECT_EQ(Count(*EmbeddedDatabase::Open(machine.Path("copy.kdb")), "tblTree"), "2");
    EXPECT_NE(
        WordsOf([&] { EmbeddedDatabase::BackupTo(*connection, machine.Path("none\\copy.kdb")); }),
        "");
    EXPECT_NE(WordsOf([&] { EmbeddedDatabase::BackupTo(*connection, path); }).find("itself"),
              std::string::npos);
    EXPECT_TRUE(EmbeddedDatabase::Check(*connection).empty());
    Write("letter.doc", "Geachte heer");
    EXPECT_NE(WordsOf([&] { EmbeddedDatabase::BackupTo(*connection, machine.Path("letter.doc")); }),
              "");
    EXPECT_EQ(Bytes("letter.doc"), "Geachte heer");
    EXPECT_EQ(Entries(), 3u);
}

// A process was killed while it wrote: its journal must not get into another file of that name.
TEST_F(EmbeddedFiles, AreNeverMixedWithTheJournalOfTheFileBefore) {
    const ConnectionPtr connection = EmbeddedDatabase::Create(path);
    connection->BeginTrans();
    const std::string words(2000, 'x');
    for (int i = 0; i < 2000; ++i) // more than stays in memory
        connection->Execute("Insert into tblDossierReference (Memo) Values ('" + words + "')");
    const std::string crashed = machine.Path("crashed.kdb");
    const auto crash = [&] {
        for (const std::string end : {"", "-journal"})
            Write("crashed.kdb" + end, Bytes("x.kdb" + end));
    };
    crash();
    EXPECT_GT(Bytes("crashed.kdb-journal").size(), 0u);
    std::filesystem::remove(Native("crashed.kdb"));
    const ConnectionPtr made = EmbeddedDatabase::Create(crashed);
    EXPECT_TRUE(EmbeddedDatabase::Check(*made).empty());
    made->Close();

    const ConnectionPtr other = EmbeddedDatabase::Create(machine.Path("other.kdb"));
    other->Execute("Insert into tblTree (Description) Values ('other')");
    other->Execute("create table tblExtra (Words MEMO)");
    crash();
    EmbeddedDatabase::BackupTo(*other, crashed);
    const ConnectionPtr copy = EmbeddedDatabase::Open(crashed);
    EXPECT_TRUE(EmbeddedDatabase::Check(*copy).empty());
    EXPECT_EQ(Count(*copy, "tblTree"), "1");
    EXPECT_EQ(Count(*copy, "tblExtra"), "0");
}

// As earlier programs left them: yes as it was written or not at all, numbers with fractions, dates
// as any text, marked letters behind the z, and no index for the look-ups.
TEST_F(EmbeddedFiles, OfAnEarlierFormAreBroughtIntoThisOneOnce) {
    sqlite3* raw = nullptr;
    ASSERT_EQ(sqlite3_open(embedded::NativeName(path).c_str(), &raw), SQLITE_OK);
    embedded::RegisterFunctions(raw);
    embedded::RegisterEarlierOrder(raw);
    const auto run = [&](const char* statement) {
        EXPECT_EQ(sqlite3_exec(raw, statement, nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(raw);
    };
    run("CREATE TABLE \"tblSettings\" (\"Id\" INTEGER PRIMARY KEY AUTOINCREMENT, \"Section\" "
        "TEXT(255) COLLATE KAVIDEX CHECK (length(\"Section\") <= 255))");
    run("CREATE TABLE \"tblTree\" (\"Id\" INTEGER PRIMARY KEY AUTOINCREMENT, \"Description\" "
        "TEXT(255) "
        "COLLATE KAVIDEX CHECK (length(\"Description\") <= 255), \"Flag, (a)\" BITINT DEFAULT 1 "
        "NOT "
        "NULL, \"NewEnabled\" BITINT, \"TopItemId\" LONGINT CHECK (\"TopItemId\" BETWEEN "
        "-2147483648 AND 2147483647), \"Made\" DATETEXT, \"Last\" BITINT)");
    run("CREATE INDEX \"tblTree.indWords\" ON \"tblTree\" (\"Description\")");
    run("INSERT INTO tblTree VALUES (1, 'zee', 1, 1, 2.5, '5/1/2004', 0), (2, "
        "'één', 0, NULL, 3, 'ooit', 5), (3, 'een', 0, 'True', 1, NULL, -1)");
    sqlite3_close(raw);
    EXPECT_TRUE(EmbeddedDatabase::Check(path).empty());

    ConnectionPtr connection = EmbeddedDatabase::Open(path);
    const auto first = [&](const std::string& statement) {
        return ToText(connection->Open({statement})->Get(0));
    };
    const auto inForm = [&] {
        const std::pair<const char*, const char*> values[] = {
            {"Select count(*) from tblTree where NewEnabled = -1", "2"},
            {"Select count(*) from tblTree where NewEnabled = False", "1"},
            {"Select sum([Flag, (a)]) & '/' & sum([Last]) from tblTree", "-1/-2"},
            {"Select sum(TopItemId) from tblTree", "6"},
            {"Select count(*) from tblTree where Made = #2004-05-01#", "1"},
            {"Select Made from tblTree where Id = 2", "ooit"},
            {"Select last(Description) from tblTree where Description < 'f'", "één"}};
        for (const auto& [statement, value] : values) EXPECT_EQ(first(statement), value);
        EXPECT_TRUE(EmbeddedDatabase::Check(*connection).empty());
    };
    inForm();
    connection->Execute("Insert into tblTree (Description) Values ('new')");
    EXPECT_EQ(first("Select [Flag, (a)] & [NewEnabled] & [Last] from tblTree where Id = 4"),
              "-100");
    connection->Execute("Delete from tblTree where Id = 4");
    const RecordsetPtr indexes = connection->OpenSchema(Schema::Indexes);
    indexes->SetFilter("INDEX_NAME = 'indTopItemId'");
    EXPECT_EQ(indexes->RecordCount(), 1);
    connection->Close();
    const std::string bytes = Bytes("x.kdb");
    connection = EmbeddedDatabase::Open(path);
    inForm();
    EXPECT_EQ(Bytes("x.kdb"), bytes) << "brought into form a second time";
}

} // namespace
} // namespace kavidex::data
