// The tree's list mode, `Grid`: the documents of the dossier as rows of a list.
#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "controls/lists/DocumentRows.h"
#include "controls/lists/VirtualList.h"

namespace kavidex::model {
class clsItem;
}

namespace kavidex::controls {

class TreeGrid {
public:
    explicit TreeGrid(const platform::Workstation& workstation);

    VirtualList& List() { return lclList; }
    const VirtualList& List() const { return lclList; }

    // The documents among the items take the place of the rows before. Who added a document and
    // when is read once; false when that failed for some, whose columns stay empty.
    bool Show(const data::ConnectionPtr& connection,
              const std::vector<std::shared_ptr<model::clsItem>>& items);
    void Forget(); // what was read: the database may say something else by now

private:
    const platform::Workstation& lclWorkstation;
    VirtualList lclList;
    std::unordered_map<std::int32_t, DocumentRow> lclRead; // by document
};

} // namespace kavidex::controls
