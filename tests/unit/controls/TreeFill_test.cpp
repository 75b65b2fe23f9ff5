// Showing a dossier: order, filters, pictures, selection.
#include "tests/unit/controls/TreeFixture.h"

namespace kavidex::controls {

TEST_F(TreeTest, FillsTheWindowInTheOrderOfTheModelWithRedrawSuspended) {
    MakeDossier();
    tree.AttachWindow(&window);
    EXPECT_EQ(window.Drawing(),
              "Dossier\n.Letters\n..a.tif\n..note\n.Mail\n..Old\n...b.msg\n.c.001\n");
    EXPECT_EQ(window.paintedAdds, 0);
    EXPECT_EQ(window.fills, 1);
    EXPECT_TRUE(window.At(root).expanded);
    EXPECT_FALSE(window.At(letters).expanded);
    EXPECT_EQ(window.status, "Dossier met aanwezige documenten");
}

TEST_F(TreeTest, ALongFillShowsTheBusyDialogAndLetsTheHostIn) {
    MakeDossier();
    for (int i = 0; i < 60; ++i) Add("tif", 0, "x", old);
    int refused = 0;
    window.onAdd = [&] { machine.clock.now.millisecond += 40; };
    machine.busy.onPump = [&] {
        if (refused++ > 0) return;
        tree.SetShowParentsOnly(true); // fills once more, from the beginning
        EXPECT_EQ(tree.AddTab("nu", root), nullptr) << "what is being shown stays as it is";
    };
    machine.busy.shown.clear(); // of the upgrade
    tree.AttachWindow(&window);
    EXPECT_EQ(machine.busy.shown.size(), 1U);
    EXPECT_FALSE(machine.busy.open);
    EXPECT_GT(refused, 0);
    EXPECT_EQ(window.Drawing(), "Dossier\n.Letters\n.Mail\n..Old\n");
}

TEST_F(TreeTest, ShowsFoldersOnlyByTheirTypes) {
    MakeDossier();
    ASSERT_NE(Add("usergroup", 0, "Group", root), 0);
    tree.AttachWindow(&window);
    tree.SetShowParentsOnly(true);
    EXPECT_EQ(window.Drawing(), "Dossier\n.Letters\n.Mail\n..Old\n.Group\n");
    tree.SetShowParentsOnlyTypes("users;tab");
    EXPECT_EQ(window.Drawing(), "Dossier\n.Letters\n.Mail\n..Old\n");
    tree.SetShowParentsOnlyTypes("TAB");
    EXPECT_EQ(window.Drawing(), "") << "the list is compared as it stands";
    tree.SetShowParentsOnlyTypes("usergroup");
    EXPECT_EQ(window.Drawing(), "Group\n") << "a hidden parent lends its place";
}

TEST_F(TreeTest, PicturesGoByItemType) {
    MakeDossier();
    const auto second = Add("TIF", 15, "d.tif", root);
    const auto odd = Add("xyz", 16, "e.xyz", root);
    const auto user = Add("user", 17, "jansen", root);
    window.withoutIcon = {"xyz"};
    tree.AttachWindow(&window);
    EXPECT_EQ(window.ImageOf(letters), "closedtab");
    EXPECT_EQ(window.images.at(static_cast<std::size_t>(window.At(letters).expandedImage)),
              "opentab");
    EXPECT_EQ(window.ImageOf(letter), "tif");
    EXPECT_EQ(window.ImageOf(second), "tif");
    EXPECT_EQ(window.ImageOf(numbered), "001key");
    EXPECT_EQ(window.ImageOf(note), "attachtment");
    EXPECT_EQ(window.At(note).image, window.At(note).expandedImage);
    EXPECT_EQ(window.ImageOf(odd), "unknown");
    EXPECT_EQ(window.ImageOf(user), "SelectedUser");
    EXPECT_EQ(window.iconsAsked, (std::vector<std::string>{"tif", "msg", "001", "xyz"}));
}

TEST_F(TreeTest, AHostMayCloseTheDossierWhenItHearsThatAnIconFailed) {
    MakeDossier();
    tree.AttachWindow(&window);
    window.failingIcon = "xyz";
    machine.messages.meanwhile = [&] { tree.SetTreeId(0); };
    Add("xyz", 16, "e.xyz", root);
    EXPECT_EQ(machine.messages.shown.size(), 1U) << Told();
    EXPECT_EQ(window.Drawing(), "");
    EXPECT_FALSE(tree.Tree());
}

TEST_F(TreeTest, ARefusedNodeIsToldOnceAndTheFillGoesOn) {
    MakeDossier();
    window.refusedText = "Letters";
    tree.AttachWindow(&window);
    EXPECT_EQ(window.Drawing(), "Dossier\n.a.tif\n.note\n.Mail\n..Old\n...b.msg\n.c.001\n");
    ASSERT_EQ(machine.messages.shown.size(), 1U);
    EXPECT_EQ(machine.messages.shown[0].caption, "Error in fncItemToTreeView");

    // With a translator the caption speaks its language, also that of what lies below the control.
    struct Marking : Translator {
        std::string Translate(std::string_view text, const std::vector<std::string>& v) override {
            return "<" + platform::FillPlaceholders(text, v) + ">";
        }
    };
    tree.SetTranslate(std::make_shared<Marking>());
    tree.Refresh();
    EXPECT_EQ(machine.messages.shown.back().caption, "<Error in fncItemToTreeView>");
    EXPECT_TRUE(machine.log.Has("Error in fncItemToTreeView")); // for the maintainer, untranslated
    database->Execute("drop table tblTreeItem");
    EXPECT_EQ(tree.Tree()->fncLoadCollectionFromDatabase(root), nullptr);
    EXPECT_EQ(machine.messages.shown.back().caption, "<Error in fncLoadCollectionFromDatabase>");
}

TEST_F(TreeTest, SelectionIsReportedOncePerChangeWithItsPath) {
    MakeDossier();
    tree.AttachWindow(&window);
    tree.NodeSelected(message);
    tree.NodeSelected(message);
    tree.NodeSelected(letters);
    EXPECT_EQ(selections,
              (std::vector<std::string>{R"(Dossier\Mail\Old\b.msg)", R"(Dossier\Letters)"}));
    tree.SetOpenDoubleClick(true);
    tree.NodeSelected(letter);
    EXPECT_EQ(selections.size(), 2U) << "a document waits for its double click";
    tree.NodeActivated(letter);
    EXPECT_EQ(selections.back(), R"(Dossier\Letters\a.tif)");
}

TEST_F(TreeTest, StepsThroughTheDocumentsInTreeOrder) {
    MakeDossier();
    EXPECT_TRUE(tree.SetNextChildItem());
    EXPECT_EQ(tree.SelectedItem()->Id(), letter);
    EXPECT_FALSE(tree.SetPreviousChildItem());
    for (const auto expected : {note, message, numbered}) {
        EXPECT_TRUE(tree.SetNextChildItem());
        EXPECT_EQ(tree.SelectedItem()->Id(), expected);
    }
    EXPECT_FALSE(tree.SetNextChildItem());
    EXPECT_TRUE(tree.SetPreviousChildItem());
    EXPECT_EQ(tree.SelectedItem()->Id(), message);
    EXPECT_TRUE(tree.SetHighLightToItem(letters));
    EXPECT_FALSE(tree.SetHighLightToItem(999));
    EXPECT_EQ(selections.size(), 5U) << "highlighting raises nothing";
}

TEST_F(TreeTest, RefreshKeepsSelectionAndOpenFolders) {
    MakeDossier();
    tree.AttachWindow(&window);
    window.Expand(window.Find(mail), true);
    tree.NodeSelected(message);
    database->Execute("Update tblTreeItem set Description = 'changed' where TreeItemId = " +
                      std::to_string(message));
    tree.Refresh();
    EXPECT_EQ(window.At(message).text, "changed");
    EXPECT_TRUE(window.At(mail).expanded);
    EXPECT_FALSE(window.At(letters).expanded);
    EXPECT_EQ(window.selected, window.Find(message));
    EXPECT_EQ(selections.size(), 1U);
    tree.SetFullExpand(true);
    EXPECT_TRUE(window.At(letters).expanded);
}

TEST_F(TreeTest, FoldersComeFirstOnlyWhenSortedByNameAndKeptApart) {
    MakeDossier();
    Add("tif", 21, "0.tif", root);
    tree.AttachWindow(&window);
    tree.SetOrderByName(true);
    EXPECT_EQ(window.Drawing(), "Dossier\n.Letters\n..a.tif\n..note\n.Mail\n..Old\n...b.msg\n"
                                ".0.tif\n.c.001\n");
    tree.SetFoldersAndDocs(true);
    EXPECT_EQ(window.Drawing(), "Dossier\n.0.tif\n.c.001\n.Letters\n..a.tif\n..note\n.Mail\n..Old\n"
                                "...b.msg\n");
}

} // namespace kavidex::controls
