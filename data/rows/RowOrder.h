// The Sort and Filter of a recordset: small languages over rows in memory.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "data/Recordset.h"
#include "data/rows/RowStore.h"

namespace kavidex::data {

// Nulls first, numbers by value, texts without case.
int CompareCells(const RowStore& rows, const RowStore::Cell& a, const RowStore::Cell& b);

// Sorts row numbers by "[Name] ASC, Other DESC", keeping the order of equal rows. Throws
// errors::itemNotFound for an unknown field, errors::invalidArgument for a malformed text.
void SortRows(std::string_view order, const std::vector<Field>& fields, const RowStore& rows,
              std::vector<std::uint32_t>& view);

// Tells whether a row of the store is shown.
using RowTest = std::function<bool(std::size_t row)>;

// A test of "Name = 'x' and (Id > 3 or Kind like 'a*')" over rows that must outlive it. Operators
// = <> < > <= >= like, and, or, not, parentheses; values are numbers, 'texts', #dates#, True, False
// and null. Throws errors::itemNotFound or errors::invalidArgument.
RowTest ParseFilter(std::string_view criteria, const std::vector<Field>& fields,
                    const RowStore& rows);

} // namespace kavidex::data
