// The tree's list mode, `Grid`: the documents of the dossier as rows of a list.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "controls/lists/DocumentRows.h"
#include "controls/lists/VirtualList.h"

namespace kavidex::model {
class clsItem;
}

namespace kavidex::controls {

std::span<const ListColumn> GridColumns();

// The documents among the items; who added them and when is read from the database.
std::unique_ptr<ListRows> GridRows(const platform::Workstation& workstation,
                                   const data::ConnectionPtr& connection,
                                   const std::vector<std::shared_ptr<model::clsItem>>& items);

} // namespace kavidex::controls
