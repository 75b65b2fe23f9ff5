// The rows of one table, as both ends of a copy see them: read in the order of their key, block by
// block, put into one form whatever engine they come from, summed, and written.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "data/transfer/Installation.h"

namespace kavidex::data::transfer {

// The columns that are copied, the key first, and which of them are yes or no at either end.
struct RowShape {
    std::string table;
    std::vector<std::string> columns;
    std::vector<bool> flags;
    std::vector<AdoType> types; // at the target
};
RowShape ShapeOf(const InstalledTable& table, const Installation& from, const Installation& to);

class OrderedRows {
public:
    // From the first key, or from behind `after`.
    OrderedRows(const Installation& database, const RowShape& shape, int block,
                std::optional<std::int64_t> after = {});
    // The next row; false behind the last one.
    bool Next();
    std::int64_t Key() const { return lclKey; }
    // Without the blanks that fill a column, yes and no as such and never null.
    const std::vector<Value>& Row() const { return lclRow; }
    std::uint64_t Sum() const; // of the row

private:
    const Installation& lclDatabase;
    const RowShape& lclShape;
    int lclBlock;
    std::optional<std::int64_t> lclAfter;
    RecordsetPtr lclRows;
    std::int64_t lclKey = 0;
    std::vector<Value> lclRow;
};

// Inserts rows with the keys that they have.
class RowWriter {
public:
    RowWriter(const Installation& database, const RowShape& shape);
    ~RowWriter();
    RowWriter(const RowWriter&) = delete;
    RowWriter& operator=(const RowWriter&) = delete;

    void Add(const std::vector<Value>& row);
    void Flush(); // what was added is in the database after it

private:
    const Installation& lclDatabase;
    const RowShape& lclShape;
    std::string lclHead; // up to the values
    std::size_t lclMost; // rows that one statement takes
    std::size_t lclBytes = 0;
    std::vector<Parameter> lclPending;
};

} // namespace kavidex::data::transfer
