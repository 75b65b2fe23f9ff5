// The model's way to the database: the statement helpers' texts, with failures that are told.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "data/Connection.h"

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
    void Write(std::string_view statement) const;
    const data::ConnectionPtr& Connection() const { return lclConnection; }

private:
    data::ConnectionPtr lclConnection;
    bool lclMySql;
};

// Rolled back unless committed. On an engine without transactions it does nothing, which is the
// only reason to go on without one: a begin that fails otherwise throws. What fails is logged.
class Transaction {
public:
    Transaction(const Store& store, const platform::Workstation& workstation);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void Commit();
    void RollBack() noexcept; // nothing once it is committed

private:
    const platform::Workstation& lclWorkstation;
    data::ConnectionPtr lclConnection; // null when there is nothing to end
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

std::string NewGuid(const platform::Workstation& workstation); // throws platform::Error

std::string Number(std::int64_t number); // decimal text
std::string_view Word(bool flag);        // "True" or "False"
std::string TrimmedText(const data::Value& value);

} // namespace kavidex::model
