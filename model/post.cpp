#include "model/post.h"

#include "data/Error.h"
#include "data/clsSettings.h"
#include "data/modData.h"
#include "model/clsItemCol.h"
#include "model/clsUserAuth.h"
#include "model/treeRows.h"
#include "platform/Clock.h"
#include "platform/User.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::model {
namespace {

constexpr std::string_view section = "Post", folderKey = "Folder";

std::string SectionOf(NodeId item) { return "Post." + Number(item); }

// Keeps a value whatever it holds; what the column does not take is cut.
void Keep(data::clsSettings& settings, const std::string& where, std::string_view key,
          std::string_view value) {
    auto plain = PlainText(value);
    while (plain.size() > 255) {
        value.remove_suffix(1);
        plain = PlainText(value);
    }
    settings.SetSetting(where, key, plain);
    if (!settings.Failure().empty())
        throw data::Error(data::errors::objectClosed, settings.Failure(), "Kavidex");
}

void Forget(const Store& store, NodeId item) {
    store.Write("Delete from tblSettings where Section = " + data::SqlValue(SectionOf(item)));
}

void ReadFacts(const Store& store, PostItem& item, bool now) {
    const auto statement =
        "Select * from tblSettings where Section = " + data::SqlValue(SectionOf(item.id));
    const auto rows = now ? store.ReadNow(statement) : store.Read(statement);
    for (; !rows->Eof(); rows->MoveNext()) {
        const auto key = TrimmedText(rows->Get("SKey"));
        const auto value = FromPlainText(TrimmedText(rows->Get("Value")));
        if (key == "From") item.from = static_cast<NodeId>(platform::Val(value));
        if (key == "By") item.by = value;
        if (key == "On") item.on = value;
        if (key == "Remark") item.remark = value;
        if (key == "Opened") item.opened = value == "True";
    }
}

// Whoever else wants the document waits; false when it is elsewhere by now.
bool HoldIn(const Store& store, NodeId item, NodeId folder) {
    store.Write("update tblTreeItem set Description = Description where TreeItemId = " +
                Number(item));
    const auto row =
        store.ReadNow("Select ParentId from tblTreeItem where TreeItemId = " + Number(item));
    return !row->Eof() && data::ToInt32(row->Get(0)) == folder;
}

void Move(const Store& store, NodeId item, NodeId folder) {
    store.Write("Update tbltreeitem set ParentId = " + Number(folder) +
                " Where TreeItemId = " + Number(item));
}

NodeId BoxOf(const platform::Workstation& workstation, const Store& store, const UserTree& place,
             const RightsHolder& user) {
    HoldNode(store, place.root);
    const auto boxes = PostBoxes(store, place);
    if (const auto known = boxes.find(user.id); known != boxes.end()) return known->second.folder;
    NodeId id = 0;
    clsItemCol(workstation)
        .AddItem(id, itemTypes::userPost, nullptr, user.id, user.name, store.Connection(),
                 place.root);
    return id;
}

} // namespace

NodeId PostFolder(const platform::Workstation& workstation, const Store& store,
                  const UserTree& place, std::string_view name) {
    const auto kept = ReadSetting(workstation, store.Connection(), section, folderKey);
    if (const auto id = kept ? static_cast<NodeId>(platform::Val(*kept)) : 0;
        id > 0 && HasRow(store, id))
        return id;
    if (name.empty()) return 0;
    NodeId id = 0;
    clsItemCol(workstation)
        .AddItem(id, itemTypes::tab, nullptr, 0, name, store.Connection(), place.root);
    data::clsSettings settings(workstation);
    settings.SetDbConnection(store.Connection());
    Keep(settings, std::string(section), folderKey, Number(id));
    return id;
}

std::vector<PostItem> PostIn(const Store& store, NodeId folder) {
    std::vector<PostItem> items;
    if (folder == 0) return items;
    const auto rows = store.Read("Select TreeItemId, Type, Description, ItemId from tblTreeItem "
                                 "where ParentId = " +
                                 Number(folder) + " order by TreeItemId");
    for (; !rows->Eof(); rows->MoveNext()) {
        PostItem item;
        item.id = data::ToInt32(rows->Get(0));
        item.type = TrimmedText(rows->Get(1));
        item.description = TrimmedText(rows->Get(2));
        item.document = data::ToInt32(rows->Get(3));
        if (!fncCanHaveChildren(item.type)) items.push_back(std::move(item));
    }
    for (auto& item : items) ReadFacts(store, item, false);
    return items;
}

std::map<NodeId, PostBox> PostBoxes(const Store& store, const UserTree& place) {
    std::map<NodeId, PostBox> boxes;
    if (place.tree == 0) return boxes;
    const auto rows = store.Read(
        "Select TreeItemId, Type, ItemId from tblTreeItem where ParentId = " + Number(place.root));
    for (; !rows->Eof(); rows->MoveNext())
        if (platform::EqualAsciiNoCase(TrimmedText(rows->Get(1)), itemTypes::userPost))
            boxes[data::ToInt32(rows->Get(2))] = {data::ToInt32(rows->Get(0)), 0};
    for (auto& [user, box] : boxes) {
        const auto count =
            store.Read("Select count(*) from tblTreeItem where ParentId = " + Number(box.folder));
        box.count = data::ToInt32(count->Get(0));
    }
    return boxes;
}

PostResult GivePost(const platform::Workstation& workstation, const Store& store,
                    const UserTree& place, NodeId from, std::span<const NodeId> items,
                    const RightsHolder& user, std::string_view remark) {
    if (!HasRow(store, user.id)) return PostResult::Gone;
    const auto box = BoxOf(workstation, store, place, user);
    HoldNode(store, box);
    data::clsSettings settings(workstation);
    settings.SetDbConnection(store.Connection());
    const auto on = platform::DayFirst(workstation.clock.Now());
    const auto by = workstation.user.Name();
    for (const auto item : items) {
        if (!HoldIn(store, item, from)) return PostResult::Gone;
        Move(store, item, box);
        const auto where = SectionOf(item);
        Keep(settings, where, "From", Number(from));
        Keep(settings, where, "By", by);
        Keep(settings, where, "On", on);
        Keep(settings, where, "Opened", "False");
        if (!remark.empty()) Keep(settings, where, "Remark", remark);
    }
    return PostResult::Done;
}

PostResult TakePostBack(const Store& store, NodeId folder, std::span<const NodeId> items,
                        NodeId otherwise) {
    for (const auto id : items) {
        if (!HoldIn(store, id, folder)) return PostResult::Gone;
        PostItem item;
        item.id = id;
        ReadFacts(store, item, true);
        if (item.opened) return PostResult::Gone;
        const auto target = item.from > 0 && HasRow(store, item.from) ? item.from : otherwise;
        HoldNode(store, target);
        Move(store, id, target);
        Forget(store, id);
    }
    return PostResult::Done;
}

void MarkPostOpened(const platform::Workstation& workstation, const Store& store, NodeId item) {
    // In the order in which a taking back asks.
    store.Write("update tblTreeItem set Description = Description where TreeItemId = " +
                Number(item));
    data::clsSettings settings(workstation);
    settings.SetDbConnection(store.Connection());
    Keep(settings, SectionOf(item), "Opened", "True");
}

} // namespace kavidex::model
