#include "controls/viewer/mail/MailView.h"

#include <cstdio>

#include "controls/viewer/FrameTexts.h"
#include "controls/viewer/PrintShown.h"
#include "mail/HtmlText.h"
#include "model/Store.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/General.h"
#include "platform/Log.h"
#include "platform/Shell.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

using forms::FieldRow;
using forms::Kind;
namespace anchor = forms::anchor;
namespace style = forms::style;

// What is read can be copied, too.
constexpr FieldRow headerFields[] = {
    {"lblMailSubject",
     Kind::Edit,
     {8, 5, 244, 10},
     "Onderwerp",
     anchor::wide,
     style::readOnly | style::bold},
    {"lblName1", Kind::Label, {8, 18, 58, 9}, "Van:"},
    {"lblName", Kind::Edit, {68, 18, 184, 10}, "", anchor::wide, style::readOnly},
    {"lblDate1", Kind::Label, {8, 30, 58, 9}, "Verzonden op:"},
    {"lblDate", Kind::Edit, {68, 30, 184, 10}, "", anchor::wide, style::readOnly},
    {"lblAttachment",
     Kind::Edit,
     {8, 42, 244, 10},
     "Bijlagen",
     anchor::wide,
     style::readOnly | style::hidden},
};
constexpr forms::Layout header = {"frmMail", "", 260, 56, true, headerFields};

constexpr FieldRow textFields[] = {
    {"txtBody", Kind::Memo, {8, 2, 112, 58}, "Bericht", anchor::all, style::readOnly}};
constexpr forms::Layout text = {"frmMailBody", "", 120, 60, true, textFields};

std::string Moment(const std::optional<platform::DateTime>& when) {
    if (!when) return {};
    char time[16];
    std::snprintf(time, sizeof time, " %02d:%02d:%02d", when->hour % 100, when->minute % 100,
                  when->second % 100);
    return platform::DayFirst(*when) + time;
}

// A text without marks of its own, as a page that shows it as it stands.
std::string PageOf(std::string_view plain) {
    std::string page = platform::Replace(plain, "&", "&amp;");
    page = platform::Replace(platform::Replace(page, "<", "&lt;"), ">", "&gt;");
    return "<html><body><pre style=\"white-space: pre-wrap; font-family: sans-serif\">" + page +
           "</pre></body></html>";
}

} // namespace

MailView::MailView(ViewerFrame& frame, BrowserPane& browser, FactsPane& facts)
    : lclFrame(frame), lclBrowser(browser), lclFacts(facts), lclHeader(header, frame.Machine()),
      lclText(text, frame.Machine()) {
    for (auto* form : {&lclHeader, &lclText}) form->mayCancel = [] { return false; };
}

void MailView::SurroundingsChanged() {
    for (auto* form : {&lclHeader, &lclText})
        form->SetTranslate(std::make_shared<FrameTexts>(lclFrame));
    lclFacts.SurroundingsChanged();
    lclHeader["lblName1"].SetText(lclFrame.Text(lclSent ? "Aan:" : "Van:"));
    lclHeader["lblAttachment"].SetText(lclFrame.Text("Bijlagen: $%$", {lclAttachments}));
}

bool MailView::Show(const ShownDocument& document) {
    lclDocument = document;
    const auto& machine = lclFrame.Machine();
    try {
        if (platform::GetRegFlag(machine, "ViewerSetting", "ReadMailFiles"))
            ShowMail(mail::ReadSavedMail(document.Path()));
        else
            ShowMail(lclOpen(machine, document.Path())->Content());
    } catch (const std::exception& error) {
        machine.log.Write("ShowItem", document.Path() + ": " + error.what());
        ForgetBody();
        lclFacts.Show(document, "Dit document kan hier niet getoond worden.");
    }
    return true;
}

void MailView::ShowMail(const mail::SavedMail& mail) {
    ShowHeader(mail);
    lclPlain = mail.text.empty() ? mail::TextOfHtml(mail.html) : mail.text;
    if (!lclFrame.Machine().shell.HasBrowserEngine()) return ShowText();
    WriteBody(mail);
    lclBody = Body::Browser;
    lclBrowser.Show(lclBodyFile, "Navigate2", [this](const std::string& reason) {
        lclFrame.Machine().log.Write("webctl", lclBodyFile + ": " + reason);
        lclFailed = true;
        lclFrame.WantIdle();
    });
}

void MailView::ShowHeader(const mail::SavedMail& mail) {
    lclSent = mail.receivedByName.empty();
    lclAttachments.clear();
    for (const auto& name : mail.attachments)
        lclAttachments += (lclAttachments.empty() ? "" : "; ") + name;
    if (lclAttachments.empty()) lclAttachments = std::to_string(mail.attachmentCount);
    lclHeader["lblMailSubject"].SetText(mail.subject);
    lclHeader["lblName"].SetText(lclSent ? mail.to : mail.senderName);
    lclHeader["lblDate"].SetText(Moment(mail.sentOn));
    lclHeader["lblAttachment"].SetVisible(mail.attachmentCount > 0);
    SurroundingsChanged();
}

void MailView::ShowText() {
    lclBody = Body::Text;
    lclText["txtBody"].SetText(platform::Replace(lclPlain, "\r\n", "\n"));
}

// In UTF-8 with its mark, which counts for more than what the page says of itself.
void MailView::WriteBody(const mail::SavedMail& mail) {
    const auto& machine = lclFrame.Machine();
    const auto path = machine.files.TemporaryFolder() + "kavidex-" +
                      model::NewGuid(machine).substr(1, 36) + ".htm";
    machine.files.WriteAll(path,
                           "\xEF\xBB\xBF" + (mail.html.empty() ? PageOf(mail.text) : mail.html));
    lclBodyFile = path;
}

void MailView::ForgetBody() {
    lclBody = Body::None;
    lclFailed = false;
    lclPlain.clear();
    lclBrowser.Clear();
    if (lclBodyFile.empty()) return;
    try {
        lclFrame.Machine().files.Remove(lclBodyFile);
    } catch (const platform::Error& error) {
        lclFrame.Machine().log.Write("MailView", error.what());
    }
    lclBodyFile.clear();
}

bool MailView::CanPrint() const {
    return lclDocument.item && (lclBody != Body::Browser || lclBrowser.CanPrint());
}

void MailView::Print() {
    if (lclBody == Body::Browser)
        lclBrowser.Print();
    else
        PrintByProgram(lclFrame, lclDocument);
}

bool MailView::Idle() {
    if (!lclFailed) return false;
    const auto plain = lclPlain;
    ForgetBody();
    lclPlain = plain;
    ShowText();
    lclFrame.ContentChanged();
    return false;
}

bool MailView::Close() {
    ForgetBody();
    lclDocument = {};
    return true;
}

PartSet MailView::Parts() const {
    if (!lclDocument.item) return {};
    switch (lclBody) {
    case Body::Browser: return {Part::MailHeader, Part::Browser};
    case Body::Text: return {Part::MailHeader, Part::Text};
    default: return {Part::Facts};
    }
}

StatusTexts MailView::Status() const {
    StatusTexts texts = lclFacts.Status();
    if (lclBody == Body::Browser) texts.page = lclFrame.Text("Scripts worden niet uitgevoerd");
    return texts;
}

void MailView::HintActivated() { lclFacts.OpenDefault(lclDocument); }

} // namespace kavidex::controls
