#include "model/treeRows.h"

#include <cstdlib>
#include <optional>
#include <unordered_set>
#include <vector>

#include "model/clsItemCol.h"
#include "platform/Error.h"

namespace kavidex::model {
namespace {

struct Child {
    NodeId id;
    bool folder;
};

struct Level {
    NodeId id;
    std::vector<Child> children;
    std::size_t next = 0;
};

// Others who want to add below the row, or delete it, wait for this transaction. Written before
// anything is read of it.
void Hold(const Store& store, NodeId id) {
    store.Write("update tblTreeItem set Description = Description where TreeItemId = " +
                Number(id));
}

std::vector<Child> ChildrenOf(const Store& store, NodeId id) {
    std::vector<Child> children;
    const data::RecordsetPtr rows =
        store.ReadNow("Select TreeItemId, Type from tblTreeItem where ParentId = " + Number(id));
    for (; !rows->Eof(); rows->MoveNext())
        children.push_back(
            {data::ToInt32(rows->Get(0)), fncCanHaveChildren(TrimmedText(rows->Get(1)))});
    return children;
}

Level LevelOf(const Store& store, NodeId id) {
    Hold(store, id);
    return {id, ChildrenOf(store, id)};
}

// Whether it lived until now.
bool DeleteRow(const Store& store, NodeId id) {
    const std::string number = Number(id);
    const auto touched = store.Write("update tbltreeitem set TreeItemId = -" + number +
                                     ", ParentId = -Parentid where TreeItemId = " + number);
    store.Write("Delete from tbltreeitemuplink where serverrefId = " + number);
    return touched != 0;
}

struct Row {
    bool lives;
    NodeId parent;
};

// By the id that the node has while it lives; none when it has no row.
std::optional<Row> RowOf(const Store& store, NodeId id) {
    const data::RecordsetPtr rows = store.ReadNow(
        "Select TreeItemId, ParentId from tblTreeItem where TreeItemId = " + Number(id) +
        " or TreeItemId = " + Number(-id));
    std::optional<Row> found;
    for (; id != 0 && !rows->Eof(); rows->MoveNext())
        if (!found || !found->lives)
            found = {data::ToInt32(rows->Get(0)) > 0, std::abs(data::ToInt32(rows->Get(1)))};
    return found;
}

void RestoreRow(const Store& store, NodeId id, NodeId parent) {
    store.Write("update tbltreeitem set TreeItemId = " + Number(id) +
                ", ParentId = " + Number(parent) + " where TreeItemId = " + Number(-id));
}

} // namespace

bool HasRow(const Store& store, NodeId id) {
    return !store.ReadNow("Select TreeItemId from tblTreeItem where TreeItemId = " + Number(id))
                ->Eof();
}

void HoldNode(const Store& store, NodeId id) {
    if (id < 0)
        throw platform::Error(platform::errors::notFound,
                              "The item " + Number(id) + " is deleted.");
    Hold(store, id);
    if (!HasRow(store, id))
        throw platform::Error(platform::errors::notFound,
                              "The item " + Number(id) + " does not exist any more.");
}

bool LiesWithin(const Store& store, NodeId node, NodeId top) {
    std::unordered_set<NodeId> met;
    while (node != top) {
        if (node <= 0 || !met.insert(node).second) return false; // a root, or a loop elsewhere
        const data::RecordsetPtr row =
            store.ReadNow("Select ParentId from tblTreeItem where TreeItemId = " + Number(node));
        node = row->Eof() ? 0 : data::ToInt32(row->Get(0));
    }
    return true;
}

std::vector<NodeId> DeleteSubtree(const Store& store, NodeId top,
                                  const std::function<void(NodeId)>& step) {
    std::vector<NodeId> gone;
    const auto remove = [&](NodeId id) {
        step(id);
        if (DeleteRow(store, id)) gone.push_back(id);
    };
    std::unordered_set<NodeId> met{top}; // a node may be its own ancestor
    std::vector<Level> levels{LevelOf(store, top)};
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.next < level.children.size()) {
            const Child child = level.children[level.next++];
            if (child.id <= 0 || !met.insert(child.id).second) continue;
            if (child.folder) {
                levels.push_back(LevelOf(store, child.id));
                continue;
            }
            remove(child.id);
            continue;
        }
        remove(level.id);
        levels.pop_back();
    }
    return gone;
}

WayBack FindWayBack(const Store& store, NodeId node, NodeId root) {
    WayBack way;
    std::unordered_set<NodeId> met{node};
    auto row = RowOf(store, node);
    if (!row)
        throw platform::Error(platform::errors::notFound,
                              "The item " + Number(node) + " does not exist any more.");
    way.lives = row->lives;
    if (way.lives) way.parent = node;
    for (NodeId above = row->parent; !row->lives; above = row->parent) {
        const bool top = above == 0 && (way.folders.empty() ? node : way.folders.front()) == root;
        row = top || !met.insert(above).second ? std::nullopt : RowOf(store, above);
        if (!row) {
            way.atRoot = !top;
            way.parent = top ? 0 : root;
            break;
        }
        if (row->lives)
            way.parent = above;
        else
            way.folders.insert(way.folders.begin(), above);
    }
    return way;
}

bool RestoreSubtree(const Store& store, NodeId node, const WayBack& way,
                    std::span<const NodeId> those, const std::function<void(NodeId)>& step) {
    auto down = way.folders;
    if (!way.lives) down.push_back(node);
    if (way.parent != 0) Hold(store, way.parent);
    for (const NodeId id : down) Hold(store, -id);
    if (way.parent != 0 && !HasRow(store, way.parent)) return false;
    for (const NodeId id : down)
        if (!HasRow(store, -id)) return false;
    NodeId parent = way.parent;
    for (const NodeId id : down) {
        step(id);
        RestoreRow(store, id, parent);
        parent = id;
    }
    const std::unordered_set<NodeId> wanted(those.begin(), those.end());
    for (std::vector<NodeId> folders{node}; !folders.empty();) {
        const NodeId folder = folders.back();
        folders.pop_back();
        for (const Child& child : ChildrenOf(store, -folder)) {
            const NodeId id = -child.id;
            if (id <= 0 || (!wanted.empty() && !wanted.contains(id))) continue;
            step(id);
            RestoreRow(store, id, folder);
            if (child.folder) folders.push_back(id);
        }
    }
    return true;
}

} // namespace kavidex::model
