// Recordsets in memory over the real engine: moves, writing, conflicts, sort and filter.
#include <gtest/gtest.h>

#include "data/Error.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/rows/RowSearch.h"
#include "tests/fakes/Failures.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::data {
namespace {

using tests::NumberOf;

class ClientRecordsets : public testing::Test {
protected:
    tests::FakeWorkstation machine;
    std::string path = machine.Path("x.kdb");
    ConnectionPtr connection = EmbeddedDatabase::Create(path);
    ConnectionPtr other = EmbeddedDatabase::Open(path);

    void SetUp() override {
        for (const char* row : {"'beta', 2", "'Alpha', 1", "'gamma', 3", "'alpha', 4", "null, 5"})
            connection->Execute("Insert into tblTree (Description, TopItemId) Values (" +
                                std::string(row) + ")");
    }
    RecordsetPtr Open(const std::string& statement = "Select * from tblTree") {
        return connection->Open({statement});
    }
    static std::string Shown(Recordset& rows) {
        std::string text;
        if (rows.RecordCount() > 0)
            for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext())
                text += ToText(rows.Get("TopItemId"));
        return text;
    }
};

TEST_F(ClientRecordsets, WriteWithTheMoveAndStandOnADeletedRowUntilTheNext) {
    const RecordsetPtr rows = Open();
    rows->Set("TopItemId", std::string("17"));
    EXPECT_EQ(rows->Get("TopItemId"), Value(std::int64_t{17}));
    rows->MoveNext();
    rows->SetAbsolutePosition(3);
    rows->Delete();
    EXPECT_EQ(NumberOf([&] { rows->Get("Id"); }), errors::badEof);
    EXPECT_FALSE(rows->Eof());
    rows->MoveNext();
    EXPECT_EQ(rows->Get("Id"), Value(std::int64_t{4}));
    EXPECT_EQ(Shown(*other->Open({"Select * from tblTree order by Id"})), "17145");
}

TEST_F(ClientRecordsets, LeavesALoopWhoseRowsAreRefused) {
    other->Execute("CREATE UNIQUE INDEX indOnce on tblTree (TreeId)");
    const RecordsetPtr rows = Open();
    int refused = 0, steps = 0;
    while (!rows->Eof() && ++steps < 50) {
        rows->Set("TreeId", std::int64_t{1});
        refused += NumberOf([&] { rows->Update(); }) == errors::integrity ? 1 : 0;
        rows->MoveNext();
    }
    EXPECT_EQ(steps, 5);
    EXPECT_EQ(refused, 4);
}

TEST_F(ClientRecordsets, RefusesWhatDoesNotFitAField) {
    const RecordsetPtr rows =
        Open("Select Id, Description, TopItemId, NewEnabled, Id + 1 as Next from tblTree");
    EXPECT_EQ(NumberOf([&] { rows->Set("TopItemId", std::string("abc")); }),
              errors::invalidArgument);
    EXPECT_EQ(NumberOf([&] { rows->Set("TopItemId", 1e12); }), errors::invalidArgument);
    EXPECT_EQ(NumberOf([&] { rows->Set("NewEnabled", std::string("maybe")); }),
              errors::invalidArgument);
    EXPECT_EQ(NumberOf([&] { rows->Set("Description", std::string(256, 'x')); }),
              errors::invalidArgument);
    EXPECT_EQ(NumberOf([&] { rows->Set("Next", std::int64_t{1}); }), errors::featureNotAvailable);
    rows->Set("TopItemId", 2.5);
    EXPECT_EQ(rows->Get("TopItemId"), Value(std::int64_t{2}));
    rows->Set("NewEnabled", std::string("True"));
    EXPECT_EQ(rows->Get("NewEnabled"), Value(true));
    rows->Update();
    const RecordsetPtr keyless = Open("Select Description from tblTree");
    keyless->Set("Description", std::string("x"));
    EXPECT_EQ(NumberOf([&] { keyless->Update(); }), errors::featureNotAvailable);
}

TEST_F(ClientRecordsets, SortsStablyAndFilters) {
    const RecordsetPtr rows = Open();
    rows->SetSort("Description");
    EXPECT_EQ(Shown(*rows), "51423");
    rows->SetSort("[Description] DESC, TopItemId desc");
    EXPECT_EQ(Shown(*rows), "32415");
    const struct {
        const char* filter;
        const char* shown;
    } cases[] = {
        {"Description = 'ALPHA'", "14"},
        {"Description like 'a*' or Description like '%TA'", "214"},
        {"TopItemId >= 2 and (TopItemId < 4 or [TopItemId] = '5') and TopItemId <> 3", "25"},
        {"Description = null", "5"},
        {"Description is not null and not TopItemId > 1", "1"},
        {"TopItemId = 99", ""},
    };
    rows->SetSort("");
    for (const auto& [filter, shown] : cases) {
        rows->SetFilter(filter);
        EXPECT_EQ(Shown(*rows), shown) << filter;
    }
    for (const char* wrong :
         {"Description", "Description = ", "(TopItemId = 1", "TopItemId = 1 1", "Description = 'x"})
        EXPECT_EQ(NumberOf([&] { rows->SetFilter(wrong); }), errors::invalidArgument) << wrong;
    EXPECT_EQ(NumberOf([&] { rows->SetFilter("None = 1"); }), errors::itemNotFound);
    EXPECT_EQ(NumberOf([&] { rows->SetSort("None"); }), errors::itemNotFound);
    EXPECT_EQ(rows->Filter(), "TopItemId = 99");
    rows->SetFilter("");
    EXPECT_EQ(rows->RecordCount(), 5);
}

TEST_F(ClientRecordsets, AreSearchedForwardAndBackFromTheCurrentRow) {
    const RecordsetPtr rows = Open();
    FindRow(*rows, "Description like 'a*'");
    EXPECT_EQ(rows->AbsolutePosition(), 2);
    FindRow(*rows, "[Description] like 'a*'"); // the current row counts
    EXPECT_EQ(rows->AbsolutePosition(), 2);
    FindRow(*rows, "Description like 'a*'", 1);
    EXPECT_EQ(rows->AbsolutePosition(), 4);
    FindRow(*rows, "TopItemId <= 2", 0, Direction::Backward);
    EXPECT_EQ(rows->AbsolutePosition(), 2);
    FindRow(*rows, "TopItemId = 9", 1, Direction::Backward);
    EXPECT_TRUE(rows->Bof());
    EXPECT_EQ(NumberOf([&] { FindRow(*rows, "TopItemId = 1"); }), errors::badEof);
    rows->MoveFirst();
    EXPECT_EQ(NumberOf([&] { FindRow(*rows, "TopItemId"); }), errors::invalidArgument);
    EXPECT_EQ(NumberOf([&] { FindRow(*rows, "None = 1"); }), errors::itemNotFound);
    EXPECT_EQ(rows->AbsolutePosition(), 1);
    FindRow(*rows, "Description = null");
    EXPECT_EQ(rows->AbsolutePosition(), 5);
    FindRow(*rows, "Description = 'none'");
    EXPECT_TRUE(rows->Eof());
}

TEST_F(ClientRecordsets, ArePrintedFromTheCurrentRowOn) {
    const RecordsetPtr rows = Open("Select Description, TopItemId from tblTree");
    EXPECT_EQ(RowsAsText(*rows, 2), "beta\t2\rAlpha\t1\r");
    EXPECT_EQ(RowsAsText(*rows, -1, {.column = ",", .row = ";", .null = "-"}),
              "gamma,3;alpha,4;-,5;");
    EXPECT_TRUE(rows->Eof());
    EXPECT_EQ(NumberOf([&] { RowsAsText(*rows); }), errors::badEof);
}

TEST_F(ClientRecordsets, AreCopiedWithAPlaceOfTheirOwn) {
    const RecordsetPtr rows = Open();
    rows->SetAbsolutePosition(2);
    rows->Delete();
    rows->SetFilter("TopItemId > 3");
    const RecordsetPtr copy = rows->Clone();
    EXPECT_EQ(copy->RecordCount(), 4);
    EXPECT_EQ(copy->AbsolutePosition(), 1);
    rows->Set("Description", std::string("later"));
    rows->Update();
    copy->MoveLast();
    EXPECT_EQ(rows->AbsolutePosition(), 1);
    rows->Close();
    EXPECT_EQ(Shown(*copy), "2345");
    copy->MoveFirst();
    copy->Set("Description", std::string("x"));
    EXPECT_EQ(NumberOf([&] { copy->Update(); }), errors::featureNotAvailable);
    EXPECT_EQ(NumberOf([&] { rows->Clone(); }), errors::objectClosed);
}

TEST_F(ClientRecordsets, StayReadableAfterCloseAndRefuseToWrite) {
    const RecordsetPtr rows = Open();
    connection->Close();
    rows->MoveLast();
    EXPECT_EQ(rows->Get("TopItemId"), Value(std::int64_t{5}));
    rows->SetSort("TopItemId desc");
    EXPECT_EQ(Shown(*rows), "54321");
    rows->MoveFirst();
    rows->Set("Description", std::string("x"));
    EXPECT_EQ(NumberOf([&] { rows->Update(); }), errors::objectClosed);
    EXPECT_EQ(NumberOf([&] { rows->Requery(); }), errors::objectClosed);
    EXPECT_EQ(NumberOf([&] { connection->Execute("Delete from tblTree"); }), errors::objectClosed);
    EXPECT_EQ(NumberOf([&] { connection->Close(); }), errors::objectClosed);
}

} // namespace
} // namespace kavidex::data
