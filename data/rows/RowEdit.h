// Writes one row of a result back to its base table, by key and old values.
#pragma once

#include <optional>
#include <vector>

#include "data/rows/RowSource.h"

namespace kavidex::data {

// One entry a field; those without a value are unchanged. Empty: nothing is pending.
using RowChanges = std::vector<std::optional<Value>>;

// `value` in the form that a field of this type holds: "12" in an Integer field becomes 12.
// Throws errors::invalidArgument where it has no such form, or a text is longer than the field.
Value Coerced(const Field& field, Value value);

// The first two answer the row as it is afterwards; a new one is read back for what the database
// gave it (auto number, defaults). Throw errors::rowChanged when the
// row was changed or removed meanwhile, errors::featureNotAvailable when the fields do not tell
// which row of which table is meant.
std::vector<Value> InsertRow(RowSource& source, const std::vector<Field>& fields,
                             const RowChanges& changes);
std::vector<Value> UpdateRow(RowSource& source, const std::vector<Field>& fields,
                             const std::vector<Value>& old, const RowChanges& changes);
void DeleteRow(RowSource& source, const std::vector<Field>& fields, const std::vector<Value>& old);

} // namespace kavidex::data
