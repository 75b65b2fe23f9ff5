// The documents of a folder as the database tells them: one statement in each dialect, with the
// same thirteen columns in the same formats.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "controls/lists/ListRows.h"
#include "controls/lists/VirtualList.h"
#include "data/Connection.h"

namespace kavidex::controls {

// The columns of the list in the order of the statement's, the hidden ones included.
std::span<const ListColumn> DocumentListColumns();

// In the connection's dialect.
std::string DocumentListStatement(const data::ConnectionPtr& connection, std::int32_t folder);

// Throws data::Error, also without a connection.
std::unique_ptr<ListRows> OpenDocumentList(const data::ConnectionPtr& connection,
                                           std::int32_t folder);

} // namespace kavidex::controls
