#include "model/clsItem.h"

#include "data/modData.h"
#include "model/Store.h"
#include "model/clsItemCol.h"

namespace kavidex::model {

clsItem::clsItem(NodeId id, std::string type, std::int32_t itemId, std::string description,
                 data::ConnectionPtr connection)
    : lclItemType(std::move(type)), lclDescription(std::move(description)),
      lclConnection(std::move(connection)), lclId(id), lclItemId(itemId),
      lclAllowChildren(fncCanHaveChildren(lclItemType)) {}

void clsItem::SetId(NodeId id) {
    lclId = id;
    ItemList::IdChanged();
    clsItemCol::StructureChanged();
}

void clsItem::SetDescription(std::string_view description) {
    if (description != lclDescription && !lclDescription.empty() && lclConnection && lclId >= 1)
        Store(lclConnection)
            .Write("Update tblTreeItem set Description = " + data::SqlValue(description) +
                   " where TreeItemId = " + Number(lclId));
    lclDescription = description;
}

void clsItem::SetChildCollection(clsItemColPtr children) {
    clsItemCol::StructureChanged();
    lclChildren.swap(children);
}

} // namespace kavidex::model
