// Opening, making and closing a dossier.
#include <utility>

#include "controls/binder/BinderWindow.h"
#include "controls/binder/IntakeWiring.h"
#include "controls/binder/ctrlCorrespondenceGuarded.h"
#include "controls/checklist/ctlChecklist.h"
#include "controls/tree/ctrlTree.h"
#include "controls/viewer/ctlViewer.h"
#include "controls/viewer/external/ctrlExtViewer.h"
#include "data/ConnectionAssignment.h"
#include "model/clsDossier.h"
#include "model/clsDossierDbRelations.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "model/filing.h"
#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

// The user was told what could not be read.
std::int32_t WhetherShown(const ctrlTree& tree) {
    return tree.TreeId() == 0 || tree.Tree() ? 0 : -6;
}

} // namespace

std::int32_t ctrlCorrespondence::Id() const { return lclTree->TreeId(); }

void ctrlCorrespondence::SetId(std::int32_t id) {
    const auto turn = Begin();
    if (id != Id()) {
        LeaveDossier(turn);
        if (Overtaken(turn)) return;
        LookUpKey(id);
    }
    ShowTree(id, turn);
    if (id != 0 && !Overtaken(turn)) lclBacklogDue = true;
    TakeWaiting();
}

void ctrlCorrespondence::ShowTree(std::int32_t id, std::uint32_t turn) {
    EmptyViewers(); // which may ask, as every step of leaving may
    if (Overtaken(turn)) return;
    lclTree->SetTreeId(id);
    if (Overtaken(turn)) return;
    lclState.Id = id;
    PropertyChanged.Raise("Id");
    TreeShown();
}

void ctrlCorrespondence::TreeShown() {
    if (Id() != 0) RestoreSelection();
    ShowInChecklist();
    ToolbarChanged();
    if (Id() != 0) lclIntake->intake.DossierShown();
}

// --- Whose documents these are ------------------------------------------------------------------

void ctrlCorrespondence::TakeKey(std::string_view key) {
    lclKeyKnown = true;
    if (lclState.ExternalId == key) return;
    lclState.ExternalId = key;
    PropertyChanged.Raise("ExternalId");
}

void ctrlCorrespondence::ReadKey(std::int32_t tree) {
    if (const auto key = model::KeyOfTree(DbConnection(), tree)) TakeKey(*key);
    lclKeyKnown = true;
}

void ctrlCorrespondence::LookUpKey(std::int32_t tree) {
    lclKeyKnown = tree == 0;
    if (tree == 0 || !DbConnection()) return;
    try {
        ReadKey(tree);
    } catch (const std::exception& error) {
        lclWorkstation.log.Write("ExternalId", error.what());
    }
}

std::string ctrlCorrespondence::DossierKey() {
    if (lclAssignment->IsElsewhere())
        throw platform::Error(platform::errors::fail,
                              "The connection was opened on another database.");
    if (!lclKeyKnown) ReadKey(Id());
    return lclState.ExternalId;
}

Dossier ctrlCorrespondence::OpenDossier() const {
    return {Id(), lclAssignment->Address(), DbConnection()};
}

// The folder that was selected when the state was saved, where this tree has it.
void ctrlCorrespondence::RestoreSelection() {
    if (!lclTree->Tree()) return;
    const auto wanted = std::exchange(lclState.SelectedTabId, std::int16_t{0});
    if (wanted > 0) SelectItem(wanted);
}

bool ctrlCorrespondence::Usable() const { return Id() != 0 && DbConnection() != nullptr; }

bool ctrlCorrespondence::CreateNew(std::string_view prmDescription,
                                   std::string_view prmListOfDefaultTabs) {
    const auto turn = Begin();
    // Made before the open dossier is left, which stays as it is when that fails.
    const auto tree = lclTree->CreateTree(prmDescription, prmListOfDefaultTabs);
    if (!tree || Overtaken(turn)) return false;
    LeaveDossier(turn);
    if (Overtaken(turn)) return false;
    lclKeyKnown = true; // nobody has given the new tree a key but the host
    EmptyViewers();
    if (Overtaken(turn)) return false;
    ShowMade(tree, turn);
    if (!Overtaken(turn)) lclBacklogDue = true;
    TakeWaiting();
    return true;
}

void ctrlCorrespondence::ShowMade(const std::shared_ptr<model::clsTree>& tree, std::uint32_t turn) {
    if (Overtaken(turn)) return;
    lclTree->ShowNew(tree);
    if (Overtaken(turn)) return;
    lclState.Id = Id();
    PropertyChanged.Raise("Id");
    ShowInChecklist();
    ToolbarChanged();
}

std::string ctrlCorrespondence::DefaultTabs(std::string_view listOfTabs) const {
    if (!listOfTabs.empty()) return std::string(listOfTabs);
    if (platform::EqualNoCase(lclState.DossierType, "Dossiermap")) return {};
    return "Dossiertype=" + lclState.DossierType;
}

std::int32_t ctrlCorrespondence::OpenOrCreate(std::string_view prmExternalId,
                                              std::string_view prmDescription,
                                              std::string_view prmListOfDefaultTabs,
                                              std::string_view prmOldExternalId,
                                              std::string_view prmExIdForBacklogAndQueue) {
    const auto turn = Begin();
    EndDossier(turn);
    if (!Overtaken(turn)) lclDossierQueueId = prmExIdForBacklogAndQueue;
    const auto tabs = DefaultTabs(prmListOfDefaultTabs);
    if (!Overtaken(turn) && !DbConnection() && !lclState.DbProvider.empty() &&
        !lclState.DbPath.empty())
        DbOpenConnection(); // closed by CloseObject, or restored from the host's bag

    std::int32_t result = -1, step = -1;
    try {
        if (!Overtaken(turn))
            result =
                FindOrCreate(prmExternalId, prmDescription, tabs, prmOldExternalId, step, turn);
    } catch (const std::exception& error) {
        ReportError("OpenOrCreate", error);
        result = step;
    }
    if (Overtaken(turn)) {
        TakeWaiting(); // of the dossier that stayed
        return WasOvertaken(prmExternalId);
    }
    if (result != 0) {
        if (Id() != 0) EndDossier(turn);
        if (!Overtaken(turn)) TakeKey({});
        return result;
    }
    ApplyLayout();
    lclBacklogDue = lclQueueDue = true;
    TakeWaiting();
    return Overtaken(turn) ? WasOvertaken(prmExternalId) : 0;
}

std::int32_t ctrlCorrespondence::WasOvertaken(std::string_view key) const {
    lclWorkstation.log.Write("OpenOrCreate", std::string(key) +
                                                 ": another dossier was opened, or this one "
                                                 "closed, while it was being opened");
    return -6;
}

// `step` is the result that an error at this point stands for.
std::int32_t ctrlCorrespondence::FindOrCreate(std::string_view externalId,
                                              std::string_view description, std::string_view tabs,
                                              std::string_view oldExternalId, std::int32_t& step,
                                              std::uint32_t turn) {
    step = -1;
    const auto connection = DbConnection();
    // Without a key the look-up would find whichever dossier comes first.
    if (!connection || platform::TrimView(externalId).empty()) {
        lclWorkstation.log.Write("OpenOrCreate", connection ? "no key" : "no connection");
        return -1;
    }
    // Cut to the column it could be another dossier's.
    if (model::ColumnText(externalId) != externalId) {
        lclWorkstation.log.Write("OpenOrCreate", "a key has at most 255 characters");
        return -1;
    }
    TakeKey(externalId); // from here on a host's handler may file into this dossier
    lclViewer->SetDbConnection(connection);
    model::clsDossierDbRelations relation(lclWorkstation);
    relation.SetTranslation(TranslationBy(lclTranslator));
    relation.SetDbConnection(connection);
    if (!relation.OpenKey(externalId)) return -1;
    bool found = !relation.Eof();
    if (!found && !platform::TrimView(oldExternalId).empty()) {
        if (!relation.OpenKey(oldExternalId)) return -1;
        found = !relation.Eof();
        if (found && !relation.Rekey(externalId)) return -1;
    }
    if (!found) {
        step = -2;
        model::clsDossierDbRelations fresh(lclWorkstation);
        fresh.SetTranslation(TranslationBy(lclTranslator));
        fresh.SetDbConnection(connection);
        fresh.SetDbKey(externalId);
        bool anothers = false;
        if (!fresh.SaveNewKey(anothers)) return -2;
        if (!anothers) return CreateDossier(fresh.DossierId(), description, tabs, step, turn);
        relation.SetDossierId(fresh.DossierId());
    }
    step = -6;
    model::clsDossier dossier(lclWorkstation);
    dossier.SetTranslation(TranslationBy(lclTranslator));
    dossier.SetDbConnection(connection);
    dossier.SetDossierId(relation.DossierId());
    if (!dossier.OpenDataSource()) return -6;
    // An earlier run may have ended between the key row and the dossier row.
    if (dossier.Eof()) return CreateDossier(relation.DossierId(), description, tabs, step, turn);
    ShowTree(dossier.TreeId(), turn);
    return WhetherShown(*lclTree);
}

std::int32_t ctrlCorrespondence::CreateDossier(std::int32_t dossierId, std::string_view description,
                                               std::string_view tabs, std::int32_t& step,
                                               std::uint32_t turn) {
    step = -3;
    const auto connection = DbConnection(); // a host may hand over another one meanwhile
    const auto tree = lclTree->CreateTree(platform::Trim(description), platform::Trim(tabs));
    if (!tree) return -3;
    step = -4;
    model::clsDossier dossier(lclWorkstation);
    dossier.SetTranslation(TranslationBy(lclTranslator));
    dossier.SetDbConnection(connection);
    dossier.SetDossierId(dossierId);
    if (!dossier.OpenDataSource()) return -4;
    step = -5;
    dossier.SetDossierType("Correspondence");
    dossier.SetTreeId(tree->TreeId());
    if (!dossier.SaveFirstRow()) return -5;
    if (dossier.TreeId() != tree->TreeId()) { // somebody else has made the dossier meanwhile
        ShowTree(dossier.TreeId(), turn);
        return WhetherShown(*lclTree);
    }
    ShowMade(tree, turn); // what the host does on hearing of it finds a whole dossier
    return 0;
}

std::int32_t ctrlCorrespondence::CloseObject() {
    std::int32_t result = addFiles::done;
    const auto turn = Begin();
    Guarded("CloseObject", [&] {
        result = EndDossier(turn);
        if (Overtaken(turn)) return;
        TakeKey({});
        if (lclState.DbOpened) SetDbConnection(nullptr);
    });
    return result;
}

std::int32_t ctrlCorrespondence::LeaveDossier(std::uint32_t turn) {
    lclDossierQueueId.clear();
    lclBacklogDue = lclQueueDue = false;
    lclIntake->scan.Close(); // what it scanned belongs to this dossier
    if (Id() == 0 || Overtaken(turn)) return addFiles::done;
    const auto result = lclIntake->intake.FilePendingAtTop();
    if (!Overtaken(turn)) TakeKey({});
    return result;
}

std::int32_t ctrlCorrespondence::EndDossier(std::uint32_t turn) {
    const auto result = LeaveDossier(turn);
    if (!Overtaken(turn) && Id() != 0) ShowTree(0, turn);
    if (!Overtaken(turn)) EmptyViewers();
    return result;
}

// Whoever goes on opening dossiers on hearing of the end of one is not waited for.
void ctrlCorrespondence::EndEveryDossier() {
    constexpr int most = 8;
    for (int i = 0; i < most; ++i) {
        const auto turn = Begin();
        EndDossier(turn);
        if (!Overtaken(turn)) return;
    }
    TakeKey({});
    EmptyViewers();
}

void ctrlCorrespondence::Refresh() {
    lclTree->Refresh();
    TreeRefreshed();
}

void ctrlCorrespondence::TreeRefreshed() {
    if (const auto asked = lclViewer->Asked()) {
        const auto now = lclTree->GetItem(asked->Id());
        if (now)
            lclViewer->RefreshAs(now);
        else
            lclViewer->ShowItem(nullptr); // another deleted it
    }
    if (auto* form = lclExtViewer->Form(); form && form->Id() > 0 && lclTree->Tree()) {
        if (const auto now = lclTree->GetItem(form->Id()))
            form->Viewer().Renamed(now);
        else
            lclExtViewer->CloseForm();
    }
    lclChecklist->SetTree(lclTree->Tree());
    lclChecklist->Refresh();
    if (lclWindow) lclWindow->Repaint();
    TakeWaiting();
}

} // namespace kavidex::controls
