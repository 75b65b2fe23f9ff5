// What must not happen however the control is used: an action without its right, an answer that
// could not be read taken for a yes, and bad values kept.
#include "controls/common/GrantedRights.h"
#include "tests/fakes/Failures.h"
#include "tests/fakes/FakeTreeWindow.h"
#include "tests/unit/controls/BinderFixture.h"

namespace kavidex::controls {
namespace {

// --- Rights on each road of the user ------------------------------------------------------------

struct Rights : Binder {
    tests::FakeTreeWindow window;
    std::shared_ptr<model::clsUserAuth> rights = std::make_shared<model::clsUserAuth>(machine);
    ctrlTree alone{machine};

    void SetUp() override {
        Binder::SetUp();
        ASSERT_EQ(binder->OpenOrCreate("key", "Dossier", "Post", "", ""), 0);
        Setting("Rights", "Use", "True");
        rights->SetDbConnection(connection);
        alone.SetDbConnection(connection);
        alone.SetTreeId(binder->Id());
    }
    void TearDown() override { alone.AttachWindow(nullptr); }
    void Give(std::initializer_list<const char*> granted) {
        for (const auto* key : granted) rights->SetRight(key, "True");
        binder->SetUserAuth(rights);
        alone.SetUserAuth(rights);
    }
};

TEST_F(Rights, AreAskedOnEveryRoadAndNotOfTheHost) {
    Give({"EditDossiers"});
    alone.AttachWindow(&window);
    for (auto* tree : {&binder->treCorr(), &alone}) {
        const auto post = tree->Tree()->GetItem(0, "Post")->Id();
        const auto count = tree->AllItems().size();
        tree->NodeSelected(post);
        auto menu = tree->PrepareMenu(post);
        EXPECT_FALSE(FindEntry(menu, "mnuNew", 0)->enabled) << "no CreateFolders";
        EXPECT_TRUE(FindEntry(menu, "mnuNew", 1)->enabled);
        EXPECT_FALSE(FindEntry(menu, "mnuDelete")->enabled);
        EXPECT_TRUE(FindEntry(menu, "mnuRename")->enabled);
        tree->ChooseMenu({"mnuNew", 0, {}});
        tree->CommandKey(0x2E, false, false);
        DropData drop;
        drop.hasFiles = true;
        drop.files = {File("a.txt")};
        machine.messages.shown.clear();
        EXPECT_EQ(tree->Dropped(drop, post), drop::none);
        EXPECT_TRUE(Told("U heeft geen bevoegdheid"));
        EXPECT_EQ(tree->AllItems().size(), count);
        EXPECT_NE(tree->AddTab("van de host", post), nullptr) << "the host decides";
        tree->Refresh();
    }
    Give({"CreateFolders", "AddExternal", "Delete"});
    EXPECT_TRUE(binder->treCorr().MayInsert(0));
    binder->treCorr().SetAllowedTypes("nnt;txt");
    EXPECT_FALSE(binder->treCorr().MayInsert(0));
    DropData drop;
    drop.hasFiles = true;
    drop.files = {File("a.txt"), File("b.exe")};
    EXPECT_EQ(binder->treCorr().Dropped(drop, Root()), drop::copy);
    EXPECT_TRUE(Told("Bestanden van dit type worden hier niet opgenomen: b.exe"));
    EXPECT_EQ(binder->ContainsDocuments(""), 1);
    binder->SetOLEDropMode(0);
    EXPECT_EQ(binder->treCorr().DragOver(DragState::Over, drop, Root()), drop::none);
    EXPECT_EQ(binder->treCorr().Dropped(drop, Root()), drop::none);
    EXPECT_EQ(binder->ContainsDocuments(""), 1);
}

// --- What could not be read ---------------------------------------------------------------------

TEST_F(Binder, ATreeThatCannotBeReadIsNotTheOneBefore) {
    auto faulty = std::make_shared<tests::FaultyConnection>(connection);
    auto second = std::make_unique<ctrlCorrespondence>(machine);
    second->SetDbConnection(faulty);
    ASSERT_EQ(second->OpenOrCreate("A", "A", "", "", ""), 0);
    const auto first = second->Id();
    ASSERT_EQ(second->OpenOrCreate("B", "B", "", "", ""), 0);
    faulty->refuse = [](const std::string& text) { return text.find("tblTree") != text.npos; };
    second->Refresh();
    EXPECT_NE(second->treCorr().Tree(), nullptr) << "the same tree stays as it was";
    second->SetId(first);
    EXPECT_EQ(second->treCorr().Tree(), nullptr);
    EXPECT_EQ(second->AddFiles({File("a.txt")}, "", 0, false, true), addFiles::noDossier);
    EXPECT_EQ(second->OpenOrCreate("A", "A", "", "", ""), -6);
    EXPECT_EQ(second->Id(), 0);
}

// Neither an absent setting, nor a type without folders, nor a dossier without a key.
TEST_F(Binder, RightsThatCannotBeReadAreRefusedToldOnceAndAskedAgain) {
    auto faulty = std::make_shared<tests::FaultyConnection>(connection);
    int told = 0;
    GrantedRights rights(machine, [&] { ++told; });
    rights.Set(nullptr, faulty);
    faulty->refuse = [](const std::string&) { return true; };
    EXPECT_FALSE(rights.Has("Delete") || rights.Has("Mail"));
    EXPECT_TRUE(rights.Unreadable());
    EXPECT_EQ(told, 1);
    EXPECT_TRUE(machine.log.Has("UserAuth"));
    faulty->refuse = nullptr;
    EXPECT_TRUE(rights.Has("Delete")) << "rights are not in use";
    EXPECT_FALSE(rights.Unreadable());
    faulty->refuse = [](const std::string&) { return true; };
    EXPECT_TRUE(rights.Has("Mail")) << "what was read is kept";
    rights.Set(nullptr, faulty);
    EXPECT_FALSE(rights.Has("Mail"));
    EXPECT_EQ(told, 2);
}

TEST_F(Binder, DeletedDocumentsAreShownButNeitherCountedNorExported) {
    ASSERT_EQ(Open("key"), 0);
    ASSERT_EQ(binder->AddFiles({File("een.txt"), File("twee.txt")}, "", 0, false, true), 0);
    binder->treCorr().DeleteItem(binder->treCorr().Tree()->GetItem(0, "een")->Id());
    platform::SaveRegFlag(machine, "TreeSettings", "ShowDeleted", true);
    binder->Refresh();
    const auto items = binder->treCorr().AllItems();
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(binder->ContainsDocuments(""), 1);
    EXPECT_EQ(binder->ExportFiles(machine.Path("export")), 1);
    for (const auto& item : items) binder->treCorr().NodeChecked(item->Id(), true);
    EXPECT_EQ(binder->ExportSelectedFiles(false, false).size(), 1U);
}

// --- Drags --------------------------------------------------------------------------------------

TEST_F(Binder, ADragStartedByTheHostIsWholeAndTellsWhatItCarriesAndBrings) {
    ASSERT_EQ(Open("key"), 0);
    tests::FakeTreeWindow window;
    auto& tree = binder->treCorr();
    const auto folder = tree.AddTab("Map", Root())->Id();
    tree.NodeSelected(folder);
    std::vector<std::string> told;
    const auto one =
        binder->OLEStartDrag.Subscribe([&](const DropData& data, std::int32_t& allowed) {
            told.push_back("start " + data.text + " " + std::to_string(allowed));
        });
    const auto two = binder->OLECompleteDrag.Subscribe(
        [&](std::int32_t& effect) { told.push_back("done " + std::to_string(effect)); });
    binder->OLEDrag(); // without a window there is nothing to drag with
    EXPECT_TRUE(told.empty());
    tree.AttachWindow(&window);
    binder->OLEDrag();
    EXPECT_EQ(told, (std::vector<std::string>{"start " + std::to_string(folder) + " 3", "done 2"}));
    DropData files{false, true, "", {"C:\\a.txt"}};
    EXPECT_EQ(tree.DragOver(DragState::Over, files, folder), drop::copy)
        << "no drag of its own is under way";
    const auto three =
        binder->OLEDragOver.Subscribe([&](const DropData& data, std::int32_t& effect, DragState) {
            told.push_back(data.files[0]);
            effect = drop::none; // the host wants none of it
        });
    EXPECT_EQ(tree.DragOver(DragState::Over, files, folder), drop::none);
    EXPECT_EQ(told.back(), "C:\\a.txt");
    tree.AttachWindow(nullptr);
}

// --- Values and texts ---------------------------------------------------------------------------

TEST_F(Binder, RefusesValuesThatAPropertyCannotHaveAndKeepsTheOldOnes) {
    const auto refused = [&](auto change) {
        return tests::NumberOf(change) == platform::errors::invalidPropertyValue;
    };
    EXPECT_TRUE(refused([&] { binder->SetBorderStyle(77); }));
    EXPECT_TRUE(refused([&] { binder->SetLanguage(99); }));
    EXPECT_TRUE(refused([&] { binder->SetColWidth(-100); }));
    EXPECT_EQ(binder->BorderStyle() + binder->Language() + binder->ColWidth(), 0);
    MapBag bag;
    bag.values["BorderStyle"] = std::int64_t{65537}; // cut to 16 bits it would be 1
    bag.values["Language"] = std::int64_t{99};
    binder->LoadProperties(bag);
    EXPECT_EQ(binder->BorderStyle() + binder->Language(), 0);
}

TEST_F(Binder, AnErrorOfAutomationReadsAsItsOwnNumberInEveryBox) {
    auto faulty = std::make_shared<tests::FaultyConnection>(connection);
    binder->SetDbConnection(nullptr);
    binder->SetDbConnection(faulty);
    ASSERT_EQ(Open("key"), 0);
    const auto folder = binder->treCorr().AddTab("Map", Root());
    faulty->onStep = [](int) { throw data::Error(data::errors::badEof, "einde", "ADO"); };
    EXPECT_FALSE(binder->treCorr().RenameItem(folder->Id(), "x"));
    EXPECT_EQ(machine.messages.shown.back().text, "3021 einde");
    EXPECT_EQ(Open("key"), -1);
    EXPECT_EQ(machine.messages.shown.back().text, "Error # 3021: einde") << "of the record class";
    machine.messages.shown.clear();
    faulty->onStep = [](int step) {
        if (step > 2) throw data::Error(data::errors::badEof, "einde", "ADO");
    };
    faulty->steps = 0;
    EXPECT_LT(Open("nieuw"), 0);
    EXPECT_TRUE(Told("3021") && !Told("2146825267")) << "whichever tells it";
}

TEST_F(Binder, LongTextsAreCutAndLongKeysRefusedWithoutAStatementInABox) {
    const std::string longName(300, 'n');
    EXPECT_EQ(Open(longName), -1);
    EXPECT_TRUE(machine.messages.shown.empty());
    ASSERT_EQ(binder->OpenOrCreate("key", longName, longName + ";b", "", ""), 0);
    const auto items = binder->treCorr().AllItems();
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0]->Description(), longName.substr(0, 255));
    EXPECT_TRUE(machine.messages.shown.empty());
    EXPECT_EQ(binder->AddFiles({File("los.txt")}, "", 0, false, false), 0)
        << "without a folder and a selection at the top";
    auto& tree = binder->treCorr();
    const auto folder = binder->AddItem(0, "tab", nullptr, 0, longName + "map", 0);
    ASSERT_NE(folder, nullptr);
    EXPECT_EQ(tree.Tree()->Item()->ChildCollection()->Count(), 4);
    EXPECT_TRUE(tree.LabelEdited(folder->Id(), "x" + longName));
    EXPECT_EQ(folder->Description(), "x" + longName.substr(0, 254));
    tree.SetNameForInsert(longName + ";" + longName);
    for (const int entry : {0, 1}) {
        tree.NodeSelected(folder->Id());
        tree.ChooseMenu({"mnuNew", entry, {}});
    }
    ASSERT_EQ(folder->ChildCollection()->Count(), 2);
    EXPECT_TRUE(folder->ChildCollection()->Item(2)->Description().ends_with("n 15-11-2026 14:05"));
    tree.SetDescription(longName);
    EXPECT_TRUE(machine.messages.shown.empty());
    EXPECT_EQ(binder->AddItem(0, longName, nullptr, 0, "map", 0), nullptr);
    EXPECT_TRUE(Told("An item type has at most 255 characters"));
}

TEST_F(Binder, ItsOwnTranslatorIsThereFromTheFirstTextOn) {
    ctrlCorrespondence fresh(machine);
    fresh.SetLanguage(1);
    fresh.SetDbConnection(connection);
    ASSERT_NE(fresh.Translate(), nullptr);
    EXPECT_EQ(fresh.treCorr().StatusText(), "Binder with available documents");
    EXPECT_EQ(fresh.AddFiles({"x"}, "", 0, false, false), addFiles::noDossier);
    EXPECT_TRUE(Told("No binder is open")) << "one language in the box";
}

TEST_F(Binder, TheTreeKeepsItsFontAndMarksTheWorkstationsOptions) {
    MapBag bag;
    ctrlTree tree(machine), again(machine);
    tree.SetFont(FontFace{"Arial; smal", 9.75, 700, true, false, true});
    tree.SaveProperties(bag);
    again.LoadProperties(bag);
    EXPECT_EQ(again.Font(), tree.Font());
    tree.SetFullExpand(true); // the host's, not the workstation's
    auto menu = tree.PrepareMenu(std::nullopt);
    EXPECT_FALSE(FindEntry(menu, "mnuExpandAllways")->checked);
    tree.ChooseMenu(*FindEntry(menu, "mnuExpandAllways"));
    EXPECT_TRUE(platform::GetRegFlag(machine, "TreeSettings", "FullExpand"));
}

} // namespace
} // namespace kavidex::controls
