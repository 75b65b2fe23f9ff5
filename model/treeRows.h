// The rows of a tree as the database has them now, which is not always as this process loaded them:
// others change the same dossier.
#pragma once

#include <functional>
#include <span>
#include <vector>

#include "model/Store.h"
#include "model/clsItem.h"

namespace kavidex::model {

// Whether there is a row of that working id: of a living node, or of a deleted one where it is
// negative.
bool HasRow(const Store& store, NodeId id);

// For use within a transaction: throws platform::Error unless the node's row lives (one that is
// shown although it was deleted has a negative id, and does not), and keeps
// others from deleting it until the transaction ends.
void HoldNode(const Store& store, NodeId id);

// Whether `node` is `top` or hangs somewhere below it.
bool LiesWithin(const Store& store, NodeId node, NodeId top);

// Soft-deletes the node with all that hangs below it, children first. `step` is called with each
// node before it goes. The ids of those that lived until now.
std::vector<NodeId> DeleteSubtree(const Store& store, NodeId top,
                                  const std::function<void(NodeId)>& step);

// Where a deleted node is put back; ids are those from before the deletion.
struct WayBack {
    bool lives = false;          // it is there already, and is its own `parent` here
    std::vector<NodeId> folders; // deleted themselves, and needed around it; the outermost first
    NodeId parent = 0;           // lives, and takes the first of them; 0: they begin at the root
    bool atRoot = false;         // what it hung from has no row any more: `parent` is the root
};

// To be asked before the transaction begins, since a transaction shows rows as at its first read.
// Throws platform::Error when the node has no row at all.
WayBack FindWayBack(const Store& store, NodeId node, NodeId root);

// The opposite of DeleteSubtree, within a transaction: the folders of the way, without their other
// contents, then the node with all that was deleted below it, parents first; of that only `those`
// unless it is empty. False, and nothing written, when the rows do not stand as the way tells.
bool RestoreSubtree(const Store& store, NodeId node, const WayBack& way,
                    std::span<const NodeId> those, const std::function<void(NodeId)>& step);

} // namespace kavidex::model
