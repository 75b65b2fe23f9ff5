// The members of clsTree, clsItem and clsItemCol as hosts see them.
#include "com/dispatch/Enumerator.h"
#include "com/model/faces.h"
#include "kavidex_idl.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "model/walk.h"
#include "platform/Error.h"
#include "platform/Workstation.h"

namespace kavidex::com {

namespace {

using model::clsItem;
using model::clsItemCol;
using model::clsItemColPtr;
using model::clsItemPtr;
using model::clsTree;
using Connection = data::ConnectionPtr;

using Tree = Rows<SharedFace<clsTree>>;

constexpr Member treeMembers[] = {
    Tree::Get<&clsTree::TreeId>(L"TreeId", 1),
    Tree::Put<&clsTree::SetTreeId>(L"TreeId", 1),
    Tree::Get<&clsTree::DbConnection>(L"DbConnection", 2),
    Tree::PutRef<&clsTree::SetDbConnection>(L"DbConnection", 2),
    Tree::Get<&clsTree::Description>(L"Description", 3),
    Tree::Put<&clsTree::SetDescription>(L"Description", 3),
    Tree::Get<&clsTree::NewEnabled>(L"NewEnabled", 4),
    Tree::Put<&clsTree::SetNewEnabled>(L"NewEnabled", 4),
    Tree::Get<&clsTree::DeleteEnabled>(L"DeleteEnabled", 5),
    Tree::Put<&clsTree::SetDeleteEnabled>(L"DeleteEnabled", 5),
    Tree::Get<&clsTree::UpdateEnabled>(L"UpdateEnabled", 6),
    Tree::Put<&clsTree::SetUpdateEnabled>(L"UpdateEnabled", 6),
    Tree::Get<&clsTree::OrderByName>(L"OrderByName", 7),
    Tree::Put<&clsTree::SetOrderByName>(L"OrderByName", 7),
    Tree::Get<&clsTree::SortFoldersAndDocs>(L"SortFoldersAndDocs", 8),
    Tree::Put<&clsTree::SetSortFoldersAndDocs>(L"SortFoldersAndDocs", 8),
    Tree::Get<&clsTree::Item>(L"Item", 9),
    Tree::PutRef<&clsTree::SetItem>(L"Item", 9),
    Tree::Method<&clsTree::CreateNew>(L"CreateNew", 10),
    Tree::Method<&clsTree::AddChildTab>(L"AddChildTab", 11, L"Description,ParentId"),
    Tree::Method<&clsTree::AddChildItem>(L"AddChildItem", 12,
                                         L"Id,Type,ChildCollection,ItemId,Description,ParentId"),
    Tree::Method<&clsTree::MoveItem>(L"MoveItem", 13, L"ItemId,NewParentId,OldParentId"),
    Tree::Method<[](clsTree& tree, ByRef<clsItemPtr>& item, std::optional<std::int32_t> id) {
        return tree.DeleteItem(item.value, id.value_or(item.value ? item.value->Id() : 0));
    }>(L"DeleteItem", 14, L"Item,Id"),
    Tree::Method<[](clsTree& tree, std::int32_t id, std::optional<std::string> description) {
        return tree.GetItem(id, description.value_or(""));
    }>(L"GetItem", 15, L"Id,Description"),
    Tree::Method<[](clsTree& tree, clsItemPtr start, std::int32_t id,
                    std::optional<std::string> description) {
        return tree.GetItemWithinTree(start, id, description.value_or(""));
    }>(L"GetItemWithinTree", 16, L"StartItem,Id,Description"),
    Tree::Method<&clsTree::Delete>(L"Delete", 17),
    // Callers walk the root's ChildCollection. Not under the id that For Each asks: script engines
    // take no collection better than one without members to ask.
    Tree::Get<[](clsTree&) { return ComPtr<IUnknown>(); }>(L"NewEnum", 18),
};
constexpr Table treeTable{"Kavidex.clsTree", &DIID__clsTree, treeMembers};

using Item = Rows<SharedFace<clsItem>>;

// A host may hand over any collection; one that holds the item would have no end.
void SetChildren(clsItem& item, clsItemColPtr children) {
    if (model::AnyBelow(children, [&](const clsItem& node) { return &node == &item; }))
        throw platform::Error(platform::errors::invalidArgument,
                              "The collection holds the item itself.", "Kavidex.clsItem");
    item.SetChildCollection(std::move(children));
}

constexpr Member itemMembers[] = {
    Item::Get<&clsItem::Id>(L"Id", 1),
    Item::Put<&clsItem::SetId>(L"Id", 1),
    Item::Get<&clsItem::ItemType>(L"ItemType", 2),
    Item::Put<&clsItem::SetItemType>(L"ItemType", 2),
    Item::Get<&clsItem::ItemId>(L"ItemId", 3),
    Item::Put<&clsItem::SetItemId>(L"ItemId", 3),
    Item::Get<&clsItem::Description>(L"Description", 4),
    Item::Put<&clsItem::SetDescription>(L"Description", 4),
    Item::Get<&clsItem::AllowChildren>(L"AllowChildren", 5),
    Item::Put<&clsItem::SetAllowChildren>(L"AllowChildren", 5),
    Item::Get<&clsItem::ChildCollection>(L"ChildCollection", 6),
    Item::PutRef<SetChildren>(L"ChildCollection", 6),
    Item::PutRef<&clsItem::SetDbConnection>(L"DbConnection", 7),
};
constexpr Table itemTable{"Kavidex.clsItem", &DIID__clsItem, itemMembers};

using ColFace = SharedFace<clsItemCol>;
using Col = Rows<ColFace>;

// By node id for a number, also one in a text, otherwise by key.
void Remove(clsItemCol& col, Variant key) {
    const bool digits = key.IsText() && !key.ToText().empty() &&
                        key.ToText().find_first_not_of("-0123456789 ") == std::string::npos;
    if (key.IsNumber() || digits)
        col.Remove(key.ToInt32());
    else
        col.Remove(key.ToText());
}

constexpr Member colMembers[] = {
    Col::Get<[](clsItemCol& col, Short index) { return col.Item(index.value); }>(L"Item", 0,
                                                                                 L"Index"),
    Col::Get<&clsItemCol::Count>(L"Count", 1),
    Col::Get<[](ColFace& face) {
        return MakeEnumerator([col = face.Shared()](std::size_t place) -> std::optional<Variant> {
            const auto items = col->Items();
            if (place >= items.size()) return std::nullopt;
            return Convert<clsItemPtr>::To(items[place]);
        });
    }>(L"NewEnum", DISPID_NEWENUM),
    Col::PutRef<&clsItemCol::SetDbConnection>(L"DbConnection", 2),
    Col::Method<[](clsItemCol& col, ByRef<std::int32_t>& id, std::string type,
                   clsItemColPtr children, std::int32_t itemId, std::string description,
                   Connection connection, std::int32_t parentId) {
        return col.AddItem(id.value, type, std::move(children), itemId, description, connection,
                           parentId);
    }>(L"AddItem", 3, L"Id,Type,ChildCollection,ItemId,Description,DbConnection,ParentId"),
    Col::Method<&clsItemCol::AddTab>(L"AddTab", 4, L"Description,DbConnection,ParentId"),
    Col::Method<&clsItemCol::AddUserGroup>(L"AddUserGroup", 5,
                                           L"Description,DbConnection,ParentId"),
    Col::Method<&clsItemCol::MoveItem>(L"MoveItem", 6, L"Item,DbConnection,NewParent,OldParent"),
    Col::Method<Remove>(L"Remove", 7, L"Key"),
    Col::Method<[](clsItemCol&, std::string type) { return model::fncCanHaveChildren(type); }>(
        L"fncCanHaveChildren", 8, L"Type"),
};
constexpr Table colTable{"Kavidex.clsItemCol", &DIID__clsItemCol, colMembers};

} // namespace

template <>
const Table& TableOf<clsTree>() {
    return treeTable;
}
template <>
const Table& TableOf<clsItem>() {
    return itemTable;
}
template <>
const Table& TableOf<clsItemCol>() {
    return colTable;
}

template <class T>
ComPtr<IDispatch> ModelFace<T>::Make(std::shared_ptr<T> object) {
    return SharedFace<T>::For(std::move(object));
}
template struct ModelFace<clsTree>;
template struct ModelFace<clsItem>;
template struct ModelFace<clsItemCol>;

template <>
ComPtr<IDispatch> NewModelObject<clsTree>() {
    return FaceOf<clsTree>::Make(std::make_shared<clsTree>(platform::TheWorkstation()));
}
template <>
ComPtr<IDispatch> NewModelObject<clsItem>() {
    return FaceOf<clsItem>::Make(std::make_shared<clsItem>());
}
template <>
ComPtr<IDispatch> NewModelObject<clsItemCol>() {
    return FaceOf<clsItemCol>::Make(std::make_shared<clsItemCol>(platform::TheWorkstation()));
}

} // namespace kavidex::com
