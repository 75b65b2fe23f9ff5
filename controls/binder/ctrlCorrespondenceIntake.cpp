// How documents come in: files of the host, drops on the tree, and what waits in the scan queue.
#include <algorithm>

#include "controls/binder/ctrlCorrespondenceGuarded.h"
#include "controls/tree/ctrlTree.h"
#include "controls/viewer/DocumentPanel.h"
#include "data/ConnectionAssignment.h"
#include "data/clsSettings.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "model/filing.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/General.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::string_view notAdded = "Document zijn niet correct toegevoegd (Fout $%$)";
constexpr std::size_t causesShown = 8;

} // namespace

struct ctrlCorrespondence::Failed {
    std::int32_t result = addFiles::done; // of the first failure
    std::vector<std::string> causes;

    void Add(std::int32_t number, std::string cause) {
        if (result == addFiles::done) result = number;
        causes.push_back(std::move(cause));
    }
};

std::int32_t ctrlCorrespondence::TellNotAdded(const Failed& failed) const {
    std::string text = Text(notAdded, {std::to_string(failed.result)});
    for (std::size_t i = 0; i < failed.causes.size(); ++i) {
        lclWorkstation.log.Write("AddFiles", failed.causes[i]);
        if (i < causesShown) text += (i == 0 ? "\r\n\r\n" : "\r\n") + failed.causes[i];
        if (i == causesShown) text += "\r\n...";
    }
    platform::Message message;
    message.text = text;
    message.icon = platform::Icon::Exclamation;
    lclWorkstation.messages.Show(message);
    return failed.result;
}

std::shared_ptr<model::clsItem> ctrlCorrespondence::SelectedFolder() const {
    auto item = lclTree->SelectedItem();
    if (item && !item->AllowChildren()) item = lclTree->GetParent(item->Id());
    return item;
}

std::shared_ptr<model::clsItem>
ctrlCorrespondence::FolderFor(std::int32_t id, std::string_view description, bool top) const {
    const auto tree = lclTree->Tree();
    if (!tree) return nullptr;
    std::shared_ptr<model::clsItem> folder;
    if (top)
        folder = tree->Item();
    else if (id != 0)
        folder = tree->GetItem(id, {});
    else if (!platform::TrimView(description).empty())
        folder = tree->GetItem(0, description);
    else
        folder = SelectedFolder() ? SelectedFolder() : tree->Item();
    return folder && folder->AllowChildren() ? folder : nullptr;
}

std::int32_t ctrlCorrespondence::AddFiles(const std::vector<std::string>& data,
                                          std::string_view IntoDescription, std::int32_t IntoId,
                                          bool prmScannedDoc, bool prmAddToTop) {
    Failed failed;
    if (data.empty()) return addFiles::done;
    if (!Usable() || !lclTree->Tree() || lclLock.Held()) {
        failed.Add(addFiles::noDossier, lclLock.Held() ? Text("Er loopt nog een andere bewerking")
                                                       : Text("Er is geen dossier geopend"));
        return TellNotAdded(failed);
    }
    const auto folder = FolderFor(IntoId, IntoDescription, prmAddToTop);
    if (!folder) {
        failed.Add(addFiles::noFolder,
                   Text("Map '$%$' zit niet in dit dossier",
                        {IntoId != 0 ? std::to_string(IntoId) : std::string(IntoDescription)}));
        return TellNotAdded(failed);
    }
    std::vector<Pending> files;
    for (const auto& name : data) files.push_back({name, prmScannedDoc});
    return FileInto(folder, files);
}

std::int32_t ctrlCorrespondence::NoFilesGiven() const {
    Failed failed;
    failed.Add(addFiles::noFile, Text("Geen bestanden opgegeven"));
    return TellNotAdded(failed);
}

std::int32_t ctrlCorrespondence::FileInto(const std::shared_ptr<model::clsItem>& folder,
                                          const std::vector<Pending>& files) {
    Failed failed;
    std::string store;
    if (!lclAssignment->Settings() ||
        !lclAssignment->Settings()->GetSetting("Storage", "DocumentPath", store) || store.empty()) {
        failed.Add(addFiles::noStore, Text("DocumentPath in section Storage not found"));
        return TellNotAdded(failed);
    }
    const auto tree = lclTree->Tree(); // stays whole, whatever the message loop brings
    Operation operation(lclLock);
    if (!operation) {
        failed.Add(addFiles::notFiled, Text("Er loopt nog een andere bewerking"));
        return TellNotAdded(failed);
    }
    bool any = false;
    std::size_t handled = 0;
    try {
        for (; handled < files.size(); ++handled) {
            operation.Show(Text("Documenten toevoegen"), platform::FileName(files[handled].file));
            operation.Step(static_cast<int>(handled), static_cast<int>(files.size()));
            any = FileOne(tree, folder, files[handled], failed) || any;
        }
        operation.Step(static_cast<int>(files.size()), static_cast<int>(files.size()));
    } catch (const std::exception& error) {
        for (; handled < files.size(); ++handled)
            failed.Add(addFiles::notFiled, files[handled].file + ": " + error.what());
    }
    operation.End(); // before what is left to tell
    if (any) Guarded("AddFiles", [&] { lclViewer->Refresh(); });
    return failed.result == addFiles::done ? addFiles::done : TellNotAdded(failed);
}

// True when the document was filed; what shows it may still have failed, which is told on its own.
bool ctrlCorrespondence::FileOne(const std::shared_ptr<model::clsTree>& tree,
                                 const std::shared_ptr<model::clsItem>& folder,
                                 const Pending& pending, Failed& failed) {
    const auto& file = pending.file;
    if (lclTree->Tree() != tree) {
        failed.Add(addFiles::noDossier, Text("$%$: het dossier is gesloten", {file}));
        return false;
    }
    if (platform::TrimView(file).empty() || !lclWorkstation.files.FileExists(file)) {
        failed.Add(addFiles::noFile, Text("Bestand niet gevonden: $%$", {file}));
        return false;
    }
    model::FilingRequest request;
    request.source = file;
    request.folderId = folder->Id();
    request.externalId = lclState.ExternalId;
    if (pending.scanned) request.description = Text("Gescand document");
    const auto filed = model::FileDocument(lclWorkstation, *tree, request);
    if (!filed) {
        const bool source = filed.number == platform::errors::notFound ||
                            filed.number == platform::errors::pathNotFound ||
                            filed.number == platform::errors::accessDenied ||
                            filed.number == platform::errors::sharingViolation;
        lclWorkstation.log.Write("AddFiles", filed.error);
        failed.Add(source ? addFiles::noFile : addFiles::notFiled, CauseOf(file, filed.number));
        return false;
    }
    Guarded("AddFiles", [&] {
        if (!filed.error.empty()) lclWorkstation.log.Write("AddFiles", filed.error);
        if (lclTree->Tree() == tree) lclTree->AddItem(filed.item, folder->Id(), false);
    });
    return true;
}

// What the box says of a file; the log has the words of whatever refused it.
std::string ctrlCorrespondence::CauseOf(const std::string& file, std::int32_t number) const {
    namespace errors = platform::errors;
    switch (number) {
    case errors::notFound:
    case errors::pathNotFound: return Text("$%$: bestand of map niet gevonden", {file});
    case errors::accessDenied: return Text("$%$: geen toegang", {file});
    case errors::sharingViolation: return Text("$%$: in gebruik bij een ander programma", {file});
    case errors::diskFull: return Text("$%$: de schijf is vol", {file});
    default: return Text("$%$: niet opgeslagen", {file});
    }
}

// Documents that were never given a folder are not lost: they go to the top.
std::int32_t ctrlCorrespondence::FilePendingAtTop() {
    if (lclPending.empty() || !Usable() || !lclTree->Tree()) return addFiles::done;
    const auto files = std::move(lclPending);
    lclPending.clear();
    if (lclAssignment->IsElsewhere()) {
        Failed failed;
        for (const auto& pending : files)
            failed.Add(addFiles::notFiled, Text("$%$: niet opgeslagen", {pending.file}));
        return TellNotAdded(failed);
    }
    const auto result = FileInto(lclTree->Tree()->Item(), files);
    if (result == addFiles::done)
        Tell("Er waren nog documenten om op te bergen, deze zijn op het hoogste niveau toegevoegd");
    return result;
}

void ctrlCorrespondence::OnItemDropped(const DropEvent& drop) {
    Guarded("EvItemDropped", [&] {
        OLEDragDrop.Raise(drop.data, drop.effect);
        drop.effect = drop::none;
        if (!Usable() || !lclTree->Tree()) return Tell("Er is geen dossier geopend");
        if (drop.data.hasFiles && !drop.data.files.empty()) {
            auto target = lclTree->GetItem(drop.targetId);
            if (target && !target->AllowChildren()) target = lclTree->GetParent(target->Id());
            if (!target) target = SelectedFolder();
            std::vector<Pending> files;
            for (const auto& name : drop.data.files) files.push_back({name, false});
            if (target) {
                if (FileInto(target, files) == addFiles::done) drop.effect = drop::copy;
            } else {
                drop.effect = drop::copy;
                std::move(files.begin(), files.end(), std::back_inserter(lclPending));
                Tell("Selecteer een map om het document op te bergen");
            }
        } else if (drop.fromMail) {
            // Mail comes in through the file manager.
            Tell("Uw mail moet eerst gekopieerd worden naar de verkenner of het bureaublad. "
                 "Daarna kan deze naar het dossier gesleept worden");
        }
    }); // the tree tells when all of it is done
}

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

// --- Scan queue ---------------------------------------------------------------------------------

std::int32_t ctrlCorrespondence::fncCheckDocumentQueue(std::string_view prmExternalId) {
    Guarded("fncCheckDocumentQueue", [&] {
        if (!lclAssignment->Settings()) return;
        std::string root;
        lclAssignment->Settings()->GetSetting("DossierSettings", "ScanQueue", root);
        root = platform::Trim(root);
        if (root.empty()) return;
        if (root.back() != '\\') root += '\\';
        const auto& own = lclQueueExternalId.empty() ? lclDefaultQueueId : lclQueueExternalId;
        const std::string byKey(prmExternalId.empty() ? own : prmExternalId);
        if (!byKey.empty() && QueueFolder(root, byKey, false)) return;
        if (Id() != 0) QueueFolder(root, "Map" + std::to_string(Id()), true);
    });
    return 0;
}

// True when documents wait there. `announce`: the name is shown where the workstation asks for it,
// so that it can be set up on the scanning device.
bool ctrlCorrespondence::QueueFolder(std::string_view root, const std::string& name,
                                     bool announce) const {
    const auto setting = [&](std::string_view section) {
        return platform::GetRegSetting(lclWorkstation, platform::applicationName, section,
                                       "ShowExtId", "");
    };
    if (announce && platform::Val(setting("CorrespSetting")) == 1)
        Tell("Mapnaam voor opslag vanuit multifunctional = $%$", {name});
    const std::string folder = platform::JoinPath(root, name);
    if (platform::EqualNoCase(setting("DebugFlags"), "true"))
        lclWorkstation.messages.Show({folder, Text("Path for ScanQueue")});
    // A key names one folder below the root and nothing else.
    if (name.find_first_of("\\/:*?\"<>|") != std::string::npos || name == "." || name == "..")
        return false;
    if (lclWorkstation.files.List(folder, "*.tif").empty()) return false;
    // They can be taken in by the scanning control only; without it the user is not asked.
    lclWorkstation.log.Write("fncCheckDocumentQueue", "Documents wait in " + folder);
    return true;
}

} // namespace kavidex::controls
