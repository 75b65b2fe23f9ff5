// Finding items, and putting deleted ones back.
#include "tests/unit/controls/TreeFixture.h"

namespace kavidex::controls {

namespace {

constexpr int control = 1, shift = 2;

class RestoreTest : public TreeTest {
protected:
    void SetUp() override {
        MakeDossier();
        tree.AttachWindow(&window);
        whole = Nodes();
    }
    std::string Nodes() {
        std::string all;
        for (const auto rows =
                 database->Open({"select TreeItemId, ParentId from tblTreeItem order by Id"});
             !rows->Eof(); rows->MoveNext())
            all += data::ToText(rows->Get(std::size_t{0})) + "<" +
                   data::ToText(rows->Get(std::size_t{1})) + " ";
        return all;
    }
    bool Press(int key, int held = 0) { return tree.CommandKey(key, held & control, held & shift); }
    void Delete(std::int32_t id) {
        tree.NodeSelected(id);
        Press(keys::del);
    }
    // "Terugzetten" on that node: whether it is in the menu, last, and was done.
    std::string PutBack(std::int32_t id) {
        tree.NodeSelected(id);
        const auto menu = VisibleEntries(tree.PrepareMenu(id));
        if (menu.back().name != "mnuRestore") return "absent";
        tree.ChooseMenu(menu.back());
        return menu.back().enabled ? "done" : "refused";
    }
    std::string whole;
};

} // namespace

TEST_F(RestoreTest, DeletionsAreUndoneOneAfterTheOther) {
    std::vector<std::string> created;
    const auto token = tree.EvItemCreated.Subscribe(
        [&](const TreeItemInfo& item) { created.push_back(item.description); });
    Delete(note);
    tree.NodeSelected(mail);
    tree.NodeToggled(letters); // both, with all below them
    Press(keys::del);
    EXPECT_EQ(window.Drawing(), "Dossier\n.c.001\n");
    EXPECT_TRUE(Press('Z', control));
    EXPECT_EQ(window.Drawing(), "Dossier\n.Letters\n..a.tif\n.Mail\n..Old\n...b.msg\n.c.001\n")
        << "what was deleted before stays away";
    EXPECT_EQ(created, (std::vector<std::string>{"Mail", "Letters"}));
    EXPECT_EQ(selections.back(), R"(Dossier\Mail)");
    tree.SetReadOnly(true);
    Press('Z', control);
    EXPECT_NE(Nodes(), whole) << "a tree that is only read";
    tree.SetReadOnly(false);
    Press('Z', control);
    EXPECT_EQ(Nodes(), whole);
    EXPECT_EQ(selections.back(), R"(Dossier\Letters\note)");
    EXPECT_TRUE(Press('Z', control)) << "nothing is left, and the host does not get the key";
    EXPECT_TRUE(machine.messages.shown.empty()) << Told();
    Delete(note);
    tree.SetTreeId(0);
    Press('Z', control);
    EXPECT_NE(Nodes(), whole) << "of a dossier that was left";
}

TEST_F(RestoreTest, AnUndoThatFailsCanBeTriedAgainUnlessAnotherRemovedTheItem) {
    Delete(letter);
    Delete(letters);
    database->BeginTrans();
    database->Execute("drop table tblTreeItem");
    Press('Z', control);
    EXPECT_FALSE(machine.messages.shown.empty());
    database->RollbackTrans();
    machine.messages.shown.clear();
    Press('Z', control);
    Press('Z', control);
    EXPECT_EQ(Nodes(), whole) << Told();

    Delete(letter);
    database->Execute("update tblTreeItem set TreeItemId = -TreeItemId, ParentId = -ParentId "
                      "where TreeItemId = " +
                      std::to_string(letters));
    Press('Z', control);
    ASSERT_EQ(machine.messages.shown.size(), 1U) << Told();
    EXPECT_EQ(machine.messages.shown[0].caption, "Terugzetten");
    EXPECT_EQ(machine.messages.shown[0].text, "Ook de verwijderde map is teruggezet: \r\nLetters");
    Delete(letter);
    database->Execute("delete from tblTreeItem where TreeItemId = " + std::to_string(-letter));
    machine.messages.shown.clear();
    Press('Z', control);
    ASSERT_EQ(machine.messages.shown.size(), 1U) << Told();
    EXPECT_EQ(machine.messages.shown[0].text.find("Niet teruggezet: \r\na.tif"), 0U) << Told();
    Press('Z', control);
    EXPECT_EQ(machine.messages.shown.size(), 1U) << "it is not tried for ever";
}

TEST_F(RestoreTest, ADeletedItemThatIsShownIsPutBackWithAllBelowIt) {
    EXPECT_EQ(PutBack(mail), "absent");
    Delete(message);
    Delete(mail);
    platform::SaveRegFlag(machine, "TreeSettings", "ShowDeleted", true);
    tree.Refresh();
    ASSERT_NE(window.Find(-message), 0U) << window.Drawing();
    tree.SetDeleteEnabled(false);
    EXPECT_EQ(PutBack(-mail), "refused");
    EXPECT_NE(Nodes(), whole);
    tree.SetDeleteEnabled(true);
    EXPECT_EQ(PutBack(-mail), "done");
    EXPECT_EQ(Nodes(), whole) << Told();
    EXPECT_EQ(selections.back(), R"(Dossier\Mail)");
}

TEST_F(RestoreTest, WhatAnotherDeletedUnderMenuOrEditorIsTold) {
    MakeStore();
    const auto before = window.Drawing();
    tree.NodeSelected(letters);
    const auto menu = tree.PrepareMenu(letters);
    tree.ChooseMenu({"mnuRename", 0, {}}); // the editor is open
    model::clsItemPtr none;
    EXPECT_TRUE(Elsewhere()->DeleteItem(none, letters));
    EXPECT_FALSE(tree.LabelEdited(letters, "Brieven"));
    for (const int entry : {0, 1}) tree.ChooseMenu({"mnuNew", entry, {}});
    EXPECT_EQ(Stored("Select count(*) from tblDocument where DocId > 0"), "0") << "no stray note";
    window.forms.users = {[](tests::FormUser& user) {
        user.Type("txtName", "Brieven");
        user.Click("btnOk");
    }};
    tree.ChooseMenu({"mnuProperties", 0, {}});
    EXPECT_EQ(tree.MoveItem(numbered, letters), nullptr);
    EXPECT_EQ(tree.MoveItem(letters, mail), nullptr);
    ASSERT_EQ(machine.messages.shown.size(), 6U) << Told();
    for (const auto& shown : machine.messages.shown)
        EXPECT_NE(shown.text.find("intussen door een andere gebruiker"), std::string::npos);
    EXPECT_EQ(window.Drawing(), before);
    tree.ChooseMenu({"mnuDelete", 0, {}}); // as the user wants it
    EXPECT_EQ(machine.messages.shown.size(), 6U) << Told();
    EXPECT_EQ(window.Find(letters), 0U);
    Press('Z', control);
    EXPECT_NE(window.Find(letters), 0U) << Told();
    EXPECT_NE(window.Find(note), 0U) << "with what was in it";
}

TEST_F(RestoreTest, WorkBegunInOneDatabaseNeverGoesOnInAnotherOfTheSameIds) {
    data::EmbeddedDatabase::BackupTo(*database, machine.Path("second.db"));
    const auto first = database, second = data::EmbeddedDatabase::Open(machine.Path("second.db"));
    const auto id = tree.TreeId();
    const auto show = [&](const data::ConnectionPtr& connection) {
        tree.SetDbConnection(connection);
        tree.SetTreeId(id);
    };
    window.forms.users = {[&](tests::FormUser& user) {
        user.Type("txtName", "Changed");
        show(second);
        user.Click("btnOk");
    }};
    tree.NodeSelected(letters);
    tree.ChooseMenu({"mnuProperties", 0, {}});
    show(first);
    window.choose = "mnuDelete";
    window.onMenu = [&] {
        show(second);
        tree.SetHighLightToItem(letters);
    };
    tree.ContextMenu(letters, 0, 0);
    window.onMenu = nullptr;
    show(first);
    {
        const auto token = tree.EvItemDelete.Subscribe([&](const TreeItemInfo&) { show(second); });
        tree.NodeSelected(note);
        tree.NodeToggled(mail);
        Press(keys::del);
    }
    Press('Z', control);
    show(second);
    EXPECT_EQ(window.Drawing(),
              "Dossier\n.Letters\n..a.tif\n..note\n.Mail\n..Old\n...b.msg\n.c.001\n");
    database = second;
    EXPECT_EQ(Nodes(), whole);
    show(first);
    EXPECT_EQ(window.Drawing(), "Dossier\n.Letters\n..a.tif\n.Mail\n..Old\n...b.msg\n.c.001\n");
}

TEST_F(RestoreTest, TypesThatAreUnknownEmptyOrVeryLongAreWorkedWithLikeOthers) {
    const std::string longest(255, 'x');
    for (const char* type : {"", "a\\b", "..", longest.c_str()}) {
        const auto id = Add(type, 4711, "Raar", mail);
        ASSERT_NE(window.Find(id), 0U) << type;
        for (const auto* entry : {"mnuCopy", "mnuProperties", "mnuPrint", "mnuRename"}) {
            tree.NodeSelected(id);
            tree.PrepareMenu(id);
            tree.ChooseMenu({entry, 0, {}});
        }
        EXPECT_TRUE(tree.LabelEdited(id, "Raarder"));
        Delete(id);
        Press('Z', control);
        ASSERT_NE(window.Find(id), 0U) << type << Told();
        EXPECT_EQ(window.At(id).text, "Raarder");
        EXPECT_EQ(tree.GetNode(id)->ItemType(), type);
    }
}

TEST_F(RestoreTest, FindsTheNextItemThatContainsATextRoundTheTree) {
    const auto find = [&](const char* text, const char* button) {
        window.forms.users = {[=](tests::FormUser& user) {
            if (text) user.Type("txtText", text);
            user.Click(button);
        }};
        EXPECT_TRUE(Press('F', control));
        EXPECT_TRUE(window.forms.users.empty());
    };
    const auto selected = [&] { return tree.SelectedItem()->Id(); };
    tree.NodeSelected(mail);
    find("B.M", "btnFind");
    EXPECT_EQ(selected(), message);
    EXPECT_EQ(window.selected, window.Find(message));
    EXPECT_EQ(selections.back(), R"(Dossier\Mail\Old\b.msg)");
    find(".", "btnFind");
    EXPECT_EQ(selected(), numbered);
    Press(keys::f3);
    EXPECT_EQ(selected(), letter) << "round at the end";
    Press(keys::f3, shift);
    EXPECT_EQ(selected(), numbered);
    const auto before = selections.size();
    find("nowhere", "btnFind"); // the dialog stays: the next button closes it
    ASSERT_EQ(machine.messages.shown.size(), 1U);
    EXPECT_EQ(machine.messages.shown[0].text, "'nowhere' is niet gevonden.");
    find(nullptr, "btnCancel");
    EXPECT_EQ(selections.size(), before);
    tree.SetShowParentsOnly(true);
    find("b.msg", "btnFind");
    EXPECT_EQ(machine.messages.shown.size(), 2U) << "what is not shown is not found";
}

} // namespace kavidex::controls
