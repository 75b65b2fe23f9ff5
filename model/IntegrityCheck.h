// Does what the database says about documents and trees agree with itself and with the store? Only
// reads.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "data/Connection.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::model {

enum class Fault {
    DocumentWithoutFile,
    DocumentOutOfStore,  // its date or type leads elsewhere
    FileWithoutDocument, // also what an interrupted copy left behind
    ItemWithoutDocument,
    DocumentWithoutItem,
    ExtraInfoWithoutDocument,
    ItemWithoutParent, // the parent is missing or deleted
    ItemOutOfReach,    // a root that is no tree's, or a node that is its own ancestor
    TreeWithoutRoot,
    TreeWithoutDossier, // no relation row names the tree
    RelationWithoutTree,
    RelationWithoutKey,  // its dossier number has no key row
    IdsOutOfPair,        // a working id that is not the row's key or its negative, or a parent
                         // whose sign does not go with it
    RowWithoutWorkingId, // an insert that was cut off
    DuplicateWorkingId,
};

std::string_view FaultName(Fault fault); // "document without file"

struct Finding {
    Fault fault;
    std::int64_t id = 0; // the row's key; 0 for a file
    std::string detail;  // what and where, for a person
};

// `storeRoot` empty: the installation's store (setting "Storage"/"DocumentPath"). Throws
// platform::Error when the database or the store cannot be read: a store that is not there says
// nothing about its files.
std::vector<Finding> CheckIntegrity(const platform::Workstation& workstation,
                                    const data::ConnectionPtr& connection,
                                    std::string_view storeRoot = {});

} // namespace kavidex::model
