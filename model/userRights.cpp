#include "model/userRights.h"

#include <algorithm>
#include <map>

#include "data/Error.h"
#include "data/clsSettings.h"
#include "data/modData.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "model/clsUserAuth.h"
#include "model/treeRows.h"
#include "platform/text.h"

namespace kavidex::model {
namespace {

constexpr std::string_view section = "Rights", treeKey = "UserTree", prefix = "Rights.";

[[noreturn]] void Refused(std::string_view what) {
    throw data::Error(data::errors::objectClosed, std::string(what), "Kavidex");
}

std::vector<RightsHolder> Below(const Store& store, NodeId parent) {
    std::vector<RightsHolder> found;
    const auto rows = store.Read("Select TreeItemId, Type, Description from tblTreeItem where "
                                 "ParentId = " +
                                 Number(parent) + " order by Description");
    for (; !rows->Eof(); rows->MoveNext()) {
        const auto type = TrimmedText(rows->Get(1));
        const bool group = platform::EqualAsciiNoCase(type, itemTypes::userGroup);
        if (group || platform::EqualAsciiNoCase(type, itemTypes::user))
            found.push_back({data::ToInt32(rows->Get(0)),
                             0,
                             group,
                             AsTyped(store.Connection(), TrimmedText(rows->Get(2))),
                             {}});
    }
    return found;
}

void ReadGroup(const Store& store, NodeId parent, NodeId group, std::vector<RightsHolder>& into) {
    auto held = Below(store, parent);
    const auto users = std::stable_partition(held.begin(), held.end(),
                                             [](const auto& one) { return one.isGroup; });
    for (auto holder = held.begin(); holder != held.end(); ++holder) {
        holder->group = group;
        into.push_back(*holder);
        if (holder < users) ReadGroup(store, holder->id, holder->id, into);
    }
}

std::size_t PlaceOf(std::string_view key) {
    const auto all = Rights();
    const auto* right = FindRight(key);
    return right ? static_cast<std::size_t>(right - all.data()) : all.size();
}

// The rights of everybody who has a row, by section in lower case. One statement for all: users
// have up to 26 rows each.
std::map<std::string, RightSet> ReadRights(const platform::Workstation& workstation,
                                           const data::ConnectionPtr& connection) {
    std::map<std::string, RightSet> bySection;
    data::clsSettings settings(workstation);
    settings.SetDbConnection(connection);
    std::string value, where, key;
    bool found = settings.GetSettingLike(std::string(prefix) + "%", "%", value, where, key, false);
    for (; found; found = settings.GetNextSettingLike(value, where, key))
        if (const auto place = PlaceOf(key); place < Rights().size())
            bySection[platform::LowerCase(where)][place] =
                platform::EqualNoCase(value, rightGranted);
    if (!settings.Failure().empty()) Refused(settings.Failure());
    return bySection;
}

std::string KeyOf(const RightsHolder& holder) {
    return platform::LowerCase(RightsSection(holder.name));
}

bool Administers(const RightSet& rights) {
    static const auto see = PlaceOf("ReadEditRights"), change = PlaceOf("UpdateEditRights");
    return rights[see] && rights[change];
}

void SaveRights(const platform::Workstation& workstation, const Store& store,
                const RightsHolder& before, const RightsHolder& after) {
    clsUserAuth rights(workstation);
    rights.SetDbConnection(store.Connection());
    rights.SetUserId(after.name);
    const auto all = Rights();
    for (std::size_t i = 0; i < all.size(); ++i)
        if (before.rights[i] != after.rights[i])
            rights.SetRight(all[i].key, after.rights[i] ? rightGranted : rightRefused);
    if (before.rights != after.rights && !rights.SaveRights())
        Refused("The rights of " + after.name + " were not stored.");
}

} // namespace

UserTree FindUserTree(const platform::Workstation& workstation, const Store& store) {
    UserTree place;
    const auto kept = ReadSetting(workstation, store.Connection(), section, treeKey);
    if (!kept) return place;
    const auto tree = static_cast<std::int32_t>(platform::Val(*kept));
    const auto top = store.Read("Select TopItemId from tblTree where TreeId = " + Number(tree));
    if (tree <= 0 || top->Eof()) return place;
    const auto root = data::ToInt32(top->Get(0));
    const auto rows =
        store.Read("Select TreeItemId, Type from tblTreeItem where ParentId = " + Number(root) +
                   " order by TreeItemId");
    for (; !rows->Eof(); rows->MoveNext())
        if (platform::EqualAsciiNoCase(TrimmedText(rows->Get(1)), itemTypes::users)) {
            place = {tree, root, data::ToInt32(rows->Get(0))};
            break;
        }
    return place;
}

UserTree MakeUserTree(const platform::Workstation& workstation, const Store& store,
                      std::string_view description) {
    HoldSettings(store); // another makes one too
    if (const auto there = FindUserTree(workstation, store); there.tree != 0) return there;
    clsTree tree(workstation);
    tree.SetDbConnection(store.Connection());
    tree.SetDescription(description);
    if (!tree.CreateNew()) Refused("The users have no place.");
    const auto root = tree.Item()->Id();
    const auto users = tree.AddChildItem(0, itemTypes::users, nullptr, 0, description, root);
    data::clsSettings settings(workstation);
    settings.SetDbConnection(store.Connection());
    settings.SetSetting(section, treeKey, Number(tree.TreeId()));
    if (!users || !settings.Failure().empty()) Refused("The users have no place.");
    return {tree.TreeId(), root, users->Id()};
}

std::vector<RightsHolder> LoadHolders(const platform::Workstation& workstation,
                                      const Store& store) {
    const auto place = FindUserTree(workstation, store);
    std::vector<RightsHolder> holders;
    if (place.tree == 0) return holders;
    ReadGroup(store, place.users, 0, holders);
    const auto rights = ReadRights(workstation, store.Connection());
    for (auto& holder : holders)
        if (const auto known = rights.find(KeyOf(holder)); known != rights.end())
            holder.rights = known->second;
    return holders;
}

bool IsWithin(std::span<const RightsHolder> holders, NodeId id, NodeId group) {
    for (auto left = holders.size() + 1; left > 0 && id != 0; --left) { // a ring has no end
        if (id == group) return true;
        const auto at = std::find_if(holders.begin(), holders.end(),
                                     [&](const RightsHolder& holder) { return holder.id == id; });
        id = at == holders.end() ? 0 : at->group;
    }
    return false;
}

bool SomebodyAdministers(std::span<const RightsHolder> holders) {
    return std::any_of(holders.begin(), holders.end(), [](const RightsHolder& holder) {
        return !holder.isGroup && Administers(holder.rights);
    });
}

bool AnAdministratorIsLeft(const platform::Workstation& workstation,
                           const data::ConnectionPtr& connection,
                           const std::vector<std::string>& besides) {
    auto rights = ReadRights(workstation, connection);
    for (const auto& name : besides) rights.erase(platform::LowerCase(RightsSection(name)));
    // Nobody logs on as a group.
    for (const auto& holder : LoadHolders(workstation, Store(connection)))
        if (holder.isGroup) rights.erase(KeyOf(holder));
    return std::any_of(rights.begin(), rights.end(),
                       [](const auto& one) { return Administers(one.second); });
}

std::optional<RightSet> KeptRights(const platform::Workstation& workstation, const Store& store,
                                   std::string_view name) {
    clsUserAuth rights(workstation);
    rights.SetDbConnection(store.Connection());
    rights.SetUserId(name);
    if (!rights.LoadRights()) Refused("The rights of " + std::string(name) + " were not read.");
    std::string key, value;
    if (!rights.GetFirstRight(key, value)) return std::nullopt;
    RightSet kept;
    const auto all = Rights();
    for (std::size_t i = 0; i < all.size(); ++i)
        kept[i] = platform::EqualNoCase(rights.GetRight(all[i].key), rightGranted);
    return kept;
}

bool CanHoldRights(std::string_view name) {
    return !platform::TrimView(name).empty() && RightsSection(name).size() <= 255;
}

NodeId AddHolder(const platform::Workstation& workstation, const Store& store,
                 const UserTree& place, const RightsHolder& holder) {
    NodeId id = 0;
    clsItemCol(workstation)
        .AddItem(id, holder.isGroup ? itemTypes::userGroup : itemTypes::user, nullptr, 0,
                 holder.name, store.Connection(), holder.group > 0 ? holder.group : place.users);
    RightsHolder before = holder;
    before.rights = KeptRights(workstation, store, holder.name).value_or(RightSet());
    SaveRights(workstation, store, before, holder);
    return id;
}

void ChangeHolder(const platform::Workstation& workstation, const Store& store,
                  const UserTree& place, const RightsHolder& before, const RightsHolder& after) {
    HoldNode(store, before.id);
    if (before.name != after.name)
        store.Write("Update tblTreeItem set Description = " + data::SqlValue(after.name) +
                    " where TreeItemId = " + Number(before.id) + " or (ParentId = " +
                    Number(place.root) + " and ItemId = " + Number(before.id) + ")"); // his post's
    if (before.group != after.group) {
        const auto parent = after.group > 0 ? after.group : place.users;
        HoldNode(store, parent);
        store.Write("Update tbltreeitem set ParentId = " + Number(parent) +
                    " Where TreeItemId = " + Number(before.id));
    }
    SaveRights(workstation, store, before, after);
}

void RemoveHolder(const Store& store, NodeId id) {
    DeleteSubtree(store, id, [](NodeId) {});
}

void RemoveRights(const platform::Workstation& workstation, const Store& store,
                  std::string_view name) {
    clsUserAuth rights(workstation);
    rights.SetDbConnection(store.Connection());
    rights.SetUserId(name);
    if (!rights.DeleteRights())
        Refused("The rights of " + std::string(name) + " were not deleted.");
}

void MoveRights(const platform::Workstation& workstation, const Store& store, std::string_view from,
                std::string_view to) {
    clsUserAuth rights(workstation);
    rights.SetDbConnection(store.Connection());
    if (!rights.RenameUser(from, to))
        Refused("The rights of " + std::string(from) + " were not renamed.");
}

} // namespace kavidex::model
