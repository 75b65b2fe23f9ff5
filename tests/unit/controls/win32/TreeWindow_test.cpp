// The native window of the tree, with real keys and clicks.
#include "controls/exchange/win32/DropTarget.h"
#include "controls/pictures/win32/IconStore.h"
#include "tests/unit/controls/win32/TreeWindowFixture.h"

namespace kavidex::controls::win32 {

TEST_F(TreeWindowTest, ShowsTheNodesWithTheirTextsAndPictures) {
    EXPECT_EQ(TreeView_GetCount(view), 8U);
    EXPECT_EQ(TextOf(message), "b.msg");
    tree.RenameItem(letter, "Überweisung – 日本.tif");
    EXPECT_EQ(TextOf(letter), "Überweisung – 日本.tif");
    const int closed = Read(ItemOf(letters)).iImage, open = Read(ItemOf(root)).iImage;
    EXPECT_NE(closed, open) << "the root is open";
    EXPECT_EQ(Read(ItemOf(mail)).iImage, closed);
    EXPECT_NE(Read(ItemOf(letter)).iImage, closed);
    EXPECT_NE(Read(ItemOf(note)).iImage, Read(ItemOf(letter)).iImage);
    SendMessageW(view, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(ItemOf(letters)));
    EXPECT_EQ(Read(ItemOf(letters)).iImage, open);
    EXPECT_EQ(Read(ItemOf(letters)).iSelectedImage, open);
    tree.SetFullExpand(true);
    for (const auto folder : {root, letters, mail, old}) {
        EXPECT_TRUE(Read(ItemOf(folder)).state & TVIS_EXPANDED);
        EXPECT_EQ(Read(ItemOf(folder)).iImage, open);
    }
}

TEST_F(TreeWindowTest, ReportsASelectionOnceAndNotItsOwn) {
    selections.clear();
    TreeView_SelectItem(view, ItemOf(letter));
    TreeView_SelectItem(view, ItemOf(letter));
    EXPECT_EQ(selections, (std::vector<std::string>{R"(Dossier\Letters\a.tif)"}));
    EXPECT_TRUE(tree.SetHighLightToItem(message));
    EXPECT_EQ(SelectedId(), message);
    tree.Refresh();
    EXPECT_EQ(SelectedId(), message);
    EXPECT_EQ(selections.size(), 1U);
    tree.DeleteItem();
    EXPECT_EQ(SelectedId(), old);
    EXPECT_EQ(selections.back(), R"(Dossier\Mail\Old)");
    EXPECT_EQ(selections.size(), 2U);
    EXPECT_FALSE(Read(ItemOf(old)).state & TVIS_EXPANDED);
}

TEST_F(TreeWindowTest, CtrlAndShiftCollectAsInTheFileManager) {
    tree.SetFullExpand(true); // Dossier, Letters, a.tif, note, Mail, Old, b.msg, c.001
    Click(letter);
    int again = 0;
    const auto token = tree.ChosenAgain.Subscribe([&](const TreeItemInfo&, bool& shown) {
        ++again;
        shown = true;
    });
    Press({VK_RETURN});
    Click(letter);
    EXPECT_EQ(again, 2) << "by its key and by a click";
    Click(message, VK_CONTROL);
    EXPECT_EQ(Chosen(), "a.tif b.msg");
    Click(old, VK_SHIFT);
    EXPECT_EQ(Chosen(), "b.msg Old") << "from where it began last";
    Click(message, VK_CONTROL);
    Click(note, VK_CONTROL);
    EXPECT_EQ(Chosen(), "Old note");
    selections.clear();
    Click(mail);
    EXPECT_EQ(Chosen(), "Mail");
    EXPECT_EQ(selections.size(), 1U);
    Press({VK_SHIFT, VK_DOWN});
    Press({VK_SHIFT, VK_DOWN});
    EXPECT_EQ(Chosen(), "Mail Old b.msg");
    Press({VK_SHIFT, VK_UP});
    EXPECT_EQ(Chosen(), "Mail Old");
    Press({VK_CONTROL, VK_DOWN});
    Press({VK_CONTROL, VK_DOWN});
    EXPECT_EQ(Chosen(), "Mail Old") << "the current node moves alone";
    Press({VK_CONTROL, VK_SPACE});
    EXPECT_EQ(Chosen(), "Mail Old c.001");
    EXPECT_EQ(SelectedId(), numbered);
    tree.Refresh();
    tree.RenameItem(old, "Older");
    EXPECT_EQ(Chosen(), "Mail Older c.001") << "it stays through a refresh and a new name";
    EXPECT_EQ(selections.size(), 1U) << "many selected show no document";
    tree.fncResetSelectedItems();
    EXPECT_EQ(Chosen(), "Mail");
    Press({VK_SHIFT, VK_HOME});
    EXPECT_EQ(Chosen(), "Mail note a.tif Letters") << "without the dossier itself";
    Press({VK_SUBTRACT}); // closes the root, and with it what is below
    EXPECT_EQ(tree.SelectedItems().size(), 1U);
}

TEST_F(TreeWindowTest, KeysOfTheTreeWorkAndOthersAreTheHosts) {
    Focus();
    Press({VK_HOME});
    EXPECT_EQ(SelectedId(), root);
    Press({VK_SUBTRACT});
    EXPECT_FALSE(IsOpen(root));
    Press({VK_MULTIPLY});
    EXPECT_TRUE(IsOpen(root) && IsOpen(mail) && IsOpen(old));
    Press({VK_SUBTRACT});
    Press({VK_ADD});
    EXPECT_TRUE(IsOpen(root));
    Press({'M'});
    EXPECT_EQ(SelectedId(), mail) << "the first letters find";
    for (const WPARAM key : {WPARAM{VK_TAB}, WPARAM{VK_RETURN}, WPARAM{VK_F7}, WPARAM{'Q'}}) {
        const MSG pressed{view, WM_KEYDOWN, key, 0, 0, {}};
        EXPECT_FALSE(control->TranslateKey(pressed)) << key;
    }
    Press({VK_F2});
    ASSERT_NE(TreeView_GetEditControl(view), nullptr);
    Press({'P'});
    Press({VK_RETURN});
    EXPECT_EQ(TextOf(mail), "p");
    tree.SetShowNumberOfChildren(true);
    Press({VK_F2});
    wchar_t text[64];
    GetWindowTextW(TreeView_GetEditControl(view), text, std::size(text));
    EXPECT_STREQ(text, L"p") << "without what the tree shows with it";
    Press({VK_ESCAPE});
    EXPECT_EQ(TextOf(mail), "p (1)");
    Press({VK_CONTROL, 'X'});
    Press({VK_UP});
    Press({VK_CONTROL, 'V'});
    EXPECT_EQ(tree.GetParent(mail)->Id(), letters);
    tree.Tree()->AddChildTab("Elsewhere", letters);
    Press({VK_F5});
    EXPECT_NE(ItemOf(Id("Elsewhere")), nullptr);
    tree.SetHighLightToItem(numbered);
    Press({VK_DELETE});
    EXPECT_EQ(ItemOf(numbered), nullptr);
    // The menu runs a loop of its own; another hand closes it.
    for (const bool key : {true, false}) {
        std::thread hand([] {
            Sleep(300);
            Send(VK_ESCAPE, false), Send(VK_ESCAPE, true);
        });
        int opened = 0;
        const auto token =
            tree.EvItemSelectedRightMouse.Subscribe([&](const TreeItemInfo&) { ++opened; });
        key ? Press({VK_APPS}) : Press({VK_SHIFT, VK_F10});
        hand.join();
        EXPECT_EQ(opened, 1) << key;
    }
}

TEST_F(TreeWindowTest, TheListTakesTheTreesPlace) {
    Focus();
    TreeView_SelectItem(view, ItemOf(message));
    selections.clear();
    Press({VK_CONTROL, 'L'});
    const HWND grid = Grid();
    ASSERT_TRUE(grid);
    EXPECT_TRUE(IsWindowVisible(grid) && !IsWindowVisible(view) && GetFocus() == grid);
    EXPECT_EQ(Rows(), "a.tif note b.msg c.001");
    EXPECT_EQ(ListView_GetNextItem(grid, -1, LVNI_SELECTED), 2) << "the same item is selected";
    Press({VK_DOWN});
    EXPECT_EQ(selections, (std::vector<std::string>{R"(Dossier\c.001)"}));
    Press({'N'});
    EXPECT_EQ(tree.SelectedItem()->Id(), note) << "the first letters find";
    Press({VK_SHIFT, VK_UP});
    EXPECT_EQ(Chosen(), "a.tif note");
    NMLISTVIEW heading{};
    heading.hdr = {grid, 3, static_cast<UINT>(LVN_COLUMNCLICK)};
    heading.iSubItem = 1;
    SendMessageW(control->Handle(), WM_NOTIFY, 3, reinterpret_cast<LPARAM>(&heading));
    EXPECT_EQ(Rows(), "c.001 b.msg note a.tif");
    EXPECT_EQ(tree.Grid().Title(1), "Type (oplopend)");
    EXPECT_EQ(Chosen(), "a.tif note") << "selected rows stay selected";
    RECT place{};
    ListView_GetItemRect(grid, 1, &place, LVIR_LABEL);
    ClickAt(place, 0);
    EXPECT_EQ(Chosen(), "b.msg");
    Press({VK_F2});
    ASSERT_NE(ListView_GetEditControl(grid), nullptr);
    Press({'Z'});
    Press({VK_RETURN});
    EXPECT_EQ(Cell(1, 0), "z");
    EXPECT_EQ(tree.GetNode(message)->Description(), "z");
    Press({VK_DELETE});
    EXPECT_EQ(Rows(), "c.001 note a.tif");
    EXPECT_EQ(Chosen(), "note") << "the next row";
    Press({VK_CONTROL, 'A'});
    EXPECT_EQ(tree.SelectedItems().size(), 3U);
    EXPECT_TRUE(tree.SetNextChildItem());
    tree.SetSelectItems(true);
    Press({VK_SPACE});
    EXPECT_EQ(tree.SelectedItems().size(), 1U) << "ticked";
    EXPECT_EQ(ListView_GetItemState(grid, ListView_GetNextItem(grid, -1, LVNI_FOCUSED),
                                    LVIS_STATEIMAGEMASK),
              static_cast<UINT>(INDEXTOSTATEIMAGEMASK(2)));
    const HWND txtSwitch = FindWindowExW(control->Handle(), nullptr, L"EDIT", nullptr);
    wchar_t text[64];
    GetWindowTextW(txtSwitch, text, std::size(text));
    EXPECT_STREQ(text, L"Grid");
    SetWindowTextW(txtSwitch, L"tree1");
    EXPECT_TRUE(IsWindowVisible(view) && !IsWindowVisible(grid) && GetFocus() == view);
    EXPECT_TRUE(TreeView_GetCheckState(view, TreeView_GetSelection(view)));
    const HWND label = FindWindowExW(control->Handle(), nullptr, L"STATIC", nullptr);
    GetWindowTextW(label, text, std::size(text));
    EXPECT_STREQ(text, L"Dossier met aanwezige documenten");
}

struct Outside : DropReceiver {
    DropData got;
    std::atomic<bool> over = false;
    std::int32_t DragMoved(DragState state, const DropData&, const DropPlace&) override {
        over = state != DragState::Leave;
        return drop::copy;
    }
    std::int32_t DragDropped(const DropData& data, const DropPlace&) override {
        got = data;
        got.FetchFiles();
        return drop::copy;
    }
};

TEST_F(TreeWindowTest, TheMouseDragsDocumentsOutAndMovesItemsWithin) {
    MakeStore();
    const auto brief = File("brief.txt", "five!", letters);
    tree.SetHighLightToItem(brief);
    std::string told;
    const auto one = tree.EvItemDroppedAndHandled.Subscribe([&] { told += "handled "; });
    const auto two = tree.EvCompleteDrag.Subscribe([&] { told += "complete "; });
    const auto three = tree.DragCompleted.Subscribe(
        [&](std::int32_t& effect) { told += std::to_string(effect) + " "; });

    Outside outside;
    const HWND target =
        CreateWindowExW(WS_EX_TOPMOST, L"STATIC", L"target", WS_POPUP | WS_VISIBLE | SS_NOTIFY, 600,
                        50, 200, 150, nullptr, nullptr, nullptr, nullptr);
    DropRegistration drops;
    drops.Register(target, outside, machine);
    DragAlong({At(brief), {650, 100}}, [&] { return outside.over.load(); });
    EXPECT_EQ(told, "1 complete ");
    ASSERT_EQ(outside.got.files.size(), 1U) << Told();
    EXPECT_EQ(platform::FileName(outside.got.files[0]), "brief.txt");
    EXPECT_TRUE(machine.files.SameBytes(outside.got.files[0], machine.Path("brief.txt")));
    ASSERT_EQ(outside.got.virtualFiles.size(), 1U);
    EXPECT_EQ(outside.got.virtualFiles[0].name, "brief.txt");
    EXPECT_EQ(outside.got.virtualFiles[0].read(), "five!");
    outside.got = {};
    drops.Revoke();
    DestroyWindow(target);

    told.clear();
    ASSERT_FALSE(IsOpen(mail));
    DragAlong(
        {At(brief), At(mail)}, [&] { return IsOpen(mail); }, true);
    EXPECT_EQ(told, "0 complete ") << "given up by Escape";
    EXPECT_TRUE(IsOpen(mail)) << "resting over a closed folder opens it";
    EXPECT_EQ(tree.GetParent(brief)->Id(), letters);
    told.clear();
    const HTREEITEM folder = ItemOf(old);
    DragAlong({At(brief), At(old)}, [&] { return TreeView_GetDropHilight(view) == folder; });
    EXPECT_EQ(told, "handled 2 complete ");
    EXPECT_EQ(tree.GetParent(brief)->Id(), old);
    EXPECT_EQ(TreeView_GetDropHilight(view), nullptr);

    tree.SetFullExpand(true);
    control->Place({0, 0, 500, 110});
    tree.SetHighLightToItem(root);
    RECT area{};
    GetWindowRect(view, &area);
    const auto scrolled = [&] { return TreeView_GetFirstVisible(view) != TreeView_GetRoot(view); };
    DragAlong({At(letters), {area.left + 60, area.bottom - 8}}, scrolled, true);
    EXPECT_TRUE(scrolled()) << "by the edge";
}

TEST_F(TreeWindowTest, EverythingGoesWithTheWindow) {
    EXPECT_EQ(IconStore::ListsAlive(), 1);
    const HWND shown = control->Handle();
    control->Destroy();
    EXPECT_FALSE(IsWindow(shown));
    EXPECT_FALSE(IsWindow(view));
    EXPECT_EQ(control->Handle(), nullptr);
    EXPECT_EQ(IconStore::ListsAlive(), 0);
    tree.NodeSelected(letter); // the logic lives on without it
    EXPECT_EQ(tree.SelectedItem()->Id(), letter);
    EXPECT_FALSE(tree.DeleteItem(root));
}

} // namespace kavidex::controls::win32
