// Every document without a view of its own: in the web browser control, or, where that cannot show
// it, as facts with a button that opens it.
#pragma once

#include "controls/viewer/DocumentView.h"
#include "controls/viewer/browser/BrowserPane.h"
#include "controls/viewer/browser/FactsPane.h"

namespace kavidex::controls {

class BrowserView final : public DocumentView {
public:
    BrowserView(ViewerFrame& frame, BrowserPane& pane, FactsPane& facts);

    bool Show(const ShownDocument& document) override;
    // The facts of one that another view could not show.
    void ShowInstead(const ShownDocument& document, std::string_view notice);
    bool Close() override;
    PartSet Parts() const override;
    StatusTexts Status() const override;
    void HintActivated() override { lclFacts.OpenDefault(lclDocument); }
    bool Idle() override;
    bool CanPrint() const override;
    void Print() override;
    void SurroundingsChanged() override { lclFacts.SurroundingsChanged(); }
    // Once the control did not show one, though a program for them is registered.
    bool PdfFails() const { return lclPdfFails; }

private:
    enum class How { Nothing, Browser, Facts };
    void ShowFacts(std::string_view notice);

    ViewerFrame& lclFrame;
    BrowserPane& lclPane;
    FactsPane& lclFacts;
    ShownDocument lclDocument;
    How lclShown = How::Nothing;
    bool lclFailed = false; // the control told so; what takes its place comes in Idle
    bool lclPdfFails = false;
};

} // namespace kavidex::controls
