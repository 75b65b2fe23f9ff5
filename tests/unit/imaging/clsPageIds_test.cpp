#include "imaging/clsPageIds.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "platform/Error.h"

namespace kavidex::imaging {
namespace {

using Ids = std::vector<std::int32_t>;

TEST(clsPageIds, APageKeepsItsIdWhilePagesAroundItGoAndCome) {
    clsPageIds pages;
    pages.SetIds(4);
    const Ids first = pages.GetIds();
    EXPECT_TRUE(pages.DeletePageId(first[1]));
    EXPECT_EQ(pages.PageNumberOf(first[3]), 3);
    EXPECT_EQ(pages.PageNumberOf(first[1]), 0);
    EXPECT_FALSE(pages.DeletePageId(first[1]));

    const std::int32_t added = pages.AddPageId(1);
    EXPECT_EQ(std::count(first.begin(), first.end(), added), 0) << "no id is given twice";
    pages.Move(4, 2);
    EXPECT_EQ(pages.GetIds(), (Ids{added, first[3], first[0], first[2]}));
    EXPECT_EQ(pages.Item(3).PageNumber, 3);

    clsPageIds other;
    other.SetIds(pages.GetIds());
    EXPECT_EQ(other.GetPageId(2), first[3]);
    EXPECT_GT(other.AddPageId(9), added);
    EXPECT_EQ(other.PageNumberOf(other.GetPageId(5)), 5);
}

TEST(clsPageIds, APageThatIsNotThereIsRefused) {
    clsPageIds pages;
    pages.SetIds(2);
    EXPECT_EQ(pages.GetPageId(0), 0);
    EXPECT_EQ(pages.GetPageId(3), 0);
    EXPECT_THROW(pages.Item(0), platform::Error);
    EXPECT_THROW(pages.Remove(3), platform::Error);
    EXPECT_THROW(pages.Move(1, 3), platform::Error);
    EXPECT_EQ(pages.Count(), 2);
}

} // namespace
} // namespace kavidex::imaging
