// What a host does inside the binder's own events and long operations; what a change of a property
// costs; what the bag holds.
#include "controls/viewer/external/ctrlExtViewer.h"
#include "data/clsSettings.h"
#include "model/documentFile.h"
#include "tests/fakes/FakeBinderWindow.h"
#include "tests/unit/controls/BinderFixture.h"

namespace kavidex::controls {
namespace {

struct Turns : Binder {
    std::vector<std::string> Folders() {
        std::vector<std::string> names;
        for (const auto& item : binder->treCorr().AllItems()) names.push_back(item->Description());
        return names;
    }
    using Names = std::vector<std::string>;
};

TEST_F(Turns, ADossierOpenedOnHearingOfTheOneBeingMadeLeavesBothWhole) {
    int nested = 1;
    const auto token = binder->EvItemCreated.Subscribe([&](const TreeItemInfo& item) {
        if (item.description == "A") nested = binder->OpenOrCreate("two", "Twee", "X;Y", "", "");
    });
    EXPECT_EQ(binder->OpenOrCreate("one", "Een", "A;B;C", "", ""), -6) << "another one stands open";
    EXPECT_EQ(nested, 0);
    EXPECT_EQ(binder->ExternalId(), "two");
    EXPECT_EQ(Folders(), (Names{"X", "Y"}));
    const auto two = binder->Id();
    ASSERT_EQ(Open("one"), 0);
    EXPECT_NE(binder->Id(), two);
    EXPECT_EQ(Folders(), (Names{"A", "B", "C"}));
    EXPECT_EQ(Count("tblTree"), 2);
    EXPECT_EQ(Count("tblDossierRelations"), 2);
}

TEST_F(Turns, ADossierClosedOrChangedInsideASelectionIsNotShownOn) {
    ASSERT_EQ(Open("one"), 0);
    ASSERT_EQ(binder->AddFiles({File("brief.txt")}, "", 0, false, true), 0);
    const auto letter = binder->treCorr().AllItems().front()->Id();
    bool close = true;
    const auto token = binder->EvItemSelected.Subscribe([&](const TreeItemInfo&) {
        if (close)
            binder->CloseObject();
        else
            ASSERT_EQ(binder->OpenOrCreate("two", "Twee", "", "", ""), 0);
    });
    binder->treCorr().NodeSelected(letter);
    EXPECT_FALSE(binder->Viewer().Item());
    EXPECT_FALSE(binder->Usable());
    ASSERT_EQ(Open("one"), 0);
    close = false;
    binder->treCorr().NodeSelected(letter);
    EXPECT_FALSE(binder->Viewer().Item()) << "it belongs to the dossier before";
    EXPECT_EQ(binder->ExternalId(), "two");
}

TEST_F(Turns, ADocumentThatAnotherDeletedLeavesTheViewerAtRefresh) {
    ASSERT_EQ(Open("one"), 0);
    ASSERT_EQ(binder->AddFiles({File("een.txt"), File("twee.txt")}, "", 0, false, true), 0);
    const auto shown = binder->treCorr().Tree()->GetItem(0, "een")->Id();
    binder->treCorr().NodeSelected(shown);
    ASSERT_TRUE(binder->Viewer().Item());
    binder->Refresh();
    ASSERT_TRUE(binder->Viewer().Item()) << "still there";
    const auto path = model::FindDocumentFile(machine, connection, *binder->Viewer().Item()).path;
    machine.files.Remove(path);
    binder->Refresh();
    EXPECT_FALSE(binder->Viewer().Item());
    machine.files.WriteAll(path, "text");
    binder->Refresh();
    ASSERT_TRUE(binder->Viewer().Item()) << "its file came back";
    const auto other = Make();
    ASSERT_EQ(other->OpenOrCreate("one", "", "", "", ""), 0);
    ASSERT_TRUE(other->treCorr().DeleteItem(shown));
    binder->Refresh();
    EXPECT_FALSE(binder->Viewer().Item());
    EXPECT_EQ(binder->treCorr().AllItems().size(), 1U);
}

TEST_F(Turns, WhatIsWrittenInANoteIsKeptFromTheFileOfADeletedOne) {
    ASSERT_EQ(Open("key"), 0);
    ASSERT_EQ(binder->AddFiles({File("een.nnt"), File("twee.nnt")}, "", 0, false, true), 0);
    auto& tree = binder->treCorr();
    const auto items = tree.Tree()->Item()->ChildCollection()->Items();
    const std::vector<model::clsItemPtr> notes(items.begin(), items.end());
    const auto fileOf = [&](std::size_t which) {
        return machine.files.ReadAll(
            model::FindDocumentFile(machine, connection, *notes[which]).path);
    };
    const auto written = [&](ctlViewer& viewer) {
        viewer.Views().note.Note().SetText("typed");
        machine.messages.shown.clear();
    };
    tree.NodeSelected(notes[0]->Id());
    written(binder->Viewer());
    model::clsTree other(machine); // of another user
    other.SetDbConnection(connection);
    other.SetTreeId(tree.Tree()->TreeId());
    model::clsItemPtr none;
    ASSERT_TRUE(other.DeleteItem(none, notes[0]->Id()));
    EXPECT_FALSE(binder->Viewer().CloseImage());
    EXPECT_NE(machine.messages.shown.back().text.find("andere gebruiker verwijderd"),
              std::string::npos);
    EXPECT_EQ(fileOf(0).find("typed"), std::string::npos);
    machine.messages.answers = {platform::Answer::No};
    tree.Refresh();
    binder->Refresh();
    EXPECT_FALSE(binder->Viewer().Item()) << "the user let it go";

    platform::SaveRegFlag(machine, "ViewerSetting", "AllwaysExternal", true);
    tree.NodeSelected(notes[1]->Id());
    ASSERT_TRUE(binder->ExtViewer().Form());
    written(binder->ExtViewer().Form()->Viewer());
    EXPECT_TRUE(tree.DeleteItem(notes[1]->Id()));
    EXPECT_FALSE(binder->ExtViewer().Form()) << "its window went with it";
    EXPECT_EQ(machine.messages.shown.size(), 1U) << "asked whether to save, and no more";
    EXPECT_NE(fileOf(1).find("typed"), std::string::npos) << "an undo brings it back whole";
}

TEST_F(Turns, TheLastDossierAskedForDuringALongLoadStays) {
    for (const char* const key : {"small", "large"}) ASSERT_EQ(Open(key), 0);
    for (int i = 0; i < 60; ++i) binder->treCorr().AddTab("Map", Root());
    const auto large = binder->Id();
    const auto slow = std::make_shared<tests::RecordingConnection>("", connection);
    slow->refuse = [&](const std::string&) {
        machine.clock.now.millisecond += 40;
        return false;
    };
    tests::On<ctrlCorrespondence> other(machine, slow);
    File("backlog\\0000000small\\1.tif", tests::SmallTiff("s"));
    Setting("BackLogSettings", "Path", machine.Path("backlog"));
    const auto file = File("a.txt");
    int opened = 0, result = 1;
    for (const std::string key : {"small", "new", "large"}) {
        opened = 0;
        machine.busy.onPump = [&] {
            if (opened++ > 0) return;
            EXPECT_NE(other.AddFiles({file}, "", 0, false, true), addFiles::done);
            EXPECT_TRUE(Told("Er loopt nog een andere bewerking"));
            result = other.OpenOrCreate(key, "", "A;B", "", "");
            EXPECT_EQ(binder->OpenOrCreate("large", "", "", "", ""), 0) << "nor another control";
            if (key == "large") other.treCorr().AddTab("Later", 0);
        };
        EXPECT_EQ(other.OpenOrCreate("large", "", "", "", ""), -6);
        machine.busy.onPump = nullptr;
        ASSERT_GT(opened, 0);
        EXPECT_EQ(result, 0);
        EXPECT_EQ(other.ExternalId(), key);
        EXPECT_EQ(other.Id() == large, key == "large");
        ASSERT_TRUE(other.treCorr().Tree());
        EXPECT_EQ(other.treCorr().Tree()->TreeId(), other.Id());
        EXPECT_EQ(other.ContainsDocuments(""), key == "small") << "its backlog came once it could";
    }
    EXPECT_TRUE(other.treCorr().Tree()->GetItem(0, "Later")) << "not as it was read before";
    opened = 0;
    machine.busy.onPump = [&] {
        if (opened++ == 0) other.CloseObject();
    };
    other.SetId(large);
    machine.busy.onPump = nullptr;
    ASSERT_GT(opened, 0);
    EXPECT_EQ(other.Id(), 0) << "closed while it was being loaded";
    EXPECT_FALSE(other.Usable());
}

TEST_F(Turns, EveryStepOfOpeningHasItsNumberAndNothingStaysOpen) {
    const auto recorded = std::make_shared<tests::RecordingConnection>("", connection);
    binder->SetDbConnection(nullptr);
    binder->SetDbConnection(recorded);
    const struct {
        const char *statement, *table;
        std::int32_t result;
    } steps[] = {{"select", "tbldossierdbrelation", -1},
                 {"insert", "tbldossierdbrelation", -2},
                 {"insert", "tbltree", -3},
                 {"select", "tbldossierrelations", -4},
                 {"insert", "tbldossierrelations", -5},
                 {"select", "tbldossierrelations", -6}};
    for (const auto& step : steps) {
        const std::string key = step.result == -6 ? "known" : "key" + std::to_string(step.result);
        if (step.result == -6) {
            ASSERT_EQ(Open(key), 0);
        }
        binder->CloseObject();
        recorded->refuse = [&](const std::string& statement) {
            const auto lower = platform::LowerCase(statement);
            const auto at = lower.find(step.table);
            const auto end = at + std::string(step.table).size();
            return at != lower.npos && lower.starts_with(step.statement) &&
                   (end == lower.size() || !std::isalpha(static_cast<unsigned char>(lower[end])));
        };
        EXPECT_EQ(Open(key), step.result);
        recorded->refuse = nullptr;
        EXPECT_EQ(binder->Id(), 0) << step.result;
        EXPECT_FALSE(binder->Usable()) << step.result;
        EXPECT_EQ(binder->ExternalId(), "");
        EXPECT_EQ(Open(key), 0) << "it can be opened afterwards";
    }
}

TEST_F(Turns, OpeningAKnownDossierReadsEachTableOnceAndTheItemsOncePerFolder) {
    ASSERT_EQ(binder->OpenOrCreate("key", "Dossier", "A;B;C", "", ""), 0);
    ASSERT_EQ(binder->AddFiles({File("a.txt"), File("b.txt")}, "", 0, false, true), 0);
    const auto recorded = std::make_shared<tests::RecordingConnection>("", connection);
    tests::On<ctrlCorrespondence> other(machine, recorded);
    recorded->statements.clear();
    ASSERT_EQ(other.OpenOrCreate("key", "", "", "", ""), 0);
    std::string all;
    for (const auto& statement : recorded->statements) all += statement + "\n";
    EXPECT_EQ(recorded->Count("tblDossierDbRelation"), 1U) << all;
    EXPECT_EQ(recorded->Count("tblDossierRelations"), 1U) << all;
    EXPECT_EQ(recorded->Count("from tblTree where"), 1U) << all;
    const auto items = recorded->Count("tblTreeItem");
    EXPECT_LE(items, 5U) << all; // the root's own, and those in it and its three folders
    // Besides: what the settings say of the backlog, the scan queue and the import.
    EXPECT_LE(recorded->statements.size() - items, 6U) << all;
}

// --- Properties ---------------------------------------------------------------------------------

struct CountingWindow : tests::FakeBinderWindow {
    int toolbar = 0, layout = 0, looks = 0;
    void ToolbarChanged() override { ++toolbar; }
    void LayoutChanged() override { ++layout; }
    void AppearanceChanged() override { ++looks; }
};

TEST_F(Turns, AChangeOfAPropertyArrangesOnlyWhatItTouches) {
    CountingWindow window;
    binder->AttachWindow(&window);
    const auto cost = [&](const std::function<void()>& change) {
        window.toolbar = window.layout = window.looks = 0;
        change();
        return std::to_string(window.layout) + std::to_string(window.toolbar) +
               std::to_string(window.looks);
    };
    EXPECT_EQ(cost([&] { binder->SetIniFile("C:\\a.ini"); }), "000");
    EXPECT_EQ(cost([&] { binder->SetDescription("x"); }), "000");
    EXPECT_EQ(cost([&] { binder->SetNameForInsert("a;b"); }), "000");
    EXPECT_EQ(cost([&] { binder->SetShowParentsOnly(true); }), "000");
    EXPECT_EQ(cost([&] { binder->SetBackColor(255); }), "001");
    EXPECT_EQ(cost([&] { binder->SetAllowSettings(false); }), "010");
    EXPECT_EQ(cost([&] { binder->SetShowTreeOnly(true); }), "110");
    binder->AttachWindow(nullptr);
}

// A host's bag that keeps the order in which it is asked.
struct OrderedBag : PropertyBag {
    std::vector<std::string> read, written;
    std::optional<data::Value> Read(std::string_view name, const data::Value&, BagWidth) override {
        read.emplace_back(name);
        return std::nullopt;
    }
    void Write(std::string_view name, const data::Value&, BagWidth) override {
        written.emplace_back(name);
    }
};

TEST_F(Turns, TheBagIsReadAndWrittenInItsOrderWithItsSpellings) {
    Names names{"BackColor",         "ForeColor",          "Enabled",       "BackStyle",
                "BorderStyle",       "OLEDropMode",        "ColWidth",      "IniFile",
                "NameForInsert",     "TypeForInsert",      "DossierType",   "Id",
                "ExternalId",        "InitString",         "Description",   "DbProvider",
                "DbPassWord",        "DbUserId",           "DbPath",        "ShowParentsOnly",
                "ShowTreeOnly",      "ShowExternalViewer", "AllowSettings", "ShowAddButton",
                "DossierStatus",     "ShowCheckList",      "ValueFile",     "AlternateScanSetting",
                "ChecklistPresent ", "SelectItems",        "Language",      "LastUsedLayout",
                "FirstLast",         "ScannedDoc",         "TemplatePath",  "SelectedTabId",
                "DbOpened"};
    OrderedBag bag;
    binder->LoadProperties(bag);
    EXPECT_EQ(bag.read, names);
    binder->SaveProperties(bag);
    names[28] = "ChecklistPresent";
    EXPECT_EQ(bag.written, names);
    EXPECT_FALSE(binder->Enabled()) << "an absent item reads as its default";
    EXPECT_EQ(binder->OLEDropMode(), 0);
    EXPECT_TRUE(binder->AllowSettings());
    EXPECT_EQ(binder->NameForInsert(), "Nieuwe tab;Nieuwe notitie");
    EXPECT_EQ(binder->TypeForInsert(), "Tab;nnt");
}

TEST_F(Turns, ABagNeverMakesTheHostsConnectionTheControlsOwn) {
    MapBag bag;
    bag.values["DbOpened"] = true;
    binder->LoadProperties(bag);
    ASSERT_EQ(Open("key"), 0);
    EXPECT_EQ(binder->CloseObject(), 0);
    EXPECT_TRUE(connection->IsOpen());
}

TEST_F(Turns, PropertiesThatAreNotSavedAreReportedAsWell) {
    Names told;
    const auto token =
        binder->PropertyChanged.Subscribe([&](std::string_view name) { told.emplace_back(name); });
    binder->SetEmailAddress("a@example.org");
    binder->SetShowDescriptionsInToolTip(false);
    EXPECT_EQ(told, (Names{"EmailAddress", "ShowDescriptionsInToolTip"}));
}

} // namespace
} // namespace kavidex::controls
