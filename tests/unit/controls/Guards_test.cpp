// What must not happen however the control is used: one dossier's work in another, an action
// without its right, an answer that could not be read taken for a yes, and bad values kept.
#include <functional>

#include "controls/common/GrantedRights.h"
#include "data/ConnectionAssignment.h"
#include "tests/fakes/FakeTreeWindow.h"
#include "tests/fakes/FaultyConnection.h"
#include "tests/unit/controls/BinderFixture.h"

namespace kavidex::controls {
namespace {

// --- Two databases: the same ids stand for other dossiers ---------------------------------------

struct TwoDatabases : Binder {
    data::ConnectionPtr other = data::EmbeddedDatabase::Create(machine.Path("other.kdb"));
    tests::FakeTreeWindow window;
    std::int32_t theirs = 0; // a document of the other client

    void SetUp() override {
        Binder::SetUp();
        auto second = std::make_unique<ctrlCorrespondence>(machine);
        second->SetDbConnection(other);
        data::clsSettings settings(machine);
        settings.SetDbConnection(other);
        machine.files.CreateDirectories(machine.Path("theirs"));
        settings.SetSetting("Storage", "DocumentPath", machine.Path("theirs"));
        for (const auto& [one, key] :
             {std::pair(second.get(), "B"), std::pair(binder.get(), "A")}) {
            ASSERT_EQ(one->OpenOrCreate(key, "Dossier", "Post", "", ""), 0);
            ASSERT_EQ(one->AddFiles({File("brief.txt")}, "", 0, false, true), 0);
        }
        theirs = second->treCorr().Tree()->GetItem(0, "brief")->Id();
        ASSERT_EQ(second->Id(), binder->Id()) << "the same id, another client";
        ASSERT_EQ(theirs, binder->treCorr().Tree()->GetItem(0, "brief")->Id());
        binder->treCorr().AttachWindow(&window);
    }
    void TearDown() override {
        if (binder) binder->treCorr().AttachWindow(nullptr);
    }
    std::string Theirs(const std::string& statement) { return First(other, statement); }
    static std::string First(const data::ConnectionPtr& database, const std::string& statement) {
        data::Command command;
        command.text = statement;
        const auto rows = database->Open(command);
        return rows->Eof() ? "none" : data::ToText(rows->Get(std::size_t{0}));
    }
    // The key that the last document carries.
    std::string LastKey() {
        return First(binder->DbConnection(), "Select ExternalId from tblDocument order by Id desc");
    }
    std::string KeyOfFiled() {
        EXPECT_EQ(binder->AddFiles({File("nieuw.txt")}, "", 0, false, true), addFiles::done);
        return LastKey();
    }
    // Files that come without a folder, and wait for one.
    void BringToWait(const char* name) {
        DropData data;
        data.hasFiles = true;
        data.files = {File(name)};
        std::int32_t effect = drop::none;
        binder->treCorr().EvItemDropped.Raise({data, effect, 0, false});
        ASSERT_TRUE(Told("Selecteer een map"));
        machine.messages.shown.clear();
    }
    std::int32_t TreeWithoutDossier() {
        ctrlTree made(machine);
        made.SetDbConnection(connection);
        EXPECT_TRUE(made.CreateNew("Los", ""));
        return made.TreeId();
    }
};

TEST_F(TwoDatabases, DocumentsCarryTheKeyOfTheirOwnDossierOnEveryRoad) {
    ASSERT_EQ(Open("C"), 0);
    const auto c = binder->Id(), loose = TreeWithoutDossier(), b = c - 1;
    MapBag bagOfC;
    binder->SaveProperties(bagOfC);
    const struct {
        const char* name;
        std::function<void()> go; // from the open dossier A
        const char* key;
    } roads[] = {
        {"open another", [&] { Open("C"); }, "C"},
        {"Id", [&] { binder->SetId(c); }, "C"},
        {"Id of a tree without dossier", [&] { binder->SetId(loose); }, ""},
        {"CreateNew", [&] { binder->CreateNew("Nieuw", ""); }, ""},
        {"a failed CreateNew",
         [&] {
             binder->SetDossierType("Zaak");
             connection->Execute("drop table tblDossierTabs");
             connection->Execute("create table tblDossierTabs (Id INTEGER)");
             connection->Execute("insert into tblDossierTypes (TypeId, DossierType) values (7, "
                                 "'Zaak')");
             EXPECT_FALSE(binder->CreateNew("Nieuw", ""));
             binder->SetDossierType("Dossiermap");
         },
         "A"},
        {"CloseObject, Id", [&] { binder->CloseObject(), binder->SetId(loose); }, ""},
        {"CloseObject, CreateNew", [&] { binder->CloseObject(), binder->CreateNew("x", ""); }, ""},
        {"a failed OpenOrCreate",
         [&] {
             EXPECT_EQ(Open(std::string(300, 'x')), -1);
             binder->SetId(loose);
         },
         ""},
        {"another connection, Id", [&] { binder->SetDbConnection(other), binder->SetId(b); }, "B"},
        {"no connection, Id",
         [&] {
             binder->SetDbConnection(nullptr);
             binder->SetId(c);
             binder->SetDbConnection(connection);
         },
         "C"},
        {"the host's bag", [&] { binder->LoadProperties(bagOfC); }, "C"},
        {"the host's key before",
         [&] { binder->CloseObject(), binder->SetExternalId("D"), binder->SetId(loose); }, "D"},
        {"the host's key after", [&] { binder->SetId(loose), binder->SetExternalId("D"); }, "D"},
        {"a key that is another dossier's",
         [&] { binder->CloseObject(), binder->SetExternalId("D"), binder->SetId(c); }, "C"},
    };
    for (const auto& road : roads) {
        binder->SetDbConnection(connection);
        ASSERT_EQ(Open("A"), 0) << road.name;
        road.go();
        EXPECT_EQ(KeyOfFiled(), road.key) << road.name;
        EXPECT_EQ(binder->ExternalId(), road.key) << road.name;
        binder->treCorr().NodeSelected(Root());
        binder->treCorr().ChooseMenu({"mnuNew", 1, {}}); // a note
        EXPECT_EQ(LastKey(), road.key) << road.name;
    }
    // A host that files from a handler while the dossier is still being made.
    std::string key = "none";
    const auto token = binder->EvItemCreated.Subscribe([&](const TreeItemInfo& item) {
        if (item.type == "tab") key = KeyOfFiled();
    });
    ASSERT_EQ(binder->OpenOrCreate("E", "Dossier", "Post", "", ""), 0);
    EXPECT_EQ(key, "E");
}

TEST_F(TwoDatabases, NoRoadLeadsFromTheOpenDossierIntoAnother) {
    auto& tree = binder->treCorr();
    tree.NodeSelected(theirs);
    ASSERT_TRUE(tree.CommandKey('X', true, false));
    const auto folder = Root();
    const auto before = Theirs("Select count(*) from tblTreeItem");
    ctrlTree beside(machine);
    beside.SetDbConnection(connection);
    EXPECT_TRUE(beside.CommandKey('V', true, false));
    EXPECT_TRUE(Told("in een ander dossier geknipt"));
    binder->SetDbConnection(other);
    EXPECT_EQ(binder->Id(), 0) << "the dossier is closed first";
    EXPECT_EQ(binder->AddFiles({File("geheim.txt")}, "", 0, false, true), addFiles::noDossier);
    EXPECT_EQ(binder->AddFiles({File("geheim.txt")}, "", folder, false, false),
              addFiles::noDossier);
    EXPECT_EQ(binder->AddItem(0, "tab", nullptr, 0, "geheim", folder), nullptr);
    DropData drop;
    drop.hasFiles = true;
    drop.files = {File("geheim.txt")};
    EXPECT_EQ(tree.Dropped(drop, folder), drop::none);
    binder->Refresh();
    EXPECT_EQ(binder->Id(), 0);
    EXPECT_EQ(window.Drawing(), "");
    EXPECT_EQ(binder->ExportFiles(machine.Path("export")), -1);
    EXPECT_EQ(Theirs("Select count(*) from tblTreeItem"), before);

    ASSERT_EQ(Open("B"), 0); // the other client's, on purpose now
    EXPECT_TRUE(tree.SelectedItems().empty()) << "what was selected there is not selected here";
    tree.NodeSelected(tree.Tree()->GetItem(0, "Post")->Id());
    tree.CommandKey('V', true, false);
    EXPECT_EQ(tree.GetParent(theirs)->Id(), Root()) << "what was cut there is not moved here";
    ASSERT_TRUE(binder->CreateNew("Nieuw", ""));
    EXPECT_EQ(Theirs("Select count(*) from tblTree"), "2");
}

TEST_F(TwoDatabases, WhatWaitsForAFolderStaysWithTheDossierItWasBroughtTo) {
    BringToWait("wacht.txt");
    binder->SetDbConnection(other);
    ASSERT_EQ(Open("B"), 0);
    binder->treCorr().NodeSelected(Root());
    EXPECT_EQ(binder->ContainsDocuments(""), 1);
    EXPECT_EQ(Count("tblDocument"), 2);
    // Where none of it can be filed it is named, and goes on waiting.
    binder->SetDbConnection(connection);
    ASSERT_EQ(Open("A"), 0);
    Setting("Storage", "DocumentPath", "");
    BringToWait("later.txt");
    ASSERT_EQ(Open("C"), 0);
    EXPECT_TRUE(Told("DocumentPath") && Told("later.txt: niet opgeslagen"));
    Setting("Storage", "DocumentPath", machine.Path("store"));
    binder->treCorr().NodeSelected(Root());
    EXPECT_EQ(Count("tblDocument"), 2) << "not into another dossier";
    machine.messages.shown.clear();
    ASSERT_EQ(Open("A"), 0);
    EXPECT_TRUE(Told("Selecteer een map"));
    binder->treCorr().NodeSelected(Root());
    EXPECT_EQ(Count("tblDocument"), 3);
    EXPECT_EQ(LastKey(), "A");
}

TEST_F(TwoDatabases, AConnectionThatItsOwnerOpenedElsewhereIsAnotherOne) {
    const auto given = std::make_shared<tests::FaultyConnection>(connection);
    binder->SetDbConnection(nullptr);
    binder->SetDbConnection(given);
    ASSERT_EQ(Open("A"), 0);
    BringToWait("wacht.txt");
    given->inner = other;
    EXPECT_EQ(binder->AddFiles({File("geheim.txt")}, "", 0, false, true), addFiles::notFiled);
    binder->treCorr().NodeSelected(Root());
    binder->treCorr().ChooseMenu({"mnuNew", 1, {}});
    binder->SetDbConnection(given);
    EXPECT_EQ(binder->Id(), 0);
    EXPECT_EQ(binder->AddFiles({File("geheim.txt")}, "", 0, false, true), addFiles::noDossier);
    EXPECT_EQ(Theirs("Select count(*) from tblDocument"), "1");
    EXPECT_TRUE(Told("wacht.txt: niet opgeslagen"));
}

TEST_F(TwoDatabases, AnIdFromTheBagIsLoadedFromTheFirstConnectionWithItsFolder) {
    MapBag bag;
    binder->treCorr().NodeSelected(binder->treCorr().Tree()->GetItem(0, "Post")->Id());
    binder->SaveProperties(bag);
    ctrlCorrespondence restored(machine);
    restored.LoadProperties(bag);
    restored.SetDbConnection(connection);
    EXPECT_EQ(restored.Id(), binder->Id());
    ASSERT_NE(restored.treCorr().SelectedItem(), nullptr);
    EXPECT_EQ(restored.treCorr().SelectedItem()->Description(), "Post");
}

TEST_F(Binder, TheQueueOfTheFirstDossierIsNotTheSecondOnes) {
    machine.files.CreateDirectories(machine.Path("queue\\A"));
    File("queue\\A\\a.tif");
    Setting("DossierSettings", "ScanQueue", machine.Path("queue"));
    machine.messages.answers = {platform::Answer::No};
    ASSERT_EQ(Open("A"), 0);
    ASSERT_TRUE(machine.log.Has("fncCheckDocumentQueue", "queue\\A"));
    machine.log.lines.clear();
    ASSERT_EQ(Open("B"), 0);
    EXPECT_FALSE(machine.log.Has("fncCheckDocumentQueue"));
    binder->SetCheckDocumentQueueId("A");
    ASSERT_EQ(Open("B"), 0);
    EXPECT_TRUE(machine.log.Has("fncCheckDocumentQueue", "queue\\A")) << "the host's key stays";
    binder->SetCheckDocumentQueueId("");
    ASSERT_EQ(binder->OpenOrCreate("C", "", "", "", "A"), 0);
    machine.log.lines.clear();
    File("queue\\A\\a.tif");
    ASSERT_EQ(Open("B"), 0);
    EXPECT_FALSE(machine.log.Has("fncCheckDocumentQueue")) << "that key was the other dossier's";
}

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
TEST_F(TwoDatabases, WhatCannotBeReadIsNotTakenForAbsent) {
    auto faulty = std::make_shared<tests::FaultyConnection>(connection);
    const auto refuse = [&](const char* part) {
        machine.messages.shown.clear();
        faulty->refuse = [=](const std::string& text) { return text.find(part) != text.npos; };
    };
    Setting("Template", "Path", "T");
    ASSERT_EQ(Open("A"), 0);
    const auto a = binder->Id();
    binder->SetDbConnection(nullptr);
    binder->SetDbConnection(faulty);
    refuse("from tblDossierRelations");
    binder->SetId(a);
    EXPECT_EQ(binder->AddFiles({File("x.txt")}, "", 0, false, true), addFiles::notFiled);
    EXPECT_TRUE(Told("Het dossier kan niet gelezen worden") && Told("x.txt: niet opgeslagen"));
    refuse("tblSettings");
    EXPECT_EQ(binder->AddFiles({File("x.txt")}, "", 0, false, true), addFiles::notFiled);
    EXPECT_FALSE(Told("DocumentPath")) << "it is there";
    faulty->refuse = nullptr;
    EXPECT_EQ(KeyOfFiled(), "A");

    connection->Execute("insert into tblDossierTypes (TypeId, DossierType) values (7, 'Zaak')");
    connection->Execute("insert into tblDossierTabs (DossierTypeId, TabDescription) values (7, "
                        "'Stukken')");
    binder->SetDossierType("Zaak");
    refuse("from tblDossierTabs");
    EXPECT_EQ(Open("F"), -3) << "rather than a dossier that stays without its folders";
    faulty->refuse = nullptr;
    ASSERT_EQ(Open("F"), 0);
    EXPECT_NE(binder->treCorr().GetItem(0, "Stukken"), nullptr);

    data::ConnectionAssignment assignment(machine, {});
    assignment.SetDbConnection(faulty);
    refuse("tblSettings");
    assignment.ReadTemplatePath();
    EXPECT_EQ(assignment.TemplatePath(), "T");
    assignment.SetDbConnection(std::make_shared<tests::FaultyConnection>(other));
    EXPECT_EQ(assignment.TemplatePath(), "") << "not the other database's";
}

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
        try {
            change();
        } catch (const platform::Error& error) {
            return error.Number() == platform::errors::invalidPropertyValue;
        }
        return false;
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
