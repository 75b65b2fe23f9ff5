// Searching and printing the rows of any recordset.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "data/Recordset.h"

namespace kavidex::data {

enum class Direction { Forward, Backward };

// Goes to the first row that meets the criteria of a filter, from the current row on after `skip`
// rows; to EOF, or backward to BOF, when there is none. Throws errors::badEof without a current
// row, and as a filter does for criteria that it does not understand.
void FindRow(Recordset& rows, std::string_view criteria, std::int64_t skip = 0,
             Direction direction = Direction::Forward);

struct TextForm {
    std::string column = "\t"; // between the values of a row
    std::string row = "\r";    // after each row
    std::string null;          // in place of a missing value
};

// The rows from the current one on, `count` at most (below 0: all), and the recordset behind them.
// Throws errors::badEof without a current row.
std::string RowsAsText(Recordset& rows, std::int64_t count = -1, const TextForm& form = {});

} // namespace kavidex::data
