// A mail program for tests: what it opens is the table below, found by the name of the file; every
// call is a line in a text file. Where KAVIDEX_MAIL_RECORD names none, that is
// kavidex-mail.txt in the temporary folder. What is selected in it: MailSelection.h.
#pragma once

#include <windows.h>

#include <string>

#include "platform/Files.h"
#include "tests/e2e/doubles/MailSelection.h"

namespace kavidex::tests {

struct ScriptedMail {
    const char* file; // its name ends with this
    bool shared;      // OpenSharedItem opens it, else only CreateItemFromTemplate
    const char *subject, *receivedByName, *senderName, *to, *sentOn, *html, *body;
    int attachments;
};

constexpr ScriptedMail scriptedMails[] = {
    {"1.msg", true, "Schadeformulier ontvangen", "J. Jansen", "Schadedienst", "J. Jansen",
     "2026-11-14 09:30:05", "<html><body><p>Het <b>formulier</b> is ontvangen.</p></body></html>",
     "Het formulier is ontvangen.", 2},
    {"2.msg", false, "Uw polis 4711", "", "J. Jansen", "K. de Vries; P. Smit",
     "2026-11-15 14:05:09", "", "Geachte heer De Vries,\r\n\r\nHierbij < uw polis >.", 0},
};

// Null for a file that the table does not have.
inline Variant PlayScripted(const std::string& path, bool shared) {
    for (const auto& mail : scriptedMails) {
        if (!path.ends_with(mail.file) || (shared && !mail.shared)) continue;
        const auto noted = [name = "Item(" + std::string(mail.file) + ")."](std::string call) {
            return [=](const Arguments& given) {
                RecordMailCall(name + call + (given.empty() ? "" : " " + given[0].ToText()));
                return Variant();
            };
        };
        const auto moment = Variant(mail.sentOn).As(VT_DATE);
        return Play({{L"Subject", mail.subject},
                     {L"ReceivedByName", mail.receivedByName},
                     {L"SenderName", mail.senderName},
                     {L"To", mail.to},
                     {L"SentOn", moment},
                     {L"ReceivedTime", moment},
                     {L"HTMLBody", mail.html},
                     {L"Body", mail.body},
                     {L"Attachments", Play({{L"Count", mail.attachments}})},
                     {L"Delete", noted("Delete")},
                     {L"Close", noted("Close")}});
    }
    return Nothing();
}

inline com::ComPtr<IDispatch> PlayNamespace() {
    return Play({{L"OpenSharedItem",
                  [](const Arguments& path) {
                      const auto file = path[0].ToText();
                      RecordMailCall("Namespace.OpenSharedItem " + platform::FileName(file));
                      return PlayScripted(file, true);
                  }},
                 {L"GetDefaultFolder", [](const Arguments& folder) {
                      RecordMailCall("Namespace.GetDefaultFolder " + folder[0].ToText());
                      return Variant(Play({}));
                  }}});
}

struct OutlookDouble : Played {
    OutlookDouble()
        : Played({{L"GetNamespace",
                   [](const Arguments& type) {
                       RecordMailCall("Application.GetNamespace " + type[0].ToText());
                       return Variant(PlayNamespace());
                   }},
                  {L"CreateItemFromTemplate",
                   [](const Arguments& given) {
                       const auto path = given[0].ToText();
                       RecordMailCall("Application.CreateItemFromTemplate " +
                                      platform::FileName(path) +
                                      (given[1].ToDispatch() ? " in a folder" : ""));
                       return PlayScripted(path, false);
                   }},
                  {L"ActiveExplorer", Answer(ActiveMailExplorer)},
                  {L"ActiveWindow", Answer(ActiveMailWindow)}}) {}
};

} // namespace kavidex::tests
