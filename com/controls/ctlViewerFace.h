// ctlViewer as hosts see it.
#pragma once

#include "com/controls/ControlFace.h"
#include "controls/viewer/ctlViewer.h"

namespace kavidex::com {

class ctlViewerFace final : public ControlFace<controls::ctlViewer> {
public:
    ctlViewerFace();

    const Table& Members() const override;
    std::unique_ptr<controls::win32::ControlWindow> MakeWindow() override;

private:
    ~ctlViewerFace() override = default;
    void RaiseEvents();
};

std::span<const EventRow> ViewerEventTable();
ComPtr<IDispatch> MakeCtlViewer();

} // namespace kavidex::com
