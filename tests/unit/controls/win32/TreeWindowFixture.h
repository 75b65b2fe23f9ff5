// The tree in a native window of a host, worked on with real keys and a real mouse.
#pragma once

#include <atomic>
#include <functional>
#include <thread>

#include <windows.h>

#include <commctrl.h>
#include <ole2.h>

#include "controls/tree/win32/MakeTreeWindow.h"
#include "platform/win32/Variant.h"
#include "tests/unit/controls/TreeFixture.h"

namespace kavidex::controls::win32 {

class TreeWindowTest : public TreeTest {
protected:
    void SetUp() override {
        OleInitialize(nullptr);
        MakeDossier();
        lclHost = CreateWindowExW(WS_EX_TOPMOST, L"#32770", L"host", WS_POPUP | WS_VISIBLE, 0, 0,
                                  500, 400, nullptr, nullptr, nullptr, nullptr);
        control = MakeTreeWindow(tree, machine);
        ASSERT_NE(control->Create(lclHost, {0, 0, 500, 350}), nullptr);
        view = FindWindowExW(control->Handle(), nullptr, WC_TREEVIEWW, nullptr);
        ASSERT_TRUE(view);
        SetForegroundWindow(lclHost);
        SetFocus(lclHost);
        Pump();
        ASSERT_EQ(GetFocus(), lclHost) << "without the focus the keys would tell nothing";
    }
    void TearDown() override {
        control.reset();
        DestroyWindow(lclHost);
        OleUninitialize();
    }

    void Focus() {
        control->TakeFocus();
        Pump();
    }
    // The host's loop, until nothing more comes.
    void Pump() {
        MSG next;
        for (DWORD until = GetTickCount() + 60; GetTickCount() < until; Sleep(5))
            while (PeekMessageW(&next, nullptr, 0, 0, PM_REMOVE)) {
                if (control->TranslateKey(next)) continue;
                TranslateMessage(&next);
                DispatchMessageW(&next);
            }
    }
    static void Send(WORD key, bool up) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = key;
        input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
        SendInput(1, &input, sizeof input);
    }
    // Real keys, held in the order given.
    void Press(std::initializer_list<WORD> keys) {
        for (const auto key : keys) Send(key, false);
        for (auto key = keys.end(); key != keys.begin();) Send(*--key, true);
        Pump();
    }
    void ClickAt(RECT place, WORD modifier) {
        const HWND shown = IsWindowVisible(Grid()) ? Grid() : view;
        MapWindowPoints(shown, nullptr, reinterpret_cast<POINT*>(&place), 2);
        if (modifier) Send(modifier, false);
        SetCursorPos(place.left + 4, (place.top + place.bottom) / 2);
        for (const DWORD flag : {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP}) {
            INPUT input{};
            input.type = INPUT_MOUSE;
            input.mi.dwFlags = flag;
            SendInput(1, &input, sizeof input);
        }
        Pump();
        if (modifier) Send(modifier, true);
        Sleep(GetDoubleClickTime() + 20); // the next one is a click of its own
        Pump();
    }
    void Click(std::int32_t id, WORD modifier = 0) {
        RECT place{};
        TreeView_GetItemRect(view, ItemOf(id), &place, TRUE);
        ClickAt(place, modifier);
    }
    static void Mouse(DWORD flags, POINT at) {
        SetCursorPos(at.x, at.y);
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = flags;
        SendInput(1, &input, sizeof input);
        Sleep(40);
    }
    POINT At(std::int32_t id) const {
        RECT place{};
        TreeView_GetItemRect(view, ItemOf(id), &place, TRUE);
        MapWindowPoints(view, nullptr, reinterpret_cast<POINT*>(&place), 2);
        return {place.left + 4, (place.top + place.bottom) / 2};
    }
    // Another hand at the mouse, while OLE's loop runs here: it rests at the last place until that
    // is so, however slow the machine is.
    void DragAlong(const std::vector<POINT>& way, const std::function<bool()>& ready,
                   bool escape = false) {
        std::atomic<bool> done = false;
        std::thread hand([&] {
            Mouse(MOUSEEVENTF_LEFTDOWN, way.front());
            for (std::size_t i = 1; i < way.size(); ++i)
                for (int step = 0; step <= 8; ++step)
                    Mouse(MOUSEEVENTF_MOVE, {way[i - 1].x + (way[i].x - way[i - 1].x) * step / 8,
                                             way[i - 1].y + (way[i].y - way[i - 1].y) * step / 8});
            for (int i = 0; i < 1000 && !ready(); ++i) Mouse(MOUSEEVENTF_MOVE, way.back());
            if (escape) Send(VK_ESCAPE, false), Sleep(100), Send(VK_ESCAPE, true);
            Mouse(MOUSEEVENTF_LEFTUP, way.back());
            done = true;
        });
        while (!done) Pump();
        hand.join();
        Pump();
    }
    std::string Chosen() const {
        std::string names;
        for (const auto& item : tree.SelectedItems())
            names += (names.empty() ? "" : " ") + item->Description();
        return names;
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
    bool IsOpen(std::int32_t id) const { return Read(ItemOf(id)).state & TVIS_EXPANDED; }
    std::int32_t SelectedId() const {
        const auto item = TreeView_GetSelection(view);
        return item ? static_cast<std::int32_t>(Read(item).lParam) : 0;
    }
    std::string Cell(int row, int column) const {
        wchar_t text[300];
        ListView_GetItemText(Grid(), row, column, text, std::size(text));
        return platform::win32::FromWide(text);
    }
    HWND Grid() const { return FindWindowExW(control->Handle(), nullptr, WC_LISTVIEWW, nullptr); }
    std::string Rows() const {
        std::string names;
        for (int row = 0; row < ListView_GetItemCount(Grid()); ++row)
            names += (row ? " " : "") + Cell(row, 0);
        return names;
    }

    std::unique_ptr<ControlWindow> control;
    HWND view = nullptr;

private:
    HWND lclHost = nullptr;
};

} // namespace kavidex::controls::win32
