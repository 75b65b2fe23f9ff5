// The library under hosts that make and drop its controls at any moment: nothing is left over, and
// nothing is destroyed under a call that still runs.
#include <functional>

#include "Dossier.h"
#include "Used.h"
#include "com/class_table.h"
#include "platform/Exchange.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "platform/win32/DataObject.h"

namespace kavidex::tests {

namespace {

// Work that a timer does from within whatever loop runs on this thread: a menu, a dialog, a drag.
class Meanwhile {
public:
    explicit Meanwhile(std::function<void(int)> work) : lclWork(std::move(work)) {
        current = this;
        lclTimer = SetTimer(nullptr, 0, 50, Tick);
    }
    ~Meanwhile() {
        KillTimer(nullptr, lclTimer);
        current = nullptr;
    }

private:
    static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
        if (current) current->lclWork(++current->lclTicks);
    }
    static Meanwhile* current;
    std::function<void(int)> lclWork;
    UINT_PTR lclTimer = 0;
    int lclTicks = 0;
};
Meanwhile* Meanwhile::current = nullptr;

class Safety : public Dossiers {
protected:
    static void ExpectGone(const Container& host) {
        EXPECT_FALSE(GetWindow(host.window, GW_CHILD));
        Pump();
    }
    // At the first event of that name, which the act brings about.
    void ExpectDroppedAt(Container& host, REFIID events, const wchar_t* name,
                         const std::function<void()>& act) {
        const DISPID wanted = Event(events, name);
        int heard = 0;
        host.onEvent = [&](DISPID event, DISPPARAMS&) {
            if (event == wanted && heard++ == 0) host.Drop();
        };
        act();
        host.onEvent = nullptr;
        EXPECT_EQ(heard, 1);
        ExpectGone(host);
    }
    // While the act lets a window come up, which has to go by itself then.
    static void ExpectDroppedUnder(Container& host, const std::function<HWND()>& above,
                                   const std::function<void()>& act) {
        bool open = false, left = false;
        const Meanwhile timer([&](int tick) {
            const HWND window = above();
            open = open || window;
            if (open && host.control) host.Drop();
            if (tick < 600) return;
            left = true;
            EndMenu();
            if (window) PostMessageW(window, WM_CLOSE, 0, 0);
        });
        act();
        EXPECT_TRUE(open);
        EXPECT_FALSE(left) << "it stayed open";
        ExpectGone(host);
    }
    static void PressToolbar(const Container& host, int command) {
        const HWND bar = Find(host.window, TOOLBARCLASSNAMEW);
        ASSERT_TRUE(bar);
        SendMessageW(GetParent(bar), WM_COMMAND, static_cast<WPARAM>(command),
                     reinterpret_cast<LPARAM>(bar));
    }
    // The command of a button by its place among those that show a picture or drop a menu.
    static int CommandOf(const Container& host, int place) {
        const HWND bar = Find(host.window, TOOLBARCLASSNAMEW);
        TBBUTTON button{};
        int met = 0;
        for (int i = 0; SendMessageW(bar, TB_GETBUTTON, static_cast<WPARAM>(i),
                                     reinterpret_cast<LPARAM>(&button));
             ++i)
            if (!(button.fsStyle & BTNS_SEP) && met++ == place) return button.idCommand;
        return 0;
    }
    void ExpectFlat(const char* what, const Used& before, std::size_t bytes) {
        Pump();
        const Used after = Used::Now();
        EXPECT_EQ(after.windows, before.windows) << what;
        EXPECT_LE(after.handles, before.handles + 2) << what;
        if (before.gdi && after.gdi) {
            EXPECT_LE(*after.gdi, *before.gdi + 2) << what;
        }
        EXPECT_LE(after.bytes, before.bytes + bytes) << what;
    }
};

} // namespace

TEST_F(Safety, EveryClassMadeAndDroppedAThousandTimesLeavesEverythingAsItWas) {
    for (const com::ClassRow& row : com::ClassTable()) {
        const auto name = platform::win32::FromWide(row.name);
        for (int i = 0; i < 50; ++i) ASSERT_TRUE(Make(*row.clsid)) << name;
        const Used before = Used::Now();
        for (int i = 0; i < 1000; ++i) Make(*row.clsid);
        ExpectFlat(name.c_str(), before, 20000); // far below a byte for each that is kept
    }
    const Used now = Used::Now();
    RecordProperty("windows", now.windows);
    RecordProperty("handles", static_cast<int>(now.handles));
    RecordProperty("gdi", now.gdi.value_or(-1));
}

TEST_F(Safety, EveryControlShownAndClosedAgainAndAgainLeavesEverythingAsItWas) {
    for (const com::ClassRow& row : com::ClassTable()) {
        if (!row.IsControl()) continue;
        const auto once = [&] {
            Container host;
            host.Take(Make(*row.clsid), true);
            RedrawWindow(host.window, nullptr, nullptr, RDW_ALLCHILDREN | RDW_UPDATENOW);
        };
        for (int i = 0; i < 3; ++i) once();
        const Used before = Used::Now();
        for (int i = 0; i < 10; ++i) once(); // one of anything left by each would be ten
        ExpectFlat(platform::win32::FromWide(row.name).c_str(), before, 10 * 200);
    }
}

TEST_F(Safety, ADossierOpenedAndClosedAgainAndAgainLeavesEverythingAsItWas) {
    const auto once = [&] {
        Container host;
        const Late binder = Open(host, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
        Select(TreeOf(host), FirstFolder(TreeOf(host)));
        Pump();
        EXPECT_EQ(binder.Call(L"CloseObject").ToInt32(), 0);
    };
    for (int i = 0; i < 3; ++i) once();
    const Used before = Used::Now();
    for (int i = 0; i < 10; ++i) once();
    ExpectFlat("dossier", before, 10 * 400);
}

// --- Dropped in every state ---------------------------------------------------------------------

TEST_F(Safety, AControlMayBeDroppedInsideAnEventThatAMessageOfItsWindowRaises) {
    for (const CLSID* clsid : {&CLSID_ctrlCorrespondence, &CLSID_ctrlTree}) {
        Container host;
        const bool binder = clsid == &CLSID_ctrlCorrespondence;
        if (binder)
            Open(host, Make(*clsid), lclConnection, "K1");
        else
            OpenTree(host);
        const HWND tree = TreeOf(host);
        ExpectDroppedAt(host, binder ? DIID__ctrlCorrespondenceEvents : DIID__ctrlTreeEvents,
                        L"EvItemSelected", [&] { Select(tree, FirstFolder(tree)); });
    }
}

TEST_F(Safety, AControlMayBeDroppedByWhatItsToolbarSetsOff) {
    Container host;
    const Late binder = Open(host, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
    ASSERT_TRUE(
        binder.Call(L"AddItem", {0, "txt", Variant(static_cast<IDispatch*>(nullptr)), 0, "leeg", 0})
            .IsObject());
    const HWND bar = Find(host.window, TOOLBARCLASSNAMEW);
    const auto buttons = static_cast<int>(SendMessageW(bar, TB_BUTTONCOUNT, 0, 0));
    ExpectDroppedAt(host, DIID__ctrlCorrespondenceEvents, L"EvItemSelected", [&] {
        // Next document stands last among those that are offered always.
        for (int place = buttons; place >= 0 && host.control; --place)
            if (const int command = CommandOf(host, place)) {
                if (command == CommandOf(host, 0)) break; // "new" asks by a dialog
                TBBUTTONINFOW info{};
                info.cbSize = sizeof info;
                info.dwMask = TBIF_STYLE;
                SendMessageW(bar, TB_GETBUTTONINFOW, static_cast<WPARAM>(command),
                             reinterpret_cast<LPARAM>(&info));
                if (info.fsStyle & (BTNS_DROPDOWN | BTNS_WHOLEDROPDOWN | BTNS_CHECK)) continue;
                PressToolbar(host, command);
            }
    });
}

TEST_F(Safety, AControlMayBeDroppedWhileALabelIsEdited) {
    for (const bool commit : {false, true}) {
        Container host;
        OpenTree(host);
        const HWND tree = TreeOf(host);
        SetForegroundWindow(host.window);
        SetFocus(tree);
        const auto edit = reinterpret_cast<HWND>(
            SendMessageW(tree, TVM_EDITLABELW, 0, static_cast<LPARAM>(FirstFolder(tree))));
        ASSERT_TRUE(edit);
        if (!commit) {
            host.Drop();
            ExpectGone(host);
            continue;
        }
        SetWindowTextW(edit, L"Anders");
        ExpectDroppedAt(host, DIID__ctrlTreeEvents, L"EvItemRenamed",
                        [&] { SendMessageW(tree, TVM_ENDEDITLABELNOW, FALSE, 0); });
    }
}

TEST_F(Safety, AControlMayBeDroppedWhileItsMenuIsOpen) {
    Container host;
    Open(host, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
    const HWND tree = TreeOf(host);
    SetForegroundWindow(host.window);
    Select(tree, FirstFolder(tree));
    ExpectDroppedUnder(
        host, [] { return FindWindowW(L"#32768", nullptr); },
        [&] {
            SendMessageW(tree, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(tree), MAKELPARAM(-1, -1));
        });
}

TEST_F(Safety, AControlMayBeDroppedWhileItsDialogIsOpen) {
    Container host;
    Open(host, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
    const HWND tree = TreeOf(host);
    SetForegroundWindow(host.window);
    Select(tree, FirstFolder(tree));
    const auto dialog = [&] {
        const HWND last = GetLastActivePopup(host.window);
        return last == host.window ? nullptr : last;
    };
    ExpectDroppedUnder(host, dialog, [&] { PressToolbar(host, CommandOf(host, 0)); }); // "new"
    EXPECT_TRUE(IsWindowEnabled(host.window)) << "the host takes input again";
}

TEST_F(Safety, AControlMayBeDroppedAtTheBeginOfItsOwnDrag) {
    Container host;
    const Late binder = Open(host, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
    Select(TreeOf(host), FirstFolder(TreeOf(host)));
    ExpectDroppedAt(host, DIID__ctrlCorrespondenceEvents, L"OLEStartDrag",
                    [&] { binder.Call(L"OLEDrag"); });
}

TEST_F(Safety, AControlMayBeDroppedWhileItFilesWhatWasDroppedOnIt) {
    Container host;
    Open(host, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
    const HWND tree = TreeOf(host);
    platform::ExchangeData given;
    given.hasFiles = true;
    for (const char* const name : {"a.txt", "b.txt", "c.txt"}) {
        given.files.push_back(Path(name));
        platform::TheWorkstation().files.WriteAll(Path(name), name);
    }
    const auto data = platform::win32::MakeDataObject(given);
    auto* const target = static_cast<IDropTarget*>(GetPropW(tree, L"OleDropTargetInterface"));
    ASSERT_TRUE(target);
    ExpectDroppedAt(host, DIID__ctrlCorrespondenceEvents, L"EvItemCreated", [&] {
        DWORD effect = DROPEFFECT_COPY;
        target->AddRef(); // as the system holds it during a drag
        target->DragEnter(data.Get(), MK_LBUTTON, {}, &effect);
        effect = DROPEFFECT_COPY;
        target->Drop(data.Get(), 0, {}, &effect); // dropped when the first of three is filed
        target->Release();
    });
    const Late binder(Make(CLSID_ctrlCorrespondence)); // what was told to be filed is there, whole
    binder.PutRef(L"DbConnection", {lclConnection});
    ASSERT_EQ(binder.Call(L"OpenOrCreate", {"K1"}).ToInt32(), 0);
    EXPECT_GE(binder.Get(L"ContainsDocuments", {""}).ToInt32(), 1);
}

} // namespace kavidex::tests
