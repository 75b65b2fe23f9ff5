// Shows forms as dialogs before a window of a host.
#pragma once

#include <functional>
#include <list>
#include <memory>

#include <windows.h>

#include "controls/forms/FormView.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls::forms::win32 {

class FormWindow;

class WindowsForms final : public FormPresenter {
public:
    // `owner` names a window whenever it is asked for; the dialogs belong to the top window around
    // it, and to the window that message boxes belong to while there is none.
    WindowsForms(const platform::Workstation& workstation, std::function<HWND()> owner);
    ~WindowsForms() override;

    bool ShowModal(Form& form) override;
    bool ShowModeless(Form& form) override;
    std::optional<std::string> ChooseFolder(std::string_view caption,
                                            std::string_view start) override;
    std::optional<std::string> ChooseFile(std::string_view caption, std::string_view start,
                                          std::string_view pattern, bool save) override;
    std::vector<std::string> ChooseFiles(std::string_view caption, std::string_view start) override;

private:
    HWND OwnerWindow() const;

    const platform::Workstation& lclWorkstation;
    std::function<HWND()> lclOwner;
    struct Modeless;
    std::list<std::unique_ptr<Modeless>> lclModeless;
};

} // namespace kavidex::controls::forms::win32
