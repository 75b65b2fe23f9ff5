// Cutting, copying and pasting, on a store with real files.
#include "tests/unit/controls/TreeFixture.h"

namespace kavidex::controls {

namespace {

class TreeExchange : public TreeTest {
protected:
    TreeExchange() {
        MakeStore();
        MakeDossier();
        other.SetDbConnection(database);
        EXPECT_TRUE(other.CreateNew("Other", "Inbox"));
        inbox = other.GetItem(0, "Inbox")->Id();
        brief = File("brief.txt", "five!", old);
        database->Execute("update tblDocument set ExternalId = 'key'");
        // What the fixture made has no document behind it.
        for (const auto id : {letter, note, message, numbered}) tree.DeleteItem(id);
        tree.AttachWindow(&window);
    }
    void Take(char key, std::int32_t id) {
        tree.NodeSelected(id);
        EXPECT_TRUE(tree.CommandKey(key, true, false));
    }
    void Choose(const char* entry) { tree.ChooseMenu({entry, 0, {}}); }
    void PasteInto(ctrlTree& into, std::int32_t id) {
        into.NodeSelected(id);
        EXPECT_TRUE(into.CommandKey('V', true, false));
    }

    ctrlTree other{machine};
    const std::string source = machine.Path("brief.txt");
    std::int32_t inbox = 0, brief = 0;
};

} // namespace

TEST_F(TreeExchange, ACopyInAnotherTreeIsADocumentOfItsOwn) {
    tree.NodeSelected(mail);
    tree.ChooseMenu({"mnuNew", 1, {}}); // a note in which nothing is written
    int copied = 0, pasted = 0;
    const auto one = tree.EvItemCopy.Subscribe([&] { ++copied; });
    const auto two = other.EvItemPaste.Subscribe([&] { ++pasted; });
    Take('C', mail);
    EXPECT_EQ(machine.clipboard.content.text, "Mail");
    PasteInto(other, inbox);
    EXPECT_EQ(copied + pasted, 2);
    const auto copy = other.GetItem(0, "brief");
    ASSERT_TRUE(copy) << Told();
    EXPECT_EQ(other.NodeFullPath(copy->Id()), R"(Other\Inbox\Mail\Old\brief)");
    EXPECT_TRUE(other.GetItem(0, "Nieuwe notitie 15-11-2026 14:05"));
    const auto original = tree.GetNode(brief);
    EXPECT_NE(copy->ItemId(), original->ItemId());
    EXPECT_NE(PathOf(copy), PathOf(original));
    EXPECT_TRUE(machine.files.SameBytes(PathOf(copy), source));
    EXPECT_TRUE(machine.files.SameBytes(PathOf(original), source));
    EXPECT_EQ(Stored("select ExternalId from tblDocument where DocId = " +
                     std::to_string(copy->ItemId())),
              "key");
    // Pasted into itself it ends, and so does the second time.
    PasteInto(tree, mail);
    EXPECT_EQ(tree.CountDocuments("txt"), 2);
    PasteInto(tree, letters);
    EXPECT_EQ(tree.CountDocuments("TXT"), 3);
    EXPECT_TRUE(machine.messages.shown.empty()) << Told();
}

TEST_F(TreeExchange, WhatIsCutGoesOnlyWhenAllOfItStandsElsewhere) {
    const auto path = PathOf(tree.GetNode(brief));
    const auto away = path + ".away";
    machine.files.Rename(path, away);
    Take('X', mail);
    PasteInto(other, inbox);
    ASSERT_EQ(machine.messages.shown.size(), 1U) << Told();
    EXPECT_NE(machine.messages.shown[0].text.find("Niet gekopieerd: \r\nbrief\r\n\r\nNiet alles"),
              std::string::npos);
    EXPECT_TRUE(tree.GetNode(brief)) << "nothing is lost";
    EXPECT_FALSE(other.GetItem(0, "brief"));
    machine.files.Rename(away, path);
    PasteInto(other, inbox);
    EXPECT_EQ(other.GetItem(inbox)->ChildCollection()->Count(), 1) << "what came does not twice";
    database->Execute("update tblDocument set InsertedBy = 'piet', InsertTime = 801");
    Take('X', brief);
    PasteInto(other, inbox);
    EXPECT_FALSE(tree.GetNode(brief));
    ASSERT_TRUE(other.GetItem(0, "brief"));
    EXPECT_TRUE(machine.files.SameBytes(PathOf(other.GetItem(0, "brief")), source));
    const auto moved = model::FindDocumentFile(machine, database, *other.GetItem(0, "brief"));
    EXPECT_EQ(moved.insertedBy + moved.insertTime, "piet801") << "it is the same document still";
    PasteInto(other, inbox); // a cut is pasted once
    EXPECT_EQ(other.CountDocuments("txt"), 1);
    tree.SetDeleteEnabled(false);
    Take('X', old);
    PasteInto(other, inbox);
    EXPECT_NE(Told().find("in een ander dossier geknipt"), std::string::npos);
    EXPECT_TRUE(tree.GetNode(old));
}

TEST_F(TreeExchange, WhatIsCutIsDimUntilItIsPastedOrSomethingElseIsTaken) {
    Take('X', brief);
    EXPECT_TRUE(window.At(brief).cut);
    EXPECT_FALSE(window.At(letters).cut);
    tree.Refresh();
    EXPECT_TRUE(window.At(brief).cut) << "in a tree that was filled again";
    Take('C', letters);
    EXPECT_FALSE(window.At(brief).cut);
    Take('X', brief);
    machine.clipboard.content = {};
    tree.ShowCut(); // as the window hears of it
    EXPECT_FALSE(window.At(brief).cut);
    Take('X', brief);
    other.NodeSelected(inbox);
    EXPECT_TRUE(other.CommandKey('C', true, false));
    EXPECT_FALSE(window.At(brief).cut);
    int pasted = 0;
    const auto token = tree.EvItemPaste.Subscribe([&] { ++pasted; });
    Take('X', mail);
    PasteInto(tree, mail);
    EXPECT_TRUE(window.At(mail).cut) << "a folder does not go into itself";
    PasteInto(tree, letters);
    EXPECT_FALSE(window.At(mail).cut);
    EXPECT_EQ(pasted, 1);
}

TEST_F(TreeExchange, WhatNoneOfWasPastedIsStillCut) {
    int pasted = 0;
    const auto token = other.EvItemPaste.Subscribe([&] { ++pasted; });
    other.SetAllowCreateFolders(false);
    Take('X', mail);
    PasteInto(other, inbox);
    EXPECT_EQ(pasted, 0);
    EXPECT_EQ(Told().find("Niet alles is geplakt"), std::string::npos);
    EXPECT_TRUE(window.At(mail).cut);
    other.SetAllowCreateFolders(true);
    const auto left =
        other.EvItemCreated.Subscribe([&](const TreeItemInfo&) { other.SetTreeId(0); });
    PasteInto(other, inbox);
    EXPECT_FALSE(window.At(mail).cut) << "some of it stands there by now";
    EXPECT_TRUE(tree.GetNode(mail));
}

TEST_F(TreeExchange, ACutNoteWhoseFileIsMissingStays) {
    tree.NodeSelected(mail);
    tree.ChooseMenu({"mnuNew", 1, {}}); // nothing written in it yet, or its file lost
    const auto name = "Nieuwe notitie 15-11-2026 14:05";
    const auto lost = tree.GetItem(0, name)->Id();
    Take('X', lost);
    PasteInto(other, inbox);
    EXPECT_TRUE(tree.GetNode(lost));
    EXPECT_FALSE(other.GetItem(0, name));
    EXPECT_NE(Told().find(std::string("Niet gekopieerd: \r\n") + name), std::string::npos);
}

TEST_F(TreeExchange, WhatAnotherPutsIntoACutFolderWhileItIsCopiedStaysWithIt) {
    Take('X', mail);
    const auto elsewhere = Elsewhere();
    const auto token = other.EvItemCreated.Subscribe([&](const TreeItemInfo& made) {
        if (made.description == "brief") elsewhere->AddChildTab("Late", old);
    });
    PasteInto(other, inbox);
    EXPECT_TRUE(other.GetItem(0, "brief"));
    EXPECT_TRUE(tree.GetItem(0, "Late")) << "it was not copied";
    EXPECT_TRUE(tree.GetItem(mail));
    EXPECT_NE(Told().find("Niet gekopieerd: \r\nLate"), std::string::npos) << Told();
}

TEST_F(TreeExchange, WhatComesIntoACutFolderWhileAnotherGoesStaysToo) {
    tree.NodeSelected(letters);
    tree.NodeToggled(mail);
    EXPECT_TRUE(tree.CommandKey('X', true, false));
    const auto elsewhere = Elsewhere();
    const auto token = tree.EvItemDelete.Subscribe([&](const TreeItemInfo& gone) {
        EXPECT_EQ(gone.id, letters);
        ASSERT_TRUE(elsewhere->AddChildTab("Late", old));
    });
    PasteInto(other, inbox);
    EXPECT_TRUE(other.GetItem(0, "brief"));
    tree.Refresh();
    EXPECT_TRUE(tree.GetItem(0, "Late")) << "nobody copied it";
    EXPECT_TRUE(tree.GetItem(brief));
    EXPECT_EQ(machine.messages.shown.back().caption, "Error fncDeleteSingleItem") << Told();
}

TEST_F(TreeExchange, ACutIsPastedAsItStandsByThen) {
    const auto drafts = tree.AddTab("Drafts", mail)->Id();
    Take('X', mail);
    tree.DeleteItem(drafts);
    const auto elsewhere = Elsewhere();
    elsewhere->GetItem(brief, "")->SetDescription("signed");
    ASSERT_TRUE(elsewhere->AddChildTab("Late", old));
    const auto token = other.EvItemCreated.Subscribe([&](const TreeItemInfo&) { other.Refresh(); });
    PasteInto(other, inbox);
    ASSERT_TRUE(other.GetItem(0, "signed")) << Told();
    EXPECT_EQ(other.NodeFullPath(other.GetItem(0, "signed")->Id()),
              R"(Other\Inbox\Mail\Old\signed)");
    EXPECT_TRUE(other.GetItem(0, "Late"));
    EXPECT_FALSE(other.GetItem(0, "Drafts"));
    EXPECT_FALSE(tree.GetNode(mail));
    EXPECT_TRUE(machine.messages.shown.empty()) << Told();
    Take('X', letters);
    model::clsItemPtr none;
    ASSERT_TRUE(elsewhere->DeleteItem(none, letters));
    PasteInto(other, inbox);
    EXPECT_FALSE(other.GetItem(0, "Letters"));
    EXPECT_NE(Told().find("intussen door een andere gebruiker"), std::string::npos) << Told();
}

TEST_F(TreeExchange, WhatOtherProgramsPutOnTheClipboardEndsACopy) {
    std::vector<std::string> files;
    const auto token = tree.EvItemPastedSpecial.Subscribe(
        [&](const std::vector<std::string>& pasted, std::int32_t count) {
            files = pasted;
            EXPECT_EQ(count, static_cast<std::int32_t>(pasted.size()));
        });
    Take('C', brief);
    auto menu = tree.PrepareMenu(letters);
    EXPECT_FALSE(FindEntry(menu, "mnuPasteSpecial")->visible);
    EXPECT_TRUE(FindEntry(menu, "mnuPaste")->enabled);
    machine.clipboard.content = {false, true, "", {R"(C:\a.tif)", R"(C:\b.exe)"}};
    menu = tree.PrepareMenu(letters);
    EXPECT_TRUE(FindEntry(menu, "mnuPasteSpecial")->visible);
    EXPECT_FALSE(FindEntry(menu, "mnuPaste")->enabled);
    tree.SetAllowedTypes("tif;tab");
    for (int i = 0; i < 10000; ++i) machine.clipboard.content.files.push_back(R"(C:\c.exe)");
    PasteInto(tree, letters);
    EXPECT_EQ(files, (std::vector<std::string>{R"(C:\a.tif)"})) << "the key pastes files too";
    EXPECT_NE(machine.messages.shown.back().text.find(
                  ": b.exe, c.exe, c.exe, c.exe, c.exe, c.exe, c.exe, c.exe\r\n... en nog 9993;"),
              std::string::npos)
        << "it fits the screen";
    EXPECT_EQ(tree.CountDocuments("txt"), 1);
    machine.clipboard.content = {true, false, "Map", {}};
    machine.clipboard.content.own = "{another process}";
    PasteInto(tree, letters);
    EXPECT_NE(Told().find("in een ander programma geknipt of gekopieerd"), std::string::npos);
    files.clear();
    tree.SetAllowAddExternal(false);
    Choose("mnuPasteSpecial");
    EXPECT_TRUE(files.empty());
}

TEST_F(TreeExchange, TheListAsksAgainForWhatCouldNotBeRead) {
    database->BeginTrans();
    database->Execute("drop table tblDocument");
    tree.SetListMode(true);
    EXPECT_EQ(machine.messages.shown.size(), 1U) << Told();
    EXPECT_EQ(tree.Grid().Text(0, 2), "");
    database->RollbackTrans();
    tree.SetListMode(false);
    tree.SetListMode(true);
    EXPECT_EQ(tree.Grid().Text(0, 2), "jansen");
}

TEST_F(TreeExchange, TheListDeletesNothingThatItDoesNotShow) {
    tree.NodeSelected(letters);
    tree.SetListMode(true);
    EXPECT_TRUE(tree.SelectedItems().empty()) << "a folder has no row";
    tree.SetListMode(false);
    tree.NodeSelected(letters);
    tree.NodeToggled(brief);
    ASSERT_EQ(tree.SelectedItems().size(), 2U);
    tree.SetListMode(true);
    ASSERT_EQ(tree.SelectedItems().size(), 1U);
    EXPECT_EQ(tree.SelectedItems().front()->Id(), brief);
}

TEST_F(TreeExchange, FilesAndLinksGoToOtherPrograms) {
    tree.NodeSelected(mail);
    Choose("mnuCopySpecial");
    const auto& held = machine.clipboard.content;
    ASSERT_EQ(held.files.size(), 1U) << Told();
    EXPECT_EQ(platform::FileName(held.files[0]), "brief.txt");
    EXPECT_TRUE(machine.files.SameBytes(held.files[0], source));
    const auto copied = held.files;
    machine.busy.onProgress = [&](int) { machine.busy.stopAsked = true; };
    Choose("mnuCopySpecial");
    machine.busy.onProgress = nullptr;
    machine.busy.stopAsked = false;
    EXPECT_EQ(held.files, copied) << "a half of it is not what was asked for";
    tree.NodeSelected(brief);
    Choose("mnuCopyLink");
    EXPECT_EQ(held.text, PathOf(tree.GetNode(brief)));
    tree.NodeSelected(letters);
    Choose("mnuCopyLink");
    EXPECT_EQ(held.text, R"(Dossier\Letters)");
    Choose("mnuCopySpecial");
    EXPECT_EQ(machine.messages.shown.back().caption, "Error copying special");
    database->Execute("delete from tblDocument");
    tree.NodeSelected(brief);
    Choose("mnuCopyLink");
    EXPECT_EQ(machine.messages.shown.back().caption, "Error copying link");
    EXPECT_EQ(held.text, R"(Dossier\Letters)") << "what was there stays";
}

TEST_F(TreeExchange, AClipboardThatAnotherProgramHoldsIsToldAndNothingIsLost) {
    Take('X', brief);
    machine.clipboard.held = true;
    Take('C', letters);
    PasteInto(tree, letters);
    for (const auto* entry : {"mnuPasteSpecial", "mnuCopySpecial", "mnuCopyLink"}) {
        tree.NodeSelected(brief);
        Choose(entry);
    }
    ASSERT_EQ(machine.messages.shown.size(), 4U) << "nothing is there to be pasted special";
    for (const auto& shown : machine.messages.shown)
        EXPECT_NE(shown.text.find("Het klembord is in gebruik bij een ander programma"),
                  std::string::npos)
            << shown.caption;
    EXPECT_EQ(tree.GetParent(brief)->Id(), old);
    machine.clipboard.held = false;
    PasteInto(tree, letters);
    EXPECT_EQ(tree.GetParent(brief)->Id(), letters) << "what was cut before is still to be pasted";
}

TEST_F(TreeExchange, ADragOffersCopiesUnderTheirNamesToWhoeverMaySeeThem) {
    tree.RenameItem(brief, "Brief: 1/2");
    ASSERT_TRUE(tree.Add(0, "txt", nullptr, tree.GetNode(brief)->ItemId(), "Brief  1 2", old));
    tree.Drag(mail);
    auto& offered = window.dragged;
    EXPECT_EQ(window.dragAllowed, drop::copy | drop::move);
    EXPECT_EQ(offered.text, std::to_string(mail));
    ASSERT_EQ(offered.virtualFiles.size(), 2U);
    EXPECT_EQ(offered.virtualFiles[1].name, "Brief  1 2 (1).txt");
    EXPECT_EQ(offered.virtualFiles[1].read(), "five!");
    EXPECT_TRUE(offered.hasFiles && offered.files.empty())
        << "nothing is copied before it is asked";
    offered.FetchFiles();
    ASSERT_EQ(offered.files.size(), 2U) << Told();
    EXPECT_EQ(platform::FileName(offered.files[0]), "Brief  1 2.txt");
    EXPECT_TRUE(machine.files.SameBytes(offered.files[1], source));
    tree.SetReadOnly(true);
    tree.Drag(brief);
    EXPECT_EQ(window.dragAllowed, drop::copy);
    window.dragAllowed = 0;
    tree.Drag(letters);
    EXPECT_EQ(window.dragAllowed, 0) << "an empty folder holds nothing to copy";
    for (int i = 0; i < 60; ++i)
        tree.Tree()->AddChildItem(0, "txt", nullptr, 99999, "d" + std::to_string(i), letters);
    tree.Refresh();
    tree.Drag(letters);
    EXPECT_TRUE(!offered.hasFiles && offered.virtualFiles.size() == 60)
        << "none holds the mouse up";
    EXPECT_THROW(offered.virtualFiles[0].read(), platform::Error) << "its document has no row";
}

} // namespace kavidex::controls
