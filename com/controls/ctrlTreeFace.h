// ctrlTree as hosts see it.
#pragma once

#include "com/controls/ControlFace.h"
#include "controls/mailing/DossierMail.h"
#include "controls/tree/ctrlTree.h"

namespace kavidex::com {

class ctrlTreeFace final : public ControlFace<controls::ctrlTree> {
public:
    ctrlTreeFace();

    const Table& Members() const override;
    std::unique_ptr<controls::win32::ControlWindow> MakeWindow() override;

private:
    ~ctrlTreeFace() override = default;
    void RaiseEvents();

    controls::DossierMail lclMail;
};

std::span<const EventRow> TreeEventTable();
ComPtr<IDispatch> MakeCtrlTree();

} // namespace kavidex::com
