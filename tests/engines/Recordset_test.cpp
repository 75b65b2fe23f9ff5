// Recordset behaviour: client-side, static, optimistic, the same on every engine.
#include "data/Error.h"
#include "data/transactions.h"
#include "tests/engines/Engine.h"
#include "tests/fakes/Failures.h"

namespace kavidex::tests {

using namespace kavidex::data;

namespace {

struct RecordsetOverEngines : EngineTest {
    void SetUp() override {
        EngineTest::SetUp();
        if (IsSkipped()) return;
        using enum schema::ColumnType;
        static const schema::Table probe = {
            "tblProbe",
            "Id",
            "IdConstProbe",
            {{"Naam", Text255}, {"Getal", Integer}, {"Vlag", Bit}, {"Verhaal", LongText}}};
        connection->Execute(schema::CreateTable(probe, engine.dialect));
    }
    void Fill(int rows) {
        for (int i = 1; i <= rows; ++i)
            connection->Execute("insert into tblProbe (Naam, Getal, Vlag, Verhaal) values ('naam" +
                                std::to_string(i) + "', " + std::to_string(i * 10) + ", " +
                                (i % 2 ? "1" : "0") + ", null)");
    }
    RecordsetPtr All(Connection& on) { return on.Open({"select * from tblProbe order by Id"}); }
    std::string Names(Recordset& rows) {
        std::string names;
        if (rows.RecordCount() > 0)
            for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext())
                names += Text(rows.Get("Naam")).substr(4);
        return names;
    }
};

} // namespace

TEST_P(RecordsetOverEngines, WalksItsRowsAsAdoDoes) {
    const RecordsetPtr none = All(*connection);
    EXPECT_TRUE(none->IsOpen());
    EXPECT_TRUE(none->Eof() && none->Bof());
    EXPECT_EQ(none->RecordCount(), 0);
    EXPECT_EQ(none->AbsolutePosition(), -1);
    EXPECT_EQ(NumberOf([&] { none->Get(0); }), errors::badEof);
    EXPECT_EQ(NumberOf([&] { none->MoveFirst(); }), errors::badEof);

    Fill(5);
    const RecordsetPtr rows = All(*connection);
    EXPECT_EQ(rows->RecordCount(), 5);
    EXPECT_EQ(rows->AbsolutePosition(), 1);
    EXPECT_EQ(Text(rows->Get("naam")), "naam1");
    EXPECT_EQ(ToInt64(rows->Get("ID")), engine.FirstAutoNumber());
    EXPECT_EQ(std::get<bool>(rows->Get("Vlag")), true);
    EXPECT_TRUE(IsNull(rows->Get("Verhaal")));
    EXPECT_EQ(NumberOf([&] { rows->Get("Geen"); }), errors::itemNotFound);
    rows->Move(3);
    EXPECT_EQ(ToInt64(rows->Get("Getal")), 40);
    rows->MoveLast();
    rows->MoveNext();
    EXPECT_TRUE(rows->Eof());
    EXPECT_EQ(rows->AbsolutePosition(), -3);
    EXPECT_EQ(NumberOf([&] { rows->MoveNext(); }), errors::badEof);
    rows->MoveFirst();
    rows->MovePrevious();
    EXPECT_TRUE(rows->Bof());
    EXPECT_EQ(rows->AbsolutePosition(), -2);
    EXPECT_EQ(NumberOf([&] { rows->MovePrevious(); }), errors::badEof);
    rows->SetAbsolutePosition(2);
    EXPECT_EQ(Text(rows->Get("Naam")), "naam2");
    EXPECT_EQ(NumberOf([&] { rows->SetAbsolutePosition(0); }), errors::invalidArgument);
    EXPECT_EQ(rows->AbsolutePosition(), 2);
    rows->SetAbsolutePosition(6);
    EXPECT_TRUE(rows->Eof());

    // Static: rows that come or go later are not seen before Requery.
    connection->Execute("delete from tblProbe where Getal = 20");
    EXPECT_EQ(rows->RecordCount(), 5);
    rows->Requery();
    EXPECT_EQ(rows->RecordCount(), 4);
    rows->Close();
    rows->Close(); // closed already: nothing happens
    EXPECT_EQ(NumberOf([&] { rows->RecordCount(); }), errors::objectClosed);
}

TEST_P(RecordsetOverEngines, TellsItsFieldsAndClosedRecordsets) {
    const RecordsetPtr rows = All(*connection);
    ASSERT_EQ(rows->Fields().size(), 5u);
    const Field& name = rows->Fields()[1];
    EXPECT_EQ(name.name, "Naam");
    EXPECT_EQ(name.definedSize, 255);
    EXPECT_TRUE(rows->Fields()[0].key);
    EXPECT_FALSE(name.key);
    EXPECT_EQ(rows->Fields()[3].type, AdoType::Boolean);
    const RecordsetPtr closed = Open("insert into tblProbe (Naam) values ('x')");
    EXPECT_FALSE(closed->IsOpen());
    EXPECT_EQ(connection->Execute("update tblProbe set Getal = 1"), 1);

    const RecordsetPtr columns = connection->OpenSchema(Schema::Columns);
    std::string names;
    for (; !columns->Eof(); columns->MoveNext())
        if (platform::EqualAsciiNoCase(ToText(columns->Get("TABLE_NAME")), "tblProbe"))
            names += ToText(columns->Get("COLUMN_NAME")) + ";";
    EXPECT_EQ(names, "Id;Naam;Getal;Vlag;Verhaal;");
}

TEST_P(RecordsetOverEngines, AProcedureThatFailsAfterItsFirstRowsFails) {
    if (!engine.HasProcedures()) GTEST_SKIP() << "this engine has no procedures";
    const bool mySql = engine.dialect == schema::Dialect::MySql;
    connection->Execute(mySql ? "create procedure probeLate() begin select 1 as a; "
                                "signal sqlstate '45000' set message_text = 'te laat'; end"
                              : "create procedure probeLate as begin select 1 as a; "
                                "raiserror('te laat', 16, 1) end");
    EXPECT_NE(WordsOf([&] {
                  connection->Open({"probeLate", CommandType::StoredProcedure});
              }).find("te laat"),
              std::string::npos);
    EXPECT_EQ(ToInt64(One("select count(*) from tblProbe")), 0) << "the connection goes on";
    const RecordsetPtr procedures = connection->OpenSchema(Schema::Procedures);
    ASSERT_EQ(procedures->RecordCount(), 1);
    EXPECT_EQ(Text(procedures->Get("PROCEDURE_NAME")).rfind("probeLate", 0), 0u);
}

TEST_P(RecordsetOverEngines, WritesOneRowAndFindsItChanged) {
    Fill(3);
    const RecordsetPtr rows = All(*connection);
    rows->MoveNext();
    const std::string odd = "O'Brien \"50%\" [x] \\ é 📁 ?";
    rows->Set("Naam", odd);
    rows->Set("Getal", Value());
    rows->Set("Vlag", true);
    EXPECT_EQ(Text(One("select Naam from tblProbe where Getal = 20")), "naam2")
        << "written before Update";
    rows->Update();
    const RecordsetPtr again = All(*connection);
    again->MoveNext();
    EXPECT_EQ(Text(again->Get("Naam")), odd);
    EXPECT_TRUE(IsNull(again->Get("Getal")));
    EXPECT_TRUE(ToBool(again->Get("Vlag")));

    // The same row once more, through the same recordset; and a value that stays as it is.
    rows->Set("Naam", std::string("twee"));
    rows->Update();
    rows->Set("Naam", std::string("twee"));
    rows->Update();
    rows->Set("Naam", std::string("vergeten"));
    rows->CancelUpdate();
    EXPECT_EQ(Text(rows->Get("Naam")), "twee");
    EXPECT_EQ(Text(One("select Naam from tblProbe where Getal is null")), "twee");
}

TEST_P(RecordsetOverEngines, WritesThroughOtherNamesAndWhatATableIsNow) {
    Fill(1);
    const auto write = [&](const char* statement, const char* field, const char* text) {
        const RecordsetPtr row = Open(statement);
        row->Set(field, std::string(text));
        row->Update();
    };
    write("SELECT * FROM TBLPROBE", "naam", "een");
    EXPECT_EQ(Text(One("select Naam from tblProbe")), "een");
    write("select Verhaal as Naam, Naam as Verhaal, Id from tblProbe", "Naam", "verteld");
    EXPECT_EQ(Text(One("select Verhaal from tblProbe")), "verteld");
    EXPECT_EQ(Text(One("select Naam from tblProbe")), "een");

    // Another table under the name that was read before.
    using enum schema::ColumnType;
    connection->Execute("drop table tblProbe");
    const schema::Table other = {
        "tblProbe", "Sleutel", "SleutelConst", {{"Id", Integer}, {"Naam", Integer}}};
    connection->Execute(schema::CreateTable(other, engine.dialect));
    connection->Execute("insert into tblProbe (Id, Naam) values (7, 1)");
    connection->Execute("insert into tblProbe (Id, Naam) values (7, 2)");
    write("SELECT * FROM TBLPROBE order by Naam", "Naam", "11");
    EXPECT_EQ(ToInt32(One("select Naam from tblProbe where Naam > 2")), 11);
    EXPECT_EQ(ToInt32(One("select Naam from tblProbe where Naam < 3")), 2);
}

TEST_P(RecordsetOverEngines, RefusesARowThatSomeoneElseChangedOrRemoved) {
    Fill(3);
    const ConnectionPtr other = database->Connect();
    const RecordsetPtr mine = All(*connection), theirs = All(*other);
    theirs->Set("Naam", std::string("NAAM1")); // differs in case alone
    theirs->Update();
    mine->Set("Naam", std::string("mijn"));
    EXPECT_EQ(NumberOf([&] { mine->Update(); }), errors::rowChanged);
    mine->CancelUpdate();
    EXPECT_EQ(Text(One("select Naam from tblProbe where Getal = 10")), "NAAM1");

    theirs->MoveNext();
    theirs->Delete();
    mine->MoveNext();
    mine->Set("Getal", std::int64_t{99});
    EXPECT_EQ(NumberOf([&] { mine->Update(); }), errors::rowChanged);
    mine->CancelUpdate();
    EXPECT_EQ(NumberOf([&] { mine->Delete(); }), errors::rowChanged);

    mine->MoveNext();
    mine->Delete();
    EXPECT_EQ(ToInt64(One("select count(*) from tblProbe")), 1);
    EXPECT_EQ(NumberOf([&] { mine->Get("Naam"); }), errors::badEof) << "no row is current";
    mine->CancelUpdate();
    EXPECT_FALSE(mine->Eof());
    mine->MoveNext();
    EXPECT_TRUE(mine->Eof());
}

TEST_P(RecordsetOverEngines, ManyRowsAreWalkedInBlocks) {
    connection->BeginTrans();
    Fill(600); // more than two of what the ways to an engine fetch at once
    connection->CommitTrans();
    const RecordsetPtr rows = All(*connection);
    const auto number = [&] { return ToInt64(rows->Get("Getal")) / 10; };
    rows->Move(299);
    EXPECT_EQ(number(), 300);
    rows->MoveLast();
    rows->Move(-250);
    EXPECT_EQ(number(), 350);
    rows->SetAbsolutePosition(257);
    EXPECT_EQ(number(), 257);
    rows->Move(-1000);
    EXPECT_TRUE(rows->Bof());
    rows->MoveFirst();
    rows->Move(5000);
    EXPECT_TRUE(rows->Eof());
    EXPECT_EQ(Names(*rows).size(), 9U + 2 * 90 + 3 * 501);
}

TEST_P(RecordsetOverEngines, AddsRowsWithTheirAutoNumber) {
    Fill(1);
    const RecordsetPtr rows = All(*connection);
    rows->AddNew();
    rows->Set("Naam", std::string("nieuw"));
    rows->Set("Verhaal", std::string(65536, 'v'));
    rows->Update();
    EXPECT_EQ(rows->RecordCount(), 2);
    EXPECT_EQ(ToInt64(rows->Get("Id")), engine.FirstAutoNumber() + 1);
    EXPECT_EQ(Text(One("select Verhaal from tblProbe where Naam = 'nieuw'")),
              std::string(65536, 'v'));
    rows->AddNew();
    rows->Set("Naam", std::string("niet"));
    rows->CancelUpdate();
    EXPECT_EQ(ToInt64(One("select count(*) from tblProbe")), 2);
}

TEST_P(RecordsetOverEngines, SortsAndFiltersInMemory) {
    Fill(6);
    const RecordsetPtr rows = All(*connection);
    rows->SetSort("[Vlag] ASC, Getal DESC");
    EXPECT_EQ(Names(*rows).size(), 6u);
    rows->SetSort("Getal DESC");
    EXPECT_EQ(Names(*rows), "654321");
    rows->SetFilter("Getal > 20 and Naam <> 'naam5'");
    EXPECT_EQ(Names(*rows), "643");
    EXPECT_EQ(rows->RecordCount(), 3);
    rows->SetFilter("");
    rows->SetSort("");
    EXPECT_EQ(Names(*rows), "123456");
}

TEST_P(RecordsetOverEngines, TransactionsKeepOrUndoAll) {
    Fill(1);
    connection->BeginTrans();
    connection->Execute("update tblProbe set Getal = 1");
    connection->BeginTrans();
    connection->Execute("update tblProbe set Naam = 'binnen'");
    connection->CommitTrans();
    connection->RollbackTrans();
    EXPECT_EQ(ToInt64(One("select Getal from tblProbe")), 10);
    EXPECT_EQ(Text(One("select Naam from tblProbe")), "naam1");
    connection->BeginTrans();
    connection->Execute("update tblProbe set Getal = 2");
    connection->CommitTrans();
    EXPECT_EQ(ToInt64(database->Connect()->Open({"select Getal from tblProbe"})->Get(0)), 2);
    EXPECT_NE(NumberOf([&] { connection->CommitTrans(); }), 0);

    // A part that was undone undoes the whole.
    EXPECT_TRUE(HasTransactions(connection));
    connection->BeginTrans();
    connection->Execute("update tblProbe set Getal = 3");
    connection->BeginTrans();
    connection->RollbackTrans();
    EXPECT_NE(NumberOf([&] { connection->CommitTrans(); }), 0);
    EXPECT_EQ(ToInt64(One("select Getal from tblProbe")), 2);
    connection->BeginTrans();
    connection->Execute("update tblProbe set Getal = 4");
    connection->CommitTrans();
    EXPECT_EQ(ToInt64(One("select Getal from tblProbe")), 4);
}

TEST_P(RecordsetOverEngines, ErrorsTellTheStatementAndTheCause) {
    try {
        Open("select * from tblNergens");
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), errors::noTable);
        EXPECT_EQ(error.Statement(), "select * from tblNergens");
        EXPECT_NE(platform::LowerCase(error.what()).find("tblnergens"), std::string::npos)
            << error.what();
    }
    ASSERT_FALSE(connection->Errors().empty());
    EXPECT_NE(connection->Errors().front().description, "");
    EXPECT_EQ(NumberOf([&] { Open("selekt 1"); }), errors::syntax);
    EXPECT_EQ(NumberOf([&] { connection->Property("Geen"); }), errors::itemNotFound);
    connection->Close();
    EXPECT_FALSE(connection->IsOpen());
    EXPECT_EQ(NumberOf([&] { Open("select 1"); }), errors::objectClosed);
}

TEST_P(RecordsetOverEngines, ADroppedConnectionIsAClearError) {
    if (!engine.HasServerSessions()) GTEST_SKIP() << "an embedded database has no session to drop";
    Fill(1);
    const RecordsetPtr rows = All(*connection);
    const bool mySql = engine.dialect == schema::Dialect::MySql;
    const std::string session = Text(One(mySql ? "select connection_id()" : "select @@spid"));
    database->Connect()->Execute("kill " + session);
    EXPECT_EQ(Text(rows->Get("Naam")), "naam1") << "rows in memory stay readable";
    try {
        Open("select * from tblProbe");
        FAIL();
    } catch (const Error& error) {
        EXPECT_NE(std::string(error.what()).find("is lost"), std::string::npos) << error.what();
    }
    rows->Set("Naam", std::string("x"));
    EXPECT_NE(NumberOf([&] { rows->Update(); }), 0);
}

KAVIDEX_OVER_ENGINES(RecordsetOverEngines);

} // namespace kavidex::tests
