// Where the binder control's native window places its parts.
#include <windows.h>

#include <ole2.h>

#include <gtest/gtest.h>

#include "controls/binder/ctrlCorrespondence.h"
#include "controls/binder/win32/MakeBinderWindow.h"
#include "controls/common/win32/GdiObject.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "tests/e2e/Windows.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/On.h"

namespace kavidex::controls::win32 {

TEST(BinderWindow, ArrangesItsPartsByTheLayoutAndLeavesNothing) {
    OleInitialize(nullptr);
    tests::FakeWorkstation machine;
    tests::On<ctrlCorrespondence> binder(machine, data::EmbeddedDatabase::CreateInMemory());
    const HWND host = CreateWindowExW(0, L"STATIC", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                                      900, 700, nullptr, nullptr, nullptr, nullptr);
    auto control = MakeBinderWindow(binder, machine);
    const HWND window = control->Create(host, {0, 0, 800, 600});
    ASSERT_TRUE(window);
    ASSERT_EQ(binder.OpenOrCreate("K1", "Dossier", "", "", ""), 0);
    const auto placeOf = [&](const wchar_t* type) { // empty when it is hidden
        RECT place{};
        if (const HWND part = tests::Visible(window, type)) GetWindowRect(part, &place);
        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
        return place;
    };
    const auto empty = [](const RECT& place) { return IsRectEmpty(&place) != FALSE; };
    binder.SetLayout(3);
    RECT tree = placeOf(L"KavidexTree"), panel = placeOf(L"KavidexViewer");
    ASSERT_FALSE(empty(tree) || empty(panel));
    EXPECT_LE(tree.right, panel.left) << "the tree stands left";
    EXPECT_EQ(tree.top, panel.top);
    EXPECT_GT(tree.top, 0) << "below the toolbar";
    EXPECT_EQ(panel.right, 800);
    EXPECT_EQ(panel.bottom, 600);
    binder.SetLayout(4);
    tree = placeOf(L"KavidexTree"), panel = placeOf(L"KavidexViewer");
    EXPECT_LE(tree.bottom, panel.top) << "the tree stands on top";
    EXPECT_EQ(tree.left, panel.left);
    binder.SetLayout(1);
    EXPECT_TRUE(empty(placeOf(L"KavidexViewer")));
    EXPECT_EQ(placeOf(L"KavidexTree").right, 800);
    binder.SetLayout(2);
    EXPECT_TRUE(empty(placeOf(L"KavidexTree")));
    EXPECT_EQ(placeOf(L"KavidexViewer").left, 0);
    EXPECT_EQ(placeOf(L"KavidexViewer").right, 800);
    control.reset();
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(FindWindowExW(host, nullptr, nullptr, nullptr), nullptr);
    EXPECT_EQ(GdiObjectsAlive(), 0);
    DestroyWindow(host);
    OleUninitialize();
}

} // namespace kavidex::controls::win32
