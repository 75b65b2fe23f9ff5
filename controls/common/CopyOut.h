// Copying documents out of the store under the names that users know them by.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "controls/common/OperationLock.h"
#include "data/Connection.h"
#include "data/Texts.h"

namespace kavidex::model {
class clsItem;
}

namespace kavidex::controls {

struct CopiedOut {
    std::vector<std::string> files; // full paths of the copies
    std::int32_t failures = 0;      // documents left out; each is a line in the log
};

// Folders and notes in which nothing was written have no file. The busy dialog lets the user stop:
// what was copied by then stays. Throws platform::Error while another operation runs.
CopiedOut CopyOut(const platform::Workstation& workstation, const data::ConnectionPtr& connection,
                  OperationLock& lock, const data::Translation& translation,
                  std::span<const std::shared_ptr<model::clsItem>> items, std::string_view folder);

// A fresh folder for such copies among the user's temporary files. Throws platform::Error.
std::string MakeCopyFolder(const platform::Workstation& workstation);

} // namespace kavidex::controls
