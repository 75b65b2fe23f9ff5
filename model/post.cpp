#include "model/post.h"

#include <algorithm>

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

constexpr std::size_t columnWidth = 255;
constexpr std::string_view section = "Post", folderKey = "Folder";

std::string SectionOf(NodeId item) { return "Post." + Number(item); }

void Keep(data::clsSettings& settings, const std::string& where, std::string_view key,
          std::string_view value) {
    settings.SetSetting(where, key, PlainText(value));
    if (!settings.Failure().empty())
        throw data::Error(data::errors::objectClosed, settings.Failure(), "Kavidex");
}

// Servers lock the place of rows that are not there: others could not keep what they know beside
// it.
void Forget(const Store& store, NodeId item) {
    const std::string where =
        " from tblSettings where Section = " + data::SqlValue(SectionOf(item));
    if (!store.Read("Select Id" + where)->Eof()) store.Write("Delete" + where);
}

// What is known of each, some at a time.
void ReadFacts(const Store& store, std::span<PostItem> items, bool now) {
    constexpr std::size_t most = 100;
    for (; items.size() > most; items = items.subspan(most))
        ReadFacts(store, items.first(most), now);
    std::string sections;
    for (const auto& item : items)
        sections += (sections.empty() ? "" : ", ") + data::SqlValue(SectionOf(item.id));
    if (sections.empty()) return;
    const auto statement = "Select * from tblSettings where Section in (" + sections + ")";
    const auto rows = now ? store.ReadNow(statement) : store.Read(statement);
    for (; !rows->Eof(); rows->MoveNext()) {
        const auto where = TrimmedText(rows->Get("Section"));
        const auto item = std::find_if(items.begin(), items.end(), [&](const auto& one) {
            return platform::EqualAsciiNoCase(SectionOf(one.id), where);
        });
        if (item == items.end()) continue;
        const auto key = TrimmedText(rows->Get("SKey"));
        const auto value = FromPlainText(TrimmedText(rows->Get("Value")));
        if (key == "From") item->from = static_cast<NodeId>(platform::Val(value));
        if (key == "By") item->by = value;
        if (key == "On") item->on = value;
        if (key == "Remark") item->remark = value;
        if (key == "Opened") item->opened = value == "True";
    }
}

PostItem FactsOf(const Store& store, NodeId id) {
    PostItem item;
    item.id = id;
    ReadFacts(store, {&item, 1}, true);
    return item;
}

// Whoever else wants the row waits.
void Hold(const Store& store, NodeId id) {
    store.Write("update tblTreeItem set Description = Description where TreeItemId = " +
                Number(id));
}

// False when the document is elsewhere by now.
bool HoldIn(const Store& store, NodeId item, NodeId folder) {
    Hold(store, item);
    const auto row =
        store.ReadNow("Select ParentId from tblTreeItem where TreeItemId = " + Number(item));
    return !row->Eof() && data::ToInt32(row->Get(0)) == folder;
}

void Move(const Store& store, NodeId item, NodeId folder) {
    store.Write("Update tbltreeitem set ParentId = " + Number(folder) +
                " Where TreeItemId = " + Number(item));
}

NodeId FindBox(const Store& store, const UserTree& place, NodeId receiver) {
    const auto rows = store.ReadNow("Select TreeItemId, Type from tblTreeItem where ParentId = " +
                                    Number(place.root) + " and ItemId = " + Number(receiver));
    for (; !rows->Eof(); rows->MoveNext())
        if (platform::EqualAsciiNoCase(TrimmedText(rows->Get(1)), itemTypes::userPost))
            return data::ToInt32(rows->Get(0));
    return 0;
}

void PutBack(const Store& store, const PostItem& item, NodeId otherwise) {
    const auto target = item.from > 0 && HasRow(store, item.from) ? item.from : otherwise;
    HoldNode(store, target);
    Move(store, item.id, target);
    Forget(store, item.id);
}

NodeId BoxOf(const platform::Workstation& workstation, const Store& store, const UserTree& place,
             const RightsHolder& receiver) {
    HoldNode(store, place.root);
    if (const auto known = FindBox(store, place, receiver.id)) return known;
    NodeId id = 0;
    clsItemCol(workstation)
        .AddItem(id, itemTypes::userPost, nullptr, receiver.id, receiver.name, store.Connection(),
                 place.root);
    return id;
}

} // namespace

NodeId PostFolder(const platform::Workstation& workstation, const Store& store,
                  const UserTree& place, std::string_view name) {
    if (!name.empty()) HoldSettings(store); // another makes one too
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
    ReadFacts(store, items, false);
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
    std::map<NodeId, int> counts;
    const auto counted =
        store.Read("Select i.ParentId, count(*) as N from tblTreeItem as i, tblTreeItem as b where "
                   "i.ParentId = b.TreeItemId and b.ParentId = " +
                   Number(place.root) + " group by i.ParentId");
    for (; !counted->Eof(); counted->MoveNext())
        counts[data::ToInt32(counted->Get(0))] = data::ToInt32(counted->Get(1));
    for (auto& [receiver, box] : boxes) box.count = counts[box.folder];
    return boxes;
}

bool FitsAsRemark(std::string_view remark) { return PlainText(remark).size() <= columnWidth; }

PostResult GivePost(const platform::Workstation& workstation, const Store& store,
                    const UserTree& place, NodeId from, std::span<const NodeId> items,
                    const RightsHolder& receiver, std::string_view remark) {
    Hold(store, receiver.id);
    if (!HasRow(store, receiver.id)) return PostResult::NoReceiver;
    const auto box = BoxOf(workstation, store, place, receiver);
    HoldNode(store, box);
    data::clsSettings settings(workstation);
    settings.SetDbConnection(store.Connection());
    const auto on = platform::DayFirst(workstation.clock.Now());
    const auto by = workstation.user.Name();
    for (const auto item : items) {
        if (!HoldIn(store, item, from)) return PostResult::Gone;
        Move(store, item, box);
        Forget(store, item); // of an earlier giving
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
        const auto item = FactsOf(store, id);
        if (item.opened) return PostResult::Gone;
        PutBack(store, item, otherwise);
    }
    return PostResult::Done;
}

PostResult MarkPostOpened(const platform::Workstation& workstation, const Store& store,
                          NodeId folder, NodeId item) {
    if (!HoldIn(store, item, folder)) return PostResult::Gone;
    data::clsSettings settings(workstation);
    settings.SetDbConnection(store.Connection());
    Keep(settings, SectionOf(item), "Opened", "True");
    return PostResult::Done;
}

void ReturnPost(const platform::Workstation& workstation, const Store& store, const UserTree& place,
                NodeId receiver, std::string_view name) {
    Hold(store, receiver); // who hands him something now comes too late
    const auto box = FindBox(store, place, receiver);
    if (box == 0) return;
    HoldNode(store, box);
    std::vector<NodeId> items;
    const auto rows =
        store.ReadNow("Select TreeItemId from tblTreeItem where ParentId = " + Number(box));
    for (; !rows->Eof(); rows->MoveNext()) items.push_back(data::ToInt32(rows->Get(0)));
    const auto folder = items.empty() ? 0 : PostFolder(workstation, store, place, name);
    for (const auto item : items) PutBack(store, FactsOf(store, item), folder);
    DeleteSubtree(store, box, [](NodeId) {});
}

} // namespace kavidex::model
