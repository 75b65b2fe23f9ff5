// The fields that are one window of the system: texts, boxes, buttons, pictures, choices.
#include <iterator>

#include <windows.h>

#include <commctrl.h>

#include "controls/forms/win32/FieldControl.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::forms::win32 {

using platform::win32::ToWide;

namespace {

struct NativeKind {
    Kind kind;
    const wchar_t* className;
    DWORD styles, exStyles;
};

constexpr DWORD input = WS_TABSTOP | WS_GROUP;
constexpr NativeKind natives[] = {
    {Kind::Label, L"STATIC", WS_GROUP | SS_LEFT, 0},
    {Kind::Edit, L"EDIT", input | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE},
    {Kind::Memo, L"EDIT", input | ES_MULTILINE | ES_WANTRETURN | ES_AUTOVSCROLL | WS_VSCROLL,
     WS_EX_CLIENTEDGE},
    {Kind::Check, L"BUTTON", input | BS_AUTOCHECKBOX, 0},
    {Kind::Option, L"BUTTON", WS_TABSTOP | BS_AUTORADIOBUTTON, 0},
    {Kind::Picture, L"STATIC", WS_GROUP | SS_ICON | SS_CENTERIMAGE, 0},
    {Kind::Frame, L"BUTTON", WS_GROUP | BS_GROUPBOX, 0},
    {Kind::Button, L"BUTTON", input | BS_PUSHBUTTON, 0},
    {Kind::Progress, PROGRESS_CLASSW, WS_GROUP, 0},
};

bool IsEdit(Kind kind) { return kind == Kind::Edit || kind == Kind::Memo || kind == Kind::Browse; }

class SimpleControl : public FieldControl {
public:
    using FieldControl::FieldControl;
    ~SimpleControl() override {
        if (lclIcon) DestroyIcon(lclIcon);
    }

    bool Create(HWND parent, int id) override {
        const FieldRow& row = lclField.Row();
        const Kind kind = row.kind == Kind::Browse ? Kind::Edit : row.kind;
        const NativeKind* native = nullptr;
        for (const auto& one : natives)
            if (one.kind == kind) native = &one;
        if (!native) return false;
        DWORD styles = native->styles, exStyles = native->exStyles;
        if (row.Has(style::password)) styles |= ES_PASSWORD;
        if (row.Has(style::group)) styles |= WS_GROUP;
        if (row.Has(style::isDefault)) styles |= BS_DEFPUSHBUTTON;
        if (row.kind == Kind::Memo && row.Has(style::noWrap)) styles |= ES_AUTOHSCROLL | WS_HSCROLL;
        // Text that is only to be read looks like text.
        if (IsEdit(kind) && row.Has(style::readOnly)) exStyles &= ~WS_EX_CLIENTEDGE;
        if (IsEdit(kind) || kind == Kind::Progress) NameFor(parent);
        if (!Child(parent, id, native->className, styles, exStyles)) return false;
        if (IsEdit(kind)) SendMessageW(lclWindow, EM_LIMITTEXT, 0, 0); // the most it can hold
        return true;
    }

    void Show(Aspect aspect) override {
        const Quiet quiet(*this);
        const Kind kind = lclField.Type();
        if (aspect == Aspect::Text && kind != Kind::Progress) ShowText();
        if (aspect == Aspect::Checked)
            SendMessageW(lclWindow, BM_SETCHECK, lclField.Checked() ? BST_CHECKED : BST_UNCHECKED,
                         0);
        if (aspect == Aspect::State && IsEdit(kind))
            SendMessageW(lclWindow, EM_SETREADONLY, lclField.ReadOnly(), 0);
        if (aspect == Aspect::Icon && kind == Kind::Picture) ShowIcon();
        if (aspect == Aspect::Progress && kind == Kind::Progress) ShowProgress();
    }

    void ShowLook() override {
        FieldControl::ShowLook();
        if (lclField.Type() == Kind::Picture) ShowIcon();
    }

    void MoveTo(const RECT& place) override {
        FieldControl::MoveTo(place);
        if (lclField.Type() == Kind::Picture && place.bottom - place.top != lclIconSize) {
            lclIconSize = place.bottom - place.top;
            ShowIcon();
        }
    }

    void Commanded(int code, HWND) override {
        if (IsQuiet()) return;
        const Kind kind = lclField.Type();
        if (IsEdit(kind)) {
            if (code == EN_CHANGE) lclForm.Typed(lclField, TextOf(lclWindow));
        } else if (code == BN_CLICKED && kind == Kind::Button) {
            lclForm.Clicked(lclField);
        } else if (code == BN_CLICKED) {
            lclForm.Toggled(lclField, SendMessageW(lclWindow, BM_GETCHECK, 0, 0) == BST_CHECKED);
        }
    }

private:
    void ShowText() {
        if (IsEdit(lclField.Type()) || lclField.Type() == Kind::Picture) {
            SetTextOf(lclWindow, lclField.Text());
            return;
        }
        std::size_t at = 0;
        for (const Field& field : lclForm.Fields()) {
            if (&field == &lclField) break;
            ++at;
        }
        if (at < lclLook.captions.size()) SetTextOf(lclWindow, lclLook.captions[at]);
    }

    void ShowIcon() {
        if (lclIconSize == 0) return;
        const HICON icon = lclLook.MakeIcon(lclField.Icon(), lclIconSize);
        SendMessageW(lclWindow, STM_SETICON, reinterpret_cast<WPARAM>(icon), 0);
        if (lclIcon) DestroyIcon(lclIcon);
        lclIcon = icon;
    }

    void ShowProgress() {
        const bool known = lclField.Total() > 0;
        const LONG_PTR styles = GetWindowLongPtrW(lclWindow, GWL_STYLE);
        const LONG_PTR marquee = PBS_MARQUEE;
        SetWindowLongPtrW(lclWindow, GWL_STYLE, known ? styles & ~marquee : styles | marquee);
        SendMessageW(lclWindow, PBM_SETMARQUEE, !known, 40);
        if (!known) return;
        SendMessageW(lclWindow, PBM_SETRANGE32, 0, lclField.Total());
        SendMessageW(lclWindow, PBM_SETPOS, static_cast<WPARAM>(lclField.Done()), 0);
    }

    HICON lclIcon = nullptr;
    int lclIconSize = 0;
};

class BrowseControl final : public SimpleControl {
public:
    using SimpleControl::SimpleControl;

    bool Create(HWND parent, int id) override {
        if (!SimpleControl::Create(parent, id)) return false;
        lclButton = Child(parent, id, L"BUTTON", input | BS_PUSHBUTTON, 0, L"...");
        return lclButton != nullptr;
    }
    void MoveTo(const RECT& place) override {
        const int width = lclLook.Wide(14), gap = lclLook.Wide(2);
        SimpleControl::MoveTo({place.left, place.top, place.right - width - gap, place.bottom});
        MoveWindow(lclButton, place.right - width, place.top, width, place.bottom - place.top,
                   TRUE);
    }
    void ShowLook() override {
        SimpleControl::ShowLook();
        SendMessageW(lclButton, WM_SETFONT, reinterpret_cast<WPARAM>(lclLook.Font()), TRUE);
    }
    void ShowState(bool shown, bool usable) override {
        SimpleControl::ShowState(shown, usable);
        EnableWindow(lclButton, usable);
        ShowWindow(lclButton, shown ? SW_SHOWNA : SW_HIDE);
    }
    bool Owns(HWND window) const override {
        return SimpleControl::Owns(window) || (window && window == lclButton);
    }
    void Commanded(int code, HWND from) override {
        if (from != lclButton)
            SimpleControl::Commanded(code, from);
        else if (code == BN_CLICKED)
            lclForm.Clicked(lclField);
    }

private:
    HWND lclButton = nullptr;
};

class ComboControl final : public FieldControl {
public:
    using FieldControl::FieldControl;

    bool Create(HWND parent, int id) override {
        const bool typed = lclField.Row().Has(style::edits);
        return Child(parent, id, L"COMBOBOX",
                     input | WS_VSCROLL | CBS_AUTOHSCROLL |
                         (typed ? CBS_DROPDOWN : CBS_DROPDOWNLIST),
                     0) != nullptr;
    }
    void MoveTo(const RECT& place) override {
        // Its height is that of the list it opens.
        FieldControl::MoveTo({place.left, place.top, place.right, place.bottom + lclLook.High(90)});
    }
    bool Owns(HWND window) const override {
        return FieldControl::Owns(window) || (window && IsChild(lclWindow, window));
    }
    void Show(Aspect aspect) override {
        const Quiet quiet(*this);
        const bool typed = lclField.Row().Has(style::edits);
        // Whoever types goes on where he was.
        const std::string before = typed ? TextOf(lclWindow) : std::string();
        const auto caret = SendMessageW(lclWindow, CB_GETEDITSEL, 0, 0);
        if (aspect == Aspect::Items) {
            SendMessageW(lclWindow, CB_RESETCONTENT, 0, 0);
            for (const Item& item : lclField.Items())
                SendMessageW(lclWindow, CB_ADDSTRING, 0,
                             reinterpret_cast<LPARAM>(ToWide(item.Cell()).c_str()));
        }
        if (aspect == Aspect::Items || aspect == Aspect::Selection) {
            WPARAM at = static_cast<WPARAM>(-1);
            for (std::size_t i = 0; i < lclField.Items().size(); ++i)
                if (lclField.Items()[i].id == lclField.Selected()) at = i;
            SendMessageW(lclWindow, CB_SETCURSEL, at, 0);
        }
        if (!typed || aspect == Aspect::State) return;
        if (TextOf(lclWindow) != lclField.Text()) SetTextOf(lclWindow, lclField.Text());
        if (before == lclField.Text()) SendMessageW(lclWindow, CB_SETEDITSEL, 0, caret);
    }
    void Commanded(int code, HWND) override {
        if (IsQuiet()) return;
        if (code == CBN_EDITCHANGE) lclForm.Typed(lclField, TextOf(lclWindow));
        if (code != CBN_SELCHANGE) return;
        const auto at = static_cast<std::size_t>(SendMessageW(lclWindow, CB_GETCURSEL, 0, 0));
        if (at < lclField.Items().size()) lclForm.Chosen(lclField, {lclField.Items()[at].id});
    }
};

} // namespace

std::unique_ptr<FieldControl> MakeControl(Form& form, Field& field, FormLook& look) {
    switch (field.Type()) {
    case Kind::Browse: return std::make_unique<BrowseControl>(form, field, look);
    case Kind::Combo: return std::make_unique<ComboControl>(form, field, look);
    case Kind::List: return MakeListControl(form, field, look);
    case Kind::Tree: return MakeTreeControl(form, field, look);
    case Kind::Tabs: return MakeTabsControl(form, field, look);
    case Kind::Pane: return MakePaneControl(form, field, look);
    default: return std::make_unique<SimpleControl>(form, field, look);
    }
}

} // namespace kavidex::controls::forms::win32
