#include "controls/viewer/NoteView.h"

#include <utility>

#include "controls/print/PdfPages.h"
#include "controls/viewer/FrameTexts.h"
#include "controls/viewer/PrintShown.h"
#include "controls/viewer/pages/PageSource.h"
#include "imaging/pdf/PdfDocument.h"
#include "model/clsItem.h"
#include "platform/Error.h"

namespace kavidex::controls {

using model::DocumentLook;

namespace {

platform::Error ErrorOf(const ctrlNote& note) { return {note.LastErrorNumber(), note.LastError()}; }

} // namespace

NoteView::NoteView(ViewerFrame& frame)
    : lclFrame(frame), lclNote(frame.Machine()), lclPrinting(frame.Machine()) {
    lclNote.SetBeforeWrite([this] {
        if (lclItem) lclFrame.NeedItem(*lclItem);
    });
}

void NoteView::Lock() {
    lclNote.SetReadOnly(lclFileReadOnly || !lclFrame.HasRight("EditDossiers"));
}

void NoteView::SurroundingsChanged() {
    lclNote.SetTranslate(std::make_shared<FrameTexts>(lclFrame));
    Lock();
}

bool NoteView::Show(const ShownDocument& document) {
    // Nothing written in it yet; what is not known to be absent is no new note.
    const auto outcome = document.file.outcome;
    if (outcome != DocumentLook::Ok && outcome != DocumentLook::FileMissing) {
        lclFrame.Ask("Document kan niet gevonden worden.", "Melding viewer", platform::Buttons::Ok,
                     platform::Icon::Critical);
        return false;
    }
    lclFileReadOnly = document.readOnly;
    SurroundingsChanged(); // a new note is headed in the user's language
    // What a file does not have is not that of the note before.
    lclNote.SetHeading("");
    lclNote.SetMemo("");
    if (outcome == DocumentLook::FileMissing)
        lclNote.fncCreateNew(document.Path());
    else if (lclNote.fncLoadMemo(document.Path()) == 0)
        throw ErrorOf(lclNote);
    lclItem = document.item;
    return true;
}

bool NoteView::CanPrint() const { return CanDrawPdf(); }

void NoteView::Print() {
    std::string bytes;
    imaging::PdfDocument pages([&bytes](std::string_view part) { bytes += part; });
    pages.AddText(lclNote.Heading(), lclNote.Text());
    const auto title = lclItem->Description();
    pages.Finish(title);
    PdfPages source(std::move(bytes));
    PrintShown(lclFrame, lclPrinting, title, source, source.Count());
}

bool NoteView::Close() {
    if (lclNote.fncSaveMemo(true) >= 0) return true;
    lclFrame.TellError("fncSaveMemo", ErrorOf(lclNote));
    return false;
}

} // namespace kavidex::controls
