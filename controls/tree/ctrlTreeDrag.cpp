// Dragging items within the tree, and dropping files, mail and texts from outside on it.
#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
#include "model/filing.h"
#include "platform/Files.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

bool ctrlTree::BeginDrag(std::int32_t id) {
    const auto root = Root();
    if (!MayChange(id) || !root || id == root->Id()) return false;
    const auto ids = IsCollected(id) ? lclCollectedOrder : std::vector<std::int32_t>{id};
    lclState.DropString.clear();
    for (const auto one : ids)
        lclState.DropString += (lclState.DropString.empty() ? "" : ";") + std::to_string(one);
    lclState.IntDrag = lclState.JustStartedDrag = lclState.InternalMove = true;
    return true;
}

std::int32_t ctrlTree::Drag(std::int32_t id) {
    std::int32_t effect = drop::none;
    if (!lclWindow || !BeginDrag(id)) return effect;
    Guarded("ctrlTree", [&] {
        DropData data;
        data.hasText = true;
        data.text = lclState.DropString;
        std::int32_t allowed = drop::copy | drop::move;
        DragStarted.Raise(data, allowed);
        if (allowed != drop::none && lclWindow) effect = lclWindow->Drag(data.text, allowed);
    });
    CompleteDrag(effect);
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

std::int32_t ctrlTree::OfferedEffect(const DropData& data, std::int32_t folder) const {
    if (!lclTree) return drop::none;
    if (lclState.IntDrag) {
        for (const auto& id : platform::Split(lclState.DropString, ';'))
            if (MayMove(static_cast<std::int32_t>(platform::Val(id)), folder)) return drop::move;
        return drop::none;
    }
    return folder != 0 && !lclState.ReadOnly && (data.hasFiles || data.hasText) ? drop::copy
                                                                                : drop::none;
}

DropData ctrlTree::AcceptedOf(const DropData& data) const {
    DropData accepted = data;
    std::string refused;
    std::erase_if(accepted.files, [&](const std::string& file) {
        if (AcceptsType(model::DocumentTypeOf(platform::FileName(file)))) return false;
        refused += (refused.empty() ? "" : ", ") + platform::FileName(file);
        return true;
    });
    if (!refused.empty())
        lclWorkstation.messages.Show(
            {Text("Bestanden van dit type worden hier niet opgenomen: $%$", {refused}),
             Text("Geen authorisatie"), platform::Buttons::Ok, platform::Icon::Exclamation});
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
            const auto accepted = AcceptedOf(data);
            if (data.hasFiles && accepted.files.empty()) return;
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
