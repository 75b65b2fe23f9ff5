// ctrlExtViewer as hosts see it.
#pragma once

#include "com/controls/ControlFace.h"
#include "controls/viewer/external/ctrlExtViewer.h"

namespace kavidex::com {

class ctrlExtViewerFace final : public ControlFace<controls::ctrlExtViewer> {
public:
    ctrlExtViewerFace();

    const Table& Members() const override;
    std::unique_ptr<controls::win32::ControlWindow> MakeWindow() override;

private:
    ~ctrlExtViewerFace() override = default;
    void RaiseEvents();
};

std::span<const EventRow> ExtViewerEventTable();
ComPtr<IDispatch> MakeCtrlExtViewer();

} // namespace kavidex::com
