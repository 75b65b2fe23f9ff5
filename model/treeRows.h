// The rows of a tree as the database has them now, which is not always as this process loaded them:
// others change the same dossier.
#pragma once

#include <functional>

#include "model/Store.h"
#include "model/clsItem.h"

namespace kavidex::model {

// For use within a transaction: throws platform::Error unless the node's row lives, and keeps
// others from deleting it until the transaction ends. It writes before it reads, since an engine
// that shows a transaction the rows of its first read would show a row that was deleted meanwhile.
void HoldNode(const Store& store, NodeId id);

// Whether `node` is `top` or hangs somewhere below it.
bool LiesWithin(const Store& store, NodeId node, NodeId top);

// Soft-deletes the node with all that hangs below it, children first. `step` is called before each.
void DeleteSubtree(const Store& store, NodeId top, const std::function<void()>& step);

} // namespace kavidex::model
