#include "controls/mailing/DossierMail.h"

#include <optional>

#include "controls/common/Causes.h"
#include "controls/common/Listed.h"
#include "controls/common/OperationLock.h"
#include "controls/common/Translator.h"
#include "controls/viewer/NoteFile.h"
#include "mail/Attachments.h"
#include "mail/MailClient.h"
#include "mail/MailSettings.h"
#include "mail/SendByAutomation.h"
#include "mail/SimpleMail.h"
#include "model/clsItem.h"
#include "model/documentFile.h"
#include "platform/BusyDialog.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Shell.h"
#include "platform/TemporaryFolder.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

namespace {

// One mail. Holds all it needs: the control that asked for it may go while the mail is shown.
class Mailing {
public:
    Mailing(const platform::Workstation& workstation, mail::MailRoads roads, MailOrder order)
        : lclWorkstation(workstation), lclRoads(std::move(roads)), lclOrder(std::move(order)),
          lclTranslation(TranslationBy(lclOrder.translator)),
          lclFolder(std::make_shared<platform::TemporaryFolder>(workstation, "Mail")) {}

    MailResult Run() {
        const auto settings = mail::ReadMailSettings(lclWorkstation, lclTranslation);
        lclMail.address = lclOrder.address;
        lclMail.subject = settings.subject;
        lclMail.body = settings.body;
        if (!MakeAttachments()) return {};
        TellLeftOut();
        if (lclMail.attachments.empty()) return {};
        const auto client = mail::MailClientOf(lclWorkstation.shell.MailClient());
        return client == mail::MailClient::MicrosoftOutlook ? ByAutomation(settings)
                                                            : BySimpleMail();
    }

private:
    std::string Text(std::string_view text, const std::vector<std::string>& values = {}) const {
        return data::Translated(lclTranslation, text, values);
    }

    // False: the user stopped it.
    bool MakeAttachments() {
        const mail::Attachments attachments(lclWorkstation, lclFolder->Path(), Rules());
        model::DocumentFiles look(lclWorkstation, lclOrder.connection);
        const auto total = static_cast<int>(lclOrder.documents.size());
        platform::BusyScope busy(lclWorkstation.busy, Text("Mailen"), "", Text("Annuleren"));
        for (int done = 0; done < total; ++done) {
            const auto& item = *lclOrder.documents[static_cast<std::size_t>(done)];
            const auto name = item.Description();
            busy.Text(Text("Mailen"), Text("Bezig met voorbereiden van $%$.", {name}));
            const auto step = [&] {
                busy.Progress(done, total);
                return !busy.StopAsked();
            };
            if (!step()) return false;
            try {
                const auto file = look.Of(item);
                if (!file.HasFile())
                    throw platform::Error(file.outcome == model::DocumentLook::FileMissing
                                              ? platform::errors::notFound
                                              : file.number,
                                          file.error);
                auto made = attachments.Make({item.ItemType(), file.path, name}, step);
                if (!made) return false;
                lclMail.attachments.push_back(std::move(*made));
            } catch (const std::exception& error) {
                lclWorkstation.log.Write("Mail", name + ": " + error.what());
                const auto* ours = dynamic_cast<const platform::Error*>(&error);
                lclLeftOut.push_back(CauseOf(lclTranslation, name, ours ? ours->Number() : 0)
                                         .value_or(name + ": " + error.what()));
            }
        }
        return true;
    }

    mail::AttachmentRules Rules() const {
        return {lclOrder.asPdf, lclOrder.marks, [](std::string_view bytes) {
                    const auto note = ReadNote(bytes);
                    return mail::NoteTexts{note.heading.value_or(""), note.memo.value_or("")};
                }};
    }

    void TellLeftOut() const {
        if (lclLeftOut.empty()) return;
        lclWorkstation.messages.Show(
            {Text("Niet bijgevoegd: $%$", {"\r\n" + Listed(lclLeftOut, lclTranslation)}),
             Text("Mailen"), platform::Buttons::Ok, platform::Icon::Exclamation});
    }

    MailResult ByAutomation(const mail::MailSettings& settings) {
        using mail::AutomationResult;
        const auto sent =
            mail::SendByAutomation({lclWorkstation, lclTranslation, *lclRoads.automation,
                                    *lclRoads.prompts, lclRoads.pause},
                                   lclMail, settings, lclFolder->Path());
        if (sent.code == AutomationResult::failed) throw platform::Error(sent.number, sent.error);
        MailResult result;
        if (sent.code == AutomationResult::sent) result.outcome = MailOutcome::Sent;
        result.sent = sent.saved;
        result.files = lclFolder;
        return result;
    }

    // Its interface gives the reader files of these names: no signs of a path, and none twice.
    MailResult BySimpleMail() {
        for (auto& attachment : lclMail.attachments)
            attachment.name = platform::FileName(attachment.path);
        MailResult result;
        switch (lclRoads.simple->Send(lclMail)) {
        case mail::SimpleOutcome::Sent: result.outcome = MailOutcome::Sent; break;
        case mail::SimpleOutcome::NotSent: break;
        case mail::SimpleOutcome::LogonFailed: result.outcome = MailOutcome::LogonFailed; break;
        case mail::SimpleOutcome::NoProgram:
            throw platform::Error(
                platform::errors::fail,
                Text("Op deze computer is geen e-mailprogramma dat het bericht kan versturen"));
        }
        return result;
    }

    const platform::Workstation& lclWorkstation;
    const mail::MailRoads lclRoads;
    const MailOrder lclOrder;
    const data::Translation lclTranslation;
    const std::shared_ptr<platform::TemporaryFolder> lclFolder;
    mail::OutgoingMail lclMail;
    std::vector<std::string> lclLeftOut; // lines for the user
};

} // namespace

MailResult DossierMail::Send(const MailOrder& order) {
    Operation operation(*order.lock);
    if (!operation)
        throw platform::Error(
            platform::errors::fail,
            data::Translated(TranslationBy(order.translator), "Er loopt nog een andere bewerking"));
    return Mailing(lclWorkstation, lclRoads, order).Run();
}

} // namespace kavidex::controls
