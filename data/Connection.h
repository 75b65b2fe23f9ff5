// The one open database connection of a binder control, shaped like ADO's.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/Recordset.h"

namespace kavidex::data {

enum class CommandType { Text = 1, StoredProcedure = 4 };

struct Parameter {
    std::string name;
    AdoType type = AdoType::Char;
    int direction = 1; // 1 input
    std::int64_t size = 0;
    Value value;
};

struct Command {
    std::string text;
    CommandType type = CommandType::Text;
    std::vector<Parameter> parameters = {};
};

struct ErrorDetail {
    std::int32_t number = 0;
    std::string description;
    std::string source;
};

enum class Schema { Columns = 4, Indexes = 12, Procedures = 16, Tables = 20 }; // ADO's SchemaEnum

// Every failing call throws data::Error with the statement, and leaves the details in Errors().
class Connection {
public:
    virtual ~Connection() = default;

    // Whether both work through one object: closing one closes the other.
    virtual bool SameAs(const Connection& other) const { return this == &other; }
    virtual bool IsOpen() const = 0;
    virtual void Close() = 0;

    // A client-side, static, optimistic recordset; a closed one when the statement has no rows.
    virtual RecordsetPtr Open(const Command& command) = 0;
    // For statements without rows; the number of rows touched, -1 when the engine does not say.
    virtual std::int64_t Execute(std::string_view statement) = 0;

    // A provider property such as "DBMS Name"; throws errors::itemNotFound for an unknown name.
    virtual Value Property(std::string_view name) const = 0;
    virtual std::string DefaultDatabase() const = 0;
    // Rows as ADO's schema rowsets have them (Tables: TABLE_CATALOG, TABLE_SCHEMA, TABLE_NAME,
    // TABLE_TYPE, ...). An engine without procedures throws errors::featureNotAvailable for them.
    virtual RecordsetPtr OpenSchema(Schema schema) = 0;
    virtual std::vector<ErrorDetail> Errors() const = 0;

    // Nested calls count levels; only the outermost pair works on the database.
    virtual void BeginTrans() = 0;
    virtual void CommitTrans() = 0;
    virtual void RollbackTrans() = 0;
};

// Shared by everything that works on one dossier; whoever opened it closes it.
using ConnectionPtr = std::shared_ptr<Connection>;

} // namespace kavidex::data
