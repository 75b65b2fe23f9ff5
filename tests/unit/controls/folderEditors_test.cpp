// The editors of default folders and of checklists, up to the dossier that is made of them.
#include "tests/unit/controls/BinderFixture.h"

#include "controls/admin/ctlChecklistEditor.h"
#include "controls/admin/ctlDefaultFolders.h"
#include "controls/checklist/ctlChecklist.h"
#include "model/Checklist.h"

namespace kavidex::controls {

namespace {

struct FolderEditors : Binder {
    tests::FakeForms forms;

    template <class Editor>
    std::unique_ptr<Editor> Open() {
        return forms.EditorOn<Editor>(machine, connection);
    }
    static std::int32_t IdOf(AdminControl& editor, const char* field, std::string_view text) {
        for (const auto& item : editor.Form()[field].Items())
            if (item.Cell() == text) return item.id;
        return 0;
    }
    // "Zaak 'x'" with Post, Post\In %YYYY, Polis.
    void Fill(ctlDefaultFolders& editor) {
        forms.users = {[](tests::FormUser& user) {
            user.Type("txtName", "Zaak 'x'");
            user.Click("btnOk");
        }};
        tests::FormUser user(editor.Form());
        user.Click("btnNewType");
        for (const char* name : {"Post", "In %YYYY", "Polis"}) {
            user.Click("btnNew");
            ASSERT_TRUE(user.EditItem("treFolders", user.edited, name)) << name;
        }
        user.Choose("treFolders", IdOf(editor, "treFolders", "In %YYYY"));
        EXPECT_EQ(user.Text("lblPreview"), "Vandaag: In 2026");
        user.PressKey("treFolders", 0x27, true); // below the one before it
        user.Type("txtTabType", "Inkomend");
    }
    std::string Rows() {
        std::string text;
        for (const auto& tab :
             model::TabsOfType(model::Store(connection),
                               model::FindDossierType(machine, connection, "Zaak 'x'").id))
            text += tab.description + "=" + tab.type + (tab.automatic ? " " : "- ");
        return text;
    }
    std::string Names(AdminControl& editor) {
        std::string text;
        for (const auto& item : editor.Form()["treFolders"].Items())
            text += (item.parent ? ">" : "") + item.Cell() + " ";
        return text;
    }
};

} // namespace

TEST_F(FolderEditors, WhatIsEditedIsWhatANewDossierBeginsWith) {
    const auto editor = Open<ctlDefaultFolders>();
    Fill(*editor);
    tests::FormUser user(editor->Form());
    const auto id = [&](const char* name) { return IdOf(*editor, "treFolders", name); };
    EXPECT_TRUE(
        user.Drag("treFolders", {id("Polis")}, "treFolders", id("Post"), forms::Place::Before));
    EXPECT_EQ(Names(*editor), "Polis Post >In %YYYY ");
    EXPECT_FALSE(user.Drag("treFolders", {id("Post")}, "treFolders", id("In %YYYY")))
        << "into itself";
    EXPECT_FALSE(user.EditItem("treFolders", id("Polis"), "post")) << "there is one";
    EXPECT_FALSE(user.EditItem("treFolders", id("Polis"), "a\\b"));
    EXPECT_FALSE(user.EditItem("treFolders", id("Polis"), std::string(256, 'p').c_str()));
    EXPECT_TRUE(editor->Save());
    EXPECT_EQ(Rows(), "Polis= Post= Post\\In %YYYY=Inkomend ");

    user.TickItem("treFolders", id("Polis"), false); // offered only
    user.Choose("treFolders", id("Polis"));
    user.PressKey("treFolders", 0x28, true); // down
    EXPECT_TRUE(editor->Save());
    EXPECT_EQ(Rows(), "Post= Post\\In %YYYY=Inkomend Polis=- ");

    binder->SetDossierType("Zaak 'x'");
    ASSERT_EQ(Binder::Open("K1"), 0);
    const auto root = binder->treCorr().Tree()->Item()->ChildCollection();
    ASSERT_EQ(root->Count(), 1);
    ASSERT_EQ(root->Item(1)->ChildCollection()->Count(), 1);
    EXPECT_EQ(root->Item(1)->ChildCollection()->Item(1)->Description(), "In 2026");

    // Another changed it meanwhile; what he made stays.
    const auto other = Open<ctlDefaultFolders>();
    tests::FormUser his(other->Form());
    his.Choose("treFolders", IdOf(*other, "treFolders", "Polis"));
    his.PressKey("treFolders", 0x2E);
    EXPECT_TRUE(other->Save());
    user.EditItem("treFolders", id("Polis"), "Polissen");
    EXPECT_FALSE(editor->Save());
    EXPECT_TRUE(Told("'Zaak 'x'' is intussen door iemand anders gewijzigd"));
    const auto told = machine.messages.shown.size();
    user.Click("btnDeleteType");
    EXPECT_EQ(machine.messages.shown.size(), told + 2);
    EXPECT_EQ(Rows(), "Post= Post\\In %YYYY=Inkomend ");
    user.Click("btnUndo");
    EXPECT_EQ(Names(*editor), "Post >In %YYYY ");

    tests::On<ctlDefaultFolders> dialog(machine, connection);
    forms.users = {[](tests::FormUser& sees) { EXPECT_TRUE(sees.CanUse("btnNewType")); }};
    dialog.ShowModal(forms);

    // A folder without a row of its own is made with what it holds, not by itself.
    connection->Execute("delete from tblDossierTabs where TabDescription = 'Post'");
    connection->Execute("update tblDossierTabs set AutoCreate = '0'");
    editor->Refresh();
    user.Click("btnNew");
    EXPECT_TRUE(editor->Save());
    EXPECT_EQ(Rows(), "Post=- Post\\In %YYYY=Inkomend- Nieuwe map= ");
}

TEST_F(FolderEditors, AChecklistIsEditedInItsRowsAndShownInTheBinder) {
    const auto folders = Open<ctlDefaultFolders>();
    Fill(*folders);
    ASSERT_TRUE(folders->Save());
    const auto editor = Open<ctlChecklistEditor>();
    tests::FormUser user(editor->Form());
    user.Type("cmbTab", "Inkomend");
    user.Click("btnNew");
    user.EditItem("lstLines", 1, "Brief");
    EXPECT_FALSE(user.EditItem("lstLines", 1, "x", 2)) << "no number";
    user.EditItem("lstLines", 1, "2", 2);
    user.Click("btnNew");
    user.EditItem("lstLines", 2, "brief");
    EXPECT_FALSE(editor->Save());
    EXPECT_TRUE(Told("'brief' staat er tweemaal in"));
    user.EditItem("lstLines", 2, "Polis 100%_*");
    user.EditItem("lstLines", 2, "Nee", 3);
    EXPECT_FALSE(user.EditItem("lstLines", 2, "3", 2)) << "of what nobody has to have";
    EXPECT_EQ(editor->Form()["lstLines"].Items()[1].texts[2], "");
    user.PressKey("lstLines", 0x26, true); // up
    EXPECT_TRUE(editor->Save());
    std::string stored;
    for (const auto& field : model::LoadChecklist(machine, connection, "Zaak 'x'^Inkomend"))
        stored += field->FieldDescription() + "=" + std::to_string(field->NumberToRecieve()) + " ";
    EXPECT_EQ(stored, "Polis 100%_*=0 Brief=2 ");

    user.EditItem("lstLines", 1, "Ja", 3);
    connection->Execute("delete from tblCheckListFields where FieldDescription = 'Brief'");
    EXPECT_FALSE(editor->Save());
    EXPECT_TRUE(Told("intussen door iemand anders gewijzigd"));
    EXPECT_EQ(Count("tblCheckListFields"), 1);

    binder->SetDossierType("Zaak 'x'");
    ASSERT_EQ(Binder::Open("K1"), 0);
    binder->SetShowCheckList("Zaak 'x'");
    const auto& shown = binder->Checklist().Form()["lstItems"].Items();
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_EQ(shown[0].texts[4], "In 2026") << "the folder that was made of the type's";

    // Its lists outlive a type, with the folders that they are for, and can be emptied then.
    connection->Execute("update tblCheckListFields set TabType = 'zaak ''X''^inkomend'");
    const auto left = Open<ctlChecklistEditor>();
    tests::FormUser his(left->Form());
    EXPECT_EQ(his.Text("cmbTab"), "Inkomend") << "the one that is filled";
    tests::FormUser(folders->Form()).Click("btnDeleteType");
    EXPECT_EQ(Count("tblDossierTypes"), 0);
    left->Refresh();
    EXPECT_EQ(his.Text("cmbTab"), "Inkomend");
    binder->Checklist().Refresh();
    EXPECT_EQ(shown[0].texts[4], "In 2026");
    his.Choose("lstLines", 1);
    his.PressKey("lstLines", 0x2E);
    EXPECT_TRUE(left->Save());
    EXPECT_EQ(Count("tblCheckListFields") + Count("tblDossierTabs"), 0);
    EXPECT_TRUE(left->Form()["cmbType"].Items().empty());
    EXPECT_EQ(his.Text("cmbType") + his.Text("cmbTab"), "");
}

} // namespace kavidex::controls
