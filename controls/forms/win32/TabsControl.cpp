// A tab strip; the fields on its pages have their windows on one panel inside it.
#include <windows.h>

#include <commctrl.h>
#include <uxtheme.h>

#include "controls/forms/win32/EmptyDialog.h"
#include "controls/forms/win32/FieldControl.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::forms::win32 {

namespace {

// The panel takes the look of a tab's page where the system draws those in a look of their own.
void LookLikePage(HWND panel) {
    using Function = HRESULT(WINAPI*)(HWND, DWORD);
    const HMODULE library = GetModuleHandleW(L"uxtheme.dll");
    if (!library) return;
    const auto function = reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(library, "EnableThemeDialogTexture")));
    if (function) function(panel, ETDT_ENABLETAB);
}

class TabsControl final : public FieldControl {
public:
    using FieldControl::FieldControl;

    bool Create(HWND parent, int id) override {
        // Before the strip: what is made first lies on top, and comes first by the Tab key.
        lclPage = MakeEmptyDialog(
            parent, WS_CHILD | DS_CONTROL, WS_EX_CONTROLPARENT,
            reinterpret_cast<DLGPROC>(GetWindowLongPtrW(lclLook.dialog, DWLP_DLGPROC)),
            GetWindowLongPtrW(lclLook.dialog, DWLP_USER));
        if (!lclPage) return false;
        LookLikePage(lclPage);
        return Child(parent, id, WC_TABCONTROLW, WS_TABSTOP | WS_GROUP | WS_CLIPSIBLINGS, 0) !=
               nullptr;
    }
    HWND Page() const override { return lclPage; }

    void MoveTo(const RECT& place) override {
        FieldControl::MoveTo(place);
        RECT inside = place;
        SendMessageW(lclWindow, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&inside));
        MoveWindow(lclPage, inside.left, inside.top, inside.right - inside.left,
                   inside.bottom - inside.top, TRUE);
    }
    void ShowState(bool shown, bool usable) override {
        FieldControl::ShowState(shown, usable);
        ShowWindow(lclPage, shown ? SW_SHOWNA : SW_HIDE);
    }
    void Show(Aspect aspect) override {
        const Quiet quiet(*this);
        if (aspect == Aspect::Items) {
            SendMessageW(lclWindow, TCM_DELETEALLITEMS, 0, 0);
            int at = 0;
            for (const Item& item : lclField.Items()) {
                auto text = platform::win32::ToWide(item.Cell());
                TCITEMW page{};
                page.mask = TCIF_TEXT;
                page.pszText = text.data();
                SendMessageW(lclWindow, TCM_INSERTITEMW, static_cast<WPARAM>(at++),
                             reinterpret_cast<LPARAM>(&page));
            }
        }
        if (aspect == Aspect::Items || aspect == Aspect::Selection)
            for (std::size_t i = 0; i < lclField.Items().size(); ++i)
                if (lclField.Items()[i].id == lclField.Selected())
                    SendMessageW(lclWindow, TCM_SETCURSEL, i, 0);
    }
    bool Notified(NMHDR& header, LRESULT&) override {
        if (IsQuiet()) return false;
        if (header.code == TCN_SELCHANGE) {
            const auto at = static_cast<std::size_t>(SendMessageW(lclWindow, TCM_GETCURSEL, 0, 0));
            if (at < lclField.Items().size()) lclForm.Chosen(lclField, {lclField.Items()[at].id});
        } else if (header.code == NM_CLICK) {
            lclForm.Clicked(lclField);
        } else {
            return false;
        }
        return true;
    }

private:
    HWND lclPage = nullptr;
};

} // namespace

std::unique_ptr<FieldControl> MakeTabsControl(Form& form, Field& field, FormLook& look) {
    return std::make_unique<TabsControl>(form, field, look);
}

} // namespace kavidex::controls::forms::win32
