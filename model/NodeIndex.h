// The nodes of one tree by id, beside the depth-first search and never differing from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "model/clsItem.h"

namespace kavidex::model {

// Built when searches have cost as much as building it would. The collections of its tree count
// their changes for it, so that another tree's changes do not outdate it; the tree tells it of its
// own.
class NodeIndex {
public:
    clsItem* Find(clsItem& root, NodeId id); // `id` not 0; null when there is none
    bool Current(const clsItem& root) const;
    // Called after the change, when the index was current before it.
    void Added(clsItem& item);
    void Moved();
    void Attached(clsItemCol& children); // a node's first, still without members
    void Forget();

private:
    void Build(clsItem& root);
    void NoteVersions();

    std::vector<std::pair<NodeId, clsItem*>> lclNodes; // by id, then in depth-first order
    const clsItem* lclRoot = nullptr;
    const clsItemCol* lclTop = nullptr; // the root's children
    // Raised by every collection of the tree, and by any item of the process that gets another id
    // or another collection from outside a tree.
    const std::shared_ptr<std::uint64_t> lclShape = std::make_shared<std::uint64_t>(0);
    std::uint64_t lclShapeSeen = 0, lclItemsSeen = 0;
    std::size_t lclVisited = 0; // by searches since the index was last current
    bool lclDuplicates = false;
};

} // namespace kavidex::model
