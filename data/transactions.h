// Transactions, and what tells an engine without them from a begin that failed.
#pragma once

#include <memory>

#include "data/Connection.h"

namespace kavidex::platform {
class PaintOnly;
struct Workstation;
} // namespace kavidex::platform

namespace kavidex::data {

// ADO's own test: a connection without transactions has no property "Transaction DDL", or answers 0
// to it. True also where the question fails: work goes on without a transaction only where it is
// known that there is none. False without a connection.
bool HasTransactions(const ConnectionPtr& connection);

// Rolled back unless committed. On an engine without transactions it does nothing, which is the
// only reason to go on without one: a begin that fails otherwise throws. What fails is logged.
// While it is open the message loop paints and does nothing else.
class Transaction {
public:
    Transaction(ConnectionPtr connection, const platform::Workstation& workstation);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void Commit();
    void RollBack() noexcept; // nothing once it is committed

private:
    void Left(); // ended, one way or the other

    const platform::Workstation& lclWorkstation;
    ConnectionPtr lclConnection; // null when there is nothing to end
    std::unique_ptr<platform::PaintOnly> lclPaintOnly;
};

} // namespace kavidex::data
