#include "controls/mailing/FileInTree.h"

#include "controls/intake/MailDrop.h"
#include "controls/tree/MailSender.h"
#include "controls/tree/ctrlTree.h"
#include "model/clsDossierDbRelations.h"
#include "model/clsTree.h"
#include "model/filing.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

namespace {

// The host's key, as the documents beside it have it.
std::string KeyOf(const platform::Workstation& workstation, const model::clsTree& dossier) {
    try {
        return model::KeyOfTree(dossier.DbConnection(), dossier.TreeId()).value_or("");
    } catch (const std::exception& error) {
        workstation.log.Write("Mail", error.what());
        return {};
    }
}

} // namespace

void FileInTree(const platform::Workstation& workstation, ctrlTree& tree, const SentMail& mail) {
    model::FilingRequest request;
    request.source = mail.path;
    request.folderId = mail.folder;
    request.externalId = KeyOf(workstation, *mail.dossier);
    request.mail = MailInfoOf(workstation, nullptr, mail.path);
    const auto filed = model::FileDocument(workstation, *mail.dossier, request);
    if (!filed.error.empty()) workstation.log.Write("Mail", filed.error);
    if (filed) {
        if (tree.Shows(*mail.dossier)) tree.AddItem(filed.item, mail.folder, false);
        return;
    }
    const auto translation = TranslationBy(tree.Translate());
    workstation.messages.Show(
        {data::Translated(translation, "$%$: niet opgeslagen", {platform::FileName(mail.path)}),
         data::Translated(translation, "Mailen"), platform::Buttons::Ok,
         platform::Icon::Exclamation});
}

} // namespace kavidex::controls
