// The binder control's logic over the embedded engine: no window, real files.
#include "controls/viewer/external/ctrlExtViewer.h"
#include "platform/ErrorNumber.h"
#include "tests/fakes/Failures.h"
#include "tests/fakes/RecordingConnection.h"
#include "tests/unit/controls/BinderFixture.h"

namespace kavidex::controls {
namespace {

TEST_F(Binder, MakesADossierOnceAndFindsItAgainByItsKey) {
    ASSERT_EQ(Open("Klant-4711"), 0);
    const auto tree = binder->Id();
    EXPECT_GT(tree, 0);
    EXPECT_EQ(binder->treCorr().Tree()->Description(), "Dossier");
    EXPECT_TRUE(binder->Usable());
    binder = Make();
    ASSERT_EQ(Open("Klant-4711"), 0);
    EXPECT_EQ(binder->Id(), tree);
    EXPECT_EQ(Count("tblTree"), 1);
    ASSERT_EQ(Open("Klant-4712"), 0);
    EXPECT_NE(binder->Id(), tree);
    EXPECT_EQ(binder->CloseObject(), 0);
    EXPECT_FALSE(binder->Usable());
    EXPECT_TRUE(connection->IsOpen()) << "the host's connection stays open";
}

TEST_F(Binder, RekeysTheDossierOfAnOldKey) {
    ASSERT_EQ(Open("old"), 0);
    const auto tree = binder->Id();
    ASSERT_EQ(Open("new", "old"), 0);
    EXPECT_EQ(binder->Id(), tree);
    EXPECT_EQ(Count("tblDossierDbRelation"), 1);
    ASSERT_EQ(Open("new"), 0);
    EXPECT_EQ(binder->Id(), tree);
}

TEST_F(Binder, RefusesAnEmptyKeyAndAMissingConnection) {
    ASSERT_EQ(Open("first"), 0);
    EXPECT_EQ(Open(""), -1) << "no key must not open whichever dossier comes first";
    binder->SetDbConnection(nullptr);
    EXPECT_EQ(Open("first"), -1);
    EXPECT_EQ(binder->Id(), 0);
}

TEST_F(Binder, CompletesADossierWhoseCreationWasCutOff) {
    connection->Execute("Insert into tblDossierDbRelation (DbKey, dbRelGuid) Values ('cut', 'g')");
    connection->Execute("update tblDossierDbRelation set DbRelId = DossierId where DbKey = 'cut'");
    ASSERT_EQ(Open("cut"), 0);
    const auto tree = binder->Id();
    ASSERT_EQ(Open("cut"), 0);
    EXPECT_EQ(binder->Id(), tree);
    EXPECT_EQ(Count("tblDossierDbRelation"), 1);
}

// Another binder asks for the same new key right after this one has looked for it.
TEST_F(Binder, OneNewKeyGetsOneDossierThoughTwoAskAtOnce) {
    struct Meanwhile : tests::RecordingConnection {
        using RecordingConnection::RecordingConnection;
        std::string after;
        std::function<void()> work;
        data::RecordsetPtr Open(const data::Command& command) override {
            auto rows = RecordingConnection::Open(command);
            if (work && command.text.starts_with(after)) std::exchange(work, nullptr)();
            return rows;
        }
    };
    const auto other = Make();
    for (const std::string table : {"tblDossierDbRelation", "tblDossierRelations"}) {
        const auto mine = std::make_shared<Meanwhile>("", connection);
        binder = std::make_unique<ctrlCorrespondence>(machine);
        binder->SetDbConnection(mine);
        mine->after = "select * from " + table + " where";
        mine->work = [&] { EXPECT_EQ(other->OpenOrCreate(table, "Dossier", "Post", "", ""), 0); };
        ASSERT_EQ(Open(table), 0);
        EXPECT_FALSE(mine->work);
        EXPECT_GT(binder->Id(), 0);
        EXPECT_EQ(binder->Id(), other->Id()) << table;
        EXPECT_TRUE(binder->treCorr().Tree()->GetItem(0, "Post"));
        EXPECT_EQ(binder->ExternalId(), table);
        ASSERT_EQ(Open(table), 0);
        EXPECT_EQ(binder->Id(), other->Id());
    }
    EXPECT_EQ(Count("tblDossierDbRelation where DbRelId > 0"), 2);
    EXPECT_EQ(Count("tblDossierRelations where RelId > 0"), 2);
    EXPECT_TRUE(machine.messages.shown.empty());
}

TEST_F(Binder, FilesIntoTheFolderOfAnIdOrANameAndRefusesUnknownOnes) {
    ASSERT_EQ(Open("key"), 0);
    const auto folder = binder->treCorr().AddTab("Post", Root());
    ASSERT_NE(folder, nullptr);
    const auto file = File("brief.txt");
    EXPECT_EQ(binder->AddFiles({file}, "", folder->Id(), false, false), 0);
    EXPECT_EQ(binder->AddFiles({file}, "post", 0, true, false), 0);
    ASSERT_EQ(folder->ChildCollection()->Count(), 2);
    EXPECT_EQ(folder->ChildCollection()->Item(2)->Description(), "Gescand document");
    EXPECT_EQ(binder->AddFiles({file}, "", 987654, false, false), addFiles::noFolder);
    EXPECT_EQ(binder->AddFiles({file}, "", folder->ChildCollection()->Item(1)->Id(), false, false),
              addFiles::noFolder);
    EXPECT_TRUE(Told("Document zijn niet correct toegevoegd (Fout -2)"));
    EXPECT_TRUE(binder->ExistItem(folder->Id()));
    EXPECT_FALSE(binder->ExistItem(987654));
    EXPECT_EQ(Count("tblDocument"), 2);
}

TEST_F(Binder, ABreakInTheMiddleIsToldForEveryFileThatWasNotReached) {
    ASSERT_EQ(Open("key"), 0);
    machine.busy.onProgress = [](int done) {
        if (done == 1) throw platform::Error(platform::errors::fail, "broken window");
    };
    const auto add = [&] {
        return binder->AddFiles({File("een.txt"), File("twee.txt"), File("drie.txt")}, "", 0, false,
                                true);
    };
    EXPECT_EQ(add(), addFiles::notFiled);
    EXPECT_TRUE(Told("twee.txt: niet opgeslagen") && Told("drie.txt: niet opgeslagen"));
    EXPECT_TRUE(machine.log.Has("AddFiles", "broken window"));
    EXPECT_FALSE(Told("een.txt"));
    EXPECT_EQ(binder->ContainsDocuments(""), 1);
    EXPECT_FALSE(machine.busy.open);
    machine.busy.onProgress = nullptr;
    EXPECT_EQ(add(), addFiles::done); // and the control goes on
    EXPECT_EQ(binder->ContainsDocuments(""), 4);
}

TEST_F(Binder, ShowsWhatIsSelectedAndTellsTheHostFirst) {
    ASSERT_EQ(Open("key"), 0);
    ASSERT_EQ(binder->AddFiles({File("brief.txt", "12345")}, "", 0, false, true), 0);
    std::vector<std::string> told;
    int old = 0;
    const auto selected = binder->EvItemSelected.Subscribe(
        [&](const TreeItemInfo& item) { told.push_back(item.description + "|" + item.type); });
    const auto never = binder->ItemSelected.Subscribe([&](const TreeItemInfo&) { ++old; });
    binder->treCorr().NodeSelected(Root());
    auto& listed = binder->Viewer().Views().list;
    EXPECT_EQ(binder->Viewer().Parts(), PartSet{Part::Grid});
    EXPECT_EQ(listed.Caption(), "Inhoud van map 'Dossier'");
    ASSERT_EQ(listed.List().Count(), 1U);
    EXPECT_EQ(listed.List().Text(0, 2) + " " + listed.List().Text(0, 3), "jansen 15-11-2026 14:05");
    auto& grid = binder->treCorr().Grid(); // the tree's list mode shows the same rows
    binder->treCorr().SetListMode(true);
    ASSERT_EQ(grid.Count(), 1U);
    grid.HeadingClicked(3);
    EXPECT_EQ(grid.Title(3), "Toegevoeg op (oplopend)");
    EXPECT_EQ(grid.Text(0, 3), listed.List().Text(0, 3));
    listed.List().RowActivated(0);
    EXPECT_EQ(binder->Viewer().Description(), "brief");
    EXPECT_EQ(told, (std::vector<std::string>{"Dossier|tab", "brief|txt"}));
    EXPECT_EQ(old, 0);
    binder->Viewer().HintActivated();
    EXPECT_EQ(machine.shell.opened.size(), 1U);
    const auto user =
        binder->treCorr().Add(0, "users", nullptr, 1, "Gebruikers", Root()); // holds no documents
    binder->treCorr().NodeSelected(user->Id());
    EXPECT_FALSE(binder->Viewer().Item());
}

TEST_F(Binder, ShowsDocumentsElsewhereWhereTheWorkstationWantsThemThere) {
    ASSERT_EQ(Open("key"), 0);
    ASSERT_EQ(binder->AddFiles({File("brief.txt"), File("nota.txt")}, "", 0, false, true), 0);
    auto& tree = binder->treCorr();
    const auto documents = tree.Tree()->Item()->ChildCollection()->Items();
    auto& external = binder->ExtViewer();
    const auto option = [&](const char* section, const char* key, bool value) {
        platform::SaveRegFlag(machine, section, key, value);
    };
    option("ViewerSetting", "AllwaysExternal", true);
    tree.NodeSelected(documents[0]->Id());
    ASSERT_TRUE(external.Form());
    EXPECT_EQ(external.Form()->Id(), documents[0]->Id());
    EXPECT_EQ(binder->Viewer().Parts(), PartSet{Part::Elsewhere});
    external.EvNextDocumentRequest.Raise();
    EXPECT_EQ(external.Form()->Id(), documents[1]->Id()) << "the tree moved on";
    ASSERT_TRUE(tree.RenameItem(documents[1]->Id(), "Nota"));
    EXPECT_EQ(external.Form()->Viewer().Description(), "Nota");
    EXPECT_EQ(binder->Viewer().Parts(), PartSet{Part::Elsewhere});
    EXPECT_TRUE(external.CloseForm());
    EXPECT_TRUE(binder->Viewer().Parts().Empty()) << "it is shown nowhere now";
    int told = 0;
    const auto selected = binder->EvItemSelected.Subscribe([&](const TreeItemInfo&) { ++told; });
    tree.NodeClicked(documents[0]->Id());
    EXPECT_FALSE(external.Form()) << "that is not the selected one";
    tree.NodeActivated(documents[1]->Id());
    ASSERT_TRUE(external.Form()) << "it is chosen again";
    EXPECT_EQ(external.Form()->Id(), documents[1]->Id());
    EXPECT_EQ(binder->Viewer().Parts(), PartSet{Part::Elsewhere});
    option("ViewerSetting", "AllwaysExternal", false);
    EXPECT_TRUE(external.CloseForm());
    tree.NodeClicked(documents[1]->Id());
    EXPECT_EQ(binder->Viewer().Parts(), PartSet{Part::Browser}) << "where it belongs now";
    EXPECT_TRUE(binder->Viewer().CloseImage()); // by a host
    tree.NodeClicked(documents[1]->Id());
    EXPECT_TRUE(binder->Viewer().Parts().Empty()) << "no window of it was closed since";
    EXPECT_EQ(told, 0) << "the selection is the same";
    option("ViewerSetting", "AllwaysExternal", true);
    const auto file = FileOf(documents[0]);
    machine.files.Rename(file, file + ".away");
    tree.NodeSelected(documents[0]->Id());
    EXPECT_TRUE(binder->Viewer().Parts().Empty()) << "nor there";
    machine.files.Rename(file + ".away", file);
    tree.NodeSelected(Root());
    EXPECT_TRUE(external.Form()) << "it stays";
    option("ViewerSettings", "CloseViewerAfterSelect", true);
    tree.NodeSelected(documents[1]->Id());
    EXPECT_TRUE(external.Form());
    tree.NodeSelected(Root());
    EXPECT_FALSE(external.Form());
    option("ViewerSetting", "AllwaysExternal", false);
    option("ViewerSetting", "AllwaysShowOrg", true);
    tree.NodeSelected(documents[0]->Id());
    EXPECT_EQ(machine.shell.opened.size(), 1U) << "in its own program";
    EXPECT_FALSE(external.Form());
    machine.files.Rename(file, file + ".away");
    tree.NodeSelected(Root());
    machine.messages.shown.clear();
    tree.NodeSelected(documents[0]->Id());
    EXPECT_EQ(machine.messages.shown.size(), 1U) << "told once";
    EXPECT_TRUE(binder->Viewer().Parts().Empty());
    machine.files.Rename(file + ".away", file);
    option("ViewerSetting", "AllwaysShowOrg", false);
    tree.NodeSelected(documents[1]->Id());
    EXPECT_EQ(binder->Viewer().Parts(), PartSet{Part::Browser});
    binder->SetShowExternalViewer(true);
    tree.NodeSelected(documents[0]->Id());
    EXPECT_TRUE(external.Form());
    EXPECT_EQ(binder->CloseObject(), 0);
    EXPECT_FALSE(external.Form());
}

TEST_F(Binder, StepsFromTheDocumentInTheWindowAndOpensNoWindowForALink) {
    ASSERT_EQ(Open("key"), 0);
    ASSERT_EQ(binder->AddFiles({File("a.txt"), File("b.txt"), File("c.txt"),
                                File("d.edf", "[param]\r\ninput=K2\r\nType=x\r\n")},
                               "", 0, false, true),
              0);
    auto& tree = binder->treCorr();
    const auto documents = tree.Tree()->Item()->ChildCollection()->Items();
    auto& external = binder->ExtViewer();
    platform::SaveRegFlag(machine, "ViewerSettings", "CloseViewerAfterSelect", true);
    tree.NodeSelected(documents[2]->Id());
    ASSERT_TRUE(external.ShowItem(documents[0]));
    external.EvNextDocumentRequest.Raise();
    EXPECT_EQ(external.Form()->Id(), documents[1]->Id());
    EXPECT_EQ(tree.SelectedItem()->Id(), documents[1]->Id());
    external.EvPreviousDocumentRequest.Raise();
    external.EvPreviousDocumentRequest.Raise(); // there is none
    EXPECT_EQ(external.Form()->Id(), documents[0]->Id());
    EXPECT_EQ(tree.SelectedItem()->Id(), documents[0]->Id());

    std::string opened;
    const auto token = binder->EvOpenDossier.Subscribe(
        [&](const std::string& key, const std::string&) { opened += key; });
    for (int i = 0; i < 2; ++i) external.EvNextDocumentRequest.Raise();
    EXPECT_EQ(external.Form()->Id(), documents[2]->Id());
    for (int i = 0; i < 2; ++i) external.EvNextDocumentRequest.Raise(); // a link, and the end
    EXPECT_EQ(std::exchange(opened, {}), "K2") << "once";
    external.EvPreviousDocumentRequest.Raise();
    EXPECT_EQ(external.Form()->Id(), documents[2]->Id()) << "back from the link";
    for (const char* const key : {"AllwaysExternal", "AllwaysShowOrg"})
        platform::SaveRegFlag(machine, "ViewerSetting", key, true);
    tree.NodeSelected(documents[3]->Id());
    EXPECT_EQ(opened, "K2");
    EXPECT_FALSE(external.Form());
    EXPECT_TRUE(machine.shell.opened.empty());
}

TEST_F(Binder, ListsWhatWasPastedIntoTheShownFolder) {
    ASSERT_EQ(Open("key"), 0);
    ASSERT_EQ(binder->AddFiles({File("brief.txt")}, "", 0, false, true), 0);
    auto& tree = binder->treCorr();
    const auto letter = tree.Tree()->Item()->ChildCollection()->Items().front()->Id();
    tree.NodeSelected(Root());
    const auto folder = tree.AddTab("Map", Root())->Id();
    tree.NodeSelected(letter);
    EXPECT_TRUE(tree.CommandKey('X', true, false));
    tree.NodeSelected(folder);
    auto& list = binder->Viewer().Views().list.List();
    EXPECT_EQ(list.Count(), 0U);
    EXPECT_TRUE(tree.CommandKey('V', true, false));
    ASSERT_EQ(list.Count(), 1U);
    EXPECT_EQ(list.Text(0, 0), "brief");
}

TEST_F(Binder, SavesAndRestoresItsStateWithTheSpellingsOfOldHosts) {
    binder->SetExternalId("abc");
    EXPECT_EQ(tests::NumberOf([&] { binder->SetExternalId(std::string(256, 'k')); }),
              platform::errors::invalidPropertyValue);
    binder->SetShowTreeOnly(true);
    binder->SetLayout(layouts::treeTop);
    std::vector<std::string> reported;
    const auto token = binder->PropertyChanged.Subscribe(
        [&](std::string_view name) { reported.emplace_back(name); });
    binder->SetDossierStatus("open");
    EXPECT_EQ(reported, std::vector<std::string>{"DossierStatus "});
    MapBag bag;
    binder->SaveProperties(bag);
    EXPECT_EQ(bag.values.size(), BinderPropertyTable().size());
    EXPECT_TRUE(bag.values.contains("ChecklistPresent"));
    bag.values["ChecklistPresent"] = true;
    const auto other = Make();
    other->LoadProperties(bag);
    EXPECT_EQ(other->ExternalId(), "abc");
    EXPECT_TRUE(other->ShowTreeOnly());
    EXPECT_EQ(other->LastUsedLayout(), layouts::treeTop);
    EXPECT_EQ(other->DossierStatus(), "open");
    MapBag again, empty;
    other->SaveProperties(again);
    EXPECT_FALSE(data::ToBool(again.values["ChecklistPresent"])) << "it never comes back";
    other->LoadProperties(empty);
    EXPECT_EQ(other->IniFile(), "0");
    EXPECT_EQ(other->DossierType(), "Dossiermap");
    EXPECT_EQ(other->DossierStatus(), "open") << "absent, the present value stays";
}

TEST_F(Binder, ArrangesItsChildrenByLayoutAndRemembersTheSplitter) {
    const auto shown = [&] {
        return std::pair(binder->SplitPanel().Control1Visible(),
                         binder->SplitPanel().Control2Visible());
    };
    const auto marked = [&] {
        std::string names;
        for (const auto& entry : binder->ButtonMenu("WindowPlacement"))
            if (entry.checked) names += entry.name;
        return names;
    };
    EXPECT_EQ(marked(), "mnutreeleftviewerright") << "the one in use before any was chosen";
    binder->MenuChosen({"mnutreeonly", 0, {}});
    EXPECT_EQ(shown(), std::pair(true, true))
        << "refused with its button, while no dossier is open";
    ASSERT_EQ(Open("key"), 0);
    binder->MenuChosen({"mnutreeonly", 0, {}});
    EXPECT_EQ(shown(), std::pair(true, false));
    EXPECT_EQ(marked(), "mnutreeonly");
    binder->MenuChosen({"mnudoconly", 0, {}});
    EXPECT_EQ(shown(), std::pair(false, true));
    binder->MenuChosen({"mnutreetopviewerbottom", 0, {}});
    EXPECT_EQ(shown(), std::pair(true, true));
    EXPECT_TRUE(binder->SplitPanel().Horizontal());
    binder->SetLayout(layouts::none);
    EXPECT_TRUE(binder->SplitPanel().Horizontal()) << "no layout leaves the orientation";
    binder->SplitPanel().SetSize(1006, 1006);
    ASSERT_TRUE(binder->SplitPanel().MoveBy(5));
    EXPECT_EQ(machine.registry.Read("Kavidex", "CorrespSetting", "SPPos"),
              std::to_string(binder->SplitPanel().Position()));
}

TEST_F(Binder, EnablesItsButtonsByDossierAndRights) {
    const auto enabled = [&](std::string_view key) {
        for (const auto& state : binder->Toolbar())
            if (state.name == key) return state.visible && state.enabled;
        return false;
    };
    EXPECT_FALSE(enabled("Nextdoc"));
    ASSERT_EQ(Open("key"), 0);
    EXPECT_TRUE(enabled("Nextdoc"));
    EXPECT_TRUE(enabled("New"));
    Setting("Rights", "Use", "TRUE");
    auto rights = std::make_shared<model::clsUserAuth>(machine);
    binder->SetUserAuth(rights);
    EXPECT_FALSE(enabled("New"));
    EXPECT_TRUE(enabled("WindowPlacement"));
    binder->SetShowAddButton(false);
    EXPECT_FALSE(enabled("NewSep"));
    binder->ButtonClicked("Nextdoc"); // nothing to go to: no harm
    binder->ButtonClicked("New");
    binder->MenuChosen({"withdel", 0, {}});
    EXPECT_TRUE(machine.messages.shown.empty()) << "what the toolbar refuses, its menu refuses";
}

TEST_F(Binder, BeginsNothingElseWhileADossierOpens) {
    ASSERT_EQ(Open("K1"), 0);
    for (int i = 0; i < 40; ++i) binder->treCorr().AddTab("Map", Root());
    const auto slow = std::make_shared<tests::RecordingConnection>("", connection);
    slow->refuse = [&](const std::string&) {
        machine.clock.now.millisecond += 40;
        return false;
    };
    ctrlCorrespondence other(machine);
    other.SetDbConnection(slow);
    const auto file = File("a.txt");
    int refused = 0;
    machine.busy.onPump = [&] { refused += other.AddFiles({file}, "", 0, false, true) != 0; };
    other.SetId(binder->Id());
    machine.busy.onPump = nullptr;
    EXPECT_GT(refused, 0);
    EXPECT_TRUE(Told("Er loopt nog een andere bewerking"));
    EXPECT_EQ(Count("tblDocument"), 0);
}

TEST_F(Binder, AFolderByItsNameIsAFolder) {
    ASSERT_EQ(Open("key"), 0); // the dossier itself is called "Dossier"
    auto& tree = binder->treCorr();
    const auto post = tree.AddTab("Post", Root());
    tree.Add(0, "nnt", nullptr, 0, "Brieven", post->Id());
    const auto folders = {std::pair("Brieven", tree.AddTab("Brieven", Root())),
                          std::pair("Dossier", tree.AddTab("Dossier", post->Id()))};
    for (const auto& [name, folder] : folders) {
        EXPECT_EQ(binder->AddFiles({File("brief.txt")}, name, 0, false, false), addFiles::done);
        EXPECT_EQ(folder->ChildCollection()->Count(), 1) << name;
    }
    EXPECT_EQ(binder->AddFiles({File("brief.txt")}, "brief", 0, false, false), addFiles::noFolder);
}

} // namespace
} // namespace kavidex::controls
