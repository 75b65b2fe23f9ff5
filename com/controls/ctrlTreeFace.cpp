#include "com/controls/ctrlTreeFace.h"

#include "com/model/faces.h"
#include "controls/mailing/FileInTree.h"
#include "controls/tree/win32/MakeTreeWindow.h"
#include "kavidex_idl.h"
#include "mail/win32/MakeMailRoads.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "platform/Workstation.h"

namespace kavidex::com {

namespace {

using Self = ctrlTreeFace;
using Logic = controls::ctrlTree;
using Row = Rows<Self>;
using Text = std::optional<std::string>;
using Number = std::optional<std::int32_t>;

constexpr Member members[] = {
    KAVIDEX_GETLET(ShowExternalViewer, 1),
    KAVIDEX_GETLET(BackColor, DISPID_BACKCOLOR),
    KAVIDEX_GETLET(ForeColor, DISPID_FORECOLOR),
    KAVIDEX_GETLET(Enabled, DISPID_ENABLED),
    KAVIDEX_GETSET(Font, DISPID_FONT),
    KAVIDEX_GETLET(BackStyle, DISPID_BACKSTYLE),
    KAVIDEX_GETLET(BorderStyle, DISPID_BORDERSTYLE),
    KAVIDEX_GETLET(AllowCreateFolders, 2),
    KAVIDEX_GETLET(AllowAddExternal, 3),
    KAVIDEX_GETLET(UpdateEnabled, 4),
    KAVIDEX_GETLET(DeleteEnabled, 5),
    KAVIDEX_GETLET(NewEnabled, 6),
    KAVIDEX_GETLET(ReadOnly, 7),
    KAVIDEX_GETLET(TreeId, 8),
    KAVIDEX_GETLET(Description, 9),
    KAVIDEX_GETLET(AllowedTypes, 10),
    KAVIDEX_GETLET(ShowParentsOnly, 11),
    KAVIDEX_GETLET(ShowParentsOnlyTypes, 12),
    KAVIDEX_GETLET(SelectItems, 13),
    KAVIDEX_GETLET(NameForInsert, 14),
    KAVIDEX_GETLET(TypeForInsert, 15),
    KAVIDEX_GETLET(DossierType, 16),
    KAVIDEX_GETLET(FullExpand, 17),
    KAVIDEX_GETLET(OrderByName, 18),
    KAVIDEX_GETLET(FoldersAndDocs, 19),
    KAVIDEX_GETLET(AllwaysShowExt, 20),
    KAVIDEX_GETLET(AllwaysShowOrg, 21),
    KAVIDEX_GETLET(ShowMail, 22),
    KAVIDEX_GETLET(ShowPrint, 23),
    KAVIDEX_GETLET(ShowProperties, 24),
    KAVIDEX_GETLET(ShowDescriptionsInToolTip, 25),
    KAVIDEX_GETLET(ShowNumberOfChildren, 26),
    KAVIDEX_GETLET(ValueFile, 27),
    KAVIDEX_GETLET(EmailAddress, 28),
    KAVIDEX_GETSET(UserAuth, 29),
    KAVIDEX_GETSET(Translate, 30),
    Row::Get<&Logic::DbConnection>(L"DbConnection", 31),
    Row::PutRef<&Logic::SetDbConnection>(L"DbConnection", 31),
    Row::Method<&Logic::Refresh>(L"Refresh", DISPID_REFRESH),
    Row::Method<[](Logic& tree, std::string description, Number parent) {
        return tree.AddTab(description, parent.value_or(0));
    }>(L"AddTab", 32, L"Description,ParentId"),
    Row::Method<[](Logic& tree, std::int32_t id, std::string type,
                   std::shared_ptr<model::clsItemCol> children, std::int32_t itemId,
                   std::string description, Number parent) {
        return tree.Add(id, type, children, itemId, description, parent.value_or(0));
    }>(L"Add", 33, L"Id,ItemType,ChildCollection,ItemId,Description,ParentId"),
    Row::Method<[](Logic& tree, std::string description, Text tabs) {
        return tree.CreateNew(description, tabs.value_or(""));
    }>(L"CreateNew", 34, L"Description,ListOfDefaultTabs"),
    Row::Method<[](Logic& tree, std::string tabs, Number parent) {
        return tree.fncGetAndCreateTabs(tabs, parent.value_or(0));
    }>(L"fncGetAndCreateTabs", 35, L"ListOfTabs,ParentId"),
    Row::Method<&Logic::SetNextChildItem>(L"SetNextChildItem", 36),
    Row::Method<&Logic::SetPreviousChildItem>(L"SetPreviousChildItem", 37),
    Row::Method<&Logic::SetHighLightToItem>(L"SetHighLightToItem", 38, L"Id"),
    Row::Method<&Logic::GetNode>(L"GetNode", 39, L"Id"),
    Row::Method<[](Logic& tree, std::int32_t id, Text description) {
        return tree.GetItem(id, description.value_or(""));
    }>(L"GetItem", 40, L"Id,Description"),
    Row::Method<[](Logic& tree, controls::ItemPtr start, std::int32_t id, Text description) {
        return tree.GetItemWithinTree(start, id, description.value_or(""));
    }>(L"GetItemWithinTree", 41, L"Start,Id,Description"),
    Row::Method<&Logic::GetParent>(L"GetParent", 42, L"Id"),
    Row::Method<[](Logic& tree, Number id) { return tree.DeleteItem(id.value_or(0)); }>(
        L"DeleteItem", 43, L"Id"),
    Row::Method<[](Logic& tree) { return CollectionOf(tree.SelectedItems()); }>(L"SelectedItems",
                                                                                44),
    Row::Method<[](Logic& tree) { return CollectionOf(tree.AllItems()); }>(L"AllItems", 45),
    Row::Method<&Logic::ClearSelectedItems>(L"ClearSelectedItems", 46),
    Row::Method<&Logic::fncResetSelectedItems>(L"fncResetSelectedItems", 47),
    Row::Method<&Logic::ContainsDocuments>(L"ContainsDocuments", 48),
    Row::Method<&Logic::fncShowStatusBar>(L"fncShowStatusBar", 49, L"Show"),
    KAVIDEX_GETLET(ListMode, 60),
};

constexpr EventRow events[] = {
    {L"Click", DISPID_CLICK},
    {L"DblClick", DISPID_DBLCLICK},
    {L"KeyDown", DISPID_KEYDOWN},
    {L"KeyPress", DISPID_KEYPRESS},
    {L"KeyUp", DISPID_KEYUP},
    {L"MouseDown", DISPID_MOUSEDOWN},
    {L"MouseMove", DISPID_MOUSEMOVE},
    {L"MouseUp", DISPID_MOUSEUP},
    // For hosts that bind to them; never raised.
    {L"ItemSelected", 1},
    {L"ItemSelectedExternal", 2},
    {L"ItemSelectedRightMouse", 3},
    {L"ItemDropped", 4},
    {L"ItemDroppedAndHandled", 5},
    {L"ItemDragOver", 6},
    {L"ItemCreated", 7},
    {L"ItemDelete", 8},
    {L"ItemCopy", 9},
    {L"ItemCut", 10},
    {L"ItemPaste", 11},
    {L"ItemRenamed", 12},
    // What the control raises.
    {L"EvItemSelected", 13},
    {L"EvItemSelectedExternal", 14},
    {L"EvItemSelectedRightMouse", 15},
    {L"EvItemDropped", 16},
    {L"EvItemDroppedAndHandled", 17},
    {L"EvItemPastedSpecial", 18},
    {L"EvItemDragOver", 19},
    {L"EvItemCreated", 20},
    {L"EvItemDelete", 21},
    {L"EvItemCopy", 22},
    {L"EvItemCut", 23},
    {L"EvItemPaste", 24},
    {L"EvItemRenamed", 25},
    {L"EvCompleteDrag", 26},
};

consteval DISPID Ev(std::wstring_view name) { return EventId(events, name); }

} // namespace

std::span<const EventRow> TreeEventTable() { return events; }

ctrlTreeFace::ctrlTreeFace()
    : ControlFace(*FindClass(CLSID_ctrlTree), platform::TheWorkstation()),
      lclMail(platform::TheWorkstation(), mail::win32::MakeMailRoads(platform::TheWorkstation()),
              [this](const controls::SentMail& mail) {
                  controls::FileInTree(platform::TheWorkstation(), Logic(), mail);
              }) {
    Logic().SetMailSender(&lclMail);
    RaiseEvents();
}

const Table& ctrlTreeFace::Members() const {
    static constexpr Table table{"Kavidex.ctrlTree", &DIID__ctrlTree, members};
    return table;
}

std::unique_ptr<controls::win32::ControlWindow> ctrlTreeFace::MakeWindow() {
    return controls::win32::MakeTreeWindow(Logic(), platform::TheWorkstation());
}

void ctrlTreeFace::RaiseEvents() {
    using controls::TreeItemInfo;
    auto& tree = Logic();
    const auto selected = [this](auto& event, DISPID id) {
        On(event, [this, id](const TreeItemInfo& item) {
            Raise(id, item.description, item.type, item.id, item.nodeFullPath, item.itemId);
        });
    };
    selected(tree.EvItemSelected, Ev(L"EvItemSelected"));
    selected(tree.EvItemSelectedExternal, Ev(L"EvItemSelectedExternal"));
    selected(tree.EvItemSelectedRightMouse, Ev(L"EvItemSelectedRightMouse"));
    On(tree.EvItemDropped, [this](const controls::DropEvent& drop) {
        Raise(Ev(L"EvItemDropped"), DropContents(drop.data), &drop.effect, drop.targetId,
              drop.fromMail);
    });
    On(tree.EvItemPastedSpecial,
       [this](const std::vector<std::string>& files, std::int32_t number) {
           Raise(Ev(L"EvItemPastedSpecial"), TextArray(files), number);
       });
    On(tree.EvItemDragOver, [this](controls::DragState state, std::int32_t item) {
        Raise(Ev(L"EvItemDragOver"), static_cast<std::int16_t>(state), item);
    });
    On(tree.EvItemCreated, [this](const TreeItemInfo& item) {
        Raise(Ev(L"EvItemCreated"), item.itemId, item.description, item.type, item.id,
              item.nodeFullPath);
    });
    On(tree.EvItemDelete, [this](const TreeItemInfo& item) {
        Raise(Ev(L"EvItemDelete"), item.itemId, item.description, item.type, item.id);
    });
    On(tree.EvItemRenamed, [this](const TreeItemInfo& item, const std::string& oldDescription) {
        Raise(Ev(L"EvItemRenamed"), oldDescription, item.description, item.type, item.id,
              item.itemId);
    });
    On(tree.EvItemDroppedAndHandled, [this] { Raise(Ev(L"EvItemDroppedAndHandled")); });
    On(tree.EvItemCopy, [this] { Raise(Ev(L"EvItemCopy")); });
    On(tree.EvItemCut, [this] { Raise(Ev(L"EvItemCut")); });
    On(tree.EvItemPaste, [this] { Raise(Ev(L"EvItemPaste")); });
    On(tree.EvCompleteDrag, [this] { Raise(Ev(L"EvCompleteDrag")); });
}

ComPtr<IDispatch> MakeCtrlTree() { return Make<ctrlTreeFace>(); }

} // namespace kavidex::com
