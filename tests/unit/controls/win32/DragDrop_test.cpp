// A window as the target of drags, called as OLE calls it.
#include <gtest/gtest.h>

#include <stdexcept>

#include <windows.h>

#include "controls/exchange/win32/DropTarget.h"
#include "platform/win32/DataObject.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::controls::win32 {

namespace {

struct Receiver : DropReceiver {
    std::string dropped;
    bool fail = false;

    std::int32_t DragMoved(DragState, const DropData&, const DropPlace&) override {
        if (fail) throw std::runtime_error("no");
        return drop::copy | drop::move;
    }
    std::int32_t DragDropped(const DropData& data, const DropPlace&) override {
        dropped = data.text + (data.files.empty() ? "" : "|" + data.files[0]);
        return drop::copy | drop::move;
    }
};

} // namespace

TEST(DragDrop, GivesTheEffectThatBothAllowAndNoneWhereTheReceiverThrows) {
    tests::FakeWorkstation machine;
    Receiver receiver;
    const HWND window = CreateWindowExW(0, L"STATIC", L"target", WS_POPUP, 50, 50, 200, 150,
                                        nullptr, nullptr, nullptr, nullptr);
    DropRegistration drops;
    drops.Register(window, receiver, machine);
    const auto data = platform::win32::MakeDataObject({true, true, "5;6", {R"(C:\a.tif)"}});
    const platform::win32::ComPtr<IDropTarget> target(drops.Target());
    DWORD effect = DROPEFFECT_COPY;
    EXPECT_EQ(target->DragEnter(data.Get(), 0, {100, 100}, &effect), S_OK);
    EXPECT_EQ(effect, static_cast<DWORD>(DROPEFFECT_COPY));
    EXPECT_EQ(target->Drop(data.Get(), 0, {100, 100}, &effect), S_OK);
    EXPECT_EQ(effect, static_cast<DWORD>(DROPEFFECT_COPY));
    EXPECT_EQ(receiver.dropped, R"(5;6|C:\a.tif)");

    receiver.dropped.clear();
    receiver.fail = true;
    effect = DROPEFFECT_COPY | DROPEFFECT_MOVE;
    EXPECT_EQ(target->DragEnter(data.Get(), 0, {100, 100}, &effect), S_OK);
    EXPECT_EQ(effect, static_cast<DWORD>(DROPEFFECT_NONE));
    EXPECT_TRUE(machine.log.Has("DropTarget", "no"));
    drops.Revoke();
    EXPECT_EQ(target->Drop(data.Get(), 0, {100, 100}, &effect), S_OK);
    EXPECT_EQ(receiver.dropped, "") << "what the system still holds reports nothing";
    DestroyWindow(window);
}

} // namespace kavidex::controls::win32
