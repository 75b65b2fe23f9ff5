// What the events of the tree control carry.
#pragma once

#include <cstdint>
#include <string>

#include "controls/exchange/DragDrop.h"

namespace kavidex::controls {

struct TreeItemInfo {
    std::string description, type;
    std::int32_t id = 0;      // of the tree item
    std::string nodeFullPath; // descriptions from the root on, joined by backslashes
    std::int32_t itemId = 0;  // of the object that the item stands for
};

struct DropEvent {
    const DropData& data;
    std::int32_t& effect;  // what the host makes of it, for the source
    std::int32_t targetId; // the folder that takes it: under the cursor, around the document there,
                           // or the root; 0 while there is no tree
    bool fromMail;         // counts as mail dragged from the mail program
};

} // namespace kavidex::controls
