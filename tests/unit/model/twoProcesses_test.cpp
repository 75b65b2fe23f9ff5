// Two processes work on one dossier, each with the tree as it loaded it.
#include "model/clsDossier.h"
#include "model/clsDossierDbRelations.h"
#include "model/filing.h"
#include "platform/Error.h"
#include "platform/General.h"
#include "tests/fakes/Failures.h"
#include "tests/unit/model/ModelDatabase.h"

namespace kavidex::tests {
namespace {

using model::clsItemPtr;
using model::clsTree;

class TwoProcesses : public ModelDatabase {
protected:
    std::shared_ptr<clsTree> Other() {
        auto tree = std::make_shared<clsTree>(machine);
        tree->SetDbConnection(second);
        tree->SetTreeId(mine->TreeId());
        return tree;
    }
    std::string Living() {
        std::string all;
        for (const auto& row :
             Rows("select Description from tblTreeItem where TreeItemId > 0 order by Description"))
            all += row + " ";
        return all;
    }
    std::vector<std::string> Nodes() {
        return Rows("select TreeItemId, ParentId, Description from tblTreeItem order by Id");
    }

    data::ConnectionPtr second = data::EmbeddedDatabase::Open(File());
    std::shared_ptr<clsTree> mine = NewTree();
    model::NodeId root = mine->Item()->Id();
};

TEST_F(TwoProcesses, ADeletionTakesWhatTheOtherFiledAndLeavesWhatItMovedAway) {
    const auto folder = mine->AddChildTab("Map", root);
    const auto inner = mine->AddChildTab("Binnen", folder->Id());
    const auto moved = mine->AddChildTab("Verplaatst", folder->Id());
    const auto other = Other();
    machine.files.WriteAll(machine.Path("fax.tif"), "scan");
    model::FilingRequest request;
    request.source = machine.Path("fax.tif");
    request.folderId = inner->Id();
    ASSERT_TRUE(model::FileDocument(machine, *other, request));
    ASSERT_TRUE(other->MoveItem(moved->Id(), root, folder->Id()));
    clsItemPtr doomed = folder;
    ASSERT_TRUE(mine->DeleteItem(doomed, 0));
    EXPECT_EQ(Living(), "Dossier Verplaatst ");
    EXPECT_EQ(Faults(), std::vector<std::string>{}) << "nothing hangs from a folder that is gone";
}

TEST_F(TwoProcesses, NothingIsAddedOrMovedIntoAFolderThatTheOtherDeleted) {
    const auto folder = mine->AddChildTab("Map", root);
    const auto item = mine->AddChildTab("Blad", root);
    const auto gone = mine->AddChildTab("Weg", root);
    const auto other = Other();
    clsItemPtr none;
    ASSERT_TRUE(other->DeleteItem(none, folder->Id()));
    ASSERT_TRUE(other->DeleteItem(none, gone->Id()));
    using platform::errors::notFound;
    EXPECT_EQ(NumberOf([&] { mine->AddChildTab("Nieuw", folder->Id()); }), notFound);
    EXPECT_EQ(NumberOf([&] { mine->MoveItem(item->Id(), folder->Id(), root); }), notFound);
    EXPECT_EQ(NumberOf([&] { mine->MoveItem(gone->Id(), item->Id(), root); }), notFound);
    EXPECT_EQ(Living(), "Blad Dossier ");
    EXPECT_EQ(Outline(*mine->Item()), "Dossier\n Map\n Blad\n Weg\n") << "in memory as before";
    EXPECT_EQ(Outline(*Load(mine->TreeId())->Item()), "Dossier\n Blad\n");

    // Nor where it is shown: what hangs from it would be gone at the next load.
    platform::SaveRegFlag(machine.workstation, "TreeSettings", "ShowDeleted", true);
    const auto shown = Load(mine->TreeId());
    const auto before = Nodes();
    const auto deleted = -folder->Id();
    ASSERT_TRUE(shown->GetItem(deleted, ""));
    EXPECT_EQ(NumberOf([&] { shown->AddChildTab("Nieuw", deleted); }), notFound);
    EXPECT_EQ(NumberOf([&] { shown->MoveItem(item->Id(), deleted, root); }), notFound);
    EXPECT_EQ(NumberOf([&] { shown->MoveItem(deleted, item->Id(), root); }), notFound);
    EXPECT_EQ(Nodes(), before);
}

TEST_F(TwoProcesses, TwoFoldersAreNotMovedIntoEachOther) {
    const auto a = mine->AddChildTab("A", root), b = mine->AddChildTab("B", root);
    ASSERT_TRUE(Other()->MoveItem(b->Id(), a->Id(), root));
    EXPECT_NE(NumberOf([&] { mine->MoveItem(a->Id(), b->Id(), root); }), 0);
    EXPECT_EQ(Outline(*Load(mine->TreeId())->Item()), "Dossier\n A\n  B\n");
}

TEST_F(TwoProcesses, ADeletionIsUndoneWholeOrNotAtAllWhateverTheOtherDidMeanwhile) {
    const auto outer = mine->AddChildTab("Buiten", root);
    const auto folder = mine->AddChildTab("Map", outer->Id());
    const auto page = mine->AddChildTab("Blad", folder->Id());
    const auto before = mine->AddChildTab("Eerder", folder->Id());
    const auto whole = Nodes();
    clsItemPtr doomed = before;
    std::vector<model::NodeId> taken;
    ASSERT_TRUE(mine->DeleteItem(doomed, 0));
    doomed = folder;
    ASSERT_TRUE(mine->DeleteItem(doomed, 0, &taken));
    clsItemPtr none;
    ASSERT_TRUE(Other()->DeleteItem(none, outer->Id()));
    const auto gone = Nodes();
    connection->countsAll = true;
    for (int step = 1;; ++step) { // each statement fails once
        connection->FailStep(step);
        const bool failed = NumberOf([&] { mine->RestoreItem(folder->Id(), taken); }) != 0;
        connection->onStep = nullptr;
        const auto now = Nodes();
        if (!failed) {
            ASSERT_GT(step, 8);
            break;
        }
        ASSERT_EQ(now, gone) << "after step " << step;
    }
    EXPECT_EQ(Living(), "Blad Buiten Dossier Map ");
    EXPECT_TRUE(Other()->RestoreItem(folder->Id()).wasThere);
    EXPECT_EQ(Nodes(), whole);
    // Deleted at the very moment: after the look at the rows, before they are held.
    doomed = page;
    ASSERT_TRUE(mine->DeleteItem(doomed, 0));
    int begun = 0;
    connection->onStep = [&](int) {
        if (++begun == 3)
            second->Execute("update tblTreeItem set TreeItemId = -TreeItemId, ParentId = -ParentId "
                            "where TreeItemId = " +
                            std::to_string(folder->Id()));
    };
    const auto back = mine->RestoreItem(page->Id());
    connection->onStep = nullptr;
    EXPECT_EQ(back.folders, std::vector{folder->Id()});
    EXPECT_EQ(Living(), "Blad Buiten Dossier Eerder Map ");
}

// An engine that is busy is not one without transactions: half a deletion would stay.
TEST_F(TwoProcesses, ABeginThatFailsEndsTheWorkAndIsLogged) {
    const auto folder = mine->AddChildTab("Map", root);
    mine->AddChildTab("Binnen", folder->Id());
    const std::string before = Living();
    connection->countsAll = true;
    connection->FailStep(1);
    connection->statements.clear();
    clsItemPtr doomed = folder;
    EXPECT_THROW(mine->DeleteItem(doomed, 0), data::Error);
    EXPECT_TRUE(connection->statements.empty());
    EXPECT_TRUE(machine.log.Has("Transaction", "Not begun"));
    connection->Failing(1, [&] { EXPECT_THROW(mine->AddChildTab("x", root), data::Error); });
    EXPECT_EQ(Living(), before);
}

TEST_F(TwoProcesses, DocumentsFollowTheirDossiersKey) {
    Sql("Insert into tblDocument (DocId, ExternalId) Values (1, 'Oud')");
    Sql("Insert into tblDocument (DocId, ExternalId) Values (2, 'Ander')");
    Sql("update tblDossierDbRelation set dbKey = 'Oud'");
    On<model::clsDossierDbRelations> relation(machine, connection);
    relation.SetDbKey("Oud");
    ASSERT_TRUE(relation.OpenDataSource());
    const auto keys = [&] {
        return One("select dbKey from tblDossierDbRelation") + " " +
               Rows("select ExternalId from tblDocument order by DocId")[0];
    };
    connection->FailStep(2); // the documents: neither is changed then
    EXPECT_FALSE(relation.Rekey("O'Nieuw"));
    connection->onStep = nullptr;
    EXPECT_EQ(keys() + " " + relation.DbKey(), "Oud Oud Oud");
    EXPECT_TRUE(relation.Rekey("O'Nieuw"));
    EXPECT_EQ(keys() + " " + relation.DbKey(), "O'Nieuw O'Nieuw O'Nieuw");
    EXPECT_EQ(One("select ExternalId from tblDocument where DocId = 2"), "Ander");
}

} // namespace
} // namespace kavidex::tests
