#include "data/transactions.h"

#include <string>
#include <utility>

#include "data/Error.h"
#include "data/logText.h"
#include "platform/BusyDialog.h"
#include "platform/Log.h"
#include "platform/Workstation.h"

namespace kavidex::data {

bool HasTransactions(const ConnectionPtr& connection) {
    if (!connection) return false;
    try {
        return ToInt64(connection->Property("Transaction DDL")) != 0;
    } catch (const platform::Error& error) {
        return error.Number() != errors::itemNotFound;
    } catch (const std::exception&) {
        return true;
    }
}

Transaction::Transaction(ConnectionPtr connection, const platform::Workstation& workstation)
    : lclWorkstation(workstation) {
    try {
        connection->BeginTrans();
    } catch (const std::exception& error) {
        lclWorkstation.log.Write("Transaction", "Not begun: " + InLog(error));
        // Each statement stands for itself where there are none.
        if (HasTransactions(connection)) throw;
        return;
    }
    lclConnection = std::move(connection);
    lclPaintOnly = std::make_unique<platform::PaintOnly>(lclWorkstation.busy);
}

Transaction::~Transaction() { RollBack(); }

void Transaction::Left() {
    lclConnection = nullptr;
    lclPaintOnly.reset();
}

void Transaction::RollBack() noexcept {
    if (!lclConnection) return;
    try {
        lclConnection->RollbackTrans();
    } catch (const std::exception& error) {
        // Mostly the connection is gone, and what it had not committed with it.
        lclWorkstation.log.Write("Transaction", "Not rolled back: " + InLog(error));
    }
    Left();
}

void Transaction::Commit() {
    if (!lclConnection) return;
    lclConnection->CommitTrans();
    Left();
}

} // namespace kavidex::data
