// Documents of the dossier on their way out by mail: made ready under the busy dialog, shown to the
// user by the mail program, and what was sent brought back.
#pragma once

#include <functional>

#include "controls/tree/MailSender.h"
#include "mail/MailRoads.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls {

class DossierMail final : public MailSender {
public:
    using FileSent = std::function<void(const SentMail&)>;

    DossierMail(const platform::Workstation& workstation, mail::MailRoads roads, FileSent fileSent)
        : lclWorkstation(workstation), lclRoads(std::move(roads)),
          lclFileSent(std::move(fileSent)) {}

    MailResult Send(const MailOrder& order) override;
    void File(const SentMail& mail) override { lclFileSent(mail); }

private:
    const platform::Workstation& lclWorkstation;
    mail::MailRoads lclRoads;
    FileSent lclFileSent;
};

} // namespace kavidex::controls
