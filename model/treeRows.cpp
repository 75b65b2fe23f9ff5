#include "model/treeRows.h"

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

// Others who want to add below the row, or delete it, wait for this transaction.
void Hold(const Store& store, NodeId id) {
    store.Write("update tblTreeItem set Description = Description where TreeItemId = " +
                Number(id));
}

Level LevelOf(const Store& store, NodeId id) {
    Hold(store, id);
    Level level{id, {}};
    const data::RecordsetPtr rows =
        store.Read("Select TreeItemId, Type from tblTreeItem where ParentId = " + Number(id));
    for (; !rows->Eof(); rows->MoveNext())
        level.children.push_back(
            {data::ToInt32(rows->Get(0)), fncCanHaveChildren(TrimmedText(rows->Get(1)))});
    return level;
}

void DeleteRow(const Store& store, NodeId id) {
    const std::string number = Number(id);
    store.Write("update tbltreeitem set TreeItemId = -" + number +
                ", ParentId = -Parentid where TreeItemId = " + number);
    store.Write("Delete from tbltreeitemuplink where serverrefId = " + number);
}

} // namespace

void HoldNode(const Store& store, NodeId id) {
    Hold(store, id);
    if (store.Read("Select TreeItemId from tblTreeItem where TreeItemId = " + Number(id))->Eof())
        throw platform::Error(platform::errors::notFound,
                              "The item " + Number(id) + " does not exist any more.");
}

bool LiesWithin(const Store& store, NodeId node, NodeId top) {
    std::unordered_set<NodeId> met;
    while (node != top) {
        if (node <= 0 || !met.insert(node).second) return false; // a root, or a loop elsewhere
        const data::RecordsetPtr row =
            store.Read("Select ParentId from tblTreeItem where TreeItemId = " + Number(node));
        node = row->Eof() ? 0 : data::ToInt32(row->Get(0));
    }
    return true;
}

void DeleteSubtree(const Store& store, NodeId top, const std::function<void()>& step) {
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
            step();
            DeleteRow(store, child.id);
            continue;
        }
        step();
        DeleteRow(store, level.id);
        levels.pop_back();
    }
}

} // namespace kavidex::model
