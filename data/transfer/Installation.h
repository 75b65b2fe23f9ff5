// What a database holds of the system: its tables, their columns and how full they are.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/Connection.h"
#include "data/schema/schema.h"

namespace kavidex::data::transfer {

// A table of the system as this database has it; names as the system writes them.
struct InstalledTable {
    std::string_view name, key;
    std::string_view ownId; // the column of the working id, empty where there is none
    std::vector<std::string> columns;
    bool HasColumn(std::string_view column) const; // without case
};

class Installation {
public:
    // Reads the database's description; throws data::Error, also for a server whose dialect the
    // system does not speak.
    explicit Installation(ConnectionPtr connection);
    void Refresh();

    const ConnectionPtr& Connection() const { return lclConnection; }
    schema::Dialect Speaks() const { return lclDialect; }
    std::string Quoted(std::string_view name) const;

    // The settings are the last of them.
    const std::vector<InstalledTable>& Tables() const { return lclTables; }
    const InstalledTable* Find(std::string_view name) const;
    const std::vector<std::string>& Foreign() const { return lclForeign; } // tables of others
    bool HasTransferTable() const { return lclTransfer; }

    std::string Version() const; // empty: none is recorded
    std::int64_t Count(std::string_view table, std::string_view where = {}) const;
    // Tables with rows that a new database does not have, each with its number of them.
    std::vector<std::string> Filled() const;
    // The look-ups that have no index here.
    std::vector<schema::LookupIndex> MissingIndexes() const;

    // The first value of the first row; throws when there is none.
    std::int64_t Number(const std::string& statement) const;

private:
    ConnectionPtr lclConnection;
    schema::Dialect lclDialect;
    std::vector<InstalledTable> lclTables;
    std::vector<std::string> lclForeign;
    bool lclTransfer = false;
};

// The table that a database has while a copy into it is under way.
inline constexpr std::string_view transferTable = "tblTransfer";

std::string CreateIndex(const schema::LookupIndex& index);

} // namespace kavidex::data::transfer
