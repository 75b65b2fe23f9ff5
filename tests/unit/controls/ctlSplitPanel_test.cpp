#include "controls/splitter/ctlSplitPanel.h"

#include <gtest/gtest.h>

#include "controls/lists/DocumentRows.h"
#include "controls/viewer/browser/FactsPane.h"

namespace kavidex::controls {
namespace {

struct Hosted : HostedControl {
    Box place;
    bool visible = false;
    void Place(const Box& box) override { place = box; }
    void Show(bool show) override { visible = show; }
};

struct Splitter : testing::Test {
    Hosted first, second;
    ctlSplitPanel panel;
    int moved = 0;
    std::shared_ptr<void> token = panel.Moved.Subscribe([this] { ++moved; });
    void SetUp() override {
        panel.SetSplitterWidth(6);
        panel.SetMinPanelSize(80);
        panel.SetControl1(&first);
        panel.SetControl2(&second);
        panel.SetPosition(3000);
        panel.SetSize(1006, 500);
    }
};

TEST_F(Splitter, SharesTheRoomAndKeepsTheSmallestSizes) {
    EXPECT_EQ(first.place, (Box{0, 0, 300, 500}));
    EXPECT_EQ(second.place, (Box{306, 0, 700, 500}));
    panel.SetPosition(0);
    EXPECT_EQ(first.place.width, 80);
    panel.SetSize(106, 500); // room for less than twice the smallest
    EXPECT_EQ(first.place.width, 50);
    EXPECT_EQ(second.place.width, 50);
    panel.SetSize(0, 0);
    EXPECT_EQ(panel.Panel(1).width, 0);
    panel.SetSize(1006, 1006);
    panel.SetHorizontal(true);
    EXPECT_EQ(second.place, (Box{0, 86, 1006, 920}));
    panel.SetScale(192);
    EXPECT_EQ(panel.Bar().height, 12);
}

TEST_F(Splitter, FollowsTheMouseAndGoesBackWhenCancelled) {
    EXPECT_FALSE(panel.BeginMove(10, 10));
    ASSERT_TRUE(panel.BeginMove(302, 10));
    panel.MoveTo(502, 10);
    EXPECT_EQ(first.place.width, 500);
    panel.CancelMove();
    EXPECT_EQ(first.place.width, 300);
    EXPECT_EQ(moved, 0);
    ASSERT_TRUE(panel.BeginMove(302, 10));
    panel.MoveTo(20, 10);
    panel.EndMove();
    EXPECT_EQ(panel.Snapped(), SnapSide::First);
    EXPECT_FALSE(first.visible);
    EXPECT_EQ(moved, 1);
    ASSERT_TRUE(panel.ToggleSnap());
    EXPECT_TRUE(first.visible);
    EXPECT_EQ(first.place.width, 300) << "unfolded to where it was";
}

TEST_F(Splitter, MovesByKeyboardToTheSmallestSizeAndNoFurther) {
    ASSERT_TRUE(panel.MoveBy(1));
    EXPECT_EQ(first.place.width, 320);
    panel.MoveBy(-100);
    EXPECT_EQ(first.place.width, 80);
    EXPECT_EQ(panel.Snapped(), SnapSide::None);
    panel.SetAllowMove(false);
    EXPECT_FALSE(panel.MoveBy(1));
    EXPECT_FALSE(panel.BeginMove(82, 10));
}

TEST(DocumentTexts, ShowMomentsAndSizesAsPeopleReadThem) {
    EXPECT_EQ(InsertMoment("20261115", "905"), "15-11-2026 09:05");
    EXPECT_EQ(InsertMoment("20261115", ""), "15-11-2026");
    EXPECT_EQ(InsertMoment("0", "0"), "");
    EXPECT_EQ(SizeText(1023), "1023 bytes");
    EXPECT_EQ(SizeText(12595), "12,2 kB");
    EXPECT_EQ(SizeText(4ULL << 40), "4,0 TB");
}

} // namespace
} // namespace kavidex::controls
