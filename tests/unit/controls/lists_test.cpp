// The list of any length: columns, headings, selection; the lock of long work.
#include <gtest/gtest.h>

#include <stdexcept>

#include "controls/common/OperationLock.h"
#include "controls/lists/VirtualList.h"
#include "controls/pictures/IconKeys.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::controls {

namespace {

constexpr ListColumn columns[] = {
    {.caption = "Id", .field = "Id", .hidden = true},
    {.caption = "Omschrijving", .field = "Name"},
    {.caption = "Toegevoegd op", .field = "Shown", .sortField = "Stored"},
    {.caption = "Type", .field = "Type", .width = 50},
};

struct List : testing::Test {
    std::shared_ptr<data::Connection> database = data::EmbeddedDatabase::CreateInMemory();
    VirtualList list{columns, true};
    std::vector<std::vector<std::int32_t>> told;
    std::shared_ptr<void> token =
        list.SelectionChanged.Subscribe([this] { told.push_back(list.Selected()); });

    void SetUp() override {
        database->Execute("Create table tblList (Id INTEGER, Name TEXT(255), Shown TEXT(255), "
                          "Stored TEXT(255), Type TEXT(255))");
        for (const char* row :
             {"1, 'beta', '02-01-2026', '20260102', 'pdf'",
              "2, 'Alfa', '01-02-2026', '20260201', 'tab'",
              "3, 'ALFA', '31-12-2025', '20251231', 'tif'", "4, 'gamma', '', null, 'xyz'"})
            database->Execute("Insert into tblList (Id, Name, Shown, Stored, Type) values (" +
                              std::string(row) + ")");
        Fill("");
    }
    void Fill(const std::string& where) {
        data::Command command;
        command.text =
            "Select Id, Name, Shown, Stored, Type from tblList " + where + " order by Id";
        list.SetRows(std::make_unique<RecordsetRows>(database->Open(command), "Id", "Type"));
    }
    std::string Order() const {
        std::string ids;
        for (std::size_t row = 0; row < list.Count(); ++row) ids += std::to_string(list.Id(row));
        return ids;
    }
    std::string Titles() const {
        std::string titles;
        for (std::size_t i = 0; i < list.Columns(); ++i) titles += list.Title(i) + "|";
        return titles;
    }
};

} // namespace

TEST_F(List, AHeadingSortsUpThenDownAndCarriesTheMark) {
    EXPECT_EQ(Titles(), "Omschrijving|Toegevoegd op|Type|");
    list.HeadingClicked(0);
    EXPECT_EQ(Order(), "2314") << "without case; equals as they came";
    EXPECT_EQ(Titles(), "Omschrijving (oplopend)|Toegevoegd op|Type|");
    list.HeadingClicked(0);
    EXPECT_EQ(Order(), "4123");
    list.HeadingClicked(0);
    EXPECT_EQ(list.Sort(), "[Name] ASC");
    list.HeadingClicked(1);
    EXPECT_EQ(Order(), "4312") << "by the stored value, nothing first";
    EXPECT_EQ(Titles(), "Omschrijving|Toegevoegd op (oplopend)|Type|");
    list.HeadingClicked(1);
    EXPECT_EQ(list.Sort(), "[Stored] DESC");
    EXPECT_EQ(Order(), "2134");
    Fill("where Id > 1");
    EXPECT_EQ(Order(), "234") << "other rows are sorted as the list is";
    EXPECT_EQ(list.Text(0, 1), "01-02-2026");
}

TEST_F(List, AKeyThatCannotBeReadLeavesOrderAndMarks) {
    constexpr ListColumn bad[] = {{.caption = "A", .field = "Name"},
                                  {.caption = "B", .field = "Name", .sortField = "Gone"}};
    VirtualList other(bad);
    data::Command command;
    command.text = "Select Id, Name from tblList order by Id";
    other.SetRows(std::make_unique<RecordsetRows>(database->Open(command), "Id"));
    other.HeadingClicked(0);
    EXPECT_ANY_THROW(other.HeadingClicked(1));
    EXPECT_EQ(other.Sort(), "[Name] ASC");
    EXPECT_EQ(other.Id(0), 2);
}

TEST_F(List, TheSelectionFollowsTheRowsNotTheirPlaces) {
    list.RowsSelected({0, 2});
    list.RowsSelected({0, 2});
    EXPECT_EQ(told, (std::vector<std::vector<std::int32_t>>{{1, 3}}));
    list.HeadingClicked(0);
    EXPECT_EQ(list.Selected(), (std::vector<std::int32_t>{1, 3}));
    EXPECT_EQ(list.RowOf(3), 1U);
    Fill("where Id <> 1");
    EXPECT_EQ(list.Selected(), std::vector<std::int32_t>{3});
    EXPECT_EQ(list.Find("g", 0), 2U);
    EXPECT_EQ(list.Find("alfa", 1), 1U) << "on from the current row";
    EXPECT_EQ(list.Find("alfa", 2), 0U) << "and around the end";
    EXPECT_EQ(list.Find("z", 0), std::nullopt);
    list.SelectAll();
    EXPECT_EQ(list.Selected().size(), 3U);
    list.SetRows(nullptr);
    EXPECT_EQ(list.Count(), 0U);
    EXPECT_EQ(list.Text(0, 0), "");
    EXPECT_THROW(list.Id(0), std::out_of_range);
    list.RowActivated(0);
}

TEST_F(List, ColumnsShareWhatTheFixedOnesLeave) {
    EXPECT_EQ(list.Widths(351, 96), (std::vector<int>{150, 151, 50}));
    EXPECT_EQ(list.Widths(351, 192), (std::vector<int>{125, 126, 100}));
    EXPECT_EQ(list.Widths(10, 96), (std::vector<int>{40, 40, 50})) << "never narrower than legible";
    EXPECT_EQ(list.Widths(351, 96, {180, 60, 90}), (std::vector<int>{180, 121, 50}))
        << "nor than its heading, but where the width is told";
    EXPECT_EQ(list.Picture(0), ".pdf");
    EXPECT_EQ(list.Picture(1), "closedtab");
}

TEST(IconKeys, KnowTheFamiliesOfFileTypes) {
    EXPECT_EQ(FamilyOf(" TIF "), "picture");
    EXPECT_EQ(FamilyOf("msg"), "mail");
    EXPECT_EQ(FamilyOf("001"), "");
    EXPECT_EQ(FamilyOf(""), "");
    EXPECT_EQ(FamilyOf("doc xls"), "");
    EXPECT_EQ(ItemIconKey("NNT"), "attachtment");
}

TEST(OperationLock, KeepsASecondOperationOutUntilTheFirstEnds) {
    tests::FakeWorkstation machine;
    OperationLock lock(machine);
    bool second = true, asked = false;
    machine.busy.onPump = [&] {
        Operation inside(lock);
        second = static_cast<bool>(inside);
        inside.Show("never", "shown");
        asked = inside.Step(1, 2);
    };
    {
        Operation operation(lock);
        ASSERT_TRUE(operation);
        operation.Show("Export", "a", "Annuleren");
        EXPECT_TRUE(operation.Step(0, 3));
        machine.busy.stopAsked = true;
        EXPECT_FALSE(operation.Step(1, 3));
        EXPECT_TRUE(operation.Stopped());
        EXPECT_TRUE(lock.Held()) << "until it has ended";
    }
    EXPECT_FALSE(second || asked);
    EXPECT_FALSE(lock.Held());
    EXPECT_FALSE(machine.busy.open);
    EXPECT_EQ(machine.busy.shown.size(), 1U);
    EXPECT_EQ(machine.busy.progress.size(), 2U);
}

TEST_F(List, AnEditedRowIsTheOneThatWasOpenedWhateverTheRowsDidMeanwhile) {
    std::string edited;
    const auto asked = list.EditAsked.Subscribe([](std::int32_t, bool& may) { may = true; });
    const auto done = list.Edited.Subscribe(
        [&](std::int32_t id, const std::string& text) { edited = std::to_string(id) + text; });
    ASSERT_TRUE(list.EditBegun(1));
    Fill("where Id > 1");
    list.EditEnded("x");
    EXPECT_EQ(edited, "2x");
    EXPECT_FALSE(list.EditBegun(4));
}

} // namespace kavidex::controls
