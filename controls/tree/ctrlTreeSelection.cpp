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
    // Of the list what has a row: nobody would see the rest go.
    if (lclListMode && !lclState.SelectItems) return lclGrid.List().Selected();
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
    if (lclState.SelectItems && lclWindow)
        for (const auto id : lclCollectedOrder)
            if (const auto handle = HandleOf(id)) lclWindow->SetChecked(handle, false);
    Collect({});
    Grid().BoxesChanged();
    SelectRows();
}

void ctrlTree::Collect(std::vector<std::int32_t> ids) {
    if (ids == lclCollectedOrder) return;
    lclCollectedOrder = std::move(ids);
    lclCollected = {lclCollectedOrder.begin(), lclCollectedOrder.end()};
    if (lclWindow) lclWindow->Repaint(0);
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
    lclAnchor = id;
    CurrentMoved(id);
    SelectRows();
    if (raise) EvItemSelected.Raise(Info(id));
    return true;
}

bool ctrlTree::SelectAlone(std::int32_t id, bool raise) {
    if (!lclState.SelectItems && HasCollected() && lclNodes.contains(id)) ClearSelectedItems();
    return SelectNode(id, raise);
}

void ctrlTree::CurrentMoved(std::int32_t id) {
    lclSelected = id;
    if (lclWindow && HandleOf(id)) lclWindow->Select(HandleOf(id));
}

void ctrlTree::NodeSelected(std::int32_t id) {
    if (!lclState.SelectItems && HasCollected()) ClearSelectedItems();
    lclAnchor = id;
    MakeCurrent(id);
}

void ctrlTree::MakeCurrent(std::int32_t id) {
    if (id == lclSelected) return;
    lclSelected = id;
    const auto item = GetNode(id);
    if (!item || (lclState.OpenDoubleClick && !item->AllowChildren())) return;
    EvItemSelected.Raise(Info(id));
}

void ctrlTree::NodeActivated(std::int32_t id) {
    const auto item = GetNode(id);
    const auto here = SameDossier();
    DblClick.Raise();
    if (!here()) return;
    if (item && lclState.OpenDoubleClick && !item->AllowChildren()) {
        lclSelected = id;
        EvItemSelected.Raise(Info(id));
    } else {
        NodeClicked(id);
    }
}

bool ctrlTree::NodeClicked(std::int32_t id) {
    const auto item = GetNode(id);
    bool shown = false;
    if (item && id == lclSelected && !item->AllowChildren() && !lclState.OpenDoubleClick)
        ChosenAgain.Raise(Info(id), shown);
    return shown;
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
    if (lclState.SelectItems && lclListMode) Grid().BoxesChanged();
    const auto handle = HandleOf(id);
    if (!lclWindow || !handle) return;
    if (lclState.SelectItems) lclWindow->SetChecked(handle, checked);
    lclWindow->Repaint(handle);
}

void ctrlTree::NodeToggled(std::int32_t id) {
    if (!lclNodes.contains(id)) return;
    if (!lclState.SelectItems) BeginCollection(id);
    NodeChecked(id, !lclCollected.contains(id));
    lclAnchor = id;
    CurrentMoved(id);
}

// The current node belongs to the collection that the user begins beside it.
void ctrlTree::BeginCollection(std::int32_t beside) {
    if (lclCollected.empty() && lclSelected != 0 && lclSelected != beside)
        NodeChecked(lclSelected, true);
}

void ctrlTree::SelectedUpTo(std::int32_t id, bool add) {
    auto shown = VisibleIds();
    const auto place = [&](std::int32_t one) { return std::find(shown.begin(), shown.end(), one); };
    auto from = place(lclAnchor), to = place(id);
    if (from == shown.end()) from = place(lclAnchor = lclSelected);
    if (lclState.SelectItems || from == shown.end() || to == shown.end()) return NodeSelected(id);
    std::vector<std::int32_t> range(std::min(from, to), std::max(from, to) + 1);
    if (to < from) std::reverse(range.begin(), range.end());
    // What is done with many is done with none as long as the tree's own folder is among them.
    const auto root = Root();
    if (root && range.size() > 1) std::erase(range, root->Id());
    if (add) {
        const std::unordered_set<std::int32_t> among(range.begin(), range.end());
        auto both = lclCollectedOrder;
        std::erase_if(both, [&](std::int32_t one) { return among.contains(one); });
        range.insert(range.begin(), both.begin(), both.end());
    }
    Collect(std::move(range));
    CurrentMoved(id);
}

void ctrlTree::CurrentStepped(int step, bool extend) {
    const auto shown = VisibleIds();
    const auto at = std::find(shown.begin(), shown.end(), lclSelected);
    if (at == shown.end()) return;
    const auto next = std::clamp<std::ptrdiff_t>(at - shown.begin() + step, 0,
                                                 static_cast<std::ptrdiff_t>(shown.size()) - 1);
    const auto id = shown[static_cast<std::size_t>(next)];
    if (extend) return SelectedUpTo(id, true);
    BeginCollection(id);
    CurrentMoved(id);
}

void ctrlTree::NodeCollapsed(std::int32_t id) {
    if (lclState.SelectItems || !HasCollected()) return;
    auto left = lclCollectedOrder;
    std::erase_if(left, [&](std::int32_t one) { return one != id && IsWithin(one, id); });
    Collect(std::move(left));
}

std::vector<std::int32_t> ctrlTree::VisibleIds() const {
    std::vector<std::int32_t> ids;
    std::vector<ItemPtr> waiting;
    if (const auto root = Root()) waiting.push_back(root);
    for (std::size_t met = 0; !waiting.empty() && met <= lclNodes.size(); ++met) {
        const auto item = std::move(waiting.back());
        waiting.pop_back();
        const auto found = lclNodes.find(item->Id());
        if (found == lclNodes.end()) continue;
        const auto handle = found->second.handle;
        if (found->second.shown) ids.push_back(item->Id());
        // A folder that is not shown lends its place to what is below it.
        if (!item->ChildCollection() || (handle && !lclWindow->IsExpanded(handle))) continue;
        auto children = Children(*item);
        for (auto child = children.rbegin(); child != children.rend(); ++child)
            waiting.push_back(std::move(*child));
    }
    return ids;
}

bool ctrlTree::SetNextChildItem() { return StepToDocument(1, lclSelected); }
bool ctrlTree::SetPreviousChildItem() { return StepToDocument(-1, lclSelected); }

bool ctrlTree::StepToDocument(int step, std::int32_t from) {
    if (lclListMode) { // in the order of the rows
        Woken();
        const auto row = Grid().RowOf(from);
        const auto next = row ? *row + static_cast<std::size_t>(step) : std::size_t{0};
        if ((!row && step < 0) || next >= Grid().Count()) return false; // before the first, too
        return SelectAlone(Grid().Id(next), true);
    }
    std::int32_t before = 0, after = 0; // the documents around it
    bool passed = from == 0;
    if (const auto root = Root())
        Walk(root, 0, [&](const ItemPtr& item, std::int32_t) {
            const auto id = item->Id();
            if (id == from) {
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
    return target != 0 && SelectAlone(target, true);
}

bool ctrlTree::SetHighLightToItem(std::int32_t id) {
    if (!SelectAlone(id, false)) return false;
    ShowSelected();
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
