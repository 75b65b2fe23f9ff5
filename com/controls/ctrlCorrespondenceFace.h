// ctrlCorrespondence as hosts see it.
#pragma once

#include "com/controls/ControlFace.h"
#include "controls/binder/ctrlCorrespondence.h"

namespace kavidex::com {

class ctrlCorrespondenceFace final : public ControlFace<controls::ctrlCorrespondence> {
public:
    ctrlCorrespondenceFace();

    const Table& Members() const override;
    std::unique_ptr<controls::win32::ControlWindow> MakeWindow() override;

private:
    ~ctrlCorrespondenceFace() override = default;
    void RaiseDragEvents();
    void RaiseEvents();
};

std::span<const EventRow> BinderEventTable();
ComPtr<IDispatch> MakeCtrlCorrespondence();

} // namespace kavidex::com
