#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include "platform/win32/Owner.h"
#include "platform/win32/SettingsRegistry.h"
#include "platform/win32/Variant.h"
#include "platform/win32/WindowsBusyDialog.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::platform::win32 {

namespace {

constexpr wchar_t testKey[] = L"Software\\VB and VBA Program Settings\\KavidexTest";

struct RegistryTest : testing::Test {
    SettingsRegistry registry;
    void SetUp() override { RegDeleteTreeW(HKEY_CURRENT_USER, testKey); }
    void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, testKey); }
};

std::string TextOf(HWND window) {
    wchar_t text[512];
    return FromWide({text, static_cast<std::size_t>(GetWindowTextW(window, text, 512))});
}

} // namespace

TEST_F(RegistryTest, OptionsLieWhereHostsKeepTheirs) {
    EXPECT_EQ(registry.Read("KavidexTest", "S", "K"), std::nullopt);
    const std::string value = "één 文 📁 " + std::string(600, 'x');
    registry.Write("KavidexTest", "S", "K", value);
    registry.Write("KavidexTest", "S", "leeg", "");
    EXPECT_EQ(registry.Read("kavidextest", "s", "k"), value);
    EXPECT_EQ(registry.Read("KavidexTest", "S", "leeg"), "");
    EXPECT_EQ(registry.Read("KavidexTest", "S", "ander"), std::nullopt);

    wchar_t stored[700];
    DWORD size = sizeof stored;
    const std::wstring section = std::wstring(testKey) + L"\\S";
    ASSERT_EQ(RegGetValueW(HKEY_CURRENT_USER, section.c_str(), L"K", RRF_RT_REG_SZ, nullptr, stored,
                           &size),
              0);
    EXPECT_EQ(FromWide(stored), value);
}

TEST_F(RegistryTest, ValuesOfOtherWritersAreRead) {
    HKEY key = nullptr;
    const std::wstring section = std::wstring(testKey) + L"\\S";
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, section.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                              &key, nullptr),
              0);
    const DWORD number = 1;
    const BYTE unterminated[] = {'h', 0, 'i', 0};
    RegSetValueExW(key, L"number", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number),
                   sizeof number);
    RegSetValueExW(key, L"text", 0, REG_SZ, unterminated, sizeof unterminated);
    RegCloseKey(key);
    EXPECT_EQ(registry.Read("KavidexTest", "S", "number"), "1");
    EXPECT_EQ(registry.Read("KavidexTest", "S", "text"), "hi");
}

TEST(BusyDialog, ShowsItsTextsOverTheOwnerWithoutTakingTheFocus) {
    const HWND host = CreateWindowExW(0, L"STATIC", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100,
                                      100, 600, 400, nullptr, nullptr, OwnModule(), nullptr);
    ASSERT_NE(host, nullptr);
    SetForegroundWindow(host);
    SetFocus(host);
    const HWND active = GetActiveWindow(), focus = GetFocus();
    SetOwner(host);
    {
        WindowsBusyDialog dialog;
        BusyScope scope(dialog, "Controle database",
                        "Bezig met het contróleren &\r\nvan de database.");
        const HWND window = dialog.Handle();
        ASSERT_NE(window, nullptr);
        EXPECT_TRUE(IsWindowVisible(window));
        EXPECT_EQ(GetWindow(window, GW_OWNER), host);
        EXPECT_EQ(GetActiveWindow(), active);
        EXPECT_EQ(GetFocus(), focus);
        EXPECT_EQ(TextOf(window), "Controle database");
        const HWND text = FindWindowExW(window, nullptr, L"STATIC", nullptr);
        EXPECT_EQ(TextOf(text), "Bezig met het contróleren &\r\nvan de database.");

        RECT around{}, own{};
        GetWindowRect(host, &around);
        GetWindowRect(window, &own);
        EXPECT_NEAR((around.left + around.right) / 2, (own.left + own.right) / 2, 2);

        const HWND bar = FindWindowExW(window, nullptr, PROGRESS_CLASSW, nullptr);
        scope.Progress(3, 10);
        EXPECT_EQ(SendMessageW(bar, PBM_GETPOS, 0, 0), 3);
        scope.Text("Controle database", "twee");
        EXPECT_EQ(TextOf(text), "twee");
        SendMessageW(window, WM_CLOSE, 0, 0);
        EXPECT_TRUE(IsWindow(window));

        PostMessageW(host, WM_KEYDOWN, VK_ESCAPE, 0);
        scope.Progress(4, 10);
        EXPECT_FALSE(scope.StopAsked()) << "there is nothing to stop";
        dialog.OfferStop("Stoppen");
        const HWND stop = FindWindowExW(window, nullptr, L"BUTTON", L"Stoppen");
        EXPECT_FALSE(GetUpdateRect(stop, nullptr, FALSE)) << "painted before the work goes on";
        RECT wide{};
        dialog.Show("Controle database", std::string(50, 'w'));
        GetWindowRect(window, &wide);
        EXPECT_FALSE(GetUpdateRect(stop, nullptr, FALSE)) << "where it stands now";
        dialog.Show("Controle database", "kort");
        GetWindowRect(window, &own);
        EXPECT_EQ(own.right - own.left, wide.right - wide.left) << "it does not jump about";
        ASSERT_NE(stop, nullptr);
        PostMessageW(stop, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        PostMessageW(stop, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
        scope.Progress(5, 10);
        EXPECT_TRUE(scope.StopAsked());
        EXPECT_EQ(GetFocus(), focus) << "the click leaves the focus with the host";
        dialog.OfferStop("Stoppen");
        EXPECT_FALSE(scope.StopAsked());
        PostMessageW(host, WM_KEYDOWN, VK_ESCAPE, 0);
        scope.Progress(6, 10);
        EXPECT_TRUE(scope.StopAsked());
    }
    WNDCLASSW left{};
    EXPECT_FALSE(GetClassInfoW(OwnModule(), L"KavidexBusy", &left))
        << "the class must go with the window";
    SetOwner(nullptr);
    DestroyWindow(host);
}

TEST(BusyDialog, PumpingHandlesWhatIsPostedAndLeavesTheEndOfTheHostToTheHost) {
    const HWND host = CreateWindowExW(0, L"STATIC", L"host", WS_OVERLAPPED, 0, 0, 100, 100, nullptr,
                                      nullptr, OwnModule(), nullptr);
    SetOwner(host);
    WindowsBusyDialog dialog;
    dialog.Show("c", "t");
    PostMessageW(host, WM_SETREDRAW, TRUE, 0); // gives a hidden window the visible style
    dialog.PumpMessages();
    EXPECT_TRUE(IsWindowVisible(host)) << "a posted message was not handled";
    {
        const PaintOnly inTransaction(dialog);
        PostMessageW(host, WM_SETREDRAW, FALSE, 0);
        PostMessageW(dialog.Handle(), WM_SETREDRAW, FALSE, 0);
        dialog.PumpMessages();
        EXPECT_TRUE(IsWindowVisible(host)) << "what the host does waits for the end";
        EXPECT_FALSE(IsWindowVisible(dialog.Handle())) << "the dialog is alive";
    }
    dialog.PumpMessages();
    EXPECT_FALSE(IsWindowVisible(host));
    PostQuitMessage(7);
    dialog.PumpMessages();
    MSG message{};
    bool quit = false;
    while (!quit && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        quit = message.message == WM_QUIT;
    EXPECT_TRUE(quit);
    EXPECT_EQ(message.wParam, 7u);

    DestroyWindow(host); // takes the dialog with it
    EXPECT_EQ(dialog.Handle(), nullptr);
    dialog.Progress(1, 2);
    dialog.Close();
    SetOwner(nullptr);
}

TEST(Owner, IsTheHostBeforeWhereTheLastOneIsGone) {
    const auto make = [] {
        return CreateWindowExW(0, L"STATIC", L"host", WS_OVERLAPPED, 0, 0, 100, 100, nullptr,
                               nullptr, OwnModule(), nullptr);
    };
    const HWND one = make(), two = make();
    SetHost(one);
    SetHost(two);
    EXPECT_EQ(Owner(), two);
    DropHost(two);
    EXPECT_EQ(Owner(), one);
    SetHost(two);
    DestroyWindow(two);
    EXPECT_EQ(Owner(), one);
    DestroyWindow(one);
    EXPECT_EQ(Owner(), nullptr);
}

TEST(Shell, AFileThatIsNotThereIsAClearError) {
    EXPECT_THROW(TheWorkstation().shell.OpenDefault("C:\\nergens\\niets.kvx"), Error);
    EXPECT_THROW(TheWorkstation().shell.PrintDefault("C:\\nergens\\niets.kvx"), Error);
    TheWorkstation().shell.HasPrinters(); // whichever the answer, it returns
}

} // namespace kavidex::platform::win32
