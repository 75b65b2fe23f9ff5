// The controls that are one form over the database, as hosts see them: one face for all.
#pragma once

#include "com/controls/ControlFace.h"
#include "com/model/faces.h"
#include "controls/admin/FormControl.h"
#include "controls/forms/win32/FormWindow.h"
#include "controls/forms/win32/WindowsForms.h"
#include "platform/Workstation.h"

namespace kavidex::com {

template <class L>
class FormControlFace : public ControlFace<L> {
public:
    explicit FormControlFace(const ClassRow& row)
        : ControlFace<L>(row, platform::TheWorkstation()) {
        this->Logic().presenter = [this] { return &lclForms; };
    }

    std::unique_ptr<controls::win32::ControlWindow> MakeWindow() final {
        return std::make_unique<controls::forms::win32::FormWindow>(this->Logic().Form(),
                                                                    platform::TheWorkstation());
    }

private:
    controls::forms::win32::WindowsForms lclForms{platform::TheWorkstation(), [this] {
                                                      HWND window = nullptr;
                                                      return SUCCEEDED(this->GetWindow(&window))
                                                                 ? window
                                                                 : nullptr;
                                                  }};
};

std::span<const EventRow> ChecklistEventTable();
ComPtr<IDispatch> MakeCtlChecklist();

std::span<const EventRow> AdministrationEventTable();
ComPtr<IDispatch> MakeCtlRights();
ComPtr<IDispatch> MakeCtlDefaultFolders();
ComPtr<IDispatch> MakeCtlChecklistEditor();
ComPtr<IDispatch> MakeCtlPost();

} // namespace kavidex::com
