#include "controls/forms/win32/WindowsForms.h"

#include <algorithm>
#include <vector>

#include "controls/common/win32/MessageHook.h"
#include "controls/forms/win32/FormWindow.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/win32/ActivationScope.h"
#include "platform/win32/Owner.h"

namespace kavidex::controls::forms::win32 {

namespace {

// The dialogs that are up, the innermost last: what is shown meanwhile belongs to it.
std::vector<HWND> modal;

// The owner takes no input while a dialog is up, and message boxes belong to the dialog. The owner
// is given back before the dialog goes: the system would else activate the window of another
// program.
class Modal {
public:
    Modal(HWND dialog, HWND owner)
        : lclOwner(owner && IsWindowEnabled(owner) ? owner : nullptr), lclFocus(GetFocus()),
          lclBoxes(platform::win32::SetOwner(dialog)) {
        modal.push_back(dialog);
        if (lclOwner) EnableWindow(lclOwner, FALSE);
    }
    ~Modal() {
        modal.pop_back();
        platform::win32::SetOwner(lclBoxes);
        if (!lclOwner || !IsWindow(lclOwner)) return;
        EnableWindow(lclOwner, TRUE);
        SetActiveWindow(lclOwner);
        if (lclFocus && IsWindow(lclFocus) && IsWindowVisible(lclFocus)) SetFocus(lclFocus);
    }
    Modal(const Modal&) = delete;
    Modal& operator=(const Modal&) = delete;

private:
    HWND lclOwner, lclFocus, lclBoxes;
};

// A form does not outlive the control that shows it: `control` may be dropped meanwhile.
void Loop(Form& form, FormWindow& window, HWND control) {
    const platform::win32::ActivationScope scope; // for what is made while the form is up
    MSG message;
    while (!form.IsClosed() && window.Handle() && (!control || IsWindow(control))) {
        const BOOL got = GetMessageW(&message, nullptr, 0, 0);
        if (got <= 0) {
            // The program ends: its own loop is to see it.
            if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
            break;
        }
        const bool key = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
        if (key && window.TranslateKey(message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    if (!form.IsClosed()) form.Close(false);
}

} // namespace

// A dialog that lives beside its owner, in the host's own message loop.
struct WindowsForms::Modeless {
    Modeless(Form& shown, const platform::Workstation& workstation)
        : form(shown), window(shown, workstation), hook([this](const MSG& message) {
              const bool key = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
              const bool used = key && window.TranslateKey(message);
              if (form.IsClosed()) window.Destroy();
              return used;
          }) {}

    Form& form;
    FormWindow window;
    controls::win32::MessageHook hook;
};

WindowsForms::WindowsForms(const platform::Workstation& workstation, std::function<HWND()> owner)
    : lclWorkstation(workstation), lclOwner(std::move(owner)) {}

WindowsForms::~WindowsForms() = default;

HWND WindowsForms::OwnerWindow() const {
    if (!modal.empty()) return modal.back();
    const HWND window = lclOwner ? lclOwner() : nullptr;
    if (!window || !IsWindow(window)) return platform::win32::Owner();
    return GetAncestor(window, GA_ROOT);
}

bool WindowsForms::ShowModal(Form& form) {
    const HWND owner = OwnerWindow(), given = lclOwner ? lclOwner() : nullptr,
               control = IsWindow(given) ? given : nullptr;
    FormWindow window(form, lclWorkstation);
    const HWND dialog = window.Open(owner);
    if (!dialog) {
        lclWorkstation.log.Write("ShowModal", "Windows made no window for the form");
        return false;
    }
    const Modal up(dialog, owner); // ends before the window does
    ShowWindow(dialog, SW_SHOW);
    window.TakeFocus();
    Loop(form, window, control);
    return form.Result();
}

bool WindowsForms::ShowModeless(Form& form) {
    std::erase_if(lclModeless, [](const auto& one) { return one->form.IsClosed(); });
    auto shown = std::make_unique<Modeless>(form, lclWorkstation);
    const HWND dialog = shown->window.Open(OwnerWindow());
    if (!dialog) return false;
    lclModeless.push_back(std::move(shown));
    ShowWindow(dialog, SW_SHOW);
    lclModeless.back()->window.TakeFocus();
    return true;
}

} // namespace kavidex::controls::forms::win32
