#include "mail/SendByAutomation.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "mail/MailAutomation.h"
#include "mail/MailNames.h"
#include "mail/PromptTool.h"
#include "platform/BusyDialog.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/modCreateGuid.h"

namespace kavidex::mail {

namespace {

// The program is there but has no time: the next attempt may find it free.
constexpr std::int32_t callRejected = static_cast<std::int32_t>(0x80010001),
                       retryLater = static_cast<std::int32_t>(0x8001010A);
// The user said no to a question of the program's, which is not asked again and again.
constexpr std::int32_t refused = static_cast<std::int32_t>(0x80004004);

class Sending {
public:
    Sending(const AutomationTools& tools, const OutgoingMail& mail, const MailSettings& settings,
            const std::string& folder)
        : lclTools(tools), lclMail(mail), lclSettings(settings), lclTarget(folder) {}

    AutomationResult Run() {
        Prepare();
        lclItem->Display();
        if (lclSettings.retrieve) return Retrieve();
        AutomationResult result;
        result.code = WasSent() ? AutomationResult::sent : AutomationResult::notSent;
        return result;
    }

private:
    void Note(const std::string& what) const { lclTools.machine.log.Write("Mail", what); }

    void Prepare() {
        lclItem = lclTools.program.CreateMail();
        if (!lclMail.address.empty()) lclItem->AddRecipient(lclMail.address);
        lclItem->SetSubject(lclMail.subject);
        if (lclSettings.bodyFormat > 0) lclItem->SetBodyFormat(lclSettings.bodyFormat);
        if (!lclMail.body.empty()) lclItem->SetBody(lclMail.body);
        for (const auto& attachment : lclMail.attachments) {
            if (lclTools.machine.files.FileExists(attachment.path))
                lclItem->Attach(attachment.path, DisplayName(attachment.name));
            else
                Note(attachment.path + " is gone: it is not attached");
        }
        lclFolder = lclItem->SaveSentMessageFolder();
        lclKnown = lclFolder->Count();
        if (platform::CreateGuid(lclTools.machine, lclMark) != 0)
            throw platform::Error(platform::errors::fail, "The mail gets no mark");
        lclItem->AddUserProperty(uniqueIndex, lclMark);
    }

    // Programs that move what was sent say of the item only that it is gone: then the folder tells.
    bool WasSent() const {
        try {
            return lclItem->Sent();
        } catch (const std::exception& error) {
            Note(std::string("Whether the mail was sent cannot be read: ") + error.what());
            return true;
        }
    }

    // What goes wrong from here on does not make the mail unsent.
    AutomationResult Retrieve() {
        AutomationResult result;
        const auto text = [&](const char* key) {
            return data::Translated(lclTools.translation, key);
        };
        platform::BusyScope busy(lclTools.machine.busy, text("Ophalen verzonden emailbericht"),
                                 text("Bezig met het ophalen van het verzonden email bericht."),
                                 text("Annuleren"));
        if (!WasSent()) return result;
        try {
            result.saved = Search(busy);
            if (!result.saved.empty()) result.code = AutomationResult::sent;
        } catch (const std::exception& error) {
            Note(std::string("The sent mail was not retrieved: ") + error.what());
        }
        return result;
    }

    // The path that it was saved to; empty where it was not found.
    std::string Search(platform::BusyScope& busy) {
        for (int attempt = 1; attempt <= searchAttempts; ++attempt) {
            auto saved = Attempt(attempt == searchAttempts);
            if (!saved.empty()) return saved;
            busy.Progress(attempt, 0); // how long it takes is not known
            if (busy.StopAsked()) {
                Note("The user stopped the search");
                break;
            }
            lclTools.pause(betweenAttempts);
        }
        Note("The sent mail was not found");
        return {};
    }

    std::string Attempt(bool last) {
        try {
            if (!lclSent) lclSent = Look(last);
            return lclSent ? Save(*lclSent) : std::string();
        } catch (const platform::Error& error) {
            if (!IsBusy(error)) throw;
            if (!std::exchange(lclBusyNoted, true)) Note(error.what());
            return {};
        }
    }

    // The folder may be large: of it only what came since is looked at. The user deletes there too:
    // ours may stand where an old one stood.
    std::unique_ptr<SentItem> Look(bool last) {
        const auto count = lclFolder->Count();
        const auto looked = count < lclKnown || last ? std::min(lclKnown, count - 1) : lclKnown;
        lclKnown = std::min(lclKnown, count);
        for (auto place = std::max(looked, 0) + 1; place <= count; ++place) {
            if (auto item = Ours([&] { return lclFolder->Item(place); })) return item;
            if (auto item = Ours([&] { return lclFolder->Next(); })) return item;
        }
        return nullptr;
    }

    // What cannot be read is no mail of ours, or was moved meanwhile; that the program died shows
    // at the next count.
    template <class Get>
    std::unique_ptr<SentItem> Ours(const Get& get) {
        try {
            auto item = get();
            if (item && item->UserProperty(uniqueIndex) == lclMark) return item;
        } catch (const platform::Error& error) {
            if (IsBusy(error) || error.Number() == refused) throw;
            if (!std::exchange(lclUnreadNoted, true)) Note(error.what());
        }
        return nullptr;
    }

    static bool IsBusy(const platform::Error& error) {
        return error.Number() == callRejected || error.Number() == retryLater;
    }

    // Under its subject; where the file system refuses that as a name, under what it takes of it.
    std::string Save(SentItem& item) const {
        auto& files = lclTools.machine.files;
        const auto name = SentMailName(item.Subject());
        auto path = FreePath(files, lclTarget, name, ".msg");
        try {
            item.SaveAs(path);
            if (files.FileExists(path)) return path;
            Note("The program saved no " + path);
        } catch (const platform::Error& error) {
            if (IsBusy(error)) throw;
            Note(path + ": " + error.what());
        }
        path = FreePath(files, lclTarget, SafeName(name), ".msg");
        item.SaveAs(path);
        if (!files.FileExists(path))
            throw platform::Error(platform::errors::notFound, "The program saved no " + path);
        return path;
    }

    const AutomationTools& lclTools;
    const OutgoingMail& lclMail;
    const MailSettings& lclSettings;
    const std::string& lclTarget;
    std::unique_ptr<NewMail> lclItem;
    std::unique_ptr<SentFolder> lclFolder;
    std::unique_ptr<SentItem> lclSent;
    std::int32_t lclKnown = 0;
    std::string lclMark;
    bool lclBusyNoted = false, lclUnreadNoted = false;
};

} // namespace

AutomationResult SendByAutomation(const AutomationTools& tools, const OutgoingMail& mail,
                                  const MailSettings& settings, const std::string& folder) {
    const PromptPause pause(tools.prompts);
    try {
        return Sending(tools, mail, settings, folder).Run();
    } catch (const std::exception& error) {
        tools.machine.log.Write("Mail", error.what());
        AutomationResult result;
        result.code = AutomationResult::failed;
        const auto* ours = dynamic_cast<const platform::Error*>(&error);
        result.number = ours ? ours->Number() : platform::errors::fail;
        result.error = error.what();
        return result;
    }
}

} // namespace kavidex::mail
