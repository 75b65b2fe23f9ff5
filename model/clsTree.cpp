#include "model/clsTree.h"

#include "data/Error.h"
#include "data/logText.h"
#include "data/modData.h"
#include "model/LongWork.h"
#include "model/NodeIndex.h"
#include "model/Store.h"
#include "model/TreeLoader.h"
#include "model/treeRows.h"
#include "model/walk.h"
#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::model {

clsTree::clsTree(const platform::Workstation& workstation)
    : lclWorkstation(workstation), lclItem(std::make_shared<clsItem>()),
      lclIndex(std::make_unique<NodeIndex>()) {}

clsTree::~clsTree() = default;

void clsTree::Reset() {
    lclDescription.clear();
    lclNewEnabled = lclDeleteEnabled = lclUpdateEnabled = lclUnread = false;
    SetItem(std::make_shared<clsItem>());
}

void clsTree::SetItem(clsItemPtr root) {
    lclIndex->Forget();
    lclItem = std::move(root);
}

void clsTree::SetTreeId(std::int32_t id) {
    LongWork::Guard(this);
    lclTreeId = id;
    if (id == 0)
        Reset();
    else
        Load();
}

void clsTree::SetDbConnection(data::ConnectionPtr connection) {
    LongWork::Guard(this);
    const bool first = !lclConnection;
    lclConnection = std::move(connection);
    if (lclTreeId >= 1 && first) Load();
    if (lclItem) lclItem->SetDbConnection(lclConnection);
}

void clsTree::SetDescription(std::string_view description) {
    if (description == lclDescription) return;
    const std::string before = std::exchange(lclDescription, std::string(description));
    try {
        Store();
    } catch (...) {
        lclDescription = before;
        throw;
    }
}

void clsTree::SetFlag(bool& flag, bool value) {
    if (flag == value) return;
    flag = value;
    try {
        Store();
    } catch (...) {
        flag = !value;
        throw;
    }
}

void clsTree::Store() {
    if (!lclConnection || lclTreeId < 1) return;
    if (lclUnread)
        throw data::Error(data::errors::badEof,
                          "Tree " + Number(lclTreeId) + " could not be read, so it is not changed.",
                          "clsTree");
    const auto statement = [&](auto flag) {
        std::string change = "update tblTree  set Description = " + data::SqlValue(lclDescription);
        change.append(", NewEnabled = ").append(flag(lclNewEnabled));
        change.append(", DeleteEnabled = ").append(flag(lclDeleteEnabled));
        change.append(", Updateenabled = ").append(flag(lclUpdateEnabled));
        return change + " WHERE TreeId = " + Number(lclTreeId);
    };
    const model::Store store(lclConnection);
    try {
        store.Write(statement(Word));
    } catch (const data::Error& error) {
        // Some servers take the words for names of columns; any other failure is one.
        if (error.Number() != data::errors::syntax) throw;
        lclWorkstation.log.Write("clsTree", data::InLog(error));
        store.Write(statement([](bool flag) { return flag ? "1" : "0"; }));
    }
}

bool clsTree::CreateNew() {
    if (!lclConnection || lclTreeId != 0) return false;
    LongWork::Guard(this);
    // Servers store a new tree's flags as 0; the first change puts them right.
    const bool words = data::IsAccessConnection(lclConnection);
    const auto flag = [&](bool value) { return std::string(words ? Word(value) : "0"); };
    const std::string guid = data::SqlValue(NewGuid(lclWorkstation));
    NewRow row;
    row.insert = "Insert into tblTree (TreeGuid,Description, NewEnabled, DeleteEnabled, "
                 "UpdateEnabled) Values (" +
                 guid + "," + data::SqlValue(lclDescription) + ", " + flag(lclNewEnabled) + ", " +
                 flag(lclDeleteEnabled) + ", " + flag(lclUpdateEnabled) + ")";
    row.find = "Select * from tblTree where treeguid= " + guid;
    clsItemPtr root;
    lclTreeId = InsertRow(lclWorkstation, model::Store(lclConnection), row,
                          [&](data::Recordset& tree, std::int32_t key) {
                              SetNumber(tree, "TreeId", key);
                              clsItemCol roots(lclWorkstation);
                              roots.SetDbConnection(lclConnection);
                              root = roots.AddTab(lclDescription, lclConnection, 0);
                              SetNumber(tree, "TopItemId", root->Id());
                          });
    SetItem(std::move(root));
    return true;
}

void clsTree::Load() {
    if (!lclConnection) return;
    Reset();
    if (lclTreeId <= 0) return;
    NodeId topItem = 0;
    lclUnread = true;
    const bool known = LoadTreeRow(topItem);
    lclUnread = false;
    if (topItem != 0)
        LoadRoot(topItem);
    else
        lclWorkstation.log.Write("clsTree.Load", "Tree " + Number(lclTreeId) +
                                                     (known ? " has no root" : " does not exist"));
}

bool clsTree::LoadTreeRow(NodeId& topItem) {
    const data::RecordsetPtr row =
        model::Store(lclConnection)
            .Read("Select * from tblTree where TreeId = " + Number(lclTreeId));
    if (row->Eof()) return false;
    lclDescription = TrimmedText(row->Get("Description"));
    lclNewEnabled = data::ToBool(row->Get("NewEnabled"));
    lclDeleteEnabled = data::ToBool(row->Get("DeleteEnabled"));
    lclUpdateEnabled = data::ToBool(row->Get("UpdateEnabled"));
    topItem = data::ToInt32(row->Get("TopItemId"));
    lclItem->SetId(topItem);
    row->Close();
    return true;
}

void clsTree::LoadRoot(NodeId topItem) {
    const data::RecordsetPtr row =
        model::Store(lclConnection)
            .Read("Select * from tblTreeItem where TreeItemId = " + Number(topItem));
    clsItemPtr root;
    if (row->Eof()) {
        lclWorkstation.log.Write("clsTree.Load", "Tree " + Number(lclTreeId) + ": its root " +
                                                     Number(topItem) + " is missing");
        root = std::make_shared<clsItem>(topItem, itemTypes::tab, 0, lclDescription, lclConnection);
    } else {
        root = std::make_shared<clsItem>(
            data::ToInt32(row->Get("TreeItemId")), TrimmedText(row->Get("Type")),
            data::ToInt32(row->Get("ItemId")), TrimmedText(row->Get("Description")), lclConnection);
    }
    root->AttachChildren(fncLoadCollectionFromDatabase(root->Id()));
    SetItem(std::move(root));
}

clsItemColPtr clsTree::fncLoadCollectionFromDatabase(NodeId parentId) {
    if (!lclConnection) return nullptr;
    return TreeLoader(*this, lclWorkstation, lclConnection, lclOrderByName, lclTranslation)
        .Load(parentId);
}

clsItemColPtr clsTree::ChildrenOf(clsItem& parent) {
    if (!parent.ChildCollection()) {
        auto children = std::make_shared<clsItemCol>(lclWorkstation);
        children->SetDbConnection(lclConnection);
        // A current index hears of it by itself, and no other tree's can have this parent then.
        if (lclIndex->Current(*lclItem)) {
            parent.AttachChildren(children);
            lclIndex->Attached(*children);
        } else {
            parent.SetChildCollection(children);
        }
    }
    return parent.ChildCollection();
}

clsItemPtr clsTree::AddChildTab(std::string_view description, NodeId parentId) {
    return AddChildItem(0, itemTypes::tab, nullptr, 0, description, parentId);
}

clsItemPtr clsTree::AddChildItem(NodeId id, std::string_view type, clsItemColPtr children,
                                 std::int32_t itemId, std::string_view description,
                                 NodeId parentId) {
    if (parentId == 0 || !lclConnection) return nullptr;
    LongWork::Guard(this);
    const clsItemPtr parent = GetItem(parentId, "");
    if (!parent || !parent->AllowChildren()) return nullptr;
    const bool indexed = lclIndex->Current(*lclItem);
    const clsItemColPtr into = ChildrenOf(*parent);
    clsItemPtr added = into->AddItem(id, type, std::move(children), itemId, description,
                                     lclConnection, parent->Id());
    if (added && indexed) lclIndex->Added(*added);
    return added;
}

clsItemPtr clsTree::MoveItem(NodeId itemId, NodeId newParentId, NodeId oldParentId) {
    if (newParentId == 0 || newParentId == oldParentId || !lclConnection) return nullptr;
    LongWork::Guard(this);
    const clsItemPtr newParent = GetItem(newParentId, "");
    const clsItemPtr item = GetItem(itemId, "");
    const clsItemPtr oldParent = GetItem(oldParentId, "");
    if (!newParent || !item || !newParent->AllowChildren()) return nullptr;
    const bool indexed = lclIndex->Current(*lclItem);
    const clsItemColPtr into = ChildrenOf(*newParent);
    clsItemPtr moved = into->MoveItem(item, lclConnection, newParent, oldParent);
    if (indexed) lclIndex->Moved();
    return moved;
}

bool clsTree::DeleteItem(clsItemPtr& item, NodeId id, std::vector<NodeId>* taken,
                         const std::function<bool(NodeId)>& may) {
    if (!lclConnection) return false;
    LongWork::Guard(this);
    const clsItemPtr doomed = item ? item : GetItem(id, "");
    if (!doomed) return false;
    if (doomed->Id() > 0) { // otherwise deleted before, and in its place already
        const model::Store store(lclConnection);
        Transaction transaction(store, lclWorkstation);
        LongWork work(lclWorkstation, data::Translated(lclTranslation, "Verwijderen"),
                      data::Translated(lclTranslation, "Mappen en documenten worden verwijderd."));
        auto gone = DeleteSubtree(store, doomed->Id(), [&](NodeId one) {
            if (may && !may(one))
                throw platform::Error(platform::errors::fail,
                                      "The item " + Number(one) + " below it must stay.");
            work.Step();
        });
        transaction.Commit();
        if (taken) *taken = std::move(gone);
    }
    item = nullptr;
    return true;
}

clsTree::Restored clsTree::RestoreItem(NodeId id, std::span<const NodeId> those) {
    if (!lclConnection || id <= 0 || !lclItem) return {};
    LongWork::Guard(this);
    const model::Store store(lclConnection);
    LongWork work(lclWorkstation, data::Translated(lclTranslation, "Terugzetten"),
                  data::Translated(lclTranslation, "Mappen en documenten worden teruggezet."));
    for (int tries = 0; tries < 3; ++tries) {
        auto way = FindWayBack(store, id, lclItem->Id());
        Transaction transaction(store, lclWorkstation);
        if (!RestoreSubtree(store, id, way, those, [&](NodeId) { work.Step(); })) continue;
        transaction.Commit();
        return {.wasThere = way.lives, .atRoot = way.atRoot, .folders = std::move(way.folders)};
    }
    throw platform::Error(platform::errors::fail,
                          "The item " + Number(id) + " is being changed by somebody else.");
}

clsItemPtr clsTree::GetItem(NodeId id, std::string_view description) {
    return GetItemWithinTree(lclItem, id, description);
}

clsItemPtr clsTree::GetItemWithinTree(const clsItemPtr& start, NodeId id,
                                      std::string_view description) {
    if (!start || (id == 0 && description.empty())) return nullptr;
    clsItem* found = nullptr;
    if (description.empty() && start == lclItem) {
        found = lclIndex->Find(*start, id);
    } else {
        found = FirstDepthFirst(*start, [&](const clsItem& node) {
            return (id != 0 && node.Id() == id) ||
                   (!description.empty() &&
                    platform::EqualNoCase(description, node.DescriptionText()));
        });
    }
    return found ? found->shared_from_this() : nullptr;
}

bool clsTree::Delete() {
    if (!lclConnection || !lclItem) return false;
    LongWork::Guard(this);
    bool dangling = false;
    FirstDepthFirst(*lclItem, [&](const clsItem& node) {
        if (&node != lclItem.get()) dangling = SweepNode(node.Id());
        return false;
    });
    return dangling;
}

// Reads on its own what the look-up helpers read: they take a failing look-up for "none", and a
// tree must not be swept away because the database did not answer.
bool clsTree::SweepNode(NodeId id) {
    const model::Store store(lclConnection);
    const auto first = [&](const std::string& statement) {
        const data::RecordsetPtr rows = store.Read(statement);
        return rows->Eof() ? 0 : data::ToInt32(rows->Get(0));
    };
    const std::int32_t tree = first("Select TreeId from tblTree where TopItemId = " + Number(id));
    if (tree <= 0) return false;
    if (first("Select RelId from tblDossierRelations where TreeId =  " + Number(tree)) != 0)
        return false;
    const std::int32_t key = first("Select Id from tblTreeItem where TreeItemId = " + Number(id));
    if (key == 0) return false;
    store.Write("update tblTreeItem set TreeItemId = " + Number(-id) +
                " where Id = " + Number(key));
    return true;
}

} // namespace kavidex::model
