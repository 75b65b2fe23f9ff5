// Notes on the viewer's stage, in the note control.
#pragma once

#include "controls/common/OperationLock.h"
#include "controls/viewer/DocumentView.h"
#include "controls/viewer/ctrlNote.h"

namespace kavidex::controls {

class NoteView final : public DocumentView {
public:
    explicit NoteView(ViewerFrame& frame);

    bool Show(const ShownDocument& document) override;
    bool Close() override; // asks whether to save what was changed
    PartSet Parts() const override { return {Part::Note}; }
    void SurroundingsChanged() override;
    // As it stands in its text box, on pages drawn by PDFium.
    bool CanPrint() const override;
    void Print() override;

    ctrlNote& Note() { return lclNote; }

private:
    void Lock();

    ViewerFrame& lclFrame;
    ctrlNote lclNote;
    OperationLock lclPrinting;
    std::shared_ptr<model::clsItem> lclItem;
    bool lclFileReadOnly = false;
};

} // namespace kavidex::controls
