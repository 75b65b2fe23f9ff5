// Walking a tree depth first, a node before its children, without recursion.
#pragma once

#include <cstddef>
#include <vector>

#include "model/clsItem.h"
#include "model/clsItemCol.h"

namespace kavidex::model {

// Where a walk stands: a node and how many of its children have been met.
struct WalkLevel {
    clsItem* item;
    std::size_t next = 0;

    clsItem* NextChild() {
        const clsItemColPtr& children = item->ChildCollection();
        if (!children) return nullptr;
        const auto items = children->Items();
        return next < items.size() ? items[next++].get() : nullptr;
    }
};

// The first node that `matches`, null when there is none.
template <class Matches>
clsItem* FirstDepthFirst(clsItem& start, Matches matches) {
    if (matches(start)) return &start;
    std::vector<WalkLevel> levels{{&start}};
    while (!levels.empty()) {
        clsItem* const child = levels.back().NextChild();
        if (!child) {
            levels.pop_back();
            continue;
        }
        if (matches(*child)) return child;
        if (child->ChildCollection()) levels.push_back({child});
    }
    return nullptr;
}

template <class Matches>
bool AnyBelow(const clsItemColPtr& children, Matches matches) {
    if (!children) return false;
    for (const clsItemPtr& child : children->Items())
        if (FirstDepthFirst(*child, matches)) return true;
    return false;
}

} // namespace kavidex::model
