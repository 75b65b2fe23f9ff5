// Dragging items within the tree, and dropping files, mail and texts from outside on it.
#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
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

std::int32_t ctrlTree::DragOver(DragState state, const DropData& data, std::int32_t targetId) {
    lclState.JustStartedDrag = false;
    EvItemDragOver.Raise(state, targetId);
    if (state == DragState::Leave || !lclTree) return drop::none;
    const auto folder = FolderAt(targetId);
    if (lclState.IntDrag) {
        for (const auto& id : platform::Split(lclState.DropString, ';'))
            if (MayMove(static_cast<std::int32_t>(platform::Val(id)), folder)) return drop::move;
        return drop::none;
    }
    return folder != 0 && !lclState.ReadOnly && (data.hasFiles || data.hasText) ? drop::copy
                                                                                : drop::none;
}

std::int32_t ctrlTree::Dropped(const DropData& data, std::int32_t targetId) {
    std::int32_t effect = drop::none;
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
        } else if (lclState.AllowAddExternal && !lclState.ReadOnly) {
            if (!lclState.SelectItems) ClearSelectedItems();
            const auto entries = platform::Split(data.text, ';').size();
            const bool mail = !data.hasFiles && entries < 2 && lclWindow &&
                              lclWindow->HasTopWindow("Microsoft outlook");
            effect = drop::copy;
            EvItemDropped.Raise({data, effect, folder, mail});
            EvItemDroppedAndHandled.Raise();
        } else {
            lclWorkstation.messages.Show(
                {Text("U heeft geen bevoegdheid om documenten naar het dossier te verslepen"),
                 Text("Geen authorisatie"), platform::Buttons::Ok, platform::Icon::Exclamation});
        }
    });
    return effect;
}

void ctrlTree::CompleteDrag() {
    lclState.IntDrag = lclState.JustStartedDrag = lclState.InternalMove = false;
    lclState.DropString.clear();
    EvCompleteDrag.Raise();
}

void ctrlTree::HoverExpanded(std::int32_t id) { EvItemDragOver.Raise(DragState::Over, id); }

} // namespace kavidex::controls
