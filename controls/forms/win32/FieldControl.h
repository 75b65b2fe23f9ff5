// The native control of one field: made once, follows the field's state, hands acts to the form.
#pragma once

#include <memory>
#include <string>

#include <windows.h>

#include "controls/forms/Form.h"
#include "controls/forms/win32/FormLook.h"

namespace kavidex::controls::forms::win32 {

class FieldControl {
public:
    FieldControl(Form& form, Field& field, FormLook& look)
        : lclForm(form), lclField(field), lclLook(look) {}
    virtual ~FieldControl() = default;
    FieldControl(const FieldControl&) = delete;
    FieldControl& operator=(const FieldControl&) = delete;

    // Children of `parent`; false when Windows refuses. The field's state is shown afterwards.
    virtual bool Create(HWND parent, int id) = 0;
    virtual void MoveTo(const RECT& place); // in the parent's client area
    virtual void Show(Aspect) {}
    virtual void ShowItem(std::int32_t) {}
    virtual void EditItem(std::int32_t, int) {}
    virtual void ShowLook(); // fonts and pictures changed
    virtual void ShowState(bool shown, bool usable);
    virtual void Commanded(int, HWND) {}
    virtual bool Notified(NMHDR&, LRESULT&) { return false; }
    // Messages that a control posted to itself through the form's window.
    virtual void Posted(LPARAM) {}
    virtual void EndEdit() {} // an editor in place; its text is taken over
    // Acts that Windows told in pieces are handed over now.
    virtual void Flush() {}
    // The item at a screen point, 0: none, and which part of it; a mark where a drop would land.
    virtual std::int32_t ItemAt(POINT, Place&) const { return 0; }
    virtual void MarkDrop(std::int32_t, Place) {}
    virtual HWND Page() const { return nullptr; } // where fields on it have their windows

    HWND Window() const { return lclWindow; }
    virtual bool Owns(HWND window) const { return window && window == lclWindow; }
    Field& Of() const { return lclField; }

    static constexpr UINT posted = WM_APP + 40; // WPARAM: the control's id

protected:
    // A child window of the system; `lclWindow` unless another place is named.
    HWND Child(HWND parent, int id, const wchar_t* className, DWORD style, DWORD exStyle,
               const wchar_t* text = L"");
    // A label that is not seen, from which a screen reader takes the name of what comes next.
    void NameFor(HWND parent);
    void Post(LPARAM what = 0) const;
    bool IsQuiet() const { return lclQuiet > 0; }

    // While it lives, what the control tells is our own doing.
    class Quiet {
    public:
        explicit Quiet(FieldControl& control) : lclControl(control) { ++lclControl.lclQuiet; }
        ~Quiet() { --lclControl.lclQuiet; }
        Quiet(const Quiet&) = delete;
        Quiet& operator=(const Quiet&) = delete;

    private:
        FieldControl& lclControl;
    };

    Form& lclForm;
    Field& lclField;
    FormLook& lclLook;
    HWND lclWindow = nullptr;

private:
    int lclQuiet = 0;
};

std::unique_ptr<FieldControl> MakeControl(Form& form, Field& field, FormLook& look);
std::unique_ptr<FieldControl> MakeListControl(Form& form, Field& field, FormLook& look);
std::unique_ptr<FieldControl> MakeTreeControl(Form& form, Field& field, FormLook& look);
std::unique_ptr<FieldControl> MakeTabsControl(Form& form, Field& field, FormLook& look);
std::unique_ptr<FieldControl> MakePaneControl(Form& form, Field& field, FormLook& look);

std::string TextOf(HWND window); // line ends as \n
void SetTextOf(HWND window, const std::string& text);

} // namespace kavidex::controls::forms::win32
