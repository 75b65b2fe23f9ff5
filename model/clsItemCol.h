// The children of one node, in the order in which they were loaded or added.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "model/ItemList.h"
#include "model/clsItem.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::model {

// The node types, compared without case and surrounding blanks.
namespace itemTypes {
inline constexpr std::string_view tab = "tab", note = "nnt", userGroup = "usergroup",
                                  users = "users", user = "user", userPost = "userpost";
}

// True for "tab", "usergroup", "users" and "userpost"; every other type is a leaf.
bool fncCanHaveChildren(std::string_view type);

// A member's key is the letter "C" followed by its node id in decimal (C17; C-17 once deleted).
// Errors are those of a keyed collection: a key that is there already, or is not there.
class clsItemCol {
public:
    explicit clsItemCol(const platform::Workstation& workstation);
    ~clsItemCol();
    clsItemCol(const clsItemCol&) = delete;
    clsItemCol& operator=(const clsItemCol&) = delete;

    void SetDbConnection(data::ConnectionPtr connection) { lclConnection = std::move(connection); }

    // Null, and nothing done, without `connection`. With `id` 0 the node is inserted in the
    // database first and `id` receives its new id; otherwise nothing is written. Throws data::Error
    // when the store refuses; then no row is left behind.
    clsItemPtr AddItem(NodeId& id, std::string_view type, clsItemColPtr children,
                       std::int32_t itemId, std::string_view description,
                       const data::ConnectionPtr& connection, NodeId parentId);
    clsItemPtr AddTab(std::string_view description, const data::ConnectionPtr& connection,
                      NodeId parentId);
    clsItemPtr AddUserGroup(std::string_view description, const data::ConnectionPtr& connection,
                            NodeId parentId);

    // Called on the new parent's collection. Null, and nothing written, without a connection and
    // when the new parent lies within the item's own subtree.
    clsItemPtr MoveItem(const clsItemPtr& item, const data::ConnectionPtr& connection,
                        const clsItemPtr& newParent, const clsItemPtr& oldParent);

    std::int32_t Count() const { return static_cast<std::int32_t>(lclItems.Size()); }
    // By position, counted from 1; throws platform::Error where there is none.
    clsItemPtr Item(std::int32_t index) const;
    // All members, for walking; valid until the collection changes.
    std::span<const clsItemPtr> Items() const { return lclItems.Items(); }
    // Null when it is not a member.
    clsItemPtr Find(NodeId id) const { return lclItems.Find(id); }

    void Remove(NodeId id);
    void Remove(std::string_view key); // "C17"
    static bool fncCanHaveChildren(std::string_view type);

    // For loading: adds a node that is known to be new here, without any check.
    void Append(clsItemPtr item);
    void Reserve(std::size_t count) { lclItems.Reserve(count); }

    // From now on every change of the members raises the counter; one that counted before is raised
    // a last time, since it will not hear of the next.
    void CountChangesIn(const std::shared_ptr<std::uint64_t>& counter);
    // Changes whenever an item of the process is given another id or another collection.
    static std::uint64_t ItemsVersion();

private:
    friend class clsItem;
    static void ItemChanged();
    void Changed();
    void Add(clsItemPtr item);
    void RefuseSecond(NodeId id) const;
    void MoveRow(NodeId item, const data::ConnectionPtr& connection, NodeId newParent) const;

    const platform::Workstation& lclWorkstation;
    data::ConnectionPtr lclConnection;
    ItemList lclItems;
    std::shared_ptr<std::uint64_t> lclChanges; // null while nobody counts
    NodeId lclHighestId = 0;                   // no member has a higher one
};

} // namespace kavidex::model
