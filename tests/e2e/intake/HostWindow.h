// The binder control in a host's window, over an embedded database and a store of its own, and the
// user before it: what is dropped, and what is done in the dialogs that come up.
#pragma once

#include <windows.h>

#include <commctrl.h>
#include <ole2.h>

#include <deque>
#include <functional>

#include "controls/binder/win32/MakeBinderWindow.h"
#include "controls/intake/win32/WordGenerator.h"
#include "mail/win32/OutlookSource.h"
#include "platform/win32/DataObject.h"
#include "tests/e2e/Windows.h"
#include "tests/unit/controls/BinderFixture.h"

namespace kavidex::tests {

using platform::win32::ComPtr;
using platform::win32::FromWide;
using platform::win32::ToWide;

// Acts in each dialog once it is up, in their order. A dialog that nobody waits for, or that stays,
// is closed after a minute, and the test fails.
class User {
public:
    struct Act {
        std::wstring caption;
        std::function<void(HWND)> act;
    };
    explicit User(std::deque<Act> acts) : lclActs(std::move(acts)) {
        lclPresent = this;
        lclTimer = SetTimer(nullptr, 0, 20, Look);
    }
    ~User() {
        KillTimer(nullptr, lclTimer);
        lclPresent = nullptr;
        EXPECT_TRUE(lclActs.empty())
            << "the dialog did not come: " << FromWide(lclActs.front().caption);
    }
    User(const User&) = delete;
    User& operator=(const User&) = delete;

    static void Press(HWND dialog, int id) {
        PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, 0), 0);
    }
    static std::function<void(HWND)> Ok() {
        return [](HWND dialog) { Press(dialog, IDOK); };
    }

private:
    static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD) {
        if (lclPresent) lclPresent->Step();
    }
    static BOOL CALLBACK Compare(HWND window, LPARAM self) {
        auto& user = *reinterpret_cast<User*>(self);
        wchar_t caption[200] = L"";
        GetWindowTextW(window, caption, 200);
        if (user.lclActs.empty() || user.lclActs.front().caption != caption ||
            !IsWindowVisible(window))
            return TRUE;
        user.lclDialog = window;
        return FALSE;
    }
    void Step() {
        lclDialog = nullptr;
        EnumThreadWindows(GetCurrentThreadId(), Compare, reinterpret_cast<LPARAM>(this));
        if (!lclDialog) {
            if (++lclWaited < 3000) return;
            ADD_FAILURE() << "a dialog stayed open";
            lclWaited = 0;
            PostMessageW(GetActiveWindow(), WM_CLOSE, 0, 0);
            return;
        }
        lclWaited = 0;
        const auto act = std::move(lclActs.front().act);
        lclActs.pop_front();
        act(lclDialog);
    }

    static inline User* lclPresent = nullptr;
    std::deque<Act> lclActs;
    UINT_PTR lclTimer = 0;
    HWND lclDialog = nullptr;
    int lclWaited = 0;
};

class HostWindow : public controls::BinderWithTemporaryFolder {
protected:
    void SetUp() override {
        OleInitialize(nullptr);
        BinderWithTemporaryFolder::SetUp();
        Variable("KAVIDEX_MAIL_RECORD", machine.Path("mail.txt"));
        Variable("KAVIDEX_MAIL_SELECTION", machine.Path("selection.txt"));
        Variable("KAVIDEX_SCAN_RECORD", machine.Path("scan.txt"));
        Variable("KAVIDEX_SCANNED", machine.Path("scanned.txt"));
        Variable("KAVIDEX_LETTER_RECORD", machine.Path("letter.txt"));
        machine.shell.mailClient = "Microsoft Outlook ";
        binder = std::make_unique<controls::ctrlCorrespondence>(
            machine, nullptr, nullptr,
            controls::IntakeComponents{mail::win32::MakeMailSource(),
                                       controls::win32::MakeLetterGenerator});
        binder->SetDbConnection(connection);
        host = CreateWindowExW(0, L"#32770", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20,
                               1000, 700, nullptr, nullptr, nullptr, nullptr);
        control = controls::win32::MakeBinderWindow(*binder, machine);
        ASSERT_TRUE(control->Create(host, {0, 0, 960, 640}));
        ASSERT_EQ(Open("key"), 0);
    }
    void TearDown() override {
        control.reset();
        DestroyWindow(host);
        OleUninitialize();
    }
    static void Variable(const char* name, const std::string& value) {
        _putenv_s(name, value.c_str());
    }
    std::string Recorded(std::string_view name) {
        const auto path = machine.Path(name);
        if (!machine.files.FileExists(path)) return {};
        const auto all = platform::Replace(machine.files.ReadAll(path), "\r", "");
        machine.files.Remove(path);
        return all;
    }
    std::shared_ptr<model::clsItem> Item(std::string_view name) {
        return binder->treCorr().GetItem(0, name);
    }
    std::string Stored(std::string_view name) {
        const auto item = Item(name);
        return item ? FileOf(item) : std::string();
    }
    void SelectRoot() { TreeView_SelectItem(Tree(), TreeView_GetRoot(Tree())); }
    HWND Part(const wchar_t* type, const wchar_t* text = nullptr) const {
        return Visible(control->Handle(), type, text);
    }
    HWND Tree() const { return Part(WC_TREEVIEWW); }

    // As OLE calls the target of the window, or of the next one around it that takes drops.
    DWORD Drop(HWND window, const controls::DropData& data, POINT place) {
        machine.messages.shown.clear();
        IDropTarget* target = nullptr;
        for (; window && !target; window = GetParent(window))
            target = static_cast<IDropTarget*>(GetPropW(window, L"OleDropTargetInterface"));
        if (!target) {
            ADD_FAILURE() << "no window takes drops here";
            return DROPEFFECT_NONE;
        }
        const auto object = platform::win32::MakeDataObject(data);
        DWORD effect = DROPEFFECT_COPY | DROPEFFECT_MOVE;
        const POINTL point{place.x, place.y};
        target->DragEnter(object.Get(), 0, point, &effect);
        if (effect != DROPEFFECT_NONE) {
            effect = DROPEFFECT_COPY | DROPEFFECT_MOVE;
            target->Drop(object.Get(), 0, point, &effect);
        } else {
            target->DragLeave();
        }
        return effect;
    }
    POINT Middle(HTREEITEM item) const {
        RECT place{};
        TreeView_GetItemRect(Tree(), item, &place, TRUE);
        POINT point{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
        ClientToScreen(Tree(), &point);
        return point;
    }
    DWORD DropOnTop(const controls::DropData& data) {
        return Drop(Tree(), data, Middle(TreeView_GetRoot(Tree())));
    }
    static controls::DropData Files(std::vector<std::string> files) {
        controls::DropData data;
        data.hasFiles = true;
        data.files = std::move(files);
        return data;
    }

    HWND host = nullptr;
    std::unique_ptr<controls::win32::ControlWindow> control;
};

} // namespace kavidex::tests
