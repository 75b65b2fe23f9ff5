// A control of another maker in the library's container: the web browser that the viewer uses.
#include <gtest/gtest.h>

#include <windows.h>
#include <ole2.h>

#include "platform/Error.h"
#include "platform/win32/Late.h"
#include "platform/win32/ole/ControlSite.h"

namespace kavidex::platform::win32 {

namespace {

struct ForeignControl : testing::Test {
    HWND frame = nullptr;
    ControlSite* site = nullptr;
    std::vector<std::string> events;

    void SetUp() override {
        OleInitialize(nullptr);
        frame = CreateWindowW(L"STATIC", L"frame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 400,
                              300, nullptr, nullptr, nullptr, nullptr);
        site = new ControlSite(
            frame, {.event = [this](const SiteEvent& event) { events.push_back(event.name); }});
    }
    void TearDown() override {
        site->Close();
        Pump();
        EXPECT_EQ(FindWindowExW(frame, nullptr, nullptr, nullptr), nullptr);
        EXPECT_EQ(site->References(), 1U) << "the control kept its site";
        site->Release();
        DestroyWindow(frame);
        OleUninitialize();
    }
    static void Pump() {
        MSG message{};
        for (int i = 0; i < 20; ++i) {
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
            Sleep(10);
        }
    }
};

} // namespace

TEST_F(ForeignControl, TheWebBrowserLivesInAWindowOfOursAndLeavesNothing) {
    site->Open(L"Shell.Explorer.2", {0, 0, 300, 200});
    ASSERT_NE(site->ControlWindow(), nullptr);
    EXPECT_TRUE(IsChild(frame, site->ControlWindow()));
    EXPECT_TRUE(site->HasEvents());
    const Late browser{ComPtr<IDispatch>(site->Control())};
    browser.Call(L"Navigate", {Variant(std::string_view("about:blank"))});
    Pump();
    EXPECT_FALSE(events.empty()) << "what it does is heard";
    site->Place({10, 20, 110, 70});
    RECT place{};
    GetWindowRect(site->ControlWindow(), &place);
    EXPECT_EQ(place.right - place.left, 100);
    MSG key{};
    key.hwnd = frame;
    key.message = WM_KEYDOWN;
    key.wParam = VK_F24;
    EXPECT_FALSE(site->TranslateKey(key)) << "without being active it uses no key";
}

TEST_F(ForeignControl, WhatCannotBeEmbeddedIsRefusedWithItsReason) {
    EXPECT_THROW(site->Open(L"Kavidex.NoSuchControl", {0, 0, 10, 10}), Error);
    EXPECT_THROW(site->Open(L"Scripting.Dictionary", {0, 0, 10, 10}), Error);
    EXPECT_EQ(site->Control(), nullptr);
}

} // namespace kavidex::platform::win32
