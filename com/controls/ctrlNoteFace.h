// ctrlNote as hosts see it.
#pragma once

#include "com/controls/ControlFace.h"
#include "controls/viewer/ctrlNote.h"

namespace kavidex::com {

class ctrlNoteFace final : public ControlFace<controls::ctrlNote> {
public:
    ctrlNoteFace();

    const Table& Members() const override;
    std::unique_ptr<controls::win32::ControlWindow> MakeWindow() override;

private:
    ~ctrlNoteFace() override = default;
};

std::span<const EventRow> NoteEventTable();
ComPtr<IDispatch> MakeCtrlNote();

} // namespace kavidex::com
