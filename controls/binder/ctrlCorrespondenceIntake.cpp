// How documents come in, as the host asks for it, and what waits in the scan queue.
#include <utility>

#include "controls/binder/IntakeWiring.h"
#include "controls/binder/ctrlCorrespondenceGuarded.h"
#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "platform/Log.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

std::shared_ptr<model::clsItem> ctrlCorrespondence::SelectedFolder() const {
    auto item = lclTree->SelectedItem();
    if (item && !item->AllowChildren()) item = lclTree->GetParent(item->Id());
    return item;
}

std::int32_t ctrlCorrespondence::AddFiles(const std::vector<std::string>& data,
                                          std::string_view IntoDescription, std::int32_t IntoId,
                                          bool prmScannedDoc, bool prmAddToTop) {
    const auto result =
        lclIntake->intake.AddFiles(data, IntoDescription, IntoId, prmScannedDoc, prmAddToTop);
    ShowInChecklist();
    TakeWaiting();
    return result;
}

std::int32_t ctrlCorrespondence::NoFilesGiven() const { return lclIntake->intake.NoFilesGiven(); }

std::shared_ptr<model::clsItem>
ctrlCorrespondence::AddItem(std::int32_t prmId, std::string_view prmItemType,
                            const std::shared_ptr<model::clsItemCol>& prmChildCollection,
                            std::int32_t prmItemId, std::string_view prmDescription,
                            std::int32_t prmInto) {
    if (!Usable() || !lclTree->Tree()) {
        lclWorkstation.log.Write("AddItem", "no dossier is open");
        return nullptr;
    }
    return lclTree->Add(prmId, prmItemType, prmChildCollection, prmItemId, prmDescription, prmInto);
}

bool ctrlCorrespondence::ExistItem(std::int32_t ItemId) const {
    const auto tree = lclTree->Tree();
    return Usable() && tree && ItemId != 0 && tree->GetItem(ItemId, {}) != nullptr;
}

// --- What waits in folders ----------------------------------------------------------------------

std::int32_t ctrlCorrespondence::fncCheckDocumentQueue(std::string_view prmExternalId) {
    Guarded("fncCheckDocumentQueue", [&] {
        const auto& own = QueueKey().empty() ? lclState.ExternalId : QueueKey();
        lclIntake->queue.Check(prmExternalId.empty() ? own : std::string(prmExternalId), Id());
    });
    return 0;
}

void ctrlCorrespondence::SetCheckDocumentQueueId(std::string_view id) {
    lclQueueExternalId = id;
    lclDossierQueueId.clear(); // the last one counts
}

const std::string& ctrlCorrespondence::QueueKey() const {
    return lclDossierQueueId.empty() ? lclQueueExternalId : lclDossierQueueId;
}

// A dossier that is opened during another operation takes in what waits once that one is done.
void ctrlCorrespondence::TakeWaiting() {
    if (lclLock.Held() || !Usable()) return;
    if (std::exchange(lclBacklogDue, false)) ImportBacklog(); // which may open another one
    if (!lclLock.Held() && std::exchange(lclQueueDue, false)) fncCheckDocumentQueue({});
}

void ctrlCorrespondence::ImportBacklog() {
    Guarded("BacklogImport",
            [&] { lclIntake->backlog.Import(QueueKey().empty() ? DossierKey() : QueueKey()); });
}

} // namespace kavidex::controls
