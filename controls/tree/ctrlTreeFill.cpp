// Loading the tree and showing it.
#include <algorithm>
#include <utility>

#include "controls/tree/ctrlTree.h"
#include "model/LongWork.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

ItemPtr ctrlTree::Root() const {
    const auto root = lclTree ? lclTree->Item() : nullptr;
    return root && root->Id() != 0 ? root : nullptr;
}

void ctrlTree::Refresh() {
    lclGrid.Forget();
    ShowTree(true);
}

void ctrlTree::RefreshByUser() {
    const std::weak_ptr<void> alive = lclAlive;
    Refresh();
    if (!alive.expired()) Refreshed.Raise();
}

void ctrlTree::ShowTree(bool keep) {
    if (LoadTree() || keep) return;
    lclTree.reset(); // never the tree of before under the id of now
    Fill();
}

void ctrlTree::ForgetTree() {
    ++lclDossiers;
    ClearSelectedItems();
    lclNodes.clear();
    lclDeletions.clear();
    if (lclTaken.cut) ForgetTaken(); // a copy is made of what stays where it is
    lclSelected = lclAnchor = 0;
    lclGrid.Forget();
    lclState.DropString.clear();
    lclState.IntDrag = lclState.ManualDragDropMove = false;
}

std::function<bool()> ctrlTree::SameDossier() const {
    return [this, alive = std::weak_ptr<void>(lclAlive), shown = lclDossiers] {
        return !alive.expired() && lclDossiers == shown;
    };
}

// A long load lets the host in: what it has loaded meanwhile stays.
bool ctrlTree::LoadTree() {
    const auto load = ++lclLoads;
    const bool loaded = Guarded("ctrlTree", [&] {
        if (lclState.TreeId == 0 || !lclConnection) {
            lclTree.reset();
        } else {
            auto tree = std::make_shared<model::clsTree>(lclWorkstation);
            tree->SetTranslation(TranslationBy(lclTranslator));
            tree->SetOrderByName(lclState.OrderByName);
            tree->SetSortFoldersAndDocs(lclState.FoldersAndDocs);
            tree->SetDbConnection(lclConnection);
            {
                const Operation operation(*lclLock); // also one inside another: both may go on
                tree->SetTreeId(lclState.TreeId);
            }
            if (load != lclLoads) return;
            lclTree = std::move(tree);
            lclState.Description = lclTree->Description();
        }
        Fill();
    });
    return loaded || load != lclLoads;
}

// A long fill lets the host in, which may want another one: it follows the first.
void ctrlTree::Fill() {
    lclFillAgain = true;
    if (lclFilling) return;
    struct Filling {
        bool& on;
        ~Filling() { on = false; }
    } const filling{lclFilling};
    lclFilling = true;
    while (std::exchange(lclFillAgain, false)) FillOnce();
}

void ctrlTree::FillOnce() {
    std::vector<std::int32_t> expanded;
    if (lclWindow && !lclState.FullExpand)
        for (const auto& [id, node] : lclNodes)
            if (node.handle && node.item->AllowChildren() && lclWindow->IsExpanded(node.handle))
                expanded.push_back(id);
    const auto selected = lclSelected;
    const auto collected = std::move(lclCollectedOrder);
    lclNodes.clear();
    lclCollected.clear();
    lclCollectedOrder.clear();
    lclSelected = 0;
    if (lclWindow) {
        lclWindow->SetRedraw(false);
        lclWindow->Clear();
    }
    if (const auto root = Root()) {
        model::LongWork work(lclWorkstation, Text("Dossier openen"),
                             Text("Mappen en documenten worden gelezen."), lclTree.get());
        FillFrom(root, 0, [&] { work.Step(); });
    }
    for (const auto id : collected)
        if (const auto found = lclNodes.find(id); found != lclNodes.end() && found->second.shown)
            NodeChecked(id, true);
    if (lclWindow) {
        if (!lclState.FullExpand && expanded.empty() && Root() && HandleOf(Root()->Id()))
            lclWindow->Expand(HandleOf(Root()->Id()), true);
        for (const auto id : expanded)
            if (const auto handle = HandleOf(id)) lclWindow->Expand(handle, true);
        lclWindow->SetRedraw(true);
    }
    if (lclNodes.contains(selected)) SelectNode(selected, false);
    GridChanged();
}

void ctrlTree::FillFrom(const ItemPtr& top, std::int32_t parentId,
                        const std::function<void()>& step) {
    lclFillErrors = 0;
    Walk(top, parentId, [&](const ItemPtr& item, std::int32_t parent) {
        try {
            fncItemToTreeView(item, parent);
        } catch (const std::exception& error) {
            // One box tells the user; a box for each of many items would lock him out.
            if (lclFillErrors++ == 0)
                ShowError("Error in $%$", {"fncItemToTreeView"}, error);
            else
                lclWorkstation.log.Write("fncItemToTreeView", error.what());
        }
        if (step) step();
    });
    GridChanged();
}

std::vector<ItemPtr> ctrlTree::Children(const model::clsItem& item) const {
    std::vector<ItemPtr> children;
    if (const auto& collection = item.ChildCollection())
        children.assign(collection->Items().begin(), collection->Items().end());
    // By name, folders and documents apart: the model's order by name within each.
    if (lclState.OrderByName && !lclState.FoldersAndDocs)
        std::stable_partition(children.begin(), children.end(),
                              [](const ItemPtr& child) { return child->AllowChildren(); });
    return children;
}

// With a stack of its own, since trees may be deeper than the thread's stack allows.
void ctrlTree::Walk(const ItemPtr& top, std::int32_t parentId,
                    const std::function<void(const ItemPtr&, std::int32_t)>& visit) const {
    std::vector<std::pair<ItemPtr, std::int32_t>> waiting{{top, parentId}};
    std::unordered_set<std::int32_t> seen; // folders only: what a damaged tree might repeat
    while (!waiting.empty()) {
        const auto [item, parent] = std::move(waiting.back());
        waiting.pop_back();
        const bool folder = item->ChildCollection() != nullptr;
        if (folder && !seen.insert(item->Id()).second) continue;
        visit(item, parent);
        if (!folder) continue;
        auto children = Children(*item);
        for (auto child = children.rbegin(); child != children.rend(); ++child)
            waiting.emplace_back(std::move(*child), item->Id());
    }
}

bool ctrlTree::IsShown(const model::clsItem& item) const {
    if (!lclState.ShowParentsOnly) return true;
    if (!item.AllowChildren()) return false;
    if (platform::TrimView(lclState.ShowParentsOnlyTypes).empty()) return true;
    const auto types = platform::Split(lclState.ShowParentsOnlyTypes, ';');
    return std::find(types.begin(), types.end(), platform::LowerCase(item.ItemType())) !=
           types.end();
}

void ctrlTree::fncItemToTreeView(const ItemPtr& item, std::int32_t parentId) {
    const bool shown = IsShown(*item);
    // Before anything is kept: an icon that fails is told, and a message lets the host in.
    TreeImages::Pair images{};
    if (shown && lclWindow) {
        const auto here = SameDossier();
        images = lclImages.fncSetIcon(*lclWindow, item->ItemType());
        if (!here()) return;
    }
    const auto [entry, added] = lclNodes.try_emplace(item->Id());
    auto& node = entry->second;
    node.item = item;
    node.parent = parentId;
    node.shown = shown;
    if (!node.shown || !lclWindow) return;
    if (!added && node.handle) lclWindow->Remove(node.handle);
    // A folder whose type is not shown lends its place to what is below it.
    NodeHandle parent = 0;
    for (auto above = parentId; above != 0 && parent == 0;) {
        const auto found = lclNodes.find(above);
        if (found == lclNodes.end()) break;
        parent = found->second.handle;
        above = found->second.parent;
    }
    const auto& children = item->ChildCollection();
    const bool parentOfSome = children && children->Count() > 0;
    const bool plain = !(lclState.ShowNumberOfChildren && item->AllowChildren());
    const std::string counted = plain ? std::string() : NodeText(*item);
    node.handle = lclWindow->AddNode(
        parent, {item->Id(), plain ? std::string_view(item->Description()) : counted, images.closed,
                 images.open, parentOfSome, parentOfSome && lclState.FullExpand});
    if (!node.handle)
        throw platform::Error(platform::errors::fail,
                              "The tree refused the item " + std::to_string(item->Id()));
    if (IsCut(item->Id())) lclWindow->SetCut(node.handle, true);
}

std::vector<ctrlTree::DrawnRow> ctrlTree::FirstRows(int count) const {
    std::vector<DrawnRow> rows;
    const auto wanted = static_cast<std::size_t>(std::max(count, 0));
    const auto& list = lclGrid.List();
    for (std::size_t row = 0; lclListMode && row < std::min(wanted, list.Count()); ++row)
        rows.push_back({0, list.Picture(row), list.Text(row, 0)});
    if (lclListMode) return rows;
    const auto root = Root();
    const auto add = [&](const model::clsItem& item, int depth) {
        if (static_cast<int>(rows.size()) >= count || !IsShown(item)) return;
        rows.push_back({depth, TreeImages::KeyOf(item.ItemType(), depth == 0), NodeText(item)});
    };
    if (!root) return rows;
    add(*root, 0);
    for (const auto& child : Children(*root)) add(*child, 1);
    return rows;
}

NodeHandle ctrlTree::HandleOf(std::int32_t id) const {
    const auto found = lclNodes.find(id);
    return found == lclNodes.end() ? 0 : found->second.handle;
}

std::string ctrlTree::NodeText(const model::clsItem& item) const {
    if (!lclState.ShowNumberOfChildren || !item.AllowChildren()) return item.Description();
    const auto& children = item.ChildCollection();
    return item.Description() + " (" + std::to_string(children ? children->Count() : 0) + ")";
}

void ctrlTree::UpdateText(std::int32_t id) {
    const auto found = lclNodes.find(id);
    if (lclWindow && found != lclNodes.end() && found->second.handle)
        lclWindow->SetText(found->second.handle, NodeText(*found->second.item));
}

void ctrlTree::Forget(std::int32_t id) {
    const auto found = lclNodes.find(id);
    if (found == lclNodes.end()) return;
    const auto top = found->second.item;
    std::unordered_set<std::int32_t> gone; // with a node above them: the window removes them itself
    Walk(top, 0, [&](const ItemPtr& item, std::int32_t parent) {
        const auto handle = HandleOf(item->Id());
        const bool below = gone.contains(parent);
        if (lclWindow && handle && !below) lclWindow->Remove(handle);
        if ((handle || below) && item->ChildCollection()) gone.insert(item->Id());
        lclNodes.erase(item->Id());
        lclCollected.erase(item->Id());
        std::erase(lclCollectedOrder, item->Id());
        if (lclTaken.cut) std::erase(lclTaken.ids, item->Id());
    });
    GridChanged();
}

} // namespace kavidex::controls
