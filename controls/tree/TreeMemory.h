// What the tree remembers of what the user did, for what comes of it later.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kavidex::model {
class clsItem;
}

namespace kavidex::controls {

using ItemPtr = std::shared_ptr<model::clsItem>;

// What the user cut or copied here, for whatever tree of this thread pastes it.
struct Taken {
    std::string token;             // on the clipboard too: what others put there ends it
    bool cut = false;              // else copied
    std::vector<std::int32_t> ids; // what was selected, as long as it is here
    struct Item {
        ItemPtr item;
        std::int32_t parent; // 0 for what was selected itself
    };
    std::vector<Item> items; // and all that was below, parents first
};
// What the user deleted at once: the items themselves, and of each all that went with it.
struct Deleted {
    std::int32_t id;
    std::string description;
    std::vector<std::int32_t> taken;
};
using Deletion = std::vector<Deleted>;

} // namespace kavidex::controls
