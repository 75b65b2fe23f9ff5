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
    int Ticks() const { return lclTicks; }

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
    std::size_t ChildrenOf(const Container& host) const {
        return GetWindow(host.window, GW_CHILD) ? 1 : 0;
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
        if (binder) {
            Open(host, Make(*clsid), lclConnection, "K1");
        } else {
            host.Take(Make(*clsid), true);
            const Late tree(host.control);
            tree.PutRef(L"DbConnection", {lclConnection});
            ASSERT_TRUE(tree.Call(L"CreateNew", {"Boom", "A;B"}).ToBool());
        }
        const DISPID selected = Event(
            binder ? DIID__ctrlCorrespondenceEvents : DIID__ctrlTreeEvents, L"EvItemSelected");
        int dropped = 0;
        host.onEvent = [&](DISPID event, DISPPARAMS&) {
            if (event == selected && dropped++ == 0) host.Drop();
        };
        const HWND tree = TreeOf(host);
        Select(tree, FirstFolder(tree));
        EXPECT_EQ(dropped, 1);
        EXPECT_EQ(ChildrenOf(host), 0U);
        Pump();
    }
}

TEST_F(Safety, AControlMayBeDroppedByWhatItsToolbarSetsOff) {
    Container host;
    const Late binder = Open(host, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
    ASSERT_TRUE(
        binder.Call(L"AddItem", {0, "txt", Variant(static_cast<IDispatch*>(nullptr)), 0, "leeg", 0})
            .IsObject());
    const DISPID selected = Event(DIID__ctrlCorrespondenceEvents, L"EvItemSelected");
    int dropped = 0;
    host.onEvent = [&](DISPID event, DISPPARAMS&) {
        if (event == selected && dropped++ == 0) host.Drop();
    };
    const HWND bar = Find(host.window, TOOLBARCLASSNAMEW);
    const auto buttons = static_cast<int>(SendMessageW(bar, TB_BUTTONCOUNT, 0, 0));
    // Next document stands last among those that are offered always.
    for (int place = buttons; place >= 0 && dropped == 0; --place)
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
    EXPECT_EQ(dropped, 1);
    EXPECT_EQ(ChildrenOf(host), 0U);
}

TEST_F(Safety, AControlMayBeDroppedWhileALabelIsEdited) {
    for (const bool commit : {false, true}) {
        Container host;
        host.Take(Make(CLSID_ctrlTree), true);
        const Late control(host.control);
        control.PutRef(L"DbConnection", {lclConnection});
        ASSERT_TRUE(control.Call(L"CreateNew", {"Boom", "A;B"}).ToBool());
        const DISPID renamed = Event(DIID__ctrlTreeEvents, L"EvItemRenamed");
        bool dropped = false;
        host.onEvent = [&](DISPID event, DISPPARAMS&) {
            if (event == renamed && !dropped) dropped = (host.Drop(), true);
        };
        const HWND tree = TreeOf(host);
        SetForegroundWindow(host.window);
        SetFocus(tree);
        const auto edit = reinterpret_cast<HWND>(
            SendMessageW(tree, TVM_EDITLABELW, 0, static_cast<LPARAM>(FirstFolder(tree))));
        ASSERT_TRUE(edit);
        if (commit) {
            SetWindowTextW(edit, L"Anders");
            SendMessageW(tree, TVM_ENDEDITLABELNOW, FALSE, 0);
            EXPECT_TRUE(dropped);
        } else {
            host.Drop();
        }
        EXPECT_EQ(ChildrenOf(host), 0U);
        Pump();
    }
}

TEST_F(Safety, AControlMayBeDroppedWhileItsMenuIsOpen) {
    Container host;
    Open(host, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
    const HWND tree = TreeOf(host);
    SetForegroundWindow(host.window);
    Select(tree, FirstFolder(tree));
    bool open = false, left = false;
    const Meanwhile timer([&](int tick) {
        open = open || FindWindowW(L"#32768", nullptr);
        if (open && host.control) host.Drop();
        if (tick < 600) return;
        left = true; // it does not end by itself
        EndMenu();
    });
    SendMessageW(tree, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(tree), MAKELPARAM(-1, -1));
    EXPECT_TRUE(open);
    EXPECT_FALSE(left) << "the menu stayed open";
    EXPECT_EQ(ChildrenOf(host), 0U);
    Pump();
}

TEST_F(Safety, AControlMayBeDroppedWhileItsDialogIsOpen) {
    Container host;
    Open(host, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
    const HWND tree = TreeOf(host);
    SetForegroundWindow(host.window);
    Select(tree, FirstFolder(tree));
    bool open = false, left = false;
    const Meanwhile timer([&](int tick) {
        const HWND dialog = GetLastActivePopup(host.window);
        open = open || dialog != host.window;
        if (open && host.control) host.Drop();
        if (tick < 600 || dialog == host.window) return;
        left = true;
        PostMessageW(dialog, WM_CLOSE, 0, 0);
    });
    PressToolbar(host, CommandOf(host, 0)); // "new"
    EXPECT_TRUE(open);
    EXPECT_FALSE(left) << "the dialog stayed open";
    EXPECT_EQ(ChildrenOf(host), 0U);
    EXPECT_TRUE(IsWindowEnabled(host.window)) << "the host takes input again";
    Pump();
}

TEST_F(Safety, AControlMayBeDroppedAtTheBeginOfItsOwnDrag) {
    Container host;
    const Late binder = Open(host, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
    Select(TreeOf(host), FirstFolder(TreeOf(host)));
    const DISPID started = Event(DIID__ctrlCorrespondenceEvents, L"OLEStartDrag");
    bool dropped = false;
    host.onEvent = [&](DISPID event, DISPPARAMS&) {
        if (event == started && !dropped) dropped = (host.Drop(), true);
    };
    binder.Call(L"OLEDrag");
    EXPECT_TRUE(dropped);
    EXPECT_EQ(ChildrenOf(host), 0U);
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
    const DISPID created = Event(DIID__ctrlCorrespondenceEvents, L"EvItemCreated");
    int heard = 0;
    host.onEvent = [&](DISPID event, DISPPARAMS&) {
        if (event == created && heard++ == 0) host.Drop(); // the first of three is filed
    };
    DWORD effect = DROPEFFECT_COPY;
    target->AddRef(); // as the system holds it during a drag
    target->DragEnter(data.Get(), MK_LBUTTON, {}, &effect);
    effect = DROPEFFECT_COPY;
    target->Drop(data.Get(), 0, {}, &effect);
    target->Release();
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(ChildrenOf(host), 0U);
    const Late binder(Make(CLSID_ctrlCorrespondence)); // what was told to be filed is there, whole
    binder.PutRef(L"DbConnection", {lclConnection});
    ASSERT_EQ(binder.Call(L"OpenOrCreate", {"K1"}).ToInt32(), 0);
    EXPECT_GE(binder.Get(L"ContainsDocuments", {""}).ToInt32(), 1);
    Pump();
}

} // namespace kavidex::tests
