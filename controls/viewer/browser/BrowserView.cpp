#include "controls/viewer/browser/BrowserView.h"

#include <utility>

#include "controls/viewer/PrintShown.h"
#include "controls/viewer/browser/FileKinds.h"
#include "platform/Log.h"
#include "platform/Shell.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

namespace {

constexpr std::string_view cannotShow = "Dit document kan hier niet getoond worden.";
constexpr std::string_view neverShown =
    "Dit bestand kan iets uitvoeren en wordt daarom niet getoond.";

} // namespace

BrowserView::BrowserView(ViewerFrame& frame, BrowserPane& pane, FactsPane& facts)
    : lclFrame(frame), lclPane(pane), lclFacts(facts) {}

bool BrowserView::Show(const ShownDocument& document) {
    lclDocument = document;
    lclFailed = false;
    if (FileKindOf(document.type) == FileKind::Program) {
        ShowFacts(neverShown);
    } else if (!lclFrame.Machine().shell.HasBrowserEngine()) {
        ShowFacts(cannotShow);
    } else {
        lclShown = How::Browser;
        lclPane.Show(document.Path(), "Navigate", [this](const std::string& reason) {
            lclFrame.Machine().log.Write("webctl", lclDocument.Path() + ": " + reason);
            lclFailed = true;
            lclFrame.WantIdle();
        });
    }
    return true;
}

void BrowserView::ShowInstead(const ShownDocument& document, std::string_view notice) {
    lclDocument = document;
    lclFailed = false;
    ShowFacts(notice);
}

void BrowserView::ShowFacts(std::string_view notice) {
    lclShown = How::Facts;
    lclFacts.Show(lclDocument, notice);
}

bool BrowserView::CanPrint() const {
    return lclShown == How::Browser
               ? lclPane.CanPrint()
               : lclShown == How::Facts && FileKindOf(lclDocument.type) != FileKind::Program;
}

void BrowserView::Print() {
    if (lclShown == How::Browser)
        lclPane.Print();
    else
        PrintByProgram(lclFrame, lclDocument);
}

bool BrowserView::Idle() {
    if (!lclFailed) return false;
    lclFailed = false;
    if (lclDocument.type == "pdf" && !std::exchange(lclPdfFails, true)) {
        lclFrame.ShowAgain(); // perhaps another view can
        return false;
    }
    lclPane.Clear();
    ShowFacts(cannotShow);
    lclFrame.ContentChanged();
    return false;
}

bool BrowserView::Close() {
    lclPane.Clear();
    lclShown = How::Nothing;
    lclFailed = false;
    lclDocument = {};
    return true;
}

PartSet BrowserView::Parts() const {
    if (lclShown == How::Nothing) return {};
    return lclShown == How::Browser ? PartSet{Part::Browser} : PartSet{Part::Facts};
}

StatusTexts BrowserView::Status() const {
    if (lclShown == How::Nothing) return {};
    StatusTexts texts = lclFacts.Status();
    if (lclShown == How::Browser && FileKindOf(lclDocument.type) == FileKind::Markup)
        texts.page = lclFrame.Text("Scripts worden niet uitgevoerd");
    return texts;
}

} // namespace kavidex::controls
