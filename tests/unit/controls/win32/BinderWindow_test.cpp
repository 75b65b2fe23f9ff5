// The binder control's native window, hidden, with real messages.
#include <windows.h>

#include <commctrl.h>
#include <ole2.h>

#include <gtest/gtest.h>

#include "controls/binder/ctrlCorrespondence.h"
#include "controls/binder/win32/MakeBinderWindow.h"
#include "controls/common/win32/GdiObject.h"
#include "controls/viewer/ctlViewer.h"
#include "data/clsSettings.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "model/clsItem.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::controls::win32 {

class BinderWindowTest : public testing::Test {
protected:
    void SetUp() override {
        OleInitialize(nullptr);
        binder.SetDbConnection(data::EmbeddedDatabase::CreateInMemory());
        data::clsSettings settings(machine);
        settings.SetDbConnection(binder.DbConnection());
        machine.files.CreateDirectories(machine.Path("store"));
        settings.SetSetting("Storage", "DocumentPath", machine.Path("store"));
        host = CreateWindowExW(0, L"STATIC", L"host", WS_OVERLAPPEDWINDOW, 0, 0, 900, 700, nullptr,
                               nullptr, nullptr, nullptr);
        control = MakeBinderWindow(binder, machine);
        ASSERT_NE(control->Create(host, {0, 0, 800, 600}), nullptr);
        ASSERT_EQ(binder.OpenOrCreate("K1", "Dossier", "", "", ""), 0);
    }
    void TearDown() override {
        const HWND window = control->Handle();
        control.reset();
        EXPECT_FALSE(IsWindow(window));
        EXPECT_EQ(FindWindowExW(host, nullptr, nullptr, nullptr), nullptr);
        EXPECT_EQ(GdiObjectsAlive(), 0);
        DestroyWindow(host);
        OleUninitialize();
    }

    struct Search {
        std::wstring type;
        HWND found;
    };
    static BOOL CALLBACK Compare(HWND window, LPARAM search) {
        auto& wanted = *reinterpret_cast<Search*>(search);
        wchar_t name[100];
        GetClassNameW(window, name, 100);
        if (wanted.type != name) return TRUE;
        wanted.found = window;
        return FALSE;
    }
    // A window of that class anywhere below the control.
    HWND Part(const wchar_t* type, HWND within = nullptr) const {
        Search search{type, nullptr};
        EnumChildWindows(within ? within : control->Handle(), Compare,
                         reinterpret_cast<LPARAM>(&search));
        return search.found;
    }
    // Its place within the control; empty when it is hidden.
    RECT PlaceOf(const wchar_t* type) const {
        const HWND part = Part(type);
        RECT place{};
        if (!part || !(GetWindowLongPtrW(part, GWL_STYLE) & WS_VISIBLE)) return place;
        GetWindowRect(part, &place);
        MapWindowPoints(nullptr, control->Handle(), reinterpret_cast<POINT*>(&place), 2);
        return place;
    }
    static bool Empty(const RECT& place) { return IsRectEmpty(&place); }

    tests::FakeWorkstation machine;
    ctrlCorrespondence binder{machine};
    std::unique_ptr<ControlWindow> control;
    HWND host = nullptr;
};

TEST_F(BinderWindowTest, ArrangesItsPartsByTheLayout) {
    binder.SetLayout(3);
    RECT tree = PlaceOf(L"KavidexTree"), panel = PlaceOf(L"KavidexViewer");
    ASSERT_FALSE(Empty(tree));
    ASSERT_FALSE(Empty(panel));
    EXPECT_LE(tree.right, panel.left) << "the tree stands left";
    EXPECT_EQ(tree.top, panel.top);
    EXPECT_GT(tree.top, 0) << "below the toolbar";
    EXPECT_EQ(panel.right, 800);
    EXPECT_EQ(panel.bottom, 600);

    binder.SetLayout(4);
    tree = PlaceOf(L"KavidexTree"), panel = PlaceOf(L"KavidexViewer");
    EXPECT_LE(tree.bottom, panel.top) << "the tree stands on top";
    EXPECT_EQ(tree.left, panel.left);

    binder.SetLayout(1);
    EXPECT_TRUE(Empty(PlaceOf(L"KavidexViewer")));
    EXPECT_EQ(PlaceOf(L"KavidexTree").right, 800);
    binder.SetLayout(2);
    EXPECT_TRUE(Empty(PlaceOf(L"KavidexTree")));
    EXPECT_EQ(PlaceOf(L"KavidexViewer").left, 0);
    EXPECT_EQ(PlaceOf(L"KavidexViewer").right, 800);
}

TEST_F(BinderWindowTest, FollowsItsPlaceDownToNothing) {
    binder.SetLayout(3);
    control->Place({10, 20, 410, 320});
    EXPECT_EQ(PlaceOf(L"KavidexViewer").right, 400);
    EXPECT_EQ(PlaceOf(L"KavidexViewer").bottom, 300);
    for (const LONG size : {60, 5, 0}) control->Place({0, 0, size, size});
    control->Place({0, 0, 800, 600});
    const RECT tree = PlaceOf(L"KavidexTree");
    EXPECT_GT(tree.right - tree.left, 50) << "the tree is back";
}

TEST_F(BinderWindowTest, ShowsTheDossiersTreeAndAFoldersDocuments) {
    const std::string file = machine.Path("brief.txt");
    machine.files.WriteAll(file, "inhoud");
    ASSERT_EQ(binder.AddFiles({file}, "", 0, false, true), 0);
    EXPECT_EQ(TreeView_GetCount(Part(WC_TREEVIEWW)), 2U);
    const HWND view = Part(WC_TREEVIEWW);
    const HTREEITEM root = TreeView_GetRoot(view), document = TreeView_GetChild(view, root);
    TreeView_SelectItem(view, document);
    ASSERT_TRUE(binder.Viewer().Item());
    EXPECT_EQ(binder.Viewer().Item()->Description(), "brief");
    TreeView_SelectItem(view, root);
    EXPECT_EQ(ListView_GetItemCount(Part(WC_LISTVIEWW, Part(L"KavidexViewer"))), 1);
    EXPECT_EQ(binder.CloseObject(), 0);
    EXPECT_EQ(TreeView_GetCount(Part(WC_TREEVIEWW)), 0U);
}

TEST_F(BinderWindowTest, TakesNoFocusUnaskedAndLeavesKeysToTheHost) {
    SetFocus(host);
    binder.SetLayout(4);
    binder.Refresh();
    EXPECT_FALSE(control->HasFocus());
    const MSG key{Part(WC_TREEVIEWW), WM_KEYDOWN, VK_DOWN, 0, 0, {}};
    EXPECT_FALSE(control->TranslateKey(key)) << "without the focus no key is ours";
}

TEST_F(BinderWindowTest, SurvivesTheHostDestroyingItsWindowFirst) {
    DestroyWindow(host);
    EXPECT_EQ(control->Handle(), nullptr);
    EXPECT_NE(binder.Id(), 0) << "the dossier stays open without a window";
    host = CreateWindowExW(0, L"STATIC", L"host", WS_OVERLAPPEDWINDOW, 0, 0, 900, 700, nullptr,
                           nullptr, nullptr, nullptr);
    ASSERT_NE(control->Create(host, {0, 0, 300, 300}), nullptr);
    EXPECT_EQ(TreeView_GetCount(Part(WC_TREEVIEWW)), 1U) << "and fills the next one";
}

} // namespace kavidex::controls::win32
