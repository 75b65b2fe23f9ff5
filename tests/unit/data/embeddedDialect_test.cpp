// Statements of the Access dialect, run on the real engine.
#include <gtest/gtest.h>

#include "data/Error.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/logText.h"
#include "tests/fakes/Failures.h"

namespace kavidex::data {
namespace {

class EmbeddedDialect : public testing::Test {
protected:
    ConnectionPtr connection = EmbeddedDatabase::CreateInMemory();

    void Run(const std::string& statement) { connection->Execute(statement); }
    RecordsetPtr Open(const std::string& statement) { return connection->Open({statement}); }

    // The first value of the first row as text; "(none)" without rows.
    std::string First(const std::string& statement) {
        const RecordsetPtr rows = Open(statement);
        return rows->Eof() ? "(none)" : IsNull(rows->Get(0)) ? "(null)" : ToText(rows->Get(0));
    }
    std::int32_t Failure(const std::string& statement) {
        return tests::NumberOf([&] { Run(statement); });
    }
};

TEST_F(EmbeddedDialect, TakesEveryFormOfFlag) {
    Run("Insert into tblTree (Description, NewEnabled, DeleteEnabled) Values ('a', True, False)");
    Run("Insert into tblTree (Description, NewEnabled, DeleteEnabled) Values ('b', 1, 0)");
    Run("Insert into tblTree (Description, NewEnabled, DeleteEnabled) Values ('c', -1, 0)");
    for (const char* all :
         {"tblTree where NewEnabled = True", "tblTree where True = NewEnabled",
          "tblTree where DeleteEnabled = False", "tblTree where NewEnabled",
          "tblTree where NewEnabled = -1", "tblTree as t where 1 = t.NewEnabled",
          "tblTree where not NewEnabled <> True", "tblTree where UpdateEnabled = False"})
        EXPECT_EQ(First(std::string("Select count(*) from ") + all), "3") << all;
    Run("update tblTree set UpdateEnabled = null where NewEnabled");
    EXPECT_EQ(First("Select count(*) from tblTree where UpdateEnabled is null"), "0");
    EXPECT_EQ(Failure("update tblTree set UpdateEnabled = 'x'"), errors::integrity);
    const RecordsetPtr rows = Open("Select * from tblTree");
    for (; !rows->Eof(); rows->MoveNext()) {
        EXPECT_EQ(rows->Get("NewEnabled"), Value(true));
        EXPECT_EQ(rows->Get("DeleteEnabled"), Value(false));
    }
    EXPECT_EQ(rows->Fields()[rows->IndexOf("NewEnabled")].type, AdoType::Boolean);
}

TEST_F(EmbeddedDialect, KeepsNumbersAndDatesInTheFormOfTheirColumn) {
    Run("CREATE TABLE tblForm (Id COUNTER, Number LONG, Small SHORT, Flag BIT DEFAULT True, Made "
        "DATETIME)");
    Run("insert into tblForm (Number, Small, Made) values (2.5, '3.5', '5/1/2004')");
    Run("insert into tblForm (Number, Small, Flag, Made) select Number + 0.6, -2.5, 7, 38108 from "
        "tblForm");
    Run("update tblForm set Small = 4.5 where Small = -2");
    EXPECT_EQ(First("Select count(*) from tblForm where Flag = -1"), "2");
    EXPECT_EQ(First("Select sum(Number) & '/' & sum(Small) from tblForm"), "5/8");
    EXPECT_EQ(First("Select count(*) from tblForm where Made = '2004-05-01'"), "2");
    EXPECT_EQ(First("Select count(*) from tblForm where Made = #2004-05-01#"), "2");
    EXPECT_EQ(First("Select count(*) from tblForm where Made between '4/30/2004' and #5/1/2004#"),
              "2");
    EXPECT_EQ(Failure("insert into tblForm (Made) values ('some day')"), errors::integrity);
    const RecordsetPtr row = Open("Select * from tblForm");
    row->AddNew();
    row->Set("Number", Value(std::int64_t{1}));
    row->Update();
    row->Set("Flag", Value(false));
    row->Update();
    EXPECT_EQ(First("Select Flag from tblForm where Number = 1"), "False");
    for (const char* twice : {"insert into tblForm (Number, number) values (1, 2)",
                              "update tblForm set Number = 1, Small = 2, [number] = 3"})
        EXPECT_EQ(Failure(twice), errors::syntax) << twice;
}

TEST_F(EmbeddedDialect, TopGivesAllRowsThatAreEqualToTheLast) {
    for (const char* const text : {"b", "a", "c", "B", "d"})
        Run(std::string("Insert into tblTree (Description, TreeId) Values ('") + text + "', " +
            std::to_string(text[0]) + ")");
    const auto count = [&](const char* statement) { return Open(statement)->RecordCount(); };
    EXPECT_EQ(count("Select top 2 Description from tblTree order by Description"), 3);
    EXPECT_EQ(count("Select top 2 * from tblTree order by Description, Id"), 2);
    EXPECT_EQ(count("Select top 3 Description as Name from tblTree order by Name desc"), 4);
    EXPECT_EQ(count("Select top 9 Description from tblTree order by 1"), 5);
    EXPECT_EQ(count("Select top 2 Description from tblTree"), 2);
    EXPECT_EQ(Open("Select top 2 * from tblTree order by Description")->Fields().size(), 7u);
    EXPECT_EQ(First("Select first(Description) & last(TreeId) from tblTree"), "b100");
}

TEST_F(EmbeddedDialect, UpdatesOverJoins) {
    for (int i = 1; i <= 3; ++i) {
        const std::string id = std::to_string(i);
        Run("Insert into tblTree (Description, TreeId, TopItemId) Values ('t', " + id + ", " + id +
            "0)");
        Run("Insert into tblTreeItem (Description, TreeItemId) Values ('item " + id + "', " + id +
            "0)");
    }
    Run("update tblTree inner join tblTreeItem on tblTree.TopItemId = tblTreeItem.TreeItemId set "
        "tblTree.Description = tblTreeItem.Description, tblTree.NewEnabled = 1 where "
        "tblTree.TreeId > 1");
    EXPECT_EQ(First("Select count(*) from tblTree where Description like 'item #' and NewEnabled = "
                    "True"),
              "2");
    Run("update tblTree as a left join tblTreeItem as b on a.TopItemId = b.TreeItemId set "
        "a.Description = b.Type");
    EXPECT_EQ(First("Select count(*) from tblTree where Description is null"), "3");
    EXPECT_EQ(Failure("update tblTree inner join tblTreeItem on TopItemId = TreeItemId set "
                      "Description = 'x'"),
              errors::syntax);
    EXPECT_EQ(Failure("update (select * from tblTree where TreeId = 1) set Description = 'x'"),
              errors::syntax);
    Run("update tblTree inner join (select TreeItemId from tblTreeItem where TreeItemId = 10) as q "
        "on tblTree.TopItemId = q.TreeItemId set Description = 'one'");
    EXPECT_EQ(First("Select count(*) from tblTree where Description = 'one'"), "1");
}

TEST_F(EmbeddedDialect, RefusesWhatBelongsToOtherServers) {
    for (const char* statement : {
             "CREATE TABLE tblX ( Id INTEGER Identity(1000,1)  CONSTRAINT c PRIMARY KEY, a "
             "CHAR(5))",
             "CREATE TABLE tblX ( Id BIGINT AUTO_INCREMENT  PRIMARY KEY, a CHAR(5)) AUTO_INCREMENT "
             "= 1000",
             "CREATE TABLE tblX (Id COUNTER PRIMARY KEY, a NTEXT)",
             "CREATE TABLE tblX (Id COUNTER PRIMARY KEY, a LONGTEXT)",
             "CREATE TABLE tblX (Id COUNTER PRIMARY KEY) AUTO_INCREMENT = 1000",
             "ALTER TABLE tblDocument ADD NewColumn Char(38)",
             "ALTER TABLE tblDocument ADD COLUMN NewColumn NTEXT",
             "CREATE INDEX indX on tblDocument (Description(38))",
             "DROP INDEX tblDossierReference.indRefVal10",
             "CREATE PROCEDURE AddToSettings @Section CHAR(255) AS SET NOCOUNT ON",
             "SELECT top 5 percent * from tblTree limit 3",
             "PRAGMA journal_mode=OFF",
             "ATTACH DATABASE 'x' AS y",
             "Select load_extension('x')",
             "Select 1; Delete from tblSettings",
             "Select * from tblTree -- comment",
             "Select * from",
             "Select 'no end",
             "Select [no end",
             "",
             "Select (((((",
         })
        EXPECT_EQ(Failure(statement), errors::syntax) << statement;
    EXPECT_EQ(First("Select count(*) from tblSettings"), "1");
    EXPECT_EQ(Failure("Select * from tblNone"), errors::noTable);
    EXPECT_EQ(Failure("Select * from sqlite_master"), errors::noTable);
    std::string negations = "Select ";
    for (int i = 0; i < 5000; ++i) negations += "not ";
    for (const std::string& statement :
         {std::string("Select Nothing from tblTree"), "Select " + std::string(5000, '('),
          std::string("insert into tblDossierTabs (TabDescription) values (Dossier)"),
          negations + "1"})
        EXPECT_EQ(Failure(statement), errors::syntax) << statement.substr(0, 80);
}

TEST_F(EmbeddedDialect, ChangesTables) {
    Run("CREATE TABLE tblOld (Id COUNTER CONSTRAINT IdConst PRIMARY KEY,DossierTypeId LONG,"
        "TabDescription TEXT(50),Order LONG)");
    Run("insert into tblOld (TabDescription ,Order ) VALUES ('a',2)");
    Run("insert into tblOld (TabDescription ,[Order]) VALUES ('b',1)");
    EXPECT_EQ(First("Select TabDescription from tblOld order by Order"), "b");
    EXPECT_EQ(First("Select Order from tblOld where Order > 1"), "2");
    Run("ALTER TABLE tblOld ADD COLUMN intOrder LONG");
    Run("update tblOld set intOrder = [Order]");
    Run("ALTER TABLE tblOld DROP COLUMN [Order]");
    EXPECT_EQ(First("Select sum(intOrder) from tblOld"), "3");
    EXPECT_EQ(Failure("Select [Order] from tblOld"), errors::syntax);
    Run("ALTER TABLE tblOld ADD COLUMN ShowCabinet MEMO, CreateDossier MEMO, OpenDossier MEMO)");
    EXPECT_EQ(First("Select OpenDossier from tblOld"), "(null)");
    EXPECT_EQ(Failure("ALTER TABLE tblOld ADD COLUMN ShowCabinet MEMO"), errors::syntax);
    // An index belongs to its table; one that holds a column keeps it from being dropped.
    Run("CREATE INDEX indSame on tblOld (intOrder )");
    Run("CREATE INDEX indSame on tblDocument (DocId)");
    EXPECT_EQ(Failure("CREATE INDEX indSame on tblOld (Id)"), errors::syntax);
    EXPECT_EQ(Failure("ALTER TABLE tblOld DROP COLUMN intOrder"), errors::syntax);
    Run("DROP INDEX indSame on TBLOLD");
    EXPECT_EQ(Failure("DROP INDEX indSame on tblOld"), errors::syntax);
    Run("ALTER TABLE tblOld DROP COLUMN intOrder");
    Run("DROP TABLE tblOld");
    EXPECT_EQ(Failure("Select * from tblOld"), errors::noTable);
}

TEST_F(EmbeddedDialect, RefusesValuesThatDoNotFitAndNamesTheColumn) {
    Run("CREATE TABLE tblFit (Id COUNTER, Short TEXT(3), Number LONG, Tiny SHORT, Real DOUBLE)");
    Run("insert into tblFit (Short, Number, Tiny, Real) values ('abc', '12', 7, 1.5)");
    EXPECT_EQ(First("Select Number + 1 from tblFit"), "13");
    for (const char* values :
         {"(Short) values ('abcd')", "(Number) values ('x')", "(Number) values (2147483648)",
          "(Tiny) values (40000)", "(Real) values ('x')"})
        EXPECT_EQ(Failure(std::string("insert into tblFit ") + values), errors::integrity)
            << values;
    const std::string tooLong = "update tblFit set Short = 'much too long'";
    try {
        Run(tooLong);
        FAIL();
    } catch (const Error& error) {
        const std::string words = error.what();
        for (const char* part : {"'Short'", "3 characters"})
            EXPECT_NE(words.find(part), std::string::npos) << words;
        EXPECT_EQ(words.find("update"), std::string::npos) << "what a box shows";
        EXPECT_EQ(error.Statement(), tooLong);
        EXPECT_NE(InLog(error).find(tooLong), std::string::npos);
        ASSERT_EQ(connection->Errors().size(), 1u);
        EXPECT_EQ(connection->Errors()[0].number, errors::integrity);
    }
    EXPECT_EQ(First("Select Short from tblFit"), "abc");
}

TEST_F(EmbeddedDialect, ComparesAndOrdersTextsWithoutCase) {
    for (const char* text : {"beta", "Alpha", "École", "éclair", "ALPHA"})
        Run(std::string("Insert into tblTree (Description) Values ('") + text + "')");
    EXPECT_EQ(First("Select count(*) from tblTree where Description = 'alpha'"), "2");
    EXPECT_EQ(First("Select count(*) from tblTree where Description = 'éCOLE'"), "1");
    EXPECT_EQ(First("Select top 1 Description from tblTree order by Description desc"), "École");
    EXPECT_EQ(First("Select count(*) from tblTree where Description > 'e' and Description < 'f'"),
              "2");
    Run("CREATE UNIQUE INDEX indOnce on tblTree (Description, Id)");
    Run("CREATE TABLE tblOnce (Id COUNTER, Word TEXT(20))");
    Run("CREATE UNIQUE INDEX indWord on tblOnce (Word)");
    Run("insert into tblOnce (Word) values ('Été')");
    EXPECT_EQ(Failure("insert into tblOnce (Word) values ('éTÉ')"), errors::integrity);
}

TEST_F(EmbeddedDialect, NumbersRowsOnceAndBindsAnyTextAsAParameter) {
    Run("Insert into tblTree (Description) Values ('a')");
    EXPECT_EQ(First("Select @@IDENTITY"), "1");
    Run("Delete from tblTree");
    const std::string text(" nul \0 and blanks ", 18);
    Command insert{"Insert into tblTree (Description) Values (?)"};
    insert.parameters = {{.name = "a", .value = text}};
    connection->Open(insert);
    EXPECT_EQ(First("Select Description from tblTree where Id = 2"), text);
    Command command{"Select ? & '-' & ? & '-' & 5"};
    command.parameters = {{.name = "a", .value = std::string("x")},
                          {.name = "b", .value = Value(std::int64_t{2})}};
    EXPECT_EQ(ToText(connection->Open(command)->Get(0)), "x-2-5");
    command.parameters.pop_back();
    EXPECT_THROW(connection->Open(command), Error);
    command.type = CommandType::StoredProcedure;
    EXPECT_THROW(connection->Open(command), Error);
}

TEST_F(EmbeddedDialect, KeepsStatementsOfOneShapeApartByTheirValues) {
    const auto insert = [&](const std::string& text, const std::string& number) {
        Run("Insert into tblTree (Description, TreeId) Values ('" + text + "', " + number + ")");
    };
    for (int i = 1; i <= 5; ++i) insert("t" + std::to_string(i), std::to_string(i * 10));
    for (int i = 1; i <= 5; ++i) {
        const std::string text = "t" + std::to_string(i), number = std::to_string(i * 10);
        EXPECT_EQ(First("Select Description from tblTree where TreeId = " + number), text);
        EXPECT_EQ(First("Select TreeId from tblTree where Description = '" + text + "'"), number);
    }
    // Numbers that stand in the statement itself.
    EXPECT_EQ(Open("Select top 2 * from tblTree")->RecordCount(), 2);
    EXPECT_EQ(Open("Select top 3 * from tblTree")->RecordCount(), 3);
    EXPECT_EQ(First("Select Description, TreeId from tblTree order by 2 desc"), "t5");
    EXPECT_EQ(First("Select Description, TreeId from tblTree order by 1"), "t1");
    // The schema may change under a kept statement.
    EXPECT_EQ(Open("Select * from tblTree")->Fields().size(), 7u);
    Run("ALTER TABLE tblTree ADD COLUMN TreeGuid TEXT(38)");
    EXPECT_EQ(Open("Select * from tblTree")->Fields().size(), 8u);
}

} // namespace
} // namespace kavidex::data
