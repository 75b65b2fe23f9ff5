// What tells an engine without transactions from a begin that failed.
#pragma once

#include "data/Connection.h"

namespace kavidex::data {

// ADO's own test: a connection without transactions has no property "Transaction DDL", or answers 0
// to it. True also where the question fails: work goes on without a transaction only where it is
// known that there is none. False without a connection.
bool HasTransactions(const ConnectionPtr& connection);

} // namespace kavidex::data
