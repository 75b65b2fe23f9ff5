#include "controls/forms/win32/FormWindow.h"

#include <algorithm>
#include <utility>

#include <commctrl.h>

#include "controls/common/win32/Look.h"
#include "controls/forms/Mnemonics.h"
#include "controls/forms/win32/EmptyDialog.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/win32/ActivationScope.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::forms::win32 {

namespace {

constexpr int firstId = 100;
constexpr UINT dpiChanged = 0x02E0; // WM_DPICHANGED, unknown to older headers

int IdOf(std::size_t at, const Field& field) {
    if (field.Row().Has(style::isDefault)) return IDOK;
    if (field.Row().Has(style::isCancel)) return IDCANCEL;
    return firstId + static_cast<int>(at);
}

} // namespace

FormWindow::~FormWindow() {
    if (lclForm.View() == this) lclForm.Attach(nullptr);
    Destroy();
}

// --- Making and arranging -----------------------------------------------------------------------

HWND FormWindow::Open(HWND owner) {
    DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
    if (lclForm.Table().resizable)
        style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX;
    if (!Make(owner, style, WS_EX_CONTROLPARENT)) return nullptr;
    const auto& table = lclForm.Table();
    const SIZE size = Frame(lclLook.Wide(table.width), lclLook.High(table.height));
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(owner ? owner : lclWindow, MONITOR_DEFAULTTONEAREST),
                    &monitor);
    const RECT& work = monitor.rcWork;
    RECT area = work;
    if (owner && IsWindowVisible(owner) && !IsIconic(owner)) GetWindowRect(owner, &area);
    const auto within = [](LONG wanted, LONG low, LONG high) {
        return std::max(low, std::min(wanted, high));
    };
    SetWindowPos(lclWindow, nullptr,
                 within((area.left + area.right - size.cx) / 2, work.left, work.right - size.cx),
                 within((area.top + area.bottom - size.cy) / 2, work.top, work.bottom - size.cy),
                 size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
    Arrange();
    return lclWindow;
}

HWND FormWindow::Create(HWND parent, const RECT& place) {
    if (!Make(parent, WS_CHILD | DS_CONTROL, WS_EX_CONTROLPARENT)) return nullptr;
    OwnWindow::Place(place);
    Arrange();
    ShowWindow(lclWindow, SW_SHOWNA);
    return lclWindow;
}

HWND FormWindow::Make(HWND parent, DWORD style, DWORD exStyle) {
    const platform::win32::ActivationScope scope;
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&controls);
    MakeEmptyDialog(parent, style, exStyle, Procedure, reinterpret_cast<LPARAM>(this));
    if (!lclWindow) return nullptr;
    lclForm.Attach(this);
    if (!MakeControls()) {
        lclWorkstation.log.Write(lclForm.Table().name, "a field of the form could not be made");
        Destroy();
        return nullptr;
    }
    ShowCaption();
    BuildLook();
    for (const auto& control : lclControls) ShowAll(*control);
    ShowStates();
    lclReady = true;
    return lclWindow;
}

bool FormWindow::MakeControls() {
    lclLook.dialog = lclWindow;
    lclLook.controlOf = [this](HWND window) { return ControlOf(window); };
    for (Field& field : lclForm.Fields()) {
        HWND parent = nullptr;
        for (const Field* on = lclForm.Holder(field); on && !parent; on = lclForm.Holder(*on))
            if (const auto* holder = Control(*on)) parent = holder->Page();
        if (!parent) parent = lclWindow;
        auto control = MakeControl(lclForm, field, lclLook);
        const int id = IdOf(lclControls.size(), field);
        if (!control->Create(parent, id)) return false;
        if (id == IDOK) SendMessageW(lclWindow, DM_SETDEFID, IDOK, 0);
        lclControls.push_back(std::move(control));
    }
    return true;
}

void FormWindow::BuildLook() {
    lclLook.Build(controls::win32::DpiOf(lclWindow));
    lclLook.captions = CaptionsWithMnemonics(lclForm);
    for (const auto& control : lclControls) control->ShowLook();
}

void FormWindow::ShowAll(FieldControl& control) {
    for (const Aspect aspect : {Aspect::Items, Aspect::Mode, Aspect::Text, Aspect::Checked,
                                Aspect::State, Aspect::Icon, Aspect::Progress})
        control.Show(aspect);
}

void FormWindow::ShowStates() {
    for (const auto& control : lclControls) {
        const bool shown = lclForm.IsShown(control->Of()), usable = lclForm.IsUsable(control->Of());
        // The focus would stay on what takes no keys any more.
        if ((!shown || !usable) && control->Owns(GetFocus()))
            SendMessageW(lclWindow, WM_NEXTDLGCTL, 0, FALSE);
        control->ShowState(shown, usable);
    }
}

void FormWindow::Arrange() {
    if (!lclReady) return;
    RECT area;
    GetClientRect(lclWindow, &area);
    const auto& table = lclForm.Table();
    const int growX = std::max<int>(0, area.right - lclLook.Wide(table.width));
    const int growY = std::max<int>(0, area.bottom - lclLook.High(table.height));
    for (const auto& control : lclControls) {
        const FieldRow& row = control->Of().Row();
        const Box units = row.box;
        const Box box = Grown({lclLook.Wide(units.x + RoomBeside(row)), lclLook.High(units.y),
                               lclLook.Wide(units.width), lclLook.High(units.height)},
                              row.anchors, growX, growY);
        RECT place{box.x, box.y, box.x + box.width, box.y + box.height};
        MapWindowPoints(lclWindow, GetParent(control->Window()), reinterpret_cast<POINT*>(&place),
                        2);
        control->MoveTo(place);
    }
    InvalidateRect(lclWindow, nullptr, TRUE);
}

// What hidden fields on its right leave to it.
int FormWindow::RoomBeside(const FieldRow& row) const {
    constexpr int gap = 4;
    int room = 0;
    if ((row.anchors & (anchor::left | anchor::right)) != anchor::right) return 0;
    for (const auto& control : lclControls) {
        const FieldRow& other = control->Of().Row();
        if (other.Has(style::givesRoom) && !lclForm.IsShown(control->Of()) &&
            other.box.y == row.box.y && other.box.x > row.box.x)
            room += other.box.width + gap;
    }
    return room;
}

SIZE FormWindow::Frame(int width, int height) const {
    RECT frame{0, 0, width, height};
    AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongPtrW(lclWindow, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrW(lclWindow, GWL_EXSTYLE)));
    return {frame.right - frame.left, frame.bottom - frame.top};
}

void FormWindow::LimitSize(MINMAXINFO& info) const {
    const auto& table = lclForm.Table();
    const SIZE least = Frame(lclLook.Wide(table.width), lclLook.High(table.height));
    info.ptMinTrackSize = {least.cx, least.cy};
}

// --- Messages -----------------------------------------------------------------------------------

INT_PTR CALLBACK FormWindow::Procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, l);
        auto* made = reinterpret_cast<FormWindow*>(l);
        if (!made->lclWindow) made->lclWindow = window; // else the panel of a tab strip
        return FALSE;
    }
    auto* self = reinterpret_cast<FormWindow*>(GetWindowLongPtrW(window, DWLP_USER));
    if (!self) return FALSE;
    LRESULT result = 0;
    bool handled = false;
    try {
        handled = self->Receive(window, message, w, l, result);
    } catch (const std::exception& error) {
        self->lclWorkstation.log.Write(self->lclForm.Table().name, error.what());
    }
    if (handled) SetWindowLongPtrW(window, DWLP_MSGRESULT, result);
    return handled;
}

bool FormWindow::Receive(HWND window, UINT message, WPARAM w, LPARAM l, LRESULT& result) {
    const bool own = window == lclWindow;
    switch (message) {
    case WM_COMMAND:
        if (lclReady) Commanded(LOWORD(w), HIWORD(w), reinterpret_cast<HWND>(l));
        return true;
    case WM_NOTIFY:
        if (!lclReady) return false;
        Notified(*reinterpret_cast<NMHDR*>(l), result);
        return true;
    case WM_CLOSE: // also what a memo sends to its parent on Escape
        for (const auto& control : lclControls) control->EndEdit();
        lclForm.Cancelled();
        return true;
    case FieldControl::posted:
        if (auto* control = ControlById(static_cast<int>(w))) control->Posted(l);
        return true;
    default: break;
    }
    if (!own) return false;
    switch (message) {
    case WM_SIZE: Arrange(); return true;
    case WM_GETMINMAXINFO:
        if (!lclReady || !lclForm.Table().resizable) return false;
        LimitSize(*reinterpret_cast<MINMAXINFO*>(l));
        return true;
    case dpiChanged: {
        BuildLook();
        const RECT& place = *reinterpret_cast<RECT*>(l);
        SetWindowPos(lclWindow, nullptr, place.left, place.top, place.right - place.left,
                     place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
        Arrange();
        return true;
    }
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
        for (const auto& control : lclControls) SendMessageW(control->Window(), message, w, l);
        if (lclReady) BuildLook();
        Arrange();
        return true;
    case WM_NCDESTROY:
        lclReady = false;
        lclControls.clear();
        lclWindow = nullptr;
        return false;
    default: return false;
    }
}

void FormWindow::Commanded(int id, int code, HWND from) {
    auto* control = from ? ControlOf(from) : ControlById(id);
    const bool button = control && control->Of().Type() == Kind::Button;
    if (id == IDCANCEL && !button) {
        lclForm.Cancelled();
        return;
    }
    if (!control) return;
    if (button)
        for (const auto& other : lclControls) other->Flush();
    control->Commanded(code, from ? from : control->Window());
}

void FormWindow::Notified(NMHDR& header, LRESULT& result) {
    if (auto* control = ControlOf(header.hwndFrom)) control->Notified(header, result);
}

void FormWindow::Draw(HDC device, const RECT& place) const {
    FillRect(device, &place, GetSysColorBrush(COLOR_BTNFACE));
    FormLook look;
    look.Build(GetDeviceCaps(device, LOGPIXELSY));
    const HGDIOBJ before = SelectObject(device, look.Font());
    SetBkMode(device, TRANSPARENT);
    SetTextColor(device, GetSysColor(COLOR_BTNTEXT));
    const auto& table = lclForm.Table();
    const int growX = place.right - place.left - look.Wide(table.width);
    const int growY = place.bottom - place.top - look.High(table.height);
    for (const Field& field : std::as_const(lclForm).Fields()) {
        if (!lclForm.IsShown(field)) continue;
        const Box units = field.Row().box;
        const Box box = Grown({look.Wide(units.x), look.High(units.y), look.Wide(units.width),
                               look.High(units.height)},
                              field.Row().anchors, std::max(0, growX), std::max(0, growY));
        RECT text{place.left + box.x, place.top + box.y, place.left + box.x + box.width,
                  place.top + box.y + box.height};
        if (!IntersectRect(&text, &text, &place)) continue;
        DrawTextW(device, platform::win32::ToWide(field.Text()).c_str(), -1, &text,
                  DT_WORDBREAK | DT_NOPREFIX);
    }
    SelectObject(device, before);
}

// --- What the form shows ------------------------------------------------------------------------

FieldControl* FormWindow::Control(const Field& field) const {
    for (const auto& control : lclControls)
        if (&control->Of() == &field) return control.get();
    return nullptr;
}

FieldControl* FormWindow::ControlOf(HWND window) const {
    for (const auto& control : lclControls)
        if (control->Owns(window)) return control.get();
    // Windows within a control: a header, an editor in place.
    for (const auto& control : lclControls)
        if (control->Window() && IsChild(control->Window(), window)) return control.get();
    return nullptr;
}

FieldControl* FormWindow::ControlById(int id) const {
    for (std::size_t i = 0; i < lclControls.size(); ++i)
        if (IdOf(i, lclControls[i]->Of()) == id) return lclControls[i].get();
    return nullptr;
}

HWND FormWindow::WindowOf(std::string_view field) const {
    for (const auto& control : lclControls)
        if (control->Of().Name() == field) return control->Window();
    return nullptr;
}

void FormWindow::Show(const Field& field, Aspect aspect) {
    auto* control = lclReady ? Control(field) : nullptr;
    if (!control) return;
    if (aspect == Aspect::Text) lclLook.captions = CaptionsWithMnemonics(lclForm);
    control->Show(aspect);
    if (aspect == Aspect::State || field.Type() == Kind::Tabs) ShowStates();
}

void FormWindow::ShowItem(const Field& field, std::int32_t id) {
    if (auto* control = lclReady ? Control(field) : nullptr) control->ShowItem(id);
}

void FormWindow::ShowCaption() {
    if (lclWindow) SetWindowTextW(lclWindow, platform::win32::ToWide(lclForm.Caption()).c_str());
}

void FormWindow::EditItem(const Field& field, std::int32_t id, int column) {
    if (auto* control = lclReady ? Control(field) : nullptr) control->EditItem(id, column);
}

void FormWindow::Focus(const Field& field) {
    if (auto* control = lclReady ? Control(field) : nullptr)
        SendMessageW(lclWindow, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control->Window()), TRUE);
}

// Whoever shows the form destroys the window, once no message of it is under way.
void FormWindow::Close() { PostMessageW(lclWindow, WM_NULL, 0, 0); }

} // namespace kavidex::controls::forms::win32
