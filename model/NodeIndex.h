// The nodes of one tree by id, beside the depth-first search and never differing from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "model/clsItem.h"

namespace kavidex::model {

// Built when searches have cost as much as building it would; any change of shape made elsewhere
// outdates it, and the tree tells it of its own changes.
class NodeIndex {
public:
    clsItem* Find(clsItem& root, NodeId id); // `id` not 0; null when there is none
    bool Current(const clsItem& root) const;
    // Called after the change, when the index was current before it.
    void Added(clsItem& item);
    void Moved();
    void Forget();

private:
    void Build(clsItem& root);

    std::vector<std::pair<NodeId, clsItem*>> lclNodes; // by id, then in depth-first order
    const clsItem* lclRoot = nullptr;
    std::uint64_t lclVersion = 0;
    std::size_t lclVisited = 0; // by searches since the index was last current
    bool lclDuplicates = false;
};

} // namespace kavidex::model
