// Trees of thousands of nodes: stack, and who else gets a turn meanwhile.
#include "model/clsTree.h"
#include "platform/Error.h"
#include "tests/unit/model/ModelDatabase.h"

namespace kavidex::tests {
namespace {

using model::clsItemPtr;
using model::clsTree;
using LargeTree = ModelDatabase;

TEST_F(LargeTree, LongWorkShowsTheBusyDialogAndLetsNothingElseAtTheTree) {
    const auto tree = NewTree();
    const int root = tree->Item()->Id();
    AddRows(2000, 20000, [&](int i) { return i % 100 == 0 ? root : 20000 + i / 100 * 100; });
    machine.busy.shown.clear();
    machine.busy.pumped = 0;
    // Each look at the rows takes a while, and the host's timer wants another dossier meanwhile.
    connection->onStep = [&](int) { machine.clock.now.millisecond += 40; };
    clsTree loaded(machine);
    int refused = 0;
    machine.busy.onPump = [&] {
        try {
            loaded.SetTreeId(0);
        } catch (const platform::Error&) {
            ++refused;
        }
    };
    loaded.SetDbConnection(connection);
    loaded.SetTreeId(tree->TreeId());
    EXPECT_EQ(loaded.Item()->ChildCollection()->Count(), 20);
    ASSERT_EQ(machine.busy.shown.size(), 1u);
    EXPECT_GT(refused, 1);
    EXPECT_EQ(machine.busy.pumped, refused);
    EXPECT_FALSE(machine.busy.open);
    clsItemPtr doomed = loaded.Item();
    EXPECT_TRUE(loaded.DeleteItem(doomed, 0));
    EXPECT_EQ(machine.busy.shown.size(), 2u);
    EXPECT_GT(machine.busy.painted, 1);
    EXPECT_EQ(machine.busy.pumped, refused) << "no timer of the host writes into the transaction";
    machine.busy.onPump = nullptr;
    connection->onStep = nullptr;
    loaded.SetTreeId(0); // and now it may
}

TEST_F(LargeTree, AFolderThatTwoTreesHoldIsSeenToChangeByBoth) {
    const auto tree = NewTree();
    const auto folder = tree->AddChildTab("Map", tree->Item()->Id())->Id();
    const auto one = Load(tree->TreeId()), two = Load(tree->TreeId());
    model::NodeId next = 100000;
    const auto shared = one->GetItem(folder, "");
    two->Item()->ChildCollection()->Append(shared);
    EXPECT_TRUE(two->GetItem(folder, "") && two->GetItem(folder, ""));
    ASSERT_TRUE(one->AddChildItem(++next, "tif", nullptr, 1, "x", folder));
    two->Item()->ChildCollection()->Remove(folder); // its own one, so that the shared one is met
    EXPECT_TRUE(two->GetItem(next, "") && one->GetItem(next, ""));
}

TEST_F(LargeTree, DeepAndWideTreesNeedNeitherStackNorQuadraticTime) {
    const auto tree = NewTree();
    const int root = tree->Item()->Id();
    constexpr int levels = 10000, width = 10000;
    AddRows(levels, 20000, [&](int i) { return i == 0 ? root : 20000 + i - 1; });
    AddRows(width, 50000, [&](int) { return root; });
    auto loaded = Load(tree->TreeId());
    ASSERT_EQ(loaded->Item()->ChildCollection()->Count(), width + 1);
    EXPECT_TRUE(loaded->GetItem(20000 + levels - 1, ""));
    EXPECT_TRUE(loaded->GetItem(0, "n29999"));
    EXPECT_EQ(loaded->GetItem(0, "nowhere"), nullptr);
    clsItemPtr doomed;
    EXPECT_TRUE(loaded->DeleteItem(doomed, 20000));
    EXPECT_EQ(One("select count(*) from tblTreeItem where TreeItemId < 0"), "10000");
    const auto children = loaded->Item()->ChildCollection();
    for (int i = width - 1; i >= 0; --i) children->Remove(50000 + (i % 2 ? i : width - 2 - i));
    EXPECT_EQ(children->Count(), 1);
    loaded.reset(); // ten thousand levels fall apart here
}

} // namespace
} // namespace kavidex::tests
