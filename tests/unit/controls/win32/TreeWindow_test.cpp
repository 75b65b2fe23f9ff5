// The native window of the tree, hidden, with real messages.
#include <windows.h>

#include <commctrl.h>
#include <ole2.h>

#include "controls/pictures/win32/IconStore.h"
#include "controls/tree/win32/MakeTreeWindow.h"
#include "platform/win32/Variant.h"
#include "tests/unit/controls/TreeFixture.h"

namespace kavidex::controls::win32 {

class TreeWindowTest : public TreeTest {
protected:
    void SetUp() override {
        OleInitialize(nullptr);
        MakeDossier();
        lclHost = CreateWindowExW(0, L"STATIC", L"host", WS_OVERLAPPEDWINDOW, 0, 0, 400, 400,
                                  nullptr, nullptr, nullptr, nullptr);
        control = MakeTreeWindow(tree, machine);
        ASSERT_NE(control->Create(lclHost, {0, 0, 300, 350}), nullptr);
        view = FindWindowExW(control->Handle(), nullptr, WC_TREEVIEWW, nullptr);
        ASSERT_NE(view, nullptr);
    }
    void TearDown() override {
        control.reset();
        DestroyWindow(lclHost);
        OleUninitialize();
    }

    HTREEITEM ItemOf(std::int32_t id, HTREEITEM from = nullptr) const {
        for (auto item = from ? from : TreeView_GetRoot(view); item;
             item = TreeView_GetNextSibling(view, item)) {
            if (Read(item).lParam == id) return item;
            if (const auto child = TreeView_GetChild(view, item))
                if (const auto found = ItemOf(id, child)) return found;
        }
        return nullptr;
    }
    TVITEMW Read(HTREEITEM item) const {
        static wchar_t text[300];
        TVITEMW data{};
        data.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM | TVIF_STATE;
        data.stateMask = ~0U;
        data.hItem = item;
        data.pszText = text;
        data.cchTextMax = std::size(text);
        SendMessageW(view, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&data));
        return data;
    }
    std::string TextOf(std::int32_t id) const {
        return platform::win32::FromWide(Read(ItemOf(id)).pszText);
    }
    bool Key(WPARAM key) {
        const MSG pressed{view, WM_KEYDOWN, key, 0, 0, {}};
        return control->TranslateKey(pressed);
    }
    std::int32_t SelectedId() const {
        const auto item = TreeView_GetSelection(view);
        return item ? static_cast<std::int32_t>(Read(item).lParam) : 0;
    }

    std::unique_ptr<ControlWindow> control;
    HWND view = nullptr;

private:
    HWND lclHost = nullptr;
};

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

TEST_F(TreeWindowTest, AClickSelectsWhatItHitsAndNothingBefore) {
    SetFocus(nullptr);
    ASSERT_EQ(SelectedId(), 0);
    selections.clear();
    RECT place{};
    TreeView_GetItemRect(view, ItemOf(mail), &place, TRUE);
    const LPARAM point = MAKELPARAM(place.left + 3, (place.top + place.bottom) / 2);
    PostMessageW(view, WM_LBUTTONUP, 0, point); // the tree follows the mouse until then
    SendMessageW(view, WM_LBUTTONDOWN, MK_LBUTTON, point);
    EXPECT_EQ(SelectedId(), mail);
    EXPECT_EQ(selections, (std::vector<std::string>{R"(Dossier\Mail)"}));
    EXPECT_TRUE(GetWindowLongPtrW(view, GWL_STYLE) & TVS_SHOWSELALWAYS);
}

TEST_F(TreeWindowTest, KeysOfTheTreeWorkAndOthersAreTheHosts) {
    EXPECT_FALSE(Key(VK_DOWN)) << "without the focus no key is ours";
    control->TakeFocus();
    if (!control->HasFocus()) GTEST_SKIP() << "this desktop gives no focus to a hidden window";
    TreeView_SelectItem(view, ItemOf(root));
    EXPECT_TRUE(Key(VK_DOWN));
    EXPECT_EQ(SelectedId(), letters);
    EXPECT_FALSE(Key(VK_TAB));
    EXPECT_FALSE(Key(VK_RETURN));
    EXPECT_FALSE(Key('A'));
    EXPECT_TRUE(Key(VK_DELETE));
    EXPECT_EQ(ItemOf(letters), nullptr);
    EXPECT_EQ(SelectedId(), mail);
    EXPECT_TRUE(Key(VK_F2));
    const HWND edit = TreeView_GetEditControl(view);
    ASSERT_NE(edit, nullptr);
    SetWindowTextW(edit, L"Post");
    SendMessageW(view, TVM_ENDEDITLABELNOW, FALSE, 0);
    EXPECT_EQ(TextOf(mail), "Post");
    EXPECT_EQ(tree.GetNode(mail)->Description(), "Post");
}

TEST_F(TreeWindowTest, TheLabelsEditorHoldsTheBareDescription) {
    tree.SetShowNumberOfChildren(true);
    EXPECT_EQ(TextOf(letters), "Letters (2)");
    SetFocus(view);
    const auto edit = reinterpret_cast<HWND>(
        SendMessageW(view, TVM_EDITLABELW, 0, reinterpret_cast<LPARAM>(ItemOf(letters))));
    if (!edit) GTEST_SKIP() << "this desktop gives no focus to a hidden window";
    wchar_t text[64];
    GetWindowTextW(edit, text, std::size(text));
    EXPECT_STREQ(text, L"Letters");
    SetWindowTextW(edit, L"Brieven");
    SendMessageW(view, TVM_ENDEDITLABELNOW, FALSE, 0);
    EXPECT_EQ(TextOf(letters), "Brieven (2)");
    tree.SetUpdateEnabled(false);
    EXPECT_EQ(SendMessageW(view, TVM_EDITLABELW, 0, reinterpret_cast<LPARAM>(ItemOf(letters))), 0);
}

TEST_F(TreeWindowTest, CheckBoxesCollectItems) {
    tree.SetSelectItems(true);
    EXPECT_TRUE(GetWindowLongPtrW(view, GWL_STYLE) & TVS_CHECKBOXES);
    tree.NodeChecked(letter, true);
    EXPECT_TRUE(TreeView_GetCheckState(view, ItemOf(letter)));
    tree.ClearSelectedItems();
    EXPECT_FALSE(TreeView_GetCheckState(view, ItemOf(letter)));
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

TEST_F(TreeWindowTest, DrawsItselfWithoutAWindow) {
    control->Destroy();
    HDC screen = GetDC(nullptr), memory = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, 200, 120);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    const HGDIOBJ fontBefore = GetCurrentObject(memory, OBJ_FONT);
    control->Draw(memory, {0, 0, 200, 120});
    EXPECT_EQ(GetCurrentObject(memory, OBJ_FONT), fontBefore) << "the device comes back as it was";
    int coloured = 0;
    for (int x = 0; x < 200; ++x)
        for (int y = 0; y < 120; ++y) {
            const auto pixel = GetPixel(memory, x, y);
            coloured += GetRValue(pixel) > GetBValue(pixel) + 60; // the folders' yellow
        }
    EXPECT_GT(coloured, 100);
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    EXPECT_EQ(IconStore::ListsAlive(), 0);
}

} // namespace kavidex::controls::win32
