#include "controls/mailing/FileInTree.h"

#include "controls/intake/MailDrop.h"
#include "controls/tree/ctrlTree.h"
#include "model/clsTree.h"
#include "model/filing.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

void FileInTree(const platform::Workstation& workstation, ctrlTree& tree, const std::string& mail,
                std::int32_t folder) {
    const auto dossier = tree.Tree();
    model::FilingRequest request;
    request.source = mail;
    request.folderId = folder;
    request.mail = MailInfoOf(workstation, nullptr, mail);
    model::FilingResult filed;
    if (dossier) filed = model::FileDocument(workstation, *dossier, request);
    if (!filed.error.empty()) workstation.log.Write("Mail", filed.error);
    if (filed) {
        if (tree.Tree() == dossier) tree.AddItem(filed.item, folder, false);
        return;
    }
    const auto translation = TranslationBy(tree.Translate());
    workstation.messages.Show(
        {data::Translated(translation, "$%$: niet opgeslagen", {platform::FileName(mail)}),
         data::Translated(translation, "Mailen"), platform::Buttons::Ok,
         platform::Icon::Exclamation});
}

} // namespace kavidex::controls
