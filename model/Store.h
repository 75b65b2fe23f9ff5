// The model's way to the database: the statement helpers' texts, with failures that are told.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "data/Connection.h"
#include "data/transactions.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::model {

// Statements reach the engine exactly as through OpenRecordset and ExecuteSql (on MySQL a
// backslash doubled in reads, twice doubled in writes), but what fails throws data::Error.
class Store {
public:
    explicit Store(data::ConnectionPtr connection); // throws data::Error without a connection

    data::RecordsetPtr Read(std::string_view statement) const; // always open
    // The rows as others have left them by now. Where a plain read shows a transaction the rows of
    // its first read (MySQL, MariaDB), this is a locking one.
    data::RecordsetPtr ReadNow(std::string_view statement) const;
    std::int64_t Write(std::string_view statement) const; // the rows touched, -1 where not told
    const data::ConnectionPtr& Connection() const { return lclConnection; }

private:
    data::ConnectionPtr lclConnection;
    bool lclMySql;
};

class Transaction : public data::Transaction {
public:
    Transaction(const Store& store, const platform::Workstation& workstation)
        : data::Transaction(store.Connection(), workstation) {}
};

// The way every row is made: an insert that carries a fresh guid, then the row found again by it,
// its key read and its other columns filled by `complete`, all or nothing. Returns the key.
struct NewRow {
    std::string insert, find;
    std::string_view keyColumn = "Id";
};
std::int32_t InsertRow(const platform::Workstation& workstation, const Store& store,
                       const NewRow& row,
                       const std::function<void(data::Recordset&, std::int32_t key)>& complete);

void SetNumber(data::Recordset& row, std::string_view column, std::int64_t number);

// An installation's setting, read through the settings store; none when there is no such row.
// Throws data::Error when it could not be read, which the settings store takes for "none".
std::optional<std::string> ReadSetting(const platform::Workstation& workstation,
                                       const data::ConnectionPtr& connection,
                                       std::string_view section, std::string_view key);

// For use within a transaction: others who hold the settings as well wait until it ends. To be
// asked before anything is read that the transaction depends on.
void HoldSettings(const Store& store);

std::string NewGuid(const platform::Workstation& workstation); // throws platform::Error

// What a text reads as once it was written: on MySQL with two backslashes for each.
std::string AsWritten(const data::ConnectionPtr& connection, std::string_view text);

// The opposite. What was written another way (a database moved from elsewhere) stays as it is.
std::string AsTyped(const data::ConnectionPtr& connection, std::string_view text);

std::string Number(std::int64_t number); // decimal text
std::string_view Word(bool flag);        // "True" or "False"
std::string TrimmedText(const data::Value& value);

} // namespace kavidex::model
