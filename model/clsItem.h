// One node of a folder tree: a folder, or the place of a document, a note, a user.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "data/Connection.h"

namespace kavidex::model {

class clsItem;
class clsItemCol;
using clsItemPtr = std::shared_ptr<clsItem>;
using clsItemColPtr = std::shared_ptr<clsItemCol>;

// The working id of a node: equal to the row's key while it lives, negated once it is deleted.
// Every reference between rows uses it; 0 means none.
using NodeId = std::int32_t;

// Always held by a clsItemPtr. A tree of any depth is released without deep recursion.
class clsItem : public std::enable_shared_from_this<clsItem> {
public:
    clsItem() = default;
    // A node as it was read; nothing is written.
    clsItem(NodeId id, std::string_view type, std::int32_t itemId, std::string_view description,
            data::ConnectionPtr connection);
    clsItem(const clsItem&) = delete;
    clsItem& operator=(const clsItem&) = delete;

    NodeId Id() const { return lclId; }
    void SetId(NodeId id);

    std::string ItemType() const { return std::string(TypeText()); }
    void SetItemType(std::string_view type) { SetTexts(type, DescriptionText()); }

    // The object that the node stands for, such as a document's DocId; 0 for a pure folder.
    std::int32_t ItemId() const { return lclItemId; }
    void SetItemId(std::int32_t itemId) { lclItemId = itemId; }

    std::string Description() const { return std::string(DescriptionText()); }
    // Renames the node in the database when it had a description, has a connection and lives
    // (Id of at least 1). Throws platform::Error, and keeps the old text, when the store refuses or
    // somebody else has deleted it.
    void SetDescription(std::string_view description);
    // What a user does: it is written whatever the description was.
    void Rename(std::string_view description);

    // The same without a copy, valid until the item's type or description changes.
    std::string_view TypeText() const { return {lclTexts.get(), lclTypeLength}; }
    std::string_view DescriptionText() const {
        return {lclTexts.get() + lclTypeLength, lclDescriptionLength};
    }

    bool AllowChildren() const { return lclAllowChildren; }
    void SetAllowChildren(bool allow) { lclAllowChildren = allow; }

    const clsItemColPtr& ChildCollection() const { return lclChildren; } // null without children
    void SetChildCollection(clsItemColPtr children);

    // For a node that no search can have met yet, or whose tree says itself what changed.
    void AttachChildren(clsItemColPtr children) { lclChildren = std::move(children); }

    void SetDbConnection(data::ConnectionPtr connection) { lclConnection = std::move(connection); }

private:
    friend class clsItemCol;
    void SetTexts(std::string_view type, std::string_view description);

    // A dossier has many thousands of items: both texts share one block, and no space is lost.
    std::unique_ptr<char[]> lclTexts; // type, then description
    clsItemColPtr lclChildren;
    data::ConnectionPtr lclConnection;
    NodeId lclId = 0;
    std::int32_t lclItemId = 0;
    std::uint32_t lclTypeLength : 31 = 0;
    std::uint32_t lclAllowChildren : 1 = 0;
    std::uint32_t lclDescriptionLength = 0;
};

} // namespace kavidex::model
