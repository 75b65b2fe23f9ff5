#include "model/NodeIndex.h"

#include <algorithm>

#include "model/walk.h"

namespace kavidex::model {
namespace {

bool IdBelow(const std::pair<NodeId, clsItem*>& node, NodeId id) { return node.first < id; }

} // namespace

bool NodeIndex::Current(const clsItem& root) const {
    return lclRoot == &root && lclTop == root.ChildCollection().get() &&
           lclShapeSeen == *lclShape && lclItemsSeen == clsItemCol::ItemsVersion();
}

void NodeIndex::NoteVersions() {
    lclTop = lclRoot->ChildCollection().get();
    lclShapeSeen = *lclShape;
    lclItemsSeen = clsItemCol::ItemsVersion();
}

void NodeIndex::Forget() { lclRoot = nullptr; }

clsItem* NodeIndex::Find(clsItem& root, NodeId id) {
    if (!Current(root)) {
        if (lclVisited < lclNodes.size())
            return FirstDepthFirst(root, [&](const clsItem& node) {
                ++lclVisited;
                return node.Id() == id;
            });
        Build(root);
    }
    const auto found = std::lower_bound(lclNodes.begin(), lclNodes.end(), id, IdBelow);
    return found != lclNodes.end() && found->first == id ? found->second : nullptr;
}

void NodeIndex::Build(clsItem& root) {
    lclNodes.clear();
    FirstDepthFirst(root, [&](clsItem& node) {
        lclNodes.emplace_back(node.Id(), &node);
        if (node.ChildCollection()) node.ChildCollection()->CountChangesIn(lclShape);
        return false;
    });
    const auto byId = [](const auto& a, const auto& b) { return a.first < b.first; };
    std::stable_sort(lclNodes.begin(), lclNodes.end(), byId);
    const auto sameId = [](const auto& a, const auto& b) { return a.first == b.first; };
    lclDuplicates = std::adjacent_find(lclNodes.begin(), lclNodes.end(), sameId) != lclNodes.end();
    lclRoot = &root;
    NoteVersions();
    lclVisited = 0;
}

void NodeIndex::Added(clsItem& item) {
    const auto place = std::lower_bound(lclNodes.begin(), lclNodes.end(), item.Id(), IdBelow);
    const bool known = place != lclNodes.end() && place->first == item.Id();
    if (known || item.ChildCollection()) return Forget();
    lclNodes.emplace(place, item.Id(), &item);
    NoteVersions();
}

void NodeIndex::Moved() {
    if (lclDuplicates) return Forget(); // which of two comes first may have changed
    NoteVersions();
}

void NodeIndex::Attached(clsItemCol& children) {
    children.CountChangesIn(lclShape);
    NoteVersions();
}

} // namespace kavidex::model
