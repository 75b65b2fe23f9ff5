// The properties dialog over a real database and real files, used as a user would.
#include "controls/tree/frmProperties.h"

#include "imaging/MemoryReader.h"
#include "imaging/scanSource.h"
#include "model/clsDocument.h"
#include "tests/fakes/SmallTiff.h"
#include "tests/unit/controls/TreeFixture.h"

namespace kavidex::controls {

namespace attributes = platform::attributes;
using tests::FormUser;

namespace {

// One page directory with the maker's and the model's name.
std::string Scan(const std::string& maker, const std::string& model) {
    const auto length = [](const std::string& text) {
        return static_cast<std::uint32_t>(text.size() + 1);
    };
    const std::uint32_t texts = 8 + 2 + 24 + 4;
    return tests::TiffOf(
        {{271, 2, length(maker), texts}, {272, 2, length(model), texts + length(maker)}},
        maker + '\0' + model + '\0');
}

} // namespace

class PropertiesTest : public TreeTest {
protected:
    void SetUp() override {
        MakeStore();
        MakeDossier();
        scan = File("tif", Scan("Scanners", "DS 100"));
        text = File("txt", "text");
        tree.AttachWindow(&window);
    }
    // An item of a filed document.
    std::int32_t File(const char* type, const std::string& bytes) {
        const auto path = machine.Path(std::string("source.") + type);
        machine.files.WriteAll(path, bytes);
        model::clsDocument document(machine);
        document.SetDatabaseObject(database);
        document.SetDocType(type);
        document.SetDescription("filed");
        document.SetInsertedBy("piet");
        document.SetInsertDate("20261115");
        document.SetInsertTime("0905");
        EXPECT_TRUE(document.SaveNewRow()) << Told();
        EXPECT_TRUE(document.AddDocument(path, false, true)) << Told();
        const auto id = Add(type, document.DocId(), type, letters);
        paths[id] = PathOf(tree.GetNode(id));
        return id;
    }
    // "Eigenschappen" of these items.
    void Show(const std::vector<std::int32_t>& ids, std::function<void(FormUser&)> acts) {
        tree.ClearSelectedItems();
        tree.SetHighLightToItem(ids.front());
        if (ids.size() > 1)
            for (const auto id : ids) tree.NodeToggled(id);
        window.forms.users = {std::move(acts)};
        auto menu = tree.PrepareMenu(ids.front());
        const auto* entry = FindEntry(menu, "mnuProperties");
        ASSERT_TRUE(entry->visible && entry->enabled);
        tree.ChooseMenu(*entry);
        EXPECT_TRUE(window.forms.users.empty()) << "no dialog came";
    }
    std::uint32_t AttributesOf(std::int32_t id) {
        auto told = attributes::readOnly | attributes::hidden | attributes::system;
#ifndef _WIN32
        told |= attributes::archive; // Wine says that of every file
#endif
        return machine.files.Attributes(paths[id]) & told;
    }

    std::int32_t scan = 0, text = 0;
    std::map<std::int32_t, std::string> paths;
};

TEST_F(PropertiesTest, ShowsOneDocumentAndRenamesIt) {
    Show({scan}, [&](FormUser& user) {
        EXPECT_EQ(user.Caption(), "tif Eigenschappen");
        EXPECT_EQ(user.Text("txtName"), "tif");
        EXPECT_EQ(user.Text("txtType"), "Bestand TIF");
        EXPECT_EQ(user.Text("txtUser"), "piet");
        EXPECT_EQ(user.Text("txtDateTime"), "15-11-2026 09:05");
        EXPECT_EQ(user.Text("txtSource"), "Scanners DS 100");
        EXPECT_FALSE(user.CanUse("btnApply"));
        user.Click("TabStrip1");
        user.Type("txtName", "Paspoort");
        user.Click("btnOk");
    });
    ASSERT_EQ(machine.messages.shown.size(), 2U) << Told();
    EXPECT_EQ(machine.messages.shown[0].caption, "Full storage path");
    EXPECT_EQ(machine.messages.shown[0].text, paths[scan]);
    EXPECT_EQ(machine.messages.shown[1].caption, "TreeItemId");
    EXPECT_EQ(machine.messages.shown[1].text, "TreeItemId = " + std::to_string(scan));
    EXPECT_EQ(tree.GetNode(scan)->Description(), "Paspoort");
    EXPECT_EQ(window.At(scan).text, "Paspoort");

    Show({scan}, [&](FormUser& user) {
        user.Type("txtName", " ");
        user.Click("btnOk");
        EXPECT_EQ(machine.messages.shown.back().text, "Vul een omschrijving in.");
        EXPECT_FALSE(user.Form().IsClosed());
        user.Type("txtName", "Anders");
        user.Click("btnCancel");
    });
    EXPECT_EQ(tree.GetNode(scan)->Description(), "Paspoort");
    tree.SetReadOnly(true);
    Show({scan}, [](FormUser& user) {
        EXPECT_THROW(user.Type("txtName", "x"), std::logic_error);
        EXPECT_FALSE(user.CanUse("chkReadOnly"));
    });
}

TEST_F(PropertiesTest, ApplyingSetsTheWholeAttributesOfEveryFile) {
    machine.files.SetAttributes(paths[scan], attributes::readOnly | attributes::hidden);
    std::vector<std::int32_t> changed;
    const auto token = tree.MayWriteChanged.Subscribe(
        [&](const std::vector<std::int32_t>& ids) { changed = ids; });
    Show({scan, text}, [&](FormUser& user) {
        EXPECT_EQ(user.Caption(), "tif, ... eigenschappen");
        EXPECT_EQ(user.Text("txtType"), "Meerdere typen geselecteerd");
        EXPECT_EQ(user.Text("lblText"), "2 Documenten");
        EXPECT_FALSE(user.Ticked("chkReadOnly")) << "only one is";
        EXPECT_FALSE(user.CanUse("txtName"));
        user.Tick("chkReadOnly");
        user.Click("btnApply");
        EXPECT_FALSE(user.CanUse("btnApply"));
        EXPECT_EQ(AttributesOf(text), attributes::readOnly);
        user.Tick("chkReadOnly", false);
        user.Click("btnOk");
    });
    EXPECT_EQ(AttributesOf(scan), 0U);
    EXPECT_EQ(AttributesOf(text), 0U);
    EXPECT_EQ(changed.size(), 2U);
    changed.clear();
    Show({scan}, [](FormUser& user) { user.Click("btnOk"); });
    EXPECT_TRUE(changed.empty()) << "as it was";
    EXPECT_TRUE(machine.messages.shown.empty()) << Told();
}

TEST_F(PropertiesTest, ShowsNoRowsThatSeveralItemsLeaveEmptyAndReadsTheScansTagsAlone) {
    const auto rows = [](FormUser& user) {
        std::string shown;
        for (const char* name : {"txtUser", "txtSource", "chkArchive"}) {
            const auto& fields = user.Form().Fields();
            shown += std::any_of(fields.begin(), fields.end(), [&](const auto& field) {
                return field.Name() == name && user.Form().IsShown(field);
            });
        }
        return shown;
    };
    machine.files.calls.clear();
    Show({scan}, [&](FormUser& user) { EXPECT_EQ(rows(user), "\1\1\1"); });
    for (const auto& call : machine.files.calls) EXPECT_FALSE(call.starts_with("ReadAll")) << call;
    Show({text}, [&](FormUser& user) { EXPECT_EQ(rows(user), std::string("\1\0\1", 3)); });
    Show({scan, text}, [&](FormUser& user) { EXPECT_EQ(rows(user), std::string("\0\0\1", 3)); });
}

TEST_F(PropertiesTest, ATreeThatGoesWhileTheDialogIsOpenTakesItAlong) {
    auto other = std::make_unique<ctrlTree>(machine);
    tests::FakeTreeWindow otherWindow;
    other->SetDbConnection(database);
    other->SetTreeId(tree.TreeId());
    other->AttachWindow(&otherWindow);
    other->NodeSelected(text);
    otherWindow.forms.users = {[&](FormUser& user) {
        user.Type("txtName", "Anders");
        user.Click("btnApply");
        other->AttachWindow(nullptr);
        other.reset();
        EXPECT_TRUE(user.Form().IsClosed());
    }};
    other->ChooseMenu({"mnuProperties", 0, {}});
    EXPECT_TRUE(otherWindow.forms.users.empty());
    EXPECT_EQ(
        Stored("select Description from tblTreeItem where TreeItemId = " + std::to_string(text)),
        "txt");
}

TEST_F(PropertiesTest, CountsDocumentsAndFolders) {
    Show({text, letters}, [](FormUser& user) {
        EXPECT_EQ(user.Text("lblText"), "1 Document, 1 Map");
        EXPECT_TRUE(user.CanUse("chkReadOnly"));
    });
    Show({letters, mail}, [](FormUser& user) {
        EXPECT_EQ(user.Text("lblText"), "2 Mappen");
        EXPECT_EQ(user.Text("txtType"), "Map");
        EXPECT_FALSE(user.CanUse("chkReadOnly"));
        user.Click("btnOk");
    });
    EXPECT_TRUE(machine.messages.shown.empty()) << Told();
}

TEST_F(PropertiesTest, AFileThatRefusesIsToldAndTheOthersAreChanged) {
    std::filesystem::remove(tests::FakeWorkstation::Native(paths[scan]));
    Show({scan, text}, [&](FormUser& user) {
        EXPECT_EQ(machine.messages.shown.size(), 1U) << "its attributes cannot be read";
        user.Tick("chkReadOnly");
        user.Click("btnOk");
        EXPECT_FALSE(user.Form().IsClosed());
        EXPECT_EQ(AttributesOf(text), attributes::readOnly);
    });
    EXPECT_EQ(machine.messages.shown.size(), 2U);
    EXPECT_EQ(machine.messages.shown.back().caption, "Error in frmProperties");
    machine.files.SetAttributes(paths[text], attributes::normal);
}

TEST(ScanSource, TellsScannerOrProgramAndNothingOfDamagedFiles) {
    const auto source = [](const std::string& bytes) {
        return imaging::ScanSource(std::make_unique<imaging::MemoryReader>(bytes));
    };
    EXPECT_EQ(source(Scan("Scanners", "Scanners X")), "Scanners X");
    EXPECT_EQ(source(Scan(std::string(300, 'x'), "Model")), std::string(255, 'x') + " Model");
    EXPECT_EQ(source("II no picture"), "");
    const auto whole = Scan("Maker", "Model");
    for (std::size_t length = 0; length < whole.size(); ++length)
        source(whole.substr(0, length)); // reads no byte beyond
}

} // namespace kavidex::controls
