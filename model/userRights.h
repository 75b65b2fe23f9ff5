// The users and groups of an installation with their rights, as an administrator changes them: a
// tree of its own, named by the setting "Rights"/"UserTree".
#pragma once

#include <bitset>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/Store.h"
#include "model/clsItem.h"
#include "model/rights.h"

namespace kavidex::model {

using RightSet = std::bitset<26>; // in the order of Rights()

struct RightsHolder {
    NodeId id = 0;    // below 0: not stored yet
    NodeId group = 0; // that it is in; 0: none
    bool isGroup = false;
    std::string name;
    RightSet rights;
    bool operator==(const RightsHolder&) const = default;
};

struct UserTree {
    std::int32_t tree = 0;      // 0: there is none yet
    NodeId root = 0, users = 0; // `users` holds groups and users
};

// What the setting names, made where there is none (then within a transaction).
UserTree FindUserTree(const platform::Workstation& workstation, const Store& store);
UserTree MakeUserTree(const platform::Workstation& workstation, const Store& store,
                      std::string_view description);

// Each group before what it holds: the groups in it, then its users, each by name.
std::vector<RightsHolder> LoadHolders(const platform::Workstation& workstation, const Store& store);
// Whether it is that group, or in it through whatever groups.
bool IsWithin(std::span<const RightsHolder> holders, NodeId id, NodeId group);

// Whether some user may see rights and change them; otherwise nobody can undo what is changed.
bool SomebodyAdministers(std::span<const RightsHolder> holders);
// The same of all that have rights in this database, known to the tree or not; `besides` do not
// count.
bool AnAdministratorIsLeft(const platform::Workstation& workstation,
                           const data::ConnectionPtr& connection,
                           const std::vector<std::string>& besides = {});
// The rights kept under a name, known to the tree or not; none: there is no row. Throws
// data::Error.
std::optional<RightSet> KeptRights(const platform::Workstation& workstation, const Store& store,
                                   std::string_view name);

// Whether rights can be kept under the name: not empty, and not too long once it is written.
bool CanHoldRights(std::string_view name);

// Within a transaction, after HoldNode of the tree. Each throws data::Error when refused.
// Of the rights kept under the name those that differ are changed.
NodeId AddHolder(const platform::Workstation& workstation, const Store& store,
                 const UserTree& place, const RightsHolder& holder);
// Its name, its group, and the rights that differ; rights kept under the old name stay there.
void ChangeHolder(const platform::Workstation& workstation, const Store& store,
                  const UserTree& place, const RightsHolder& before, const RightsHolder& after);
void RemoveHolder(const Store& store, NodeId id); // of a group with all its users
void RemoveRights(const platform::Workstation& workstation, const Store& store,
                  std::string_view name);
void MoveRights(const platform::Workstation& workstation, const Store& store, std::string_view from,
                std::string_view to);

} // namespace kavidex::model
