// What a ClientRecordset needs of an engine: the rows again, and single statements that write one
// row. The recordset composes the statements; the engine quotes names and runs them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/Recordset.h"
#include "data/rows/RowStore.h"

namespace kavidex::data {

using FieldsPtr = std::shared_ptr<const std::vector<Field>>;

struct ResultRows {
    FieldsPtr fields; // null: the statement has no rows
    RowStore rows;
};

// All throw data::Error; after the connection's Close errors::objectClosed.
class RowSource {
public:
    virtual ~RowSource() = default;

    // Runs the statement of the recordset again.
    virtual ResultRows Fetch() = 0;
    // Why the keys of the rows are not known, where asking for them failed; else empty.
    virtual std::string KeyTrouble() const { return {}; }

    // A table or column name as it stands in a statement of this engine.
    virtual std::string Quoted(std::string_view name) const = 0;
    // The condition, with one ? for a value that is not null, under which a column still holds that
    // value to the letter; empty when the engine cannot compare such a column.
    virtual std::string SameAs(const Field& field) const = 0;

    // Runs a statement with one value for each ?; answers the rows touched.
    virtual std::int64_t Run(const std::string& statement, const std::vector<Value>& values) = 0;
    // Reads with one value for each ?.
    virtual ResultRows Read(const std::string& statement, const std::vector<Value>& values) = 0;
    // The auto number that the last insert of this connection was given.
    virtual std::int64_t NewIdentity() = 0;
};

} // namespace kavidex::data
