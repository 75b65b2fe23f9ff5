#include "model/clsItemCol.h"

#include <algorithm>
#include <atomic>
#include <charconv>

#include "data/modData.h"
#include "model/Store.h"
#include "model/treeRows.h"
#include "model/walk.h"
#include "platform/Error.h"
#include "platform/text.h"

namespace kavidex::model {
namespace {

// The errors of a keyed collection, as hosts written in Basic know them.
constexpr auto invalidCall = static_cast<std::int32_t>(0x800A0005);
constexpr auto outOfRange = static_cast<std::int32_t>(0x800A0009);
constexpr auto keyInUse = static_cast<std::int32_t>(0x800A01C9);

// Trees live on several threads of one host; each needs only to see its own changes.
std::atomic<std::uint64_t> itemsVersion{1};

std::string KeyOf(NodeId id) { return "C" + std::to_string(id); }

NodeId InsertNode(const platform::Workstation& workstation, const data::ConnectionPtr& connection,
                  std::string_view type, std::int32_t itemId, NodeId parentId,
                  std::string_view description) {
    const std::string guid = data::SqlValue(NewGuid(workstation));
    NewRow row;
    row.insert = "Insert into tblTreeItem (Type, ItemId, ParentId ,Description, TreeItemGuid) "
                 "Values (" +
                 data::SqlValue(type) + ", " + Number(itemId) + ", " + Number(parentId) + ", " +
                 data::SqlValue(description) + "," + guid + ")";
    row.find = "Select * from tblTreeItem where TreeItemGuid = " + guid;
    const Store store(connection);
    Transaction transaction(store, workstation);
    if (parentId != 0) HoldNode(store, parentId);
    const std::int32_t id =
        InsertRow(workstation, store, row, [](data::Recordset& rows, std::int32_t key) {
            SetNumber(rows, "TreeItemId", key);
        });
    transaction.Commit();
    return id;
}

} // namespace

bool fncCanHaveChildren(std::string_view type) {
    using namespace itemTypes;
    const std::string_view name = platform::TrimView(type);
    for (const std::string_view folder : {tab, userGroup, users, userPost})
        if (platform::EqualAsciiNoCase(name, folder)) return true;
    return false;
}

bool clsItemCol::fncCanHaveChildren(std::string_view type) {
    return model::fncCanHaveChildren(type);
}

clsItemCol::clsItemCol(const platform::Workstation& workstation) : lclWorkstation(workstation) {}

// Takes what only this collection still holds apart level by level: a chain of ten thousand nodes
// would otherwise end as deep on the stack.
clsItemCol::~clsItemCol() {
    Changed();
    std::vector<clsItemPtr> doomed = lclItems.TakeAll();
    while (!doomed.empty()) {
        const clsItemPtr item = std::move(doomed.back());
        doomed.pop_back();
        if (!item || item.use_count() != 1) continue;
        const clsItemColPtr children = std::move(item->lclChildren);
        if (!children || children.use_count() != 1) continue;
        std::vector<clsItemPtr> below = children->lclItems.TakeAll();
        std::move(below.begin(), below.end(), std::back_inserter(doomed));
    }
}

std::uint64_t clsItemCol::ItemsVersion() { return itemsVersion.load(std::memory_order_relaxed); }

void clsItemCol::ItemChanged() { itemsVersion.fetch_add(1, std::memory_order_relaxed); }

void clsItemCol::Changed() {
    if (lclChanges) ++*lclChanges;
}

void clsItemCol::CountChangesIn(const std::shared_ptr<std::uint64_t>& counter) {
    if (lclChanges == counter) return;
    Changed();
    lclChanges = counter;
}

void clsItemCol::Append(clsItemPtr item) {
    Changed();
    lclHighestId = std::max(lclHighestId, item->Id());
    lclItems.Append(std::move(item));
}

void clsItemCol::RefuseSecond(NodeId id) const {
    if (id <= lclHighestId && Find(id))
        throw platform::Error(keyInUse, "The key " + KeyOf(id) +
                                            " is already associated with an element of this "
                                            "collection");
}

void clsItemCol::Add(clsItemPtr item) {
    RefuseSecond(item->Id());
    Append(std::move(item));
}

clsItemPtr clsItemCol::AddItem(NodeId& id, std::string_view type, clsItemColPtr children,
                               std::int32_t itemId, std::string_view description,
                               const data::ConnectionPtr& connection, NodeId parentId) {
    if (!connection) return nullptr;
    const auto isThis = [&](const clsItem& node) { return node.ChildCollection().get() == this; };
    if (children.get() == this || AnyBelow(children, isThis))
        throw platform::Error(invalidCall, "A collection cannot hang from its own member.");
    if (id == 0) id = InsertNode(lclWorkstation, connection, type, itemId, parentId, description);
    auto item = std::make_shared<clsItem>(id, type, itemId, description, lclConnection);
    item->lclChildren = std::move(children);
    Add(item);
    return item;
}

clsItemPtr clsItemCol::AddTab(std::string_view description, const data::ConnectionPtr& connection,
                              NodeId parentId) {
    NodeId id = 0;
    return AddItem(id, itemTypes::tab, nullptr, 0, description, connection, parentId);
}

clsItemPtr clsItemCol::AddUserGroup(std::string_view description,
                                    const data::ConnectionPtr& connection, NodeId parentId) {
    NodeId id = 0;
    return AddItem(id, itemTypes::userGroup, nullptr, 0, description, connection, parentId);
}

void clsItemCol::MoveRow(NodeId item, const data::ConnectionPtr& connection,
                         NodeId newParent) const {
    const Store store(connection);
    Transaction transaction(store, lclWorkstation);
    HoldNode(store, newParent);
    HoldNode(store, item);
    if (LiesWithin(store, newParent, item))
        throw platform::Error(invalidCall,
                              "The item " + Number(item) + " holds its new parent by now.");
    store.Write("Update tbltreeitem set ParentId = " + Number(newParent) +
                " Where TreeItemId = " + Number(item));
    transaction.Commit();
}

clsItemPtr clsItemCol::MoveItem(const clsItemPtr& item, const data::ConnectionPtr& connection,
                                const clsItemPtr& newParent, const clsItemPtr& oldParent) {
    if (!connection) return nullptr;
    if (!item || !newParent || !oldParent)
        throw platform::Error(invalidCall, "A move needs an item, its new and its old parent.");
    const clsItemColPtr& siblings = oldParent->ChildCollection();
    if (!siblings || !siblings->Find(item->Id()))
        throw platform::Error(invalidCall, "The old parent " + Number(oldParent->Id()) +
                                               " does not hold the item " + KeyOf(item->Id()) +
                                               ".");
    const clsItem* const target = newParent.get();
    const auto within = [&](const clsItem& node) {
        return &node == target || node.ChildCollection().get() == this;
    };
    if (FirstDepthFirst(*item, within)) return nullptr; // it would hang from itself, out of reach
    RefuseSecond(item->Id());
    MoveRow(item->Id(), connection, newParent->Id());
    clsItemPtr moved = item; // the reference may live in the old parent's collection
    Append(moved);
    siblings->lclItems.Remove(moved->Id());
    siblings->Changed();
    return moved;
}

clsItemPtr clsItemCol::Item(std::int32_t index) const {
    const auto items = Items();
    if (index < 1 || static_cast<std::size_t>(index) > items.size())
        throw platform::Error(outOfRange, "Subscript out of range");
    return items[static_cast<std::size_t>(index) - 1];
}

void clsItemCol::Remove(NodeId id) {
    const clsItemPtr removed = lclItems.Remove(id);
    if (!removed)
        throw platform::Error(invalidCall, "There is no item " + KeyOf(id) + " in the collection.");
    Changed();
}

void clsItemCol::Remove(std::string_view key) {
    NodeId id = 0;
    const char* const end = key.data() + key.size();
    const bool named = !key.empty() && (key[0] == 'C' || key[0] == 'c');
    const auto parsed = std::from_chars(named ? key.data() + 1 : end, end, id);
    if (parsed.ec != std::errc() || parsed.ptr != end)
        throw platform::Error(invalidCall,
                              "There is no item " + std::string(key) + " in the collection.");
    Remove(id);
}

} // namespace kavidex::model
