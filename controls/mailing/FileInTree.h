// A sent mail filed by the tree control alone, for where no binder control is around it.
#pragma once

#include <cstdint>
#include <string>

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls {

class ctrlTree;

// Into that folder of the tree. The user is told what goes wrong.
void FileInTree(const platform::Workstation& workstation, ctrlTree& tree, const std::string& mail,
                std::int32_t folder);

} // namespace kavidex::controls
