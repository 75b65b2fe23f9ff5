#include "model/clsItem.h"

#include <algorithm>

#include "data/modData.h"
#include "model/Store.h"
#include "model/clsItemCol.h"
#include "model/treeRows.h"
#include "platform/Error.h"

namespace kavidex::model {

static_assert(sizeof(void*) != 8 || sizeof(clsItem) <= 72);

clsItem::clsItem(NodeId id, std::string_view type, std::int32_t itemId,
                 std::string_view description, data::ConnectionPtr connection)
    : lclConnection(std::move(connection)), lclId(id), lclItemId(itemId),
      lclAllowChildren(fncCanHaveChildren(type)) {
    SetTexts(type, description);
}

void clsItem::SetTexts(std::string_view type, std::string_view description) {
    if (type.size() > 0x7FFFFFFF || description.size() > 0xFFFFFFFF)
        throw platform::Error(platform::errors::invalidArgument, "The text is too long.");
    auto texts = std::make_unique<char[]>(type.size() + description.size());
    std::copy(type.begin(), type.end(), texts.get());
    std::copy(description.begin(), description.end(), texts.get() + type.size());
    lclTexts = std::move(texts); // only now: either text may be this item's own
    lclTypeLength = static_cast<std::uint32_t>(type.size()) & 0x7FFFFFFF;
    lclDescriptionLength = static_cast<std::uint32_t>(description.size());
}

void clsItem::SetId(NodeId id) {
    lclId = id;
    ItemList::IdChanged();
    clsItemCol::ItemChanged();
}

void clsItem::SetDescription(std::string_view description) {
    if (DescriptionText().empty() || description == DescriptionText())
        SetTexts(TypeText(), description);
    else
        Rename(description);
}

void clsItem::Rename(std::string_view description) {
    if (lclConnection && lclId >= 1) {
        const Store store(lclConnection);
        // Some engines count only rows that the new text made different.
        if (store.Write("Update tblTreeItem set Description = " + data::SqlValue(description) +
                        " where TreeItemId = " + Number(lclId)) == 0 &&
            !HasRow(store, lclId))
            throw platform::Error(platform::errors::notFound,
                                  "The item " + Number(lclId) + " does not exist any more.");
    }
    SetTexts(TypeText(), description);
}

void clsItem::SetChildCollection(clsItemColPtr children) {
    clsItemCol::ItemChanged();
    lclChildren.swap(children);
}

} // namespace kavidex::model
