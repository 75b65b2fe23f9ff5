// The viewer's windows as they are on the screen: what is shown in them, typed into them and asked
// of the components behind them.
#include <windows.h>

#include <commctrl.h>
#include <ole2.h>

#include <gtest/gtest.h>

#include "controls/forms/win32/FormWindow.h"
#include "controls/viewer/NoteFile.h"
#include "controls/viewer/ViewerViews.h"
#include "controls/viewer/external/ctrlExtViewer.h"
#include "controls/viewer/win32/BrowserWindowWin32.h"
#include "controls/viewer/win32/ExternalWindowWin32.h"
#include "controls/viewer/win32/MakeViewerWindow.h"
#include "platform/text.h"
#include "platform/win32/Late.h"
#include "platform/win32/Variant.h"
#include "tests/e2e/Windows.h"
#include "tests/e2e/viewer/Archive.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::tests {

namespace {

using namespace kavidex::controls;

struct ViewerWindows : testing::Test {
    FakeWorkstation machine;
    Archive archive{machine, machine.Path("store")};
    ctlViewer viewer{machine};
    HWND host = nullptr;
    std::unique_ptr<win32::ControlWindow> window;

    void SetUp() override {
        OleInitialize(nullptr);
        _putenv(("KAVIDEX_MAIL_RECORD=" + platform::NativePath(machine.Path("calls.txt"))).c_str());
        viewer.SetDbConnection(archive.database);
        host = CreateWindowExW(0, L"#32770", L"Viewer", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 800,
                               600, nullptr, nullptr, nullptr, nullptr);
        window = win32::MakeViewerWindow(viewer, machine);
        ASSERT_TRUE(window->Create(host, {0, 0, 780, 560}));
    }
    void TearDown() override {
        window.reset();
        DestroyWindow(host);
        OleUninitialize();
    }
};

} // namespace

TEST_F(ViewerWindows, WhatIsShownLaterIsAsUsableAsTheViewer) {
    viewer.SetEnabled(false);
    ASSERT_TRUE(viewer.ShowItem(archive.Document("nnt", "Notitie", WriteNote("kop", "oud"))));
    const HWND edit = Visible(host, L"Edit");
    ASSERT_TRUE(edit);
    EXPECT_FALSE(IsWindowEnabled(GetParent(edit)));
    viewer.SetEnabled(true);
    EXPECT_TRUE(IsWindowEnabled(GetParent(edit)));

    // Headings are read whole, where the room is too small for them all.
    ASSERT_TRUE(viewer.ShowList(archive.folder));
    const HWND list = Visible(host, WC_LISTVIEWW);
    ASSERT_TRUE(list);
    window->Place({0, 0, 300, 300});
    for (int column = 0; column < 9; ++column) {
        wchar_t title[64] = L"";
        LVCOLUMNW asked{};
        asked.mask = LVCF_TEXT;
        asked.pszText = title;
        asked.cchTextMax = 64;
        ListView_GetColumn(list, column, &asked);
        EXPECT_GT(ListView_GetColumnWidth(list, column), ListView_GetStringWidth(list, title));
    }
}

TEST_F(ViewerWindows, ANoteIsTypedIntoAndSavedWhenAListTakesItsPlace) {
    const auto note = archive.Document("nnt", "Notitie", WriteNote("kop", "oud"));
    ASSERT_TRUE(viewer.ShowItem(note));
    const HWND edit = Visible(host, L"Edit");
    ASSERT_TRUE(edit);
    EXPECT_EQ(TextOf(edit), "oud");
    for (const wchar_t c : {L'!', L'\r', L'x'})
        SendMessageW(edit, WM_CHAR, static_cast<WPARAM>(c), 0);
    std::int32_t chosen = 0;
    const auto token = viewer.DocumentChosen.Subscribe([&](std::int32_t id) { chosen = id; });
    ASSERT_TRUE(viewer.ShowList(archive.folder));
    EXPECT_EQ(ReadNote(machine.files.ReadAll(archive.FileOf(note))).memo, "!\r\nxoud");
    EXPECT_FALSE(Visible(host, L"Edit"));

    const HWND list = Visible(host, WC_LISTVIEWW);
    ASSERT_TRUE(list);
    EXPECT_EQ(ListView_GetItemCount(list), 1);
    EXPECT_EQ(TextOf(list), "Inhoud van map 'Correspondentie'");
    ::SetFocus(list);
    const MSG enter{list, WM_KEYDOWN, VK_RETURN, 0, 0, {}};
    EXPECT_TRUE(window->TranslateKey(enter));
    EXPECT_EQ(chosen, note->Id());
}

TEST_F(ViewerWindows, AMailIsOpenedByTheMailProgramBothWays) {
    machine.shell.engine = false; // there is none here: the body is shown as text
    const auto received = archive.Document("msg", "Ontvangen", "x"); // of number 1
    ASSERT_TRUE(archive.FileOf(received).ends_with("1.msg")) << archive.FileOf(received);
    ASSERT_TRUE(viewer.ShowItem(received));
    auto& header = viewer.Views().mail.Header();
    EXPECT_EQ(header["lblMailSubject"].Text(), "Schadeformulier ontvangen");
    EXPECT_EQ(header["lblName1"].Text() + header["lblName"].Text(), "Van:Schadedienst");
    EXPECT_EQ(header["lblDate"].Text(), "14-11-2026 09:30:05");
    EXPECT_EQ(header["lblAttachment"].Text(), "Bijlagen: 2");
    EXPECT_TRUE(Visible(host, L"Edit"));
    ASSERT_TRUE(viewer.ShowItem(archive.Document("msg", "Verzonden", "x")));
    EXPECT_EQ(header["lblName1"].Text() + header["lblName"].Text(), "Aan:K. de Vries; P. Smit");
    EXPECT_EQ(platform::Replace(machine.files.ReadAll(machine.Path("calls.txt")), "\r", ""),
              "Application.GetNamespace MAPI\n"
              "Namespace.OpenSharedItem 1.msg\n"
              "Application.GetNamespace MAPI\n"
              "Namespace.OpenSharedItem 2.msg\n"
              "Namespace.GetDefaultFolder 3\n"
              "Application.CreateItemFromTemplate 2.msg in a folder\n"
              "Item(2.msg).Delete\n");
}

TEST_F(ViewerWindows, WebctlIsMadeAtRunTimeAndGoesAgain) {
    const auto page = archive.Document("htm", "Pagina", "<p>Pagina</p>");
    ASSERT_TRUE(viewer.ShowItem(page));
    EXPECT_TRUE(Visible(host, L"KavidexBrowser"));
    // No engine behind the control here: the facts take its place, and nothing is asked.
    EXPECT_TRUE(PumpUntil([&] { return viewer.Parts() == PartSet{Part::Facts}; }));
    EXPECT_TRUE(machine.log.Has("webctl"));
    EXPECT_TRUE(machine.messages.shown.empty());
    EXPECT_FALSE(Visible(host, L"KavidexBrowser"));
    const HWND open = Visible(host, L"Button");
    ASSERT_TRUE(open);
    SendMessageW(open, BM_CLICK, 0, 0);
    EXPECT_EQ(machine.shell.opened, std::vector<std::string>{archive.FileOf(page)});
}

TEST_F(ViewerWindows, TheExternalWindowStandsWhereItWasLeft) {
    ctrlExtViewer external(machine);
    external.SetDbConnection(archive.database);
    external.SetWindowMaker(win32::ExternalWindows(machine));
    int unloads = 0;
    const auto token = external.EvUnload.Subscribe([&] { ++unloads; });
    SaveViewerPlace(machine, {600, 30000, 4500, 6000});
    ASSERT_TRUE(external.ShowItem(archive.Document("nnt", "Brief", WriteNote("kop", "tekst"))));
    const HWND frame = FindWindowW(L"KavidexExternalViewer", L"Document: Brief");
    ASSERT_TRUE(frame && IsWindowVisible(frame));
    RECT place{};
    GetWindowRect(frame, &place);
    EXPECT_EQ(place.right, GetSystemMetrics(SM_CXSCREEN)) << "pulled back to the edge";
    EXPECT_EQ(place.top, 40);
    EXPECT_TRUE(Visible(frame, L"Edit"));

    SetWindowPos(frame, nullptr, 64, 32, 640, 480, SWP_NOZORDER | SWP_NOACTIVATE);
    const auto options = [&] { return GetSubMenu(GetMenu(frame), 0); };
    SendMessageW(frame, WM_COMMAND, GetMenuItemID(options(), 1), 0);
    EXPECT_EQ(ReadViewerPlace(machine), (ViewerPlace{480, 960, 7200, 9600}));
    SendMessageW(frame, WM_COMMAND, GetMenuItemID(options(), 0), 0);
    EXPECT_TRUE(GetMenuState(options(), 0, MF_BYPOSITION) & MF_CHECKED);

    SetWindowPos(frame, nullptr, 0, 0, 20, 20, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    GetWindowRect(frame, &place);
    EXPECT_EQ(place.right - place.left, 320) << "no smaller";
    EXPECT_EQ(place.bottom - place.top, 240);

    machine.messages.meanwhile = [&] {
        SendMessageW(frame, WM_CLOSE, 0, 0);
        EXPECT_TRUE(IsWindow(frame)) << "not under its own question";
    };
    external.Form()->Viewer().OpenDefault(archive.Document("vbs", "Script", "x"));
    EXPECT_FALSE(machine.messages.shown.empty());
    EXPECT_FALSE(IsWindow(frame)) << "but when that was answered";
    EXPECT_EQ(unloads, 1);
    EXPECT_FALSE(external.Form());
}

} // namespace kavidex::tests
