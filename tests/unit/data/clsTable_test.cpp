#include <gtest/gtest.h>

#include "data/clsTable.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/On.h"
#include "tests/fakes/RecordingConnection.h"

using namespace kavidex;
using namespace kavidex::data;
using namespace kavidex::tests;

namespace {

// A table on the embedded engine, its statements on record.
struct clsTableTest : testing::Test {
    FakeWorkstation machine;
    std::shared_ptr<RecordingConnection> connection =
        std::make_shared<RecordingConnection>("", EmbeddedDatabase::CreateInMemory());
    clsTable table{machine};

    void SetUp() override {
        connection->Execute("ALTER TABLE tblDocument ADD COLUMN DocGuid Text(38)");
        connection->Execute(
            "CREATE TABLE tblSample (Id COUNTER CONSTRAINT pk PRIMARY KEY, "
            "Name TEXT(255), Amount DOUBLE, Units LONG, Flag BIT, Moment DATETIME)");
        connection->statements.clear();
        table.SetDbConnection(connection);
        table.SetTableName("tblSample");
    }
    std::string Text(std::string_view field) { return ToText(table.GetField(field)); }
};

} // namespace

TEST_F(clsTableTest, DoesNothingBeforeItIsOpened) {
    EXPECT_TRUE(table.Eof() && table.Bof() && !table.RecordSet());
    EXPECT_EQ(table.RecordCount() + table.AbsolutePosition(), 0);
    for (const auto move :
         {&clsTable::MoveFirst, &clsTable::MoveLast, &clsTable::MoveNext, &clsTable::MovePrevious})
        (table.*move)();
    table.Move(3);
    table.ReQuery();
    table.SetAbsolutePosition(1);
    table.SetField("Name", std::string("x"));
    EXPECT_TRUE(IsNull(table.GetField("Name")));
    EXPECT_FALSE(table.UpdateCurrentRow() || table.DeleteCurrentRow());
    EXPECT_TRUE(connection->statements.empty());
}

TEST_F(clsTableTest, FollowsTheTypeRulesOfFields) {
    connection->Execute("insert into tblSample (Name) values (null)");
    connection->Execute("insert into tblSample (Name,Amount,Units) values ('  padded  ',1.5,7)");
    table.SetOrdering("Id");
    ASSERT_TRUE(table.OpenDbConnection());
    EXPECT_EQ(table.RecordCount(), 2);
    EXPECT_EQ(table.GetField("Units"), Value(std::int64_t{0})); // null by type
    EXPECT_EQ(table.GetField("Amount"), Value(std::int64_t{0}));
    EXPECT_EQ(table.GetField("Name"), Value(std::string()));
    EXPECT_EQ(table.GetField("Moment"), Value(std::string()));
    table.SetField("Units", Value()); // no null in a column of whole numbers
    EXPECT_EQ(table.GetField("Units"), Value(std::string("0")));
    table.RecordSet()->CancelUpdate();
    EXPECT_EQ(table.GetFieldLength("Name"), Value(std::int64_t{255}));
    table.MoveNext();
    EXPECT_EQ(Text("Name"), "padded");
    EXPECT_EQ(Text("units"), "7");
    EXPECT_EQ(Text("Amount"), "1.5");
    EXPECT_THROW(table.GetField("Nowhere"), platform::Error);

    table.SetField("Amount", std::string("12,5"));
    table.SetField("Units", std::string());
    table.SetField("Name", std::string("  O'Brien 𝄞 "));
    EXPECT_TRUE(table.UpdateCurrentRow());
    table.SetAbsolutePosition(0);
    EXPECT_EQ(table.AbsolutePosition(), 2);
    table.ReQuery();
    table.MoveLast();
    EXPECT_EQ(Text("Amount"), "12");
    EXPECT_EQ(table.RecordSet()->Get("Units"), Value(std::int64_t{0}));
    EXPECT_EQ(Text("Name"), "O'Brien 𝄞");
    table.SetField("Name", Value());
    EXPECT_TRUE(table.UpdateCurrentRow());
    table.MoveNext();
    EXPECT_TRUE(table.Eof());
    EXPECT_TRUE(IsNull(table.GetField("Name")));
    EXPECT_EQ(table.GetFieldLength("Name"), Value(std::int64_t{0}));
}

TEST_F(clsTableTest, TellsRowsThatCouldNotBeReadAndRowsThatWereNotMade) {
    table.SetTableName("tblDocument");
    std::int32_t id = -5;
    connection->FailAt(2); // which reads the new row
    EXPECT_FALSE(table.SaveNewRow("Id", "DocGuid", id, "DocId"));
    EXPECT_NE(table.Failure(), "");
    connection->FailAt(1);
    EXPECT_FALSE(table.OpenDbConnection());
    EXPECT_NE(table.Failure(), "") << "no rows, and not because there are none";
    EXPECT_FALSE(table.SaveNewRow("Id", "NoColumn", id, "DocId"));
    machine.guids.refuse = true;
    const std::size_t before = connection->statements.size();
    EXPECT_FALSE(table.SaveNewRow("Id", "DocGuid", id, "DocId"));
    EXPECT_EQ(connection->statements.size(), before);
    EXPECT_EQ(id, -5);
    machine.guids.refuse = false;
    EXPECT_FALSE(table.SaveNewRow("Id", "DocGuid", id, "NoColumn"));
    EXPECT_EQ(ToInt32(table.RecordSet()->Get("Id")), id); // the row is there, without its copy
    EXPECT_TRUE(machine.log.Has("clsTable.SaveNewRow"));
}

TEST_F(clsTableTest, DeletesARowAndWhatPointsAtItsReference) {
    connection->Execute("insert into tblDossierRefTabs (RefTabId) values (31)");
    connection->Execute("insert into tblSample (Name) values ('x')");
    connection->statements.clear();
    ASSERT_TRUE(table.OpenDbConnection());
    EXPECT_TRUE(table.DeleteCurrentRow());
    EXPECT_EQ(connection->Count("uplink"), 0u);

    On<clsTable> tabs(machine, connection);
    tabs.SetTableName("tblDossierRefTabs ");
    ASSERT_TRUE(tabs.OpenDbConnection());
    EXPECT_TRUE(tabs.DeleteCurrentRow()); // the name is compared untrimmed
    EXPECT_EQ(connection->Count("uplink"), 0u);

    connection->Execute("insert into tblDossierRefTabs (RefTabId) values (32)");
    tabs.SetTableName("TblDossierRefTabs");
    ASSERT_TRUE(tabs.OpenDbConnection());
    EXPECT_TRUE(tabs.DeleteCurrentRow()); // there is no companion table yet
    EXPECT_TRUE(connection->Issued("Delete from TblDossierRefTabsuplink where serverrefid = 32"));
    EXPECT_EQ(connection->inner->Open({"select * from tblDossierRefTabs"})->RecordCount(), 0);
}
