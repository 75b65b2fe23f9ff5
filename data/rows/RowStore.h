// Rows of one result in two flat blocks: fixed cells, and the bytes of all texts behind them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "data/Value.h"

namespace kavidex::data {

class RowStore {
public:
    enum class Kind : std::uint32_t { Null, Bool, Integer, Double, Text, Binary };

    struct Cell {
        Kind kind = Kind::Null;
        std::uint32_t size = 0; // bytes of a text
        union {
            std::int64_t integer;
            double number;
            std::size_t offset; // of a text, in the bytes
        };
        Cell() : integer(0) {}
    };

    RowStore() = default;
    explicit RowStore(std::size_t columns) : lclColumns(columns) {}

    std::size_t Columns() const { return lclColumns; }
    std::size_t Rows() const { return lclColumns == 0 ? 0 : lclCells.size() / lclColumns; }
    void Clear(std::size_t columns);
    void Reserve(std::size_t rows, std::size_t bytes);
    std::size_t TextBytes() const { return lclBytes.size(); }

    // Values of a row are appended from left to right; Rows() counts a row once it is whole.
    void AddNull() { lclCells.emplace_back(); }
    void AddBool(bool value);
    void AddInteger(std::int64_t value);
    void AddDouble(double value);
    void AddText(std::string_view text);
    void AddBytes(const void* bytes, std::size_t size);
    void Add(const Value& value);

    const Cell& At(std::size_t row, std::size_t column) const {
        return lclCells[row * lclColumns + column];
    }
    std::string_view Text(const Cell& cell) const {
        return {lclBytes.data() + cell.offset, cell.size};
    }

    // Fills `value`, keeping the memory of a text that it holds already.
    void Read(std::size_t row, std::size_t column, Value& value) const;
    Value Read(std::size_t row, std::size_t column) const;
    // Replaces one value; a longer text takes new room at the end.
    void Write(std::size_t row, std::size_t column, const Value& value);

private:
    Cell MakeText(Kind kind, const void* bytes, std::size_t size);
    Cell MakeCell(const Value& value);

    std::size_t lclColumns = 0;
    std::vector<Cell> lclCells;
    std::vector<char> lclBytes;
};

} // namespace kavidex::data
