#include "model/clsTree.h"

#include "platform/Error.h"
#include "platform/General.h"
#include "tests/unit/model/ModelDatabase.h"

namespace kavidex::tests {
namespace {

using model::clsItemPtr;
using model::clsTree;

class Tree : public ModelDatabase {};

TEST_F(Tree, ShowsDeletedNodesOnlyWhenAskedAndInEitherOrder) {
    const auto tree = NewTree();
    const auto zebra = tree->AddChildTab("zebra", tree->Item()->Id());
    tree->AddChildTab("Aap", tree->Item()->Id());
    tree->AddChildItem(0, "tif", nullptr, 7, "fax", zebra->Id());
    clsItemPtr doomed = zebra;
    tree->DeleteItem(doomed, 0);
    EXPECT_EQ(Outline(*Load(tree->TreeId())->Item()), "Dossier\n Aap\n");
    platform::SaveRegFlag(machine.workstation, "TreeSettings", "ShowDeleted", true);
    connection->statements.clear();
    const auto shown = Load(tree->TreeId());
    EXPECT_EQ(Outline(*shown->Item()), "Dossier\n zebra VERWIJDERD\n  fax VERWIJDERD\n Aap\n");
    const std::string root = std::to_string(tree->Item()->Id());
    EXPECT_TRUE(connection->Issued("Select * from tblTreeItem where ParentId = " + root +
                                   " or ParentId = -" + root + " ORDER BY TreeItemId"));
    EXPECT_EQ(connection->Count("ParentId = -" + std::to_string(zebra->Id()) + " ORDER"), 1u);
    shown->SetOrderByName(true);
    shown->SetTreeId(tree->TreeId());
    EXPECT_EQ(Outline(*shown->Item()), "Dossier\n Aap\n zebra VERWIJDERD\n  fax VERWIJDERD\n");

    // Deleting again what holds deleted nodes leaves those where they are.
    clsItemPtr root2 = shown->Item();
    EXPECT_TRUE(shown->DeleteItem(root2, 0));
    EXPECT_EQ(Rows("select TreeItemId from tblTreeItem where TreeItemId > 0").size(), 0u);
    // A deleted node is renamed in memory only.
    connection->statements.clear();
    shown->Item()->ChildCollection()->Items().back()->SetDescription("x");
    EXPECT_TRUE(connection->statements.empty());
}

TEST_F(Tree, LoadsWhenItsConnectionComesAfterTheIdAndOnlyThen) {
    const auto tree = NewTree("O'B");
    tree->AddChildTab("Map", tree->Item()->Id());
    clsTree late(machine);
    ASSERT_TRUE(late.Item()); // before anything is loaded
    connection->statements.clear();
    late.SetTreeId(tree->TreeId());
    EXPECT_TRUE(connection->statements.empty());
    late.SetDbConnection(connection);
    EXPECT_EQ(Outline(*late.Item()), "O'B\n Map\n");
    connection->statements.clear();
    late.SetDbConnection(connection);
    late.SetTreeId(0); // a new, unsaved tree
    EXPECT_TRUE(late.Description().empty() && !late.NewEnabled() && late.Item()->Id() == 0);
    EXPECT_EQ(late.Item()->ChildCollection(), nullptr);
    // The first description of a node is not a rename.
    auto node = std::make_shared<model::clsItem>();
    node->SetDbConnection(connection);
    node->SetId(tree->Item()->Id());
    node->SetDescription("eerste");
    EXPECT_TRUE(connection->statements.empty());
    node->SetDescription("tweede");
    EXPECT_EQ(connection->statements.size(), 1u);
    // The database does not know this tree.
    late.SetTreeId(99999);
    EXPECT_EQ(connection->statements.back(), "Select * from tblTree where TreeId = 99999");
    EXPECT_TRUE(late.Item()->Id() == 0 && machine.log.Has("clsTree.Load", "99999 does not exist"));
}

TEST_F(Tree, IsNotOverwrittenWhenItsRowCouldNotBeRead) {
    const auto made = NewTree("Dossier van Jansen");
    made->SetDeleteEnabled(true);
    const std::string columns = "select Description, NewEnabled, DeleteEnabled from tblTree";
    const std::string stored = One(columns);
    On<clsTree> tree(machine, connection);
    connection->Failing(1, [&] { EXPECT_THROW(tree.SetTreeId(made->TreeId()), data::Error); });
    EXPECT_THROW(tree.SetNewEnabled(true), data::Error);
    EXPECT_THROW(tree.SetDescription("x"), data::Error);
    EXPECT_FALSE(tree.NewEnabled());
    EXPECT_EQ(One(columns), stored);
    tree.SetTreeId(made->TreeId());
    tree.SetDescription("Dossier van Pietersen");
    EXPECT_EQ(One(columns), platform::Replace(stored, "Jansen", "Pietersen"));
}

TEST_F(Tree, SearchesDepthFirstAndStaysExactWhileItChanges) {
    const auto tree = NewTree();
    const auto root = tree->Item()->Id();
    const auto first = tree->AddChildTab("Map", root);
    const auto second = tree->AddChildTab("POST", root);
    const auto deep = tree->AddChildTab("post", first->Id());
    EXPECT_EQ(tree->GetItem(0, ""), nullptr);
    EXPECT_EQ(tree->GetItem(0, "pOsT"), deep);
    EXPECT_EQ(tree->GetItem(second->Id(), "post"), deep);
    EXPECT_EQ(tree->GetItemWithinTree(second, 0, "post"), second);
    EXPECT_EQ(tree->GetItemWithinTree(second, deep->Id(), ""), nullptr);
    // Changes behind the tree's back are seen as well.
    first->ChildCollection()->Remove(deep->Id());
    EXPECT_EQ(tree->GetItem(deep->Id(), ""), nullptr);
    second->SetId(987654);
    EXPECT_EQ(tree->GetItem(987654, ""), second);
    for (int i = 0; i < 50; ++i) {
        const auto child = tree->AddChildTab("x", first->Id());
        EXPECT_EQ(tree->GetItem(child->Id(), ""), child);
        if (i % 3 == 0) first->ChildCollection()->Remove(child->Id());
        EXPECT_EQ(tree->GetItem(child->Id(), "") == nullptr, i % 3 == 0);
    }
}

TEST_F(Tree, RefusesWhatWouldBreakItAndWritesNothing) {
    const auto tree = NewTree();
    const auto root = tree->Item()->Id();
    const auto folder = tree->AddChildTab("Map", root);
    const auto inner = tree->AddChildTab("Binnen", folder->Id());
    const auto leaf = tree->AddChildItem(0, "TIF", nullptr, 1, "fax", folder->Id());
    connection->statements.clear();
    for (const int no : {leaf->Id(), 0, 99999}) EXPECT_EQ(tree->AddChildTab("x", no), nullptr);
    EXPECT_EQ(tree->MoveItem(leaf->Id(), folder->Id(), folder->Id()), nullptr);
    EXPECT_EQ(tree->MoveItem(leaf->Id(), 0, folder->Id()), nullptr);
    EXPECT_EQ(tree->MoveItem(inner->Id(), leaf->Id(), folder->Id()), nullptr);
    EXPECT_EQ(tree->MoveItem(folder->Id(), inner->Id(), root), nullptr); // into itself
    clsItemPtr none;
    EXPECT_FALSE(tree->DeleteItem(none, 99999));
    // An old parent that does not hold the item: it would be in two places.
    EXPECT_THROW(tree->MoveItem(leaf->Id(), root, inner->Id()), platform::Error);
    EXPECT_THROW(tree->MoveItem(leaf->Id(), root, 0), platform::Error);
    // Into the collection of the item's own children, whatever the new parent is said to be.
    const auto top = tree->Item();
    EXPECT_EQ(folder->ChildCollection()->MoveItem(folder, connection, top, top), nullptr);
    model::NodeId given = 500;
    EXPECT_THROW(top->ChildCollection()->AddItem(given, "tab", top->ChildCollection(), 0, "x",
                                                 connection, root),
                 platform::Error);
    EXPECT_TRUE(connection->statements.empty());
    EXPECT_EQ(Outline(*top), "Dossier\n Map\n  Binnen\n  fax\n");
    clsTree loose(machine); // without a connection
    EXPECT_FALSE(loose.CreateNew());
    EXPECT_EQ(loose.AddChildTab("x", 1), nullptr);
    clsItemPtr kept = leaf;
    EXPECT_FALSE(loose.DeleteItem(kept, 0));
    EXPECT_EQ(kept, leaf);
}

TEST_F(Tree, DamageIsLoadedAroundAndLogged) {
    const auto tree = NewTree();
    const std::string root = std::to_string(tree->Item()->Id());
    const auto folder = tree->AddChildTab("Map", tree->Item()->Id());
    tree->AddChildItem(0, "tif", nullptr, 1, "fax", folder->Id());
    // The root hangs below its own folder, a row has no id, a folder is its own parent.
    Sql("update tblTreeItem set ParentId = " + std::to_string(folder->Id()) +
        " where TreeItemId = " + root);
    Sql("Insert into tblTreeItem (Type, ParentId, Description) Values ('tab', " + root +
        ", 'cut')");
    AddRows(1, 5000, [](int) { return 5000; });
    EXPECT_EQ(Outline(*Load(tree->TreeId())->Item()), "Dossier\n Map\n  fax\n");
    EXPECT_TRUE(machine.log.Has("fncLoadCollectionFromDatabase", "Node " + root));
    EXPECT_TRUE(machine.log.Has("fncLoadCollectionFromDatabase", "it has no id"));
    Sql("Delete from tblTreeItem where TreeItemId = " + root);
    EXPECT_EQ(Outline(*Load(tree->TreeId())->Item()), "Dossier\n Map\n  fax\n");
    EXPECT_TRUE(machine.log.Has("clsTree.Load", "is missing"));
    EXPECT_TRUE(machine.messages.shown.empty());
}

TEST_F(Tree, AFailingReadShowsOneMessageAndKeepsTheRest) {
    const auto tree = NewTree();
    for (const char* name : {"a", "b", "c"}) tree->AddChildTab(name, tree->Item()->Id());
    connection->FailStep(4); // the children of "a"
    EXPECT_EQ(Outline(*Load(tree->TreeId())->Item()), "Dossier\n a\n b\n c\n");
    ASSERT_EQ(machine.messages.shown.size(), 1u);
    EXPECT_EQ(machine.messages.shown[0].caption + ": " + machine.messages.shown[0].text,
              "Error in fncLoadCollectionFromDatabase: made to fail -2147467259");
    connection->FailStep(4, true);
    Load(tree->TreeId());
    EXPECT_EQ(machine.messages.shown.size(), 2u); // not one for each folder
    connection->Failing(1, [&] { EXPECT_THROW(Load(tree->TreeId()), data::Error); });
}

// Whatever statement, row update or commit fails, the database holds all of a change or nothing.
TEST_F(Tree, EveryFailingStepLeavesNothingHalf) {
    const auto tree = NewTree();
    const auto folder = tree->AddChildTab("Map", tree->Item()->Id());
    tree->AddChildTab("Binnen", folder->Id());
    const auto rows = [&] {
        return Rows("select Id, TreeItemId, ParentId, Description from tblTreeItem order by Id");
    };
    const auto trees = Rows("select * from tblTree");
    const std::vector<std::function<void(clsTree&)>> changes = {
        [](clsTree& t) {
            t.SetTreeId(0);
            t.SetDescription("Nieuw");
            t.CreateNew();
        },
        [&](clsTree& t) { t.AddChildTab("x", folder->Id()); },
        [&](clsTree& t) {
            clsItemPtr doomed;
            t.DeleteItem(doomed, folder->Id());
        }};
    for (const auto& change : changes) {
        for (int step = 1;; ++step) {
            connection->onStep = nullptr;
            const auto loaded = Load(tree->TreeId());
            const auto before = rows();
            connection->FailStep(step);
            try {
                change(*loaded);
                break;
            } catch (const data::Error&) {
                EXPECT_EQ(rows(), before) << step;
                EXPECT_EQ(Rows("select * from tblTree"), trees) << step;
            }
            ASSERT_LT(step, 50);
        }
        connection->onStep = nullptr;
        Sql("Delete from tblTree where Description = 'Nieuw'");
    }
}

TEST_F(Tree, TheSweepNegatesTopsOfTreesWithoutDossier) {
    const auto tree = NewTree();
    const auto kept = tree->AddChildTab("met", tree->Item()->Id());
    const auto dangling = tree->AddChildTab("zonder", kept->Id());
    for (const auto& top : {kept, dangling}) {
        const std::string id = std::to_string(top->Id());
        Sql("Insert into tblTree (Id, TreeId, Description, TopItemId) Values (" + id + ", " + id +
            ", 'sub', " + id + ")");
    }
    Sql("Insert into tblDossierRelations (Id, RelId, DossierId, TreeId) Values (900, 900, 1, " +
        std::to_string(kept->Id()) + ")");
    // The look-up of the relation: no answer is not "none".
    connection->Failing(4, [&] { EXPECT_THROW(tree->Delete(), data::Error); });
    EXPECT_TRUE(tree->Delete());
    EXPECT_EQ(Rows("select TreeItemId from tblTreeItem where Description in ('met', 'zonder') "
                   "order by Id"),
              (std::vector{std::to_string(kept->Id()), std::to_string(-dangling->Id())}));
    EXPECT_FALSE(Load(tree->TreeId())->Delete());
}

} // namespace
} // namespace kavidex::tests
