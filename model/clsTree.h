// One folder tree: its flags, its root and the operations on it as a whole, each written through
// to tblTree and tblTreeItem at once.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/Texts.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::model {

class NodeIndex;

// Without a connection every operation does nothing and gives null or false. What the database
// refuses comes as data::Error, except while children are loaded: that shows a message and keeps
// what could be read. Deletion is soft: the node's ids are negated.
class clsTree {
public:
    explicit clsTree(const platform::Workstation& workstation);
    ~clsTree();
    clsTree(const clsTree&) = delete;
    clsTree& operator=(const clsTree&) = delete;

    std::int32_t TreeId() const { return lclTreeId; }
    // Any id but 0 loads that tree; 0 makes the object a new, unsaved tree. After a load that could
    // not read the tree's row every change of it throws, and writes nothing.
    void SetTreeId(std::int32_t id);
    const data::ConnectionPtr& DbConnection() const { return lclConnection; }
    // Loads the tree when an id is set and there was no connection before.
    void SetDbConnection(data::ConnectionPtr connection);

    // What the messages shown pass through; without it they are shown as they stand.
    void SetTranslation(data::Translation translation) { lclTranslation = std::move(translation); }
    const data::Translation& Translation() const { return lclTranslation; }

    const std::string& Description() const { return lclDescription; }
    void SetDescription(std::string_view description);
    bool NewEnabled() const { return lclNewEnabled; }
    void SetNewEnabled(bool enabled) { SetFlag(lclNewEnabled, enabled); }
    bool DeleteEnabled() const { return lclDeleteEnabled; }
    void SetDeleteEnabled(bool enabled) { SetFlag(lclDeleteEnabled, enabled); }
    bool UpdateEnabled() const { return lclUpdateEnabled; }
    void SetUpdateEnabled(bool enabled) { SetFlag(lclUpdateEnabled, enabled); }

    // View options, not stored: the order of children when loading, and one for the tree view.
    bool OrderByName() const { return lclOrderByName; }
    void SetOrderByName(bool order) { lclOrderByName = order; }
    bool SortFoldersAndDocs() const { return lclSortFoldersAndDocs; }
    void SetSortFoldersAndDocs(bool sort) { lclSortFoldersAndDocs = sort; }

    const clsItemPtr& Item() const { return lclItem; } // the root
    void SetItem(clsItemPtr root);

    // True when a new tree was written; only without an id.
    bool CreateNew();

    // Null, and nothing written, when the parent is 0, unknown, or takes no children. Throws, and
    // writes nothing, when somebody else has deleted the parent; so does a move when the item is
    // gone, or holds its new parent by now.
    clsItemPtr AddChildTab(std::string_view description, NodeId parentId);
    clsItemPtr AddChildItem(NodeId id, std::string_view type, clsItemColPtr children,
                            std::int32_t itemId, std::string_view description, NodeId parentId);

    // Moves the node under `newParentId`; its new place is last. Null, and nothing written, when
    // the parent is 0, equals the old one, takes no children or lies within the node itself.
    clsItemPtr MoveItem(NodeId itemId, NodeId newParentId, NodeId oldParentId);

    // Soft-deletes the node (the one with `id` when `item` is null) with all that the database has
    // below it, and clears `item`. The collections in memory stay as they are. False when there is
    // no such node. `taken` gets the ids of all that went: none when somebody else was first.
    // Throws, and deletes nothing, when `may` refuses one of them.
    bool DeleteItem(clsItemPtr& item, NodeId id, std::vector<NodeId>* taken = nullptr,
                    const std::function<bool(NodeId)>& may = {});

    struct Restored {
        bool wasThere = false;       // somebody else had put it back; what lacked below it came
        bool atRoot = false;         // its folder exists no more: it hangs from the root now
        std::vector<NodeId> folders; // deleted ones around it, which came back with it, empty
    };
    // Puts a deleted node back by the id that it had, where it was, with all that was deleted below
    // it, or with `those` alone unless there are none. For the database only: load the tree again.
    // What a deletion takes of rows elsewhere that point at the node stays gone.
    Restored RestoreItem(NodeId id, std::span<const NodeId> those = {});

    // Depth first, the start node included: the first node with that id (unless 0), or with that
    // description in any letter case (unless empty). Null when there is none.
    clsItemPtr GetItem(NodeId id, std::string_view description);
    clsItemPtr GetItemWithinTree(const clsItemPtr& start, NodeId id, std::string_view description);

    // The sweep of dangling subtrees: negates the id of every node below the root that is the top
    // of a tree without any dossier relation. Whether the last node visited was such a one.
    bool Delete();

    // The children of a node with all below them, null when it has none.
    clsItemColPtr fncLoadCollectionFromDatabase(NodeId parentId);

private:
    void Load();
    bool LoadTreeRow(NodeId& topItem);
    void LoadRoot(NodeId topItem);
    void Reset();
    void Store();
    void SetFlag(bool& flag, bool value);
    clsItemColPtr ChildrenOf(clsItem& parent);
    bool SweepNode(NodeId id);

    const platform::Workstation& lclWorkstation;
    data::ConnectionPtr lclConnection;
    data::Translation lclTranslation;
    std::int32_t lclTreeId = 0;
    std::string lclDescription;
    bool lclNewEnabled = false, lclDeleteEnabled = false, lclUpdateEnabled = false;
    bool lclOrderByName = false, lclSortFoldersAndDocs = false;
    bool lclUnread = false; // the row of this id could not be read: what stands here is not its
    clsItemPtr lclItem;
    std::unique_ptr<NodeIndex> lclIndex;
};

} // namespace kavidex::model
