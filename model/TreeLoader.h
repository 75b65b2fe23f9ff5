// Reads the children of a node and all below them, one statement a folder.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "data/Texts.h"
#include "model/LongWork.h"
#include "model/Store.h"
#include "model/clsItemCol.h"

namespace kavidex::model {

class clsTree;

// A folder met a second time, as in a tree whose node is its own ancestor, is left out and logged.
// What the database refuses is shown and logged; the rest of the tree is read.
class TreeLoader {
public:
    // `tree` is let alone by others until it is loaded.
    TreeLoader(const clsTree& tree, const platform::Workstation& workstation,
               const data::ConnectionPtr& connection, bool orderByName,
               data::Translation translation);

    clsItemColPtr Load(NodeId parentId); // null without children

private:
    clsItemColPtr ReadChildren(NodeId parentId);
    void AddRows(data::Recordset& rows, clsItemCol& children);
    std::string Statement(NodeId parentId) const;
    void Report(const std::exception& error);

    const platform::Workstation& lclWorkstation;
    const Store lclStore;
    const data::Translation lclTranslation;
    const bool lclOrderByName, lclShowDeleted;
    LongWork lclWork;
    std::unordered_set<NodeId> lclFolders; // met so far
    std::vector<clsItem*> lclToRead;       // folders whose children are to be read, next one last
    std::vector<std::string> lclShown;     // messages, each shown once a load
};

} // namespace kavidex::model
