#include "model/IntegrityCheck.h"

#include <algorithm>

#include "model/clsDocument.h"
#include "model/filing.h"
#include "tests/fakes/Failures.h"
#include "tests/unit/model/ModelDatabase.h"

namespace kavidex::tests {
namespace {

using model::Fault;

class Integrity : public ModelDatabase {
protected:
    Integrity() : tree(NewTree()), folder(tree->AddChildTab("Map", tree->Item()->Id())) {
        for (const char* name : {"a.tif", "b.doc", "c.pdf"}) {
            machine.files.WriteAll(machine.Path(name), name);
            model::FilingRequest request;
            request.source = machine.Path(name);
            request.folderId = folder->Id();
            filed.push_back(model::FileDocument(machine, *tree, request));
        }
    }
    // The findings that the statement brings about, beside none; then it is undone.
    std::vector<std::string> Seeded(const std::string& statement) {
        database->BeginTrans();
        Sql(statement);
        auto found = Faults();
        database->RollbackTrans();
        std::sort(found.begin(), found.end());
        EXPECT_TRUE(Faults().empty());
        return found;
    }

    std::shared_ptr<model::clsTree> tree;
    model::clsItemPtr folder;
    std::vector<model::FilingResult> filed;
};

TEST_F(Integrity, FindsEachKindOfFaultAndInventsNone) {
    const std::string doc = std::to_string(filed[0].docId), map = std::to_string(folder->Id()),
                      item = std::to_string(filed[0].item->Id()),
                      root = std::to_string(tree->Item()->Id()),
                      id = std::to_string(tree->TreeId());
    const std::vector<std::pair<std::string, std::vector<std::string>>> seeds = {
        {"update tblDocument set InsertDate = 20200101 where DocId = " + doc,
         {"document without file", "file without document"}},
        {"Delete from tblDocument where DocId = " + doc,
         {"file without document", "item without document"}},
        {"update tblDocument set Id = -" + doc + " where Id = " + doc, {"item without document"}},
        {"Delete from tblTreeItem where TreeItemId = " + item, {"document without item"}},
        {"Insert into tblDocExtraInfo (DocId) Values (999)",
         {"extra information without document"}},
        {"update tblTreeItem set ParentId = 999 where TreeItemId = " + map,
         {"item without parent"}},
        {"update tblTreeItem set TreeItemId = -" + map +
             ", ParentId = -ParentId where TreeItemId = " + map,
         {"item without parent", "item without parent", "item without parent"}},
        {"update tblTreeItem set ParentId = 0 where TreeItemId = " + map, {"item out of reach"}},
        {"update tblTreeItem set ParentId = " + map + " where TreeItemId = " + map,
         {"item out of reach", "item out of reach", "item out of reach", "item out of reach"}},
        {"update tblTree set TopItemId = 999 where TreeId = " + id,
         {"item out of reach", "tree without root"}},
        {"Delete from tblDossierRelations where TreeId = " + id, {"tree without dossier"}},
        {"update tblDossierRelations set TreeId = 999 where TreeId = " + id,
         {"relation without tree", "tree without dossier"}},
        {"Delete from tblDossierDbRelation", {"relation without key"}},
        {"update tblTreeItem set ParentId = -ParentId where TreeItemId = " + item,
         {"ids out of pair"}},
        {"update tblTreeItem set TreeItemId = null where TreeItemId = " + item,
         {"document without item", "row without working id"}},
        {"update tblDocument set DocId = 0 where DocId = " + doc,
         {"file without document", "item without document", "row without working id"}},
        {"Insert into tblTreeItem (TreeItemId, ParentId, Type, Description) Values (" + map + ", " +
             root + ", 'tab', 'twee')",
         {"ids out of pair", "working id used twice"}},
    };
    for (const auto& [statement, faults] : seeds) EXPECT_EQ(Seeded(statement), faults) << statement;

    machine.files.WriteAll(filed[0].path + ".tmp", "cut off");
    EXPECT_EQ(Faults(), std::vector<std::string>{"file without document"});
    machine.files.Remove(filed[0].path + ".tmp");
    machine.files.Remove(filed[1].path);
    EXPECT_EQ(Faults(), std::vector<std::string>{"document without file"});
}

// Each document would be told as one without its file.
TEST_F(Integrity, SaysNothingOfAStoreThatItCannotLookInto) {
    using namespace platform::errors;
    const auto checked = [&](std::string_view root = {}) {
        return NumberOf([&] { model::CheckIntegrity(machine, database, root); });
    };
    machine.files.FailAt(1, accessDenied);
    EXPECT_EQ(checked(), accessDenied);
    machine.files.FailAt(0);
    EXPECT_EQ(checked(), 0);
    EXPECT_EQ(checked(machine.Path("unmounted")), pathNotFound);
    Sql("update tblSettings set [Value] = '" + machine.Path("unmounted") +
        "' where SKey = 'DocumentPath'");
    EXPECT_EQ(checked(), pathNotFound);
    Sql("delete from tblSettings where SKey = 'DocumentPath'");
    EXPECT_EQ(checked(), pathNotFound);
    EXPECT_EQ(checked(Store()), 0);
    Sql("delete from tblDocument"); // then there is no file to look for
    EXPECT_EQ(checked(), 0);
}

TEST_F(Integrity, KnowsWhatIsNoFault) {
    model::clsItemPtr doomed = filed[0].item;
    tree->DeleteItem(doomed, 0);
    EXPECT_TRUE(Faults().empty()); // in the waste basket
    On<model::clsDocument> document(machine, connection);
    document.SetId(filed[0].docId);
    ASSERT_TRUE(document.OpenDataSource() && document.LoadData() && document.DeleteCurrentRow());
    EXPECT_TRUE(Faults().empty()); // the file stays

    // A tree hung into this one, its dossier gone, and swept.
    const auto top = tree->AddChildTab("sub", folder->Id());
    const std::string id = std::to_string(top->Id());
    tree->AddChildTab("onder", top->Id());
    Sql("Insert into tblTree (Id, TreeId, TopItemId) Values (" + id + ", " + id + ", " + id + ")");
    EXPECT_EQ(Faults(), std::vector<std::string>{"tree without dossier"});
    Load(tree->TreeId())->Delete();
    EXPECT_TRUE(Faults().empty());

    // Users, a note that was never saved, a document marked as there already, foreign folders.
    const auto users = NewTree("Gebruikers");
    Sql("Delete from tblDossierRelations where TreeId = " + std::to_string(users->TreeId()));
    Sql("Delete from tblDossierDbRelation where DbRelId = " + std::to_string(users->TreeId()));
    model::NodeId node = 0;
    users->AddChildItem(node, "usergroup", nullptr, 0, "Nieuwe groep", users->Item()->Id());
    Sql("Insert into tblDocument (Id, DocId, Type, InsertDate) Values (8000, 8000, 'nnt', "
        "20260101)");
    tree->AddChildItem(0, "nnt", nullptr, 8000, "Nieuwe notitie", folder->Id());
    Sql("Insert into tblDocument (Id, DocId, Description) Values (8001, 0, 'Document allready "
        "exists')");
    Sql("Insert into tblDocExtraInfo (DocId, SendTo) Values (8001, 'piet')");
    machine.files.CreateDirectories(Store() + "\\Sjablonen");
    machine.files.WriteAll(Store() + "\\Sjablonen\\brief.dot", "x");
    EXPECT_TRUE(Faults().empty());
}

} // namespace
} // namespace kavidex::tests
