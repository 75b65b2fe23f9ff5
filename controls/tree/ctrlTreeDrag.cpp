// Dragging items within the tree, and dropping files, mail and texts from outside on it.
#include "controls/tree/DragDocuments.h"
#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
#include "model/filing.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

bool ctrlTree::BeginDrag(std::int32_t id) {
    const auto root = Root();
    if (!MayChange(id) || !root || id == root->Id()) return false;
    StartDrag(DraggedWith(id));
    return true;
}

std::vector<std::int32_t> ctrlTree::DraggedWith(std::int32_t id) const {
    return IsCollected(id) ? lclCollectedOrder : std::vector<std::int32_t>{id};
}

void ctrlTree::StartDrag(const std::vector<std::int32_t>& ids) {
    lclState.DropString.clear();
    for (const auto one : ids)
        lclState.DropString += (lclState.DropString.empty() ? "" : ";") + std::to_string(one);
    lclState.IntDrag = lclState.JustStartedDrag = lclState.InternalMove = true;
}

std::int32_t ctrlTree::Drag(std::int32_t id) {
    std::int32_t effect = drop::none;
    const auto root = Root();
    if (!lclWindow || !root || id == root->Id() || !lclNodes.contains(id)) return effect;
    DropData data;
    std::shared_ptr<const std::vector<std::string>> failed;
    // What may not be changed here can still be copied elsewhere.
    const bool moves = MayChange(id);
    const auto documents = DocumentsBelow(DraggedWith(id));
    if (!moves && documents.empty()) return effect;
    StartDrag(DraggedWith(id));
    Guarded("ctrlTree", [&] {
        data.hasText = true;
        data.text = lclState.DropString;
        failed = OfferDocuments(lclWorkstation, lclConnection, documents, data);
        std::int32_t allowed = moves ? drop::copy | drop::move : drop::copy;
        DragStarted.Raise(data, allowed);
        if (allowed != drop::none && lclWindow) effect = lclWindow->Drag(data, allowed);
    });
    CompleteDrag(effect);
    if (failed && !failed->empty()) TellFailed(NotCopied(*failed), Text("Slepen"));
    return effect;
}

std::int32_t ctrlTree::DragOver(DragState state, const DropData& data, std::int32_t targetId) {
    lclState.JustStartedDrag = false;
    if (lclState.OLEDropMode == 0) return drop::none;
    EvItemDragOver.Raise(state, targetId);
    auto effect = state == DragState::Leave ? drop::none : OfferedEffect(data, FolderAt(targetId));
    DraggedOver.Raise(data, effect, state);
    return effect;
}

// Without the right it is offered all the same: what is not offered is never dropped, and it is the
// drop that tells the user why it is refused.
std::int32_t ctrlTree::OfferedEffect(const DropData& data, std::int32_t folder) const {
    if (!lclTree) return drop::none;
    if (lclState.IntDrag) {
        if (lclListMode) return drop::none; // its rows have no folder that could take them
        for (const auto& id : platform::Split(lclState.DropString, ';'))
            if (MayMove(static_cast<std::int32_t>(platform::Val(id)), folder)) return drop::move;
        return drop::none;
    }
    const bool any = data.hasFiles || data.hasText || !data.virtualFiles.empty();
    return folder != 0 && !lclState.ReadOnly && any ? drop::copy : drop::none;
}

DropData ctrlTree::AcceptedOf(const DropData& data) const {
    DropData accepted = data;
    std::vector<std::string> refused;
    const auto refuse = [&](const std::string& file) {
        if (AcceptsType(model::DocumentTypeOf(platform::FileName(file)))) return false;
        lclWorkstation.log.Write("AllowedTypes", file);
        refused.push_back(platform::FileName(file));
        return true;
    };
    std::erase_if(accepted.files, [&](const std::string& file) {
        // Of a folder it is seen once it is opened.
        return !lclWorkstation.files.DirectoryExists(file) && refuse(file);
    });
    std::erase_if(accepted.virtualFiles,
                  [&](const platform::VirtualFile& file) { return refuse(file.name); });
    if (!refused.empty())
        lclWorkstation.messages.Show({Text("Bestanden van dit type worden hier niet opgenomen: $%$",
                                           {Listed(refused, ", ")}),
                                      Text("Geen authorisatie"), platform::Buttons::Ok,
                                      platform::Icon::Exclamation});
    return accepted;
}

std::int32_t ctrlTree::Dropped(const DropData& data, std::int32_t targetId) {
    std::int32_t effect = drop::none;
    if (lclState.OLEDropMode == 0) return effect;
    Guarded("ctrlTree", [&] {
        const auto folder = FolderAt(targetId);
        if (data.hasText && lclState.IntDrag) {
            if (platform::TrimView(data.text).empty()) return;
            std::vector<std::int32_t> ids;
            for (const auto& id : platform::Split(data.text, ';'))
                ids.push_back(static_cast<std::int32_t>(platform::Val(id)));
            MoveItems(ids, folder);
            effect = drop::move;
            EvItemDroppedAndHandled.Raise();
        } else if (MayUser(UserAction::AddExternal)) {
            if (!lclState.SelectItems) ClearSelectedItems();
            const auto here = SameDossier();
            const auto accepted = AcceptedOf(data);
            if (!here()) return;
            const auto offered = data.files.size() + data.virtualFiles.size();
            if (offered > 0 && accepted.files.empty() && accepted.virtualFiles.empty()) return;
            const auto entries = platform::Split(data.text, ';').size();
            const bool mail = !data.hasFiles && entries < 2 && lclWindow &&
                              lclWindow->HasTopWindow("Microsoft outlook");
            effect = drop::copy;
            EvItemDropped.Raise({accepted, effect, folder, mail});
            EvItemDroppedAndHandled.Raise();
        } else {
            lclWorkstation.messages.Show(
                {Text("U heeft geen bevoegdheid om documenten naar het dossier te verslepen"),
                 Text("Geen authorisatie"), platform::Buttons::Ok, platform::Icon::Exclamation});
        }
    });
    return effect;
}

void ctrlTree::CompleteDrag(std::int32_t effect) {
    lclState.IntDrag = lclState.JustStartedDrag = lclState.InternalMove = false;
    lclState.DropString.clear();
    DragCompleted.Raise(effect);
    EvCompleteDrag.Raise();
}

void ctrlTree::HoverExpanded(std::int32_t id) { EvItemDragOver.Raise(DragState::Over, id); }

} // namespace kavidex::controls
