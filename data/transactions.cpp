#include "data/transactions.h"

#include "data/Error.h"

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

} // namespace kavidex::data
