// The binder model over every engine: trees, documents, dossiers, rights and checklists.
#include "data/clsSettings.h"
#include "data/modData.h"
#include "data/schema/clsUpdateDb.h"
#include "data/schema/modDataBase.h"
#include "model/IntegrityCheck.h"
#include "model/clsCheckListType.h"
#include "model/clsDocument.h"
#include "model/clsDossier.h"
#include "model/clsDossierDbRelations.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "model/clsUserAuth.h"
#include "model/filing.h"
#include "platform/General.h"
#include "platform/text.h"
#include "tests/engines/Engine.h"

namespace kavidex::tests {

using namespace kavidex::model;

namespace {

constexpr const char* hostile[] = {"O'Brien ''x'' \"y\" `z`", "\\\\server\\share\\a\\'b\\",
                                   "50% _x_ *?# [x] {y} ?", "-- x /* y */ # z ; drop table tblTree",
                                   "één ŁÓDŹ жук 文件 📁"};

class ModelOverEngines : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        if (IsSkipped()) return;
        machine.guids.real = true;
        data::clsSettings settings(machine);
        settings.SetDbConnection(connection);
        if (!engine.ComesWithSchema()) {
            ASSERT_EQ(data::CheckAndCreateDatabase(machine, connection, settings,
                                                   data::IsMySqlConnection(connection)),
                      1);
        }
        data::clsUpdateDb update(machine);
        update.SetDbConnection(connection);
        update.fncUpdateDb();
        for (const auto& message : machine.messages.shown) ADD_FAILURE() << message.text;
        machine.files.CreateDirectories(machine.Path("store"));
        settings.SetSetting("Storage", "DocumentPath", machine.Path("store"));
    }

    std::shared_ptr<clsTree> Tree(std::int32_t id = 0) {
        auto tree = std::make_shared<clsTree>(machine);
        tree->SetDbConnection(connection);
        if (id != 0) tree->SetTreeId(id);
        return tree;
    }
    std::shared_ptr<clsTree> NewTree() {
        auto tree = Tree();
        tree->SetDescription("Dossier");
        tree->SetNewEnabled(true);
        EXPECT_TRUE(tree->CreateNew());
        return tree;
    }
    // The names below a node, depth first.
    static std::string Names(const clsItemPtr& item) {
        std::string names;
        if (const auto& children = item->ChildCollection())
            for (const clsItemPtr& child : children->Items())
                names += child->Description() + "(" + Names(child) + ")";
        return names;
    }
    // What a written text reads as: MySQL keeps two backslashes for one, as the statement helpers
    // make it.
    std::string Kept(std::string_view text) const {
        return engine.DoublesBackslashesOnExecute() ? platform::Replace(text, "\\", "\\\\")
                                                    : std::string(text);
    }
    std::int32_t Number(const std::string& statement) { return data::ToInt32(One(statement)); }
};

} // namespace

TEST_P(ModelOverEngines, TreesKeepTheirShapeNamesAndDeletedNodes) {
    const auto tree = NewTree();
    // Servers store the flags of a new tree as 0, and right with its first change.
    EXPECT_EQ(Tree(tree->TreeId())->NewEnabled(), engine.ComesWithSchema());
    tree->SetDeleteEnabled(true);
    EXPECT_TRUE(Tree(tree->TreeId())->NewEnabled() && Tree(tree->TreeId())->DeleteEnabled());

    const std::int32_t root = tree->Item()->Id();
    const auto post = tree->AddChildTab("Post", root), archive = tree->AddChildTab("Archief", root);
    ASSERT_TRUE(post && archive);
    const auto letter = tree->AddChildItem(0, "tif", nullptr, 4711, "Brief", post->Id());
    EXPECT_EQ(tree->AddChildItem(0, "tif", nullptr, 1, "x", letter->Id()), nullptr);
    ASSERT_EQ(tree->MoveItem(letter->Id(), archive->Id(), post->Id()), letter);
    EXPECT_EQ(Names(Tree(tree->TreeId())->Item()), "Post()Archief(Brief())");
    for (const char* const text : hostile) {
        letter->SetDescription(text);
        tree->SetDescription(text);
        const auto again = Tree(tree->TreeId());
        EXPECT_EQ(again->Description(), Kept(text));
        ASSERT_NE(again->GetItem(letter->Id(), ""), nullptr);
        EXPECT_EQ(again->GetItem(letter->Id(), "")->Description(), Kept(text));
        EXPECT_NE(again->GetItem(0, Kept(text)), nullptr);
    }
    letter->SetDescription("Brief");

    connection->Execute("Insert into tbltreeitemuplink (serverrefId) Values (" +
                        std::to_string(archive->Id()) + ")");
    clsItemPtr doomed = archive;
    ASSERT_TRUE(tree->DeleteItem(doomed, 0));
    EXPECT_EQ(Number("select count(*) from tbltreeitemuplink"), 0);
    EXPECT_EQ(Number("select ParentId from tblTreeItem where TreeItemId = " +
                     std::to_string(-letter->Id())),
              -archive->Id());
    EXPECT_EQ(Names(Tree(tree->TreeId())->Item()), "Post()");
    platform::SaveRegFlag(machine, "TreeSettings", "ShowDeleted", true);
    EXPECT_EQ(Tree(tree->TreeId())->Item()->ChildCollection()->Count(), 2);
    const auto shown = Tree(tree->TreeId())->GetItem(-archive->Id(), "");
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->Description() + ":" + Names(shown), "Archief VERWIJDERD:Brief VERWIJDERD()");
}

TEST_P(ModelOverEngines, DocumentsKeepEveryTextAndAreFiledWhole) {
    for (const char* const text : hostile) {
        clsDocument made(machine);
        made.SetDatabaseObject(connection);
        made.SetDescription(text);
        made.SetExternalId(text);
        made.SetDocType("tif");
        made.SetInsertDate("20261115");
        made.SetInsertTime("0905");
        made.SetSendTo(text);
        ASSERT_TRUE(made.SaveNewRow()) << text;
        clsDocument read(machine);
        read.SetDatabaseObject(connection);
        read.SetId(made.DocId());
        ASSERT_TRUE(read.OpenDataSource() && read.LoadData()) << text;
        EXPECT_EQ(read.Description() + read.ExternalId() + read.SendTo(),
                  Kept(text) + Kept(text) + Kept(text));
        EXPECT_EQ(read.InsertDate() + " " + read.InsertTime(), "20261115 905");
        read.SetSendTo("niemand");
        read.SetReadOnly(true);
        ASSERT_TRUE(read.UpdateCurrentRow()) << text;
        read.ReQuery();
        ASSERT_TRUE(read.LoadData());
        EXPECT_EQ(read.SendTo() + (read.ReadOnly() ? " r" : " w"), "niemand r");
        ASSERT_TRUE(read.DeleteCurrentRow()) << text;
    }
    EXPECT_EQ(Number("select count(*) from tblDocExtraInfo"), 0);
    EXPECT_EQ(Number("select count(*) from tblDocument where Id > 0"), 0);

    const auto tree = NewTree();
    machine.files.WriteAll(machine.Path("O'Brien 100%.txt"), "inhoud");
    FilingRequest request;
    request.source = machine.Path("O'Brien 100%.txt");
    request.folderId = tree->Item()->Id();
    request.deleteSource = true;
    const auto filed = FileDocument(machine, *tree, request);
    ASSERT_TRUE(filed) << filed.error;
    EXPECT_EQ(machine.files.ReadAll(filed.path), "inhoud");
    EXPECT_FALSE(machine.files.FileExists(request.source));
    EXPECT_EQ(Names(Tree(tree->TreeId())->Item()), "O'Brien 100%()");
    std::string found;
    for (const Finding& finding : CheckIntegrity(machine, connection))
        found += std::string(FaultName(finding.fault)) + ";";
    EXPECT_EQ(found, "tree without dossier;");
}

TEST_P(ModelOverEngines, DossiersAreFoundByTheHostsKeyUntilTheyAreDeleted) {
    std::int32_t treeId = 900;
    for (const char* const text : hostile) {
        clsDossierDbRelations key(machine);
        key.SetDbConnection(connection);
        key.SetDbKey(text);
        ASSERT_TRUE(key.SaveNewRow()) << text;
        clsDossier made(machine);
        made.SetDbConnection(connection);
        made.SetDossierId(key.DossierId());
        made.SetDossierType(std::string("A ") + text);
        made.SetTreeId(++treeId);
        ASSERT_TRUE(made.SaveNewRow()) << text;

        clsDossierDbRelations sought(machine);
        sought.SetDbConnection(connection);
        sought.SetDbKey(text);
        ASSERT_TRUE(sought.OpenDataSource()) << text;
        if (Kept(text) != text) { // kept otherwise than it is asked for
            EXPECT_TRUE(sought.Eof()) << text;
            continue;
        }
        ASSERT_FALSE(sought.Eof()) << text;
        EXPECT_EQ(sought.DossierId(), key.DossierId());
        clsDossier dossier(machine);
        dossier.SetDbConnection(connection);
        dossier.SetDossierId(sought.DossierId());
        ASSERT_TRUE(dossier.OpenDataSource() && dossier.LoadData()) << text;
        EXPECT_EQ(dossier.TreeId(), treeId);
        EXPECT_EQ(dossier.DossierType(), std::string("A ") + text);
        ASSERT_TRUE(sought.DeleteCurrentRow()) << text;
        clsDossierDbRelations gone(machine);
        gone.SetDbConnection(connection);
        gone.SetDbKey(text);
        ASSERT_TRUE(gone.OpenDataSource()) << text;
        EXPECT_TRUE(gone.Eof()) << text;
    }
}

TEST_P(ModelOverEngines, RightsAndChecklistsComeBackAsTheyWereSaved) {
    for (const char* const text : hostile) {
        clsUserAuth saved(machine), loaded(machine);
        for (clsUserAuth* const auth : {&saved, &loaded}) {
            auth->SetDbConnection(connection);
            auth->SetUserId(text);
        }
        saved.SetRight("EditDossiers", "True");
        saved.SetRight("Print", text);
        ASSERT_TRUE(saved.SaveRights()) << text;
        ASSERT_TRUE(loaded.LoadRights()) << text;
        EXPECT_EQ(loaded.GetRight("EditDossiers") + loaded.GetRight("Print"),
                  std::string("True") + text);
    }
    clsUserAuth auth(machine);
    auth.SetDbConnection(connection);
    EXPECT_TRUE(auth.RenameUser(hostile[1], "piet"));
    EXPECT_TRUE(auth.RenameUser("piet", "Piet") && auth.RenameUser("Piet", "piet"));
    auth.SetUserId("piet");
    EXPECT_TRUE(auth.LoadRights() && auth.GetRight("Print") == hostile[1]);
    EXPECT_TRUE(auth.DeleteRights() && auth.LoadRights() && auth.GetRight("Print").empty());

    clsCheckListType list(machine);
    list.SetDbConnection(connection);
    EXPECT_EQ(list.GetType("A", "B"), 0);
    std::int16_t order = 9;
    for (const char* const text : hostile) list.CreateField(--order, text, 2, text, "tif");
    list.UpdateCurrentType();
    list.UpdateCurrentType(); // rewritten whole, not doubled
    clsCheckListType read(machine);
    read.SetDbConnection(connection);
    EXPECT_EQ(read.GetType("A", "B"), 0);
    ASSERT_EQ(read.CheckListFields().size(), std::size(hostile));
    for (std::size_t i = 0; i < std::size(hostile); ++i) {
        const clsField& field = *read.CheckListFields()[i];
        EXPECT_EQ(field.FieldDescription(), Kept(hostile[std::size(hostile) - 1 - i]));
        EXPECT_EQ(field.DescriptionsToCheck(), field.FieldDescription());
        EXPECT_EQ(field.NumberToRecieve(), 2);
    }
}

KAVIDEX_OVER_ENGINES(ModelOverEngines);

} // namespace kavidex::tests
