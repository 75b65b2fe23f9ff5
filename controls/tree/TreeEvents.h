// What the events of the tree control carry.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kavidex::controls {

// Numbers of the OLE drop effects and key states.
namespace drop {
constexpr std::int32_t none = 0, copy = 1, move = 2;
}

struct TreeItemInfo {
    std::string description, type;
    std::int32_t id = 0;      // of the tree item
    std::string nodeFullPath; // descriptions from the root on, joined by backslashes
    std::int32_t itemId = 0;  // of the object that the item stands for
};

// What was dropped: text is clipboard format 1, files format 15.
struct DropData {
    bool hasText = false, hasFiles = false;
    std::string text;
    std::vector<std::string> files; // full paths
};

struct DropEvent {
    const DropData& data;
    std::int32_t& effect;  // what the host makes of it, for the source
    std::int32_t targetId; // the folder that takes it: under the cursor, around the document there,
                           // or the root; 0 while there is no tree
    bool fromMail;         // counts as mail dragged from the mail program
};

enum class DragState : std::int32_t { Enter = 0, Leave = 1, Over = 2 };

} // namespace kavidex::controls
