// Saved mails (.msg) on the stage: a header, and below it the body in the web browser control or,
// where nothing shows pages, as text.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "controls/forms/Form.h"
#include "controls/viewer/DocumentView.h"
#include "controls/viewer/browser/BrowserPane.h"
#include "controls/viewer/browser/FactsPane.h"
#include "mail/MailProgram.h"

namespace kavidex::controls {

class MailView final : public DocumentView {
public:
    using Opener = std::function<std::unique_ptr<mail::OpenedMail>(const platform::Workstation&,
                                                                   const std::string& path)>;

    MailView(ViewerFrame& frame, BrowserPane& browser, FactsPane& facts);

    // The mail program opens the file, or it is read here where the workstation says so. A mail
    // that cannot be opened is left to the facts, without a message.
    bool Show(const ShownDocument& document) override;
    bool Close() override;
    PartSet Parts() const override;
    StatusTexts Status() const override;
    void HintActivated() override;
    bool Idle() override;
    bool CanPrint() const override;
    void Print() override;
    void SurroundingsChanged() override;

    void SetOpener(Opener opener) { lclOpen = std::move(opener); }
    forms::Form& Header() { return lclHeader; } // frmMail
    forms::Form& Text() { return lclText; }

private:
    enum class Body { None, Browser, Text };
    void ShowMail(const mail::SavedMail& mail);
    void ShowHeader(const mail::SavedMail& mail);
    void ShowText();
    void WriteBody(const mail::SavedMail& mail);
    void ForgetBody();

    ViewerFrame& lclFrame;
    BrowserPane& lclBrowser;
    FactsPane& lclFacts;
    Opener lclOpen = mail::OpenByMailProgram;
    forms::Form lclHeader, lclText;
    ShownDocument lclDocument;
    Body lclBody = Body::None; // with a document: its facts
    bool lclSent = false;      // from here: "Aan:" instead of "Van:"
    std::string lclAttachments, lclPlain, lclBodyFile;
    bool lclFailed = false;
};

} // namespace kavidex::controls
