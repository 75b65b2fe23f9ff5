// What the user does with the items: create, rename, delete, move, menu, drag and drop.
#include "controls/tree/DefaultTabs.h"
#include "tests/fakes/MapBag.h"
#include "tests/unit/controls/TreeFixture.h"

namespace kavidex::controls {

namespace {

std::string Names(const PopupMenu& menu) {
    std::string names;
    for (const auto& entry : menu) names += (entry.IsSeparator() ? "-" : entry.name) + " ";
    return names;
}

} // namespace

TEST_F(TreeTest, SaysWhatToDoAboutTablesThatNobodyBroughtUpToDate) {
    tree.SetDbConnection(data::EmbeddedDatabase::CreateInMemory());
    EXPECT_FALSE(tree.CreateNew("Dossier", ""));
    ASSERT_EQ(machine.messages.shown.size(), 1u) << Told();
    const auto& shown = machine.messages.shown.front();
    EXPECT_EQ(shown.caption, "Error in CreateNew");
    EXPECT_NE(shown.text.find("needed is 1.1.8"), std::string::npos) << shown.text;
    EXPECT_NE(shown.text.find("binder"), std::string::npos) << shown.text;
}

TEST_F(TreeTest, ShowsTheRootOfANewTreeOpenAndLeavesItAsTheUserHasIt) {
    tree.AttachWindow(&window);
    MakeDossier();
    const auto handle = window.Find(root);
    EXPECT_TRUE(window.IsExpanded(handle));
    window.Expand(handle, false);
    tree.AddTab("Later", root);
    EXPECT_FALSE(window.IsExpanded(handle));
}

TEST_F(TreeTest, CreatesANoteAndAFolderFromTheMenu) {
    MakeDossier();
    tree.AttachWindow(&window);
    std::vector<TreeItemInfo> created;
    const auto token =
        tree.EvItemCreated.Subscribe([&](const TreeItemInfo& info) { created.push_back(info); });
    MakeStore();
    tree.NodeSelected(letter); // its folder takes the new item
    std::int32_t toWrite = 0;
    const auto made = tree.NoteMade.Subscribe([&](std::int32_t id) { toWrite = id; });
    tree.ChooseMenu({"mnuNew", 1, "", 0, true, true, false});
    ASSERT_EQ(created.size(), 1U);
    EXPECT_EQ(toWrite, created[0].id);
    EXPECT_EQ(created[0].description, "Nieuwe notitie 15-11-2026 14:05");
    EXPECT_EQ(created[0].nodeFullPath, R"(Dossier\Letters\Nieuwe notitie 15-11-2026 14:05)");
    EXPECT_EQ(selections.back(), created[0].nodeFullPath);
    EXPECT_EQ(Stored("Select InsertedBy from tblDocument where DocId = " +
                     std::to_string(created[0].itemId)),
              "jansen");
    tree.NodeSelected(mail);
    tree.ChooseMenu({"mnuNew", 0, "", 0, true, true, false});
    ASSERT_EQ(created.size(), 2U);
    EXPECT_EQ(created[1].nodeFullPath, R"(Dossier\Mail\Nieuwe map)");
    EXPECT_EQ(window.edited, window.Find(created[1].id)) << "a new folder is named at once";
}

TEST_F(TreeTest, RenamesInTheDatabaseUnlessRefused) {
    MakeDossier();
    tree.AttachWindow(&window);
    std::string before;
    const auto token = tree.EvItemRenamed.Subscribe(
        [&](const TreeItemInfo&, const std::string& text) { before = text; });
    EXPECT_TRUE(tree.LabelEdited(letter, "It's é.tif"));
    EXPECT_EQ(before, "a.tif");
    EXPECT_EQ(window.At(letter).text, "It's é.tif");
    EXPECT_EQ(
        Stored("Select Description from tblTreeItem where TreeItemId = " + std::to_string(letter)),
        "It's é.tif");
    EXPECT_FALSE(tree.LabelEdited(letter, "  "));
    const auto nameless = Add("tif", 40, "", letters);
    EXPECT_TRUE(tree.LabelEdited(nameless, "Named"));
    tree.Refresh();
    EXPECT_EQ(window.At(nameless).text, "Named");
    tree.SetReadOnly(true);
    EXPECT_FALSE(tree.LabelEdited(letter, "x"));
    EXPECT_FALSE(tree.CanEditLabel(letter));
}

TEST_F(TreeTest, DeletingSelectsTheNextThenThePreviousThenTheParent) {
    MakeDossier();
    tree.AttachWindow(&window);
    const auto third = Add("tif", 30, "z.tif", letters);
    window.Expand(window.Find(letters), true);
    std::vector<std::int32_t> deleted;
    const auto token =
        tree.EvItemDelete.Subscribe([&](const TreeItemInfo& info) { deleted.push_back(info.id); });
    tree.NodeSelected(note);
    selections.clear();
    for (const auto* expected :
         {R"(Dossier\Letters\z.tif)", R"(Dossier\Letters\a.tif)", R"(Dossier\Letters)"}) {
        EXPECT_TRUE(tree.DeleteItem());
        EXPECT_EQ(selections.back(), expected);
    }
    EXPECT_EQ(deleted, (std::vector<std::int32_t>{note, third, letter}));
    EXPECT_EQ(selections.size(), 3U);
    EXPECT_FALSE(window.At(letters).expanded) << "an emptied folder is closed";
    EXPECT_EQ(
        Stored("Select ParentId from tblTreeItem where TreeItemId = -" + std::to_string(note)),
        std::to_string(-letters));
    EXPECT_FALSE(tree.DeleteItem(root)) << "the tree's own folder stays";
}

TEST_F(TreeTest, DeletesTheCollectedItemsInTheirOrder) {
    MakeDossier();
    tree.AttachWindow(&window);
    tree.NodeSelected(numbered);
    tree.NodeToggled(mail);
    tree.NodeToggled(message); // goes with its folder
    ASSERT_EQ(tree.SelectedItems().size(), 3U);
    EXPECT_EQ(tree.SelectedItems().front()->Id(), numbered);
    EXPECT_TRUE(tree.DeleteItem());
    EXPECT_EQ(window.Drawing(), "Dossier\n.Letters\n..a.tif\n..note\n");
    EXPECT_TRUE(tree.SelectedItems().size() == 1 && tree.SelectedItem()->Id() == letters);
}

TEST_F(TreeTest, ShowsDeletedItemsOnRequestAndLeavesThemAlone) {
    MakeDossier();
    tree.AttachWindow(&window);
    tree.DeleteItem(letter);
    for (const auto& option : TreeOptionTable())
        if (option.key == "ShowDeleted")
            tree.ChooseMenu({std::string(option.menuEntry), 0, "", 1, true, true, false});
    EXPECT_EQ(window.At(-letter).text, "a.tif VERWIJDERD");
    EXPECT_FALSE(tree.CanEditLabel(-letter));
    EXPECT_EQ(platform::GetRegSetting(machine, "Kavidex", "TreeSettings", "ShowDeleted", ""),
              "True");
}

TEST_F(TreeTest, CutAndPasteMoveTheItems) {
    MakeDossier();
    tree.AttachWindow(&window);
    tree.NodeSelected(mail);
    EXPECT_TRUE(tree.CommandKey('X', true, false));
    tree.NodeSelected(note);
    EXPECT_TRUE(tree.CommandKey('V', true, false));
    EXPECT_EQ(window.Drawing(),
              "Dossier\n.Letters\n..a.tif\n..note\n..Mail\n...Old\n....b.msg\n.c.001\n");
    EXPECT_EQ(Stored("Select ParentId from tblTreeItem where TreeItemId = " + std::to_string(mail)),
              std::to_string(letters));
    EXPECT_FALSE(tree.CommandKey('Q', true, false));
}

TEST_F(TreeTest, ADragWithinTheTreeMovesButNeverIntoItself) {
    MakeDossier();
    tree.AttachWindow(&window);
    int handled = 0, dropped = 0;
    const auto one = tree.EvItemDroppedAndHandled.Subscribe([&] { ++handled; });
    const auto two = tree.EvItemDropped.Subscribe([&](const DropEvent&) { ++dropped; });
    EXPECT_FALSE(tree.BeginDrag(root));
    ASSERT_TRUE(tree.BeginDrag(mail));
    const DropData data{true, false, tree.DropString(), {}};
    EXPECT_EQ(tree.DragOver(DragState::Over, data, message), drop::none);
    EXPECT_EQ(tree.DragOver(DragState::Over, data, root), drop::none);
    EXPECT_EQ(tree.DragOver(DragState::Over, data, note), drop::move);
    EXPECT_EQ(tree.Dropped(data, old), drop::move);
    EXPECT_EQ(tree.GetParent(mail)->Id(), root);
    EXPECT_EQ(tree.Dropped(data, letters), drop::move);
    tree.CompleteDrag();
    EXPECT_EQ(tree.GetParent(mail)->Id(), letters);
    EXPECT_EQ(tree.NodeFullPath(message), R"(Dossier\Letters\Mail\Old\b.msg)");
    EXPECT_EQ(handled, 2);
    EXPECT_EQ(dropped, 0);
}

TEST_F(TreeTest, ADropFromOutsideGoesToTheHostOrIsRefused) {
    MakeDossier();
    tree.AttachWindow(&window);
    std::vector<std::string> seen;
    const auto token = tree.EvItemDropped.Subscribe([&](const DropEvent& event) {
        seen.push_back(std::to_string(event.targetId) + (event.fromMail ? " mail " : " ") +
                       (event.data.files.empty() ? event.data.text : event.data.files[0]));
    });
    const auto text = [](std::int32_t id) { return std::to_string(id); };
    EXPECT_EQ(tree.Dropped({false, true, "", {R"(C:\a.tif)"}}, letter), drop::copy);
    window.topWindow = "Microsoft outlook";
    tree.Dropped({true, false, "Subject", {}}, 0);
    tree.Dropped({true, true, "Subject", {R"(C:\a.tif)"}}, mail);
    EXPECT_EQ(seen, (std::vector<std::string>{text(letters) + R"( C:\a.tif)",
                                              text(root) + " mail Subject",
                                              text(mail) + R"( C:\a.tif)"}));
    tree.SetAllowAddExternal(false);
    EXPECT_EQ(tree.Dropped({false, true, "", {R"(C:\a.tif)"}}, letters), drop::none);
    ASSERT_EQ(machine.messages.shown.size(), 1U);
    EXPECT_EQ(machine.messages.shown[0].text,
              "U heeft geen bevoegdheid om documenten naar het dossier te verslepen");
    EXPECT_EQ(machine.messages.shown[0].caption, "Geen authorisatie");
    EXPECT_EQ(machine.messages.shown[0].icon, platform::Icon::Exclamation);
    EXPECT_EQ(seen.size(), 3U);
}

TEST_F(TreeTest, TheMenuFollowsTheNodeTheRightsAndTheOptions) {
    MakeDossier();
    tree.AttachWindow(&window);
    tree.ContextMenu(letters, 0, 0);
    EXPECT_EQ(Names(window.menu),
              "mnuCut mnuCopy mnuPaste mnuDelete - mnuCopySpecial mnuCopyLink - mnuShowExternal "
              "mnuRename mnuPrint mnuProperties - mnuExpand mnuOptions "
              "mnuExpandAllways mnuShowChildCount mnuAllwaysShowExt mnuShowInOrg mnusortByName "
              "mnuOpenDoubleClick mnuShowDeleted mnuList - mnuNew mnuNew ");
    EXPECT_EQ(FindEntry(window.menu, "mnuNew", 1)->caption, "Nieuwe notitie");
    EXPECT_EQ(selections.back(), R"(Dossier\Letters)") << "the right button selects";
    window.Expand(window.Find(letters), true);
    window.choose = "mnuCollaps";
    tree.ContextMenu(letters, 0, 0);
    EXPECT_FALSE(window.At(letters).expanded);
    window.choose.clear();
    tree.ContextMenu(std::nullopt, 0, 0);
    for (const auto* name : {"mnuExpand", "mnuCollaps", "mnuShowExternal", "mnuProperties"})
        EXPECT_EQ(FindEntry(window.menu, name), nullptr) << name;

    tree.SetAllowCreateFolders(false);
    tree.SetDeleteEnabled(false);
    auto menu = tree.PrepareMenu(letters);
    EXPECT_FALSE(FindEntry(menu, "mnuNew", 0)->enabled);
    EXPECT_TRUE(FindEntry(menu, "mnuNew", 1)->enabled);
    EXPECT_FALSE(FindEntry(menu, "mnuNew", 2)->visible);
    EXPECT_FALSE(FindEntry(menu, "mnuDelete")->enabled);
    EXPECT_TRUE(FindEntry(menu, "mnuRename")->enabled);
    EXPECT_FALSE(FindEntry(menu, "mnuShowChildCount")->checked);
    tree.ChooseMenu(*FindEntry(menu, "mnuShowChildCount"));
    menu = tree.PrepareMenu(letters);
    EXPECT_TRUE(FindEntry(menu, "mnuShowChildCount")->checked);
    EXPECT_EQ(window.At(letters).text, "Letters (2)");
    EXPECT_EQ(window.At(letter).text, "a.tif");
    Add("tif", 20, "new.tif", letters);
    EXPECT_EQ(window.At(letters).text, "Letters (3)");
    EXPECT_EQ(tree.EditText(letters), "Letters");
    EXPECT_TRUE(tree.CommandKey(0x2E, false, false));
    EXPECT_NE(tree.GetNode(letters), nullptr) << "the key asks the menu";
}

TEST_F(TreeTest, PropertiesComeBackFromTheBagAndMissingOnesFromTheWorkstation) {
    tests::MapBag bag;
    platform::SaveRegFlag(machine, "ViewerSetting", "OrderByName", true);
    ctrlTree fresh(machine);
    fresh.LoadProperties(bag);
    EXPECT_TRUE(fresh.OrderByName());
    EXPECT_FALSE(fresh.FullExpand());
    EXPECT_EQ(fresh.NameForInsert(), "Nieuwe map;Nieuwe notitie");
    std::vector<std::string> reports;
    const auto token =
        fresh.PropertyChanged.Subscribe([&](std::string_view name) { reports.emplace_back(name); });
    fresh.SetShowMail(false);
    fresh.SetShowMail(false);
    fresh.SetAllowedTypes("tif;msg");
    fresh.SetTreeId(70000);
    EXPECT_EQ(reports, (std::vector<std::string>{"ShowMail", "AllowedTypes", "TreeId"}));
    fresh.SaveProperties(bag);
    EXPECT_EQ(bag.values.size(), 40U);
    EXPECT_TRUE(bag.values.contains("AllreadySelected"));
    EXPECT_FALSE(bag.values.contains("EmailAddress"));
    ctrlTree again(machine);
    again.LoadProperties(bag);
    EXPECT_FALSE(again.ShowMail());
    EXPECT_EQ(again.AllowedTypes(), "tif;msg");
    EXPECT_EQ(again.TreeId(), 70000);
}

TEST(DefaultTabs, TokensAreFilledByTimeAndNumber) {
    const platform::DateTime now{2026, 3, 5, 9, 7, 8, 0};
    EXPECT_EQ(FillTokens("%DD-%MM-%YYYY %hh:%mm (%ss) %####/%##", now, 42),
              "05-03-2026 09:07 (08) 0042/42");
    EXPECT_EQ(FillTokens("100% #1", now, 3), "100% #1");
}

TEST_F(TreeTest, DefaultFoldersComeFromAListOrFromTheDossierType) {
    tree.SetDbConnection(database);
    ASSERT_TRUE(tree.CreateNew("Plain", ""));
    EXPECT_TRUE(tree.AllItems().empty());
    database->Execute("Insert into tblDossierTypes (DossierType, TypeId) values ('It''s', 7)");
    database->Execute("Insert into tblDossierTabs (DossierTypeId, TabDescription, IntOrder) "
                      "values (7, 'Second', 2)");
    database->Execute("Insert into tblDossierTabs (DossierTypeId, TabDescription, IntOrder) "
                      "values (7, 'First %YYYY', 1)");
    tree.SetDossierType("It's"); // the list that is given when none is
    ASSERT_TRUE(tree.CreateNew("Typed", ""));
    const auto items = tree.AllItems();
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0]->Description(), "First 2026");
    EXPECT_EQ(items[1]->Description(), "Second");
}

} // namespace kavidex::controls
