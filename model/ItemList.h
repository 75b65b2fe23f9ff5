// Nodes in their order, found and taken out by id without walking them all.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include "model/clsItem.h"

namespace kavidex::model {

// Of two nodes with one id, as a damaged database may hold them, the first one counts.
class ItemList {
public:
    void Reserve(std::size_t count) { lclItems.reserve(lclFirst + count); }
    void Append(clsItemPtr item);
    std::size_t Size() const { return lclItems.size() - lclFirst - lclGaps; }
    std::span<const clsItemPtr> Items() const; // valid until the list changes
    clsItemPtr Find(NodeId id) const;          // null when it is not there
    clsItemPtr Remove(NodeId id);              // what was removed, null when it is not there
    std::vector<clsItemPtr> TakeAll();

    // A node somewhere has another id now: keys are made anew when they are next asked for.
    static void IdChanged();

private:
    // Where each id stands. Places only grow along the list, whatever is removed before them.
    struct Keys {
        std::unordered_map<NodeId, std::size_t> placeOf;
        std::vector<std::size_t> places; // of lclItems, one for one
        std::size_t next = 0;
        std::uint64_t version = 0;
        bool duplicates = false;
    };
    std::size_t PositionOf(NodeId id) const; // lclItems.size() when it is not there
    Keys& UpToDate() const;
    void CloseGaps() const;
    void DropFront() const;
    void TrimEnds();

    // Nodes from lclFirst on; null where one was removed and the gap is not closed yet.
    mutable std::vector<clsItemPtr> lclItems;
    mutable std::size_t lclFirst = 0, lclGaps = 0;
    mutable std::unique_ptr<Keys> lclKeys; // null until a long list is searched
};

} // namespace kavidex::model
