#include "model/ItemList.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace kavidex::model {
namespace {

constexpr std::size_t shortList = 32; // walked faster than looked up

// Trees live on several threads of one host; each needs only to see its own changes.
std::atomic<std::uint64_t> idVersion{1};

} // namespace

void ItemList::IdChanged() { idVersion.fetch_add(1, std::memory_order_relaxed); }

void ItemList::Append(clsItemPtr item) {
    if (lclKeys) {
        const std::size_t place = lclKeys->next++;
        lclKeys->places.push_back(place);
        if (!lclKeys->placeOf.emplace(item->Id(), place).second) lclKeys->duplicates = true;
    }
    lclItems.push_back(std::move(item));
}

std::span<const clsItemPtr> ItemList::Items() const {
    CloseGaps();
    return std::span(lclItems).subspan(lclFirst);
}

void ItemList::CloseGaps() const {
    if (lclGaps == 0) return;
    std::size_t kept = lclFirst;
    for (std::size_t i = lclFirst; i < lclItems.size(); ++i) {
        if (!lclItems[i]) continue;
        if (kept != i) lclItems[kept] = std::move(lclItems[i]);
        if (lclKeys) lclKeys->places[kept] = lclKeys->places[i];
        ++kept;
    }
    lclItems.resize(kept);
    if (lclKeys) lclKeys->places.resize(kept);
    lclGaps = 0;
}

ItemList::Keys& ItemList::UpToDate() const {
    const std::uint64_t version = idVersion.load(std::memory_order_relaxed);
    if (lclKeys && lclKeys->version == version) return *lclKeys;
    lclKeys = nullptr;
    CloseGaps();
    DropFront();
    auto keys = std::make_unique<Keys>();
    keys->version = version;
    keys->placeOf.reserve(lclItems.size());
    for (const clsItemPtr& item : lclItems) {
        keys->places.push_back(keys->next);
        if (!keys->placeOf.emplace(item->Id(), keys->next++).second) keys->duplicates = true;
    }
    lclKeys = std::move(keys);
    return *lclKeys;
}

std::size_t ItemList::PositionOf(NodeId id) const {
    if (Size() <= shortList) {
        for (std::size_t i = lclFirst; i < lclItems.size(); ++i)
            if (lclItems[i] && lclItems[i]->Id() == id) return i;
        return lclItems.size();
    }
    const Keys& keys = UpToDate();
    const auto place = keys.placeOf.find(id);
    if (place == keys.placeOf.end()) return lclItems.size();
    const auto found = std::lower_bound(keys.places.begin(), keys.places.end(), place->second);
    return static_cast<std::size_t>(found - keys.places.begin());
}

clsItemPtr ItemList::Find(NodeId id) const {
    const std::size_t position = PositionOf(id);
    return position < lclItems.size() ? lclItems[position] : nullptr;
}

clsItemPtr ItemList::Remove(NodeId id) {
    const std::size_t position = PositionOf(id);
    if (position == lclItems.size()) return nullptr;
    if (lclKeys && lclKeys->duplicates)
        lclKeys = nullptr; // the next one with this id counts from now on
    else if (lclKeys)
        lclKeys->placeOf.erase(id);
    clsItemPtr removed = std::move(lclItems[position]);
    ++lclGaps;
    TrimEnds();
    if (lclGaps > Size()) CloseGaps();
    return removed;
}

// Lists are mostly taken down from one of their ends: those leave no gaps.
void ItemList::TrimEnds() {
    for (; lclFirst < lclItems.size() && !lclItems[lclFirst]; --lclGaps) ++lclFirst;
    for (; lclItems.size() > lclFirst && !lclItems.back(); --lclGaps) {
        lclItems.pop_back();
        if (lclKeys) lclKeys->places.pop_back();
    }
    if (lclFirst >= shortList && lclFirst * 2 >= lclItems.size()) DropFront();
}

void ItemList::DropFront() const {
    const auto count = static_cast<std::ptrdiff_t>(std::exchange(lclFirst, 0));
    lclItems.erase(lclItems.begin(), lclItems.begin() + count);
    if (lclKeys) lclKeys->places.erase(lclKeys->places.begin(), lclKeys->places.begin() + count);
}

std::vector<clsItemPtr> ItemList::TakeAll() {
    CloseGaps();
    DropFront();
    lclKeys = nullptr;
    return std::exchange(lclItems, {});
}

} // namespace kavidex::model
