// Recordsets in memory over the real engine: refusals, sort and filter.
#include <gtest/gtest.h>

#include "data/Error.h"
#include "data/embedded/EmbeddedDatabase.h"
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

} // namespace
} // namespace kavidex::data
