// The window of a form: a dialog of its own, or a panel within another window.
#pragma once

#include <memory>
#include <vector>

#include "controls/common/win32/OwnWindow.h"
#include "controls/forms/Form.h"
#include "controls/forms/win32/FieldControl.h"

namespace kavidex::controls::forms::win32 {

class FormWindow final : public controls::win32::OwnWindow, public FormView {
public:
    FormWindow(Form& form, const platform::Workstation& workstation)
        : lclForm(form), lclWorkstation(workstation) {}
    ~FormWindow() override;

    // A dialog in the middle of its owner, not shown yet. Null when Windows refuses.
    HWND Open(HWND owner);
    HWND Create(HWND parent, const RECT& place) override; // a panel
    // Keys that belong to the form: Tab, Enter, Escape, mnemonics, keys of its fields.
    bool TranslateKey(const MSG& message) override;
    void TakeFocus() override;
    void Draw(HDC device, const RECT& place) const override;

    void Show(const Field& field, Aspect aspect) override;
    void ShowItem(const Field& field, std::int32_t id) override;
    void ShowCaption() override;
    void EditItem(const Field& field, std::int32_t id, int column) override;
    void Focus(const Field& field) override;
    void Close() override;

    // The window that shows the field, null when there is none.
    HWND WindowOf(std::string_view field) const;

private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l);
    bool Receive(HWND window, UINT message, WPARAM w, LPARAM l, LRESULT& result);
    void Commanded(int id, int code, HWND from);
    void Notified(NMHDR& header, LRESULT& result);
    HWND Make(HWND parent, DWORD style, DWORD exStyle);
    bool MakeControls();
    void BuildLook();
    void ShowAll(FieldControl& control);
    void ShowStates();
    void Arrange();
    int RoomBeside(const FieldRow& row) const;
    void LimitSize(MINMAXINFO& info) const;
    SIZE Frame(int width, int height) const; // of the whole window around a client area
    bool FieldKey(const MSG& message);
    bool PageKey(const MSG& message);
    bool PanelUses(const MSG& message) const;
    bool IsMnemonic(wchar_t letter) const;
    FieldControl* Control(const Field& field) const;
    FieldControl* ControlOf(HWND window) const;
    FieldControl* ControlById(int id) const;
    bool HasButton(unsigned which) const;

    Form& lclForm;
    const platform::Workstation& lclWorkstation;
    FormLook lclLook;
    std::vector<std::unique_ptr<FieldControl>> lclControls; // one a field, in their order
    bool lclReady = false;
};

} // namespace kavidex::controls::forms::win32
