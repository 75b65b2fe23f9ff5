// A window as the target of drags, by OLE's own loop with the mouse.
#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

#include <windows.h>

#include "controls/exchange/win32/DropTarget.h"
#include "platform/win32/DataObject.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::controls::win32 {

namespace {

struct Receiver : DropReceiver {
    std::vector<DragState> states;
    std::string dropped;
    std::int32_t answer = drop::move;
    bool fail = false;

    std::int32_t DragMoved(DragState state, const DropData&, const DropPlace&) override {
        states.push_back(state);
        if (fail) throw std::runtime_error("no");
        return answer;
    }
    std::int32_t DragDropped(const DropData& data, const DropPlace&) override {
        dropped = data.text + (data.files.empty() ? "" : "|" + data.files[0]);
        return answer;
    }
};

struct DragDrop : testing::Test {
    tests::FakeWorkstation machine;
    Receiver receiver;
    // With SS_NOTIFY: a label without lets the mouse through.
    HWND window =
        CreateWindowExW(WS_EX_TOPMOST, L"STATIC", L"target", WS_POPUP | WS_VISIBLE | SS_NOTIFY, 50,
                        50, 200, 150, nullptr, nullptr, nullptr, nullptr);
    DropRegistration drops;

    void SetUp() override { drops.Register(window, receiver, machine); }
    void TearDown() override {
        drops.Revoke();
        DestroyWindow(window);
    }
};

void Mouse(DWORD flags, int x, int y) {
    SetCursorPos(x, y);
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    SendInput(1, &input, sizeof input);
    Sleep(60);
}

} // namespace

TEST_F(DragDrop, TheMouseDropsTextAndFilesWithTheEffectThatBothAllow) {
    receiver.answer = drop::copy | drop::move;
    std::thread hand([] {
        Sleep(400);
        for (int step = 0; step < 6; ++step) Mouse(MOUSEEVENTF_MOVE, 100 + 5 * step, 100);
        Mouse(MOUSEEVENTF_LEFTUP, 130, 100);
    });
    Mouse(MOUSEEVENTF_LEFTDOWN, 100, 100);
    MSG message{}; // the button counts as held once its message was taken
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    const auto effect = Drag({true, true, "5;6", {R"(C:\a.tif)"}}, drop::copy, window);
    hand.join();
    EXPECT_EQ(effect, drop::copy);
    EXPECT_EQ(receiver.dropped, R"(5;6|C:\a.tif)");
    ASSERT_FALSE(receiver.states.empty());
    EXPECT_EQ(receiver.states.front(), DragState::Enter);
}

TEST_F(DragDrop, AReceiverThatThrowsRefuses) {
    receiver.fail = true;
    const auto data = platform::win32::MakeDataObject({true, false, "5", {}});
    DWORD effect = DROPEFFECT_COPY | DROPEFFECT_MOVE;
    const platform::win32::ComPtr<IDropTarget> target(drops.Target());
    EXPECT_EQ(target->DragEnter(data.Get(), 0, {100, 100}, &effect), S_OK);
    EXPECT_EQ(effect, static_cast<DWORD>(DROPEFFECT_NONE));
    EXPECT_TRUE(machine.log.Has("DropTarget", "no"));
    drops.Revoke();
    EXPECT_EQ(target->Drop(data.Get(), 0, {100, 100}, &effect), S_OK);
    EXPECT_EQ(receiver.dropped, "") << "what the system still holds reports nothing";
}

} // namespace kavidex::controls::win32
