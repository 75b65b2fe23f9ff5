// Simple mail by the session and message controls; where they are not installed, by the system's
// own function, which is loaded when it is needed.
#include <windows.h>

#include <objbase.h>

#include "mail/SimpleMail.h"
#include "mail/win32/MakeMailRoads.h"
#include "mail/win32/SystemMailFunction.h"
#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/win32/Late.h"

namespace kavidex::mail::win32 {

namespace {

using platform::win32::Late;
using platform::win32::Variant;

// The controls' own numbers.
constexpr std::int32_t newMessage = -1, primaryRecipient = 1, data = 0;
constexpr std::int32_t userAbort = static_cast<std::int32_t>(0x800A7D01); // their error 32001

void Compose(const Late& messages, const OutgoingMail& mail) {
    messages.Put(L"MsgIndex", {newMessage});
    messages.Call(L"Compose");
    if (!mail.address.empty()) {
        messages.Put(L"RecipIndex", {std::int32_t{0}});
        messages.Put(L"RecipType", {primaryRecipient});
        messages.Put(L"RecipDisplayName", {Variant(mail.address)});
        messages.Put(L"RecipAddress", {Variant("SMTP:" + mail.address)});
    }
    messages.Put(L"MsgSubject", {Variant(mail.subject)});
    const auto text = WithPlaces(mail.body, mail.attachments.size());
    messages.Put(L"MsgNoteText", {Variant(text.body)});
    std::int32_t index = 0;
    for (const auto& attachment : mail.attachments) {
        messages.Put(L"AttachmentIndex", {index});
        messages.Put(L"AttachmentType", {data});
        messages.Put(L"AttachmentPosition", {static_cast<std::int32_t>(text.first) + index});
        messages.Put(L"AttachmentPathName", {Variant(attachment.path)});
        messages.Put(L"AttachmentName", {Variant(attachment.name)});
        ++index;
    }
}

class SystemSimpleMail final : public SimpleMail {
public:
    explicit SystemSimpleMail(const platform::Workstation& workstation)
        : lclWorkstation(workstation) {}

    SimpleOutcome Send(const OutgoingMail& mail) override {
        const auto session = Control("MSMAPI.MAPISession");
        const auto messages = session ? Control("MSMAPI.MAPIMessages") : Late();
        return messages ? ByControls(session, messages, mail)
                        : SendByMailFunction(lclWorkstation, mail);
    }

private:
    void Note(const std::string& what) const { lclWorkstation.log.Write("Mail", what); }

    // Empty where it cannot be made, whatever the reason: the function does the same.
    Late Control(const char* progId) const {
        try {
            return Late::Create(progId);
        } catch (const platform::Error& error) {
            Note(std::string(progId) + ": " + error.what());
            return {};
        }
    }

    SimpleOutcome ByControls(const Late& session, const Late& messages,
                             const OutgoingMail& mail) const {
        try {
            session.Put(L"LogonUI", {true});
            session.Put(L"DownLoadMail", {false});
            session.Call(L"SignOn");
        } catch (const platform::Error& error) {
            Note(error.what());
            return SimpleOutcome::LogonFailed;
        }
        const SignedOn signedOn{*this, session};
        messages.Put(L"SessionID", {session.Get(L"SessionID")});
        Compose(messages, mail);
        try {
            constexpr bool withDialog = true;
            messages.Call(L"Send", {withDialog});
        } catch (const platform::Error& error) {
            if (error.Number() != userAbort) throw;
            return SimpleOutcome::NotSent;
        }
        return SimpleOutcome::Sent;
    }

    struct SignedOn {
        const SystemSimpleMail& mail;
        const Late& session;
        ~SignedOn() {
            try {
                session.Call(L"SignOff");
            } catch (const std::exception& error) {
                mail.Note(error.what());
            }
        }
    };

    const platform::Workstation& lclWorkstation;
};

} // namespace

std::shared_ptr<SimpleMail> MakeSimpleMail(const platform::Workstation& workstation) {
    return std::make_shared<SystemSimpleMail>(workstation);
}

} // namespace kavidex::mail::win32
