// Finding items, and the two selections: the current node and the collected items.
#include <algorithm>

#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "platform/text.h"

namespace kavidex::controls {

ItemPtr ctrlTree::GetNode(std::int32_t id) const {
    const auto found = lclNodes.find(id);
    return found == lclNodes.end() ? nullptr : found->second.item;
}

ItemPtr ctrlTree::GetItem(std::int32_t id, std::string_view description) const {
    if (auto known = GetNode(id)) return known;
    return lclTree ? lclTree->GetItem(id, description) : nullptr;
}

ItemPtr ctrlTree::GetItemWithinTree(const ItemPtr& start, std::int32_t id,
                                    std::string_view description) const {
    return lclTree && start ? lclTree->GetItemWithinTree(start, id, description) : nullptr;
}

ItemPtr ctrlTree::GetParent(std::int32_t id) const {
    const auto found = lclNodes.find(id);
    return found == lclNodes.end() ? nullptr : GetNode(found->second.parent);
}

ItemPtr ctrlTree::SelectedItem() const { return GetNode(lclSelected); }

std::vector<std::int32_t> ctrlTree::SelectedIds() const {
    if (!lclCollectedOrder.empty()) return lclCollectedOrder;
    if (lclSelected != 0) return {lclSelected};
    return {};
}

std::vector<ItemPtr> ctrlTree::SelectedItems() const {
    std::vector<ItemPtr> items;
    // In the picking mode only what is ticked counts.
    const auto ids = lclState.SelectItems ? lclCollectedOrder : SelectedIds();
    for (const auto id : ids)
        if (auto item = GetNode(id)) items.push_back(std::move(item));
    return items;
}

std::vector<ItemPtr> ctrlTree::AllItems() const {
    std::vector<ItemPtr> items;
    if (const auto root = Root())
        Walk(root, 0, [&](const ItemPtr& item, std::int32_t) {
            if (item != root) items.push_back(item);
        });
    return items;
}

void ctrlTree::ClearSelectedItems() {
    const auto collected = std::move(lclCollectedOrder);
    lclCollectedOrder.clear();
    lclCollected.clear();
    if (!lclWindow) return;
    for (const auto id : collected)
        if (const auto handle = HandleOf(id)) {
            if (lclState.SelectItems) lclWindow->SetChecked(handle, false);
            lclWindow->Repaint(handle);
        }
}

void ctrlTree::fncResetSelectedItems() {
    const auto first = lclCollectedOrder.empty() ? lclSelected : lclCollectedOrder.front();
    ClearSelectedItems();
    SelectNode(first, true);
}

bool ctrlTree::ContainsDocuments() const { return CountDocuments({}) > 0; }

std::int32_t ctrlTree::CountDocuments(std::string_view type) const {
    const auto wanted = platform::LowerCase(platform::TrimView(type));
    return static_cast<std::int32_t>(
        std::count_if(lclNodes.begin(), lclNodes.end(), [&](const auto& entry) {
            const auto& item = *entry.second.item;
            const auto own = platform::LowerCase(item.ItemType());
            return item.Id() > 0 && !item.AllowChildren() && own != "user" &&
                   (wanted.empty() || own == wanted);
        }));
}

TreeItemInfo ctrlTree::Info(std::int32_t id) const {
    const auto item = GetNode(id);
    if (!item) return {};
    return {item->Description(), item->ItemType(), id, NodeFullPath(id), item->ItemId()};
}

std::string ctrlTree::NodeFullPath(std::int32_t id) const {
    std::vector<ItemPtr> path;
    for (auto item = GetNode(id); item && path.size() <= lclNodes.size();
         item = GetParent(item->Id()))
        path.push_back(item);
    std::string text;
    for (auto item = path.rbegin(); item != path.rend(); ++item)
        text += (text.empty() ? "" : "\\") + (*item)->Description();
    return text;
}

bool ctrlTree::SelectNode(std::int32_t id, bool raise) {
    const auto found = lclNodes.find(id);
    if (found == lclNodes.end() || !found->second.shown) return false;
    lclSelected = id;
    if (lclWindow && found->second.handle) lclWindow->Select(found->second.handle);
    if (raise) EvItemSelected.Raise(Info(id));
    return true;
}

void ctrlTree::NodeSelected(std::int32_t id) {
    if (id == lclSelected) return;
    lclSelected = id;
    const auto item = GetNode(id);
    if (!item || (lclState.OpenDoubleClick && !item->AllowChildren())) return;
    EvItemSelected.Raise(Info(id));
}

void ctrlTree::NodeActivated(std::int32_t id) {
    const auto item = GetNode(id);
    DblClick.Raise();
    if (item && lclState.OpenDoubleClick && !item->AllowChildren()) {
        lclSelected = id;
        EvItemSelected.Raise(Info(id));
    }
}

void ctrlTree::NodeChecked(std::int32_t id, bool checked) {
    if (!lclNodes.contains(id) || lclCollected.contains(id) == checked) return;
    if (checked) {
        lclCollected.insert(id);
        lclCollectedOrder.push_back(id);
    } else {
        lclCollected.erase(id);
        std::erase(lclCollectedOrder, id);
    }
    const auto handle = HandleOf(id);
    if (!lclWindow || !handle) return;
    if (lclState.SelectItems) lclWindow->SetChecked(handle, checked);
    lclWindow->Repaint(handle);
}

void ctrlTree::NodeToggled(std::int32_t id) {
    // The current node belongs to the collection that the user begins beside it.
    if (lclCollected.empty() && lclSelected != 0 && lclSelected != id && !lclState.SelectItems)
        NodeChecked(lclSelected, true);
    NodeChecked(id, !lclCollected.contains(id));
}

bool ctrlTree::SetNextChildItem() { return StepToDocument(1); }
bool ctrlTree::SetPreviousChildItem() { return StepToDocument(-1); }

bool ctrlTree::StepToDocument(int step) {
    std::int32_t before = 0, after = 0; // the documents around the selection
    bool passed = lclSelected == 0;
    if (const auto root = Root())
        Walk(root, 0, [&](const ItemPtr& item, std::int32_t) {
            const auto id = item->Id();
            if (id == lclSelected) {
                passed = true;
                return;
            }
            const auto found = lclNodes.find(id);
            if (item->AllowChildren() || found == lclNodes.end() || !found->second.shown) return;
            if (!passed)
                before = id;
            else if (after == 0)
                after = id;
        });
    const auto target = step > 0 ? after : before;
    return target != 0 && SelectNode(target, true);
}

bool ctrlTree::SetHighLightToItem(std::int32_t id) {
    if (!SelectNode(id, false)) return false;
    if (lclWindow) lclWindow->EnsureVisible(HandleOf(id));
    return true;
}

std::int32_t ctrlTree::FolderAt(std::int32_t id) const {
    const auto root = Root();
    if (id == 0) return root ? root->Id() : 0;
    const auto item = GetNode(id);
    if (!item || item->AllowChildren()) return item ? id : 0;
    const auto parent = GetParent(id);
    return parent ? parent->Id() : 0;
}

bool ctrlTree::IsWithin(std::int32_t id, std::int32_t ancestor) const {
    for (auto above = id; above != 0;) {
        if (above == ancestor) return true;
        const auto found = lclNodes.find(above);
        above = found == lclNodes.end() ? 0 : found->second.parent;
    }
    return false;
}

std::string ctrlTree::ToolTip(std::int32_t id) const {
    const auto item = lclState.ShowDescriptionsInToolTip ? GetNode(id) : nullptr;
    return item ? item->Description() : std::string();
}

} // namespace kavidex::controls
