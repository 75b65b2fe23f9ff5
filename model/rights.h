// The rights that guard the actions, in the order and groups in which they are shown.
#pragma once

#include <span>
#include <string_view>

namespace kavidex::model {

struct RightGroup {
    std::string_view topKey, caption;
};

struct Right {
    std::string_view key, caption;
    std::string_view topKey; // its group
};

std::span<const RightGroup> RightGroups(); // three
std::span<const Right> Rights();           // twenty-six, group after group
const Right* FindRight(std::string_view key);

} // namespace kavidex::model
