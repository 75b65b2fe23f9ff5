// Two databases, whose same ids stand for other dossiers: one dossier's work must never end up in
// another.
#include "data/ConnectionAssignment.h"
#include "tests/fakes/FakeTreeWindow.h"
#include "tests/fakes/SmallTiff.h"
#include "tests/unit/controls/BinderFixture.h"

namespace kavidex::controls {
namespace {

struct TwoDatabases : Binder {
    data::ConnectionPtr other = data::EmbeddedDatabase::Create(machine.Path("other.kdb"));
    tests::FakeTreeWindow window;
    std::int32_t theirs = 0; // a document of the other client

    void SetUp() override {
        Binder::SetUp();
        auto second = std::make_unique<ctrlCorrespondence>(machine);
        second->SetDbConnection(other);
        machine.files.CreateDirectories(machine.Path("theirs"));
        tests::On<data::clsSettings>(machine, other)
            .SetSetting("Storage", "DocumentPath", machine.Path("theirs"));
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
        const auto rows = database->Open({statement});
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

// Leaving a dossier asks about its note and tells of what waited, and lets the host in.
TEST_F(TwoDatabases, ADossierOpenedWhileAnotherIsLeftStaysWithItsKey) {
    const auto loose = TreeWithoutDossier();
    MapBag bag;
    binder->SaveProperties(bag);
    using Step = std::function<void()>;
    const Step boxes[] = {[&] { BringToWait("wacht.txt"); },
                          [&] {
                              binder->treCorr().NodeSelected(Root());
                              binder->treCorr().ChooseMenu({"mnuNew", 1, {}});
                              ASSERT_TRUE(binder->Viewer().Item());
                              binder->Viewer().Views().note.Note().SetText("nieuw");
                          }};
    const Step leaving[] = {[&] { binder->SetId(loose); }, [&] { EXPECT_EQ(Open("C"), -6); },
                            [&] { EXPECT_FALSE(binder->CreateNew("x", "")); },
                            [&] { binder->CloseObject(); }, [&] { binder->LoadProperties(bag); }};
    for (const auto& box : boxes)
        for (const auto& leave : leaving) {
            ASSERT_EQ(Open("A"), 0);
            box();
            int nested = 1;
            machine.messages.answers = {platform::Answer::No};
            machine.messages.meanwhile = [&] { nested = Open("D"); };
            leave();
            const auto at = std::to_string(&box - boxes) + "." + std::to_string(&leave - leaving);
            EXPECT_EQ(nested, 0) << at;
            EXPECT_EQ(binder->ExternalId(), "D") << at;
            ASSERT_TRUE(binder->Usable()) << at;
            EXPECT_EQ(KeyOfFiled(), "D") << at;
            EXPECT_EQ(First(connection, "Select count(*) from tblTreeItem where Description = "
                                        "'wacht' and ParentId = " +
                                            std::to_string(Root())),
                      "0")
                << at << ": it is the other dossier's";
            machine.messages.answers.clear();
        }
    for (const auto& box : boxes) { // all end with their connection
        binder->SetDbConnection(connection);
        ASSERT_EQ(Open("A"), 0);
        box();
        machine.messages.answers = {platform::Answer::No};
        machine.messages.meanwhile = [&] { EXPECT_EQ(Open("D"), 0); };
        binder->SetDbConnection(other);
        EXPECT_EQ(binder->Id(), 0);
        EXPECT_EQ(binder->ExternalId(), "");
        EXPECT_FALSE(binder->Viewer().Item());
        machine.messages.answers.clear();
    }
}

TEST_F(TwoDatabases, AnIdFromTheBagIsLoadedFromTheFirstConnectionWithItsFolder) {
    const auto backlog = machine.Path("backlog\\00000000000A");
    machine.files.CreateDirectories(backlog);
    machine.files.WriteAll(backlog + "\\1.tif", tests::SmallTiff("s"));
    Setting("BackLogSettings", "Path", machine.Path("backlog"));
    MapBag bag;
    binder->treCorr().NodeSelected(binder->treCorr().Tree()->GetItem(0, "Post")->Id());
    binder->SaveProperties(bag);
    ctrlCorrespondence restored(machine);
    restored.LoadProperties(bag);
    restored.SetDbConnection(connection);
    EXPECT_EQ(restored.Id(), binder->Id());
    ASSERT_NE(restored.treCorr().SelectedItem(), nullptr);
    EXPECT_EQ(restored.treCorr().SelectedItem()->Description(), "Post");
    EXPECT_EQ(restored.ContainsDocuments("tif"), 1) << "its backlog came once it could";
    EXPECT_TRUE(machine.messages.shown.empty());
}

TEST_F(Binder, TheQueueOfTheFirstDossierIsNotTheSecondOnes) {
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
    binder->CloseObject();
    File("queue\\A\\a.tif");
    machine.messages.shown.clear();
    EXPECT_EQ(binder->fncCheckDocumentQueue("A"), 0);
    EXPECT_TRUE(machine.messages.shown.empty()) << "without a dossier there is no place for it";
    machine.log.lines.clear();
    ASSERT_EQ(binder->OpenOrCreate("B", "", "", "", "X"), 0);
    EXPECT_FALSE(machine.log.Has("fncCheckDocumentQueue", "queue\\A"));
    binder->SetCheckDocumentQueueId("A");
    EXPECT_EQ(binder->fncCheckDocumentQueue(""), 0);
    EXPECT_TRUE(machine.log.Has("fncCheckDocumentQueue", "queue\\A")) << "the last one counts";
    binder->SetCheckDocumentQueueId("");
    ASSERT_EQ(binder->OpenOrCreate("C", "", "", "", "A"), 0);
    machine.log.lines.clear();
    File("queue\\A\\a.tif");
    ASSERT_EQ(Open("B"), 0);
    EXPECT_FALSE(machine.log.Has("fncCheckDocumentQueue")) << "that key was the other dossier's";
}

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

} // namespace
} // namespace kavidex::controls
