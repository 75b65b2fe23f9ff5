#include "data/rows/RowStore.h"

#include <limits>

#include "data/Error.h"

namespace kavidex::data {

void RowStore::Clear(std::size_t columns) {
    lclColumns = columns;
    lclCells.clear();
    lclBytes.clear();
}

void RowStore::Reserve(std::size_t rows, std::size_t bytes) {
    lclCells.reserve(rows * lclColumns);
    lclBytes.reserve(bytes);
}

void RowStore::AddBool(bool value) {
    Cell& cell = lclCells.emplace_back();
    cell.kind = Kind::Bool;
    cell.integer = value ? 1 : 0;
}

void RowStore::AddInteger(std::int64_t value) {
    Cell& cell = lclCells.emplace_back();
    cell.kind = Kind::Integer;
    cell.integer = value;
}

void RowStore::AddDouble(double value) {
    Cell& cell = lclCells.emplace_back();
    cell.kind = Kind::Double;
    cell.number = value;
}

void RowStore::AddText(std::string_view text) {
    lclCells.push_back(MakeText(Kind::Text, text.data(), text.size()));
}

void RowStore::AddBytes(const void* bytes, std::size_t size) {
    lclCells.push_back(MakeText(Kind::Binary, bytes, size));
}

void RowStore::Add(const Value& value) { lclCells.push_back(MakeCell(value)); }

RowStore::Cell RowStore::MakeText(Kind kind, const void* bytes, std::size_t size) {
    if (size > std::numeric_limits<std::uint32_t>::max())
        throw Error(errors::unspecified, "A value of the result is too long.", "Recordset");
    Cell cell;
    cell.kind = kind;
    cell.size = static_cast<std::uint32_t>(size);
    cell.offset = lclBytes.size();
    const char* begin = static_cast<const char*>(bytes);
    if (size != 0) lclBytes.insert(lclBytes.end(), begin, begin + size);
    return cell;
}

RowStore::Cell RowStore::MakeCell(const Value& value) {
    Cell cell;
    if (const auto* flag = std::get_if<bool>(&value)) {
        cell.kind = Kind::Bool;
        cell.integer = *flag ? 1 : 0;
    } else if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        cell.kind = Kind::Integer;
        cell.integer = *whole;
    } else if (const auto* number = std::get_if<double>(&value)) {
        cell.kind = Kind::Double;
        cell.number = *number;
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        cell = MakeText(Kind::Text, text->data(), text->size());
    } else if (const auto* bytes = std::get_if<Bytes>(&value)) {
        cell = MakeText(Kind::Binary, bytes->data(), bytes->size());
    }
    return cell;
}

void RowStore::Read(std::size_t row, std::size_t column, Value& value) const {
    const Cell& cell = At(row, column);
    switch (cell.kind) {
    case Kind::Null: value = std::monostate(); break;
    case Kind::Bool: value = cell.integer != 0; break;
    case Kind::Integer: value = cell.integer; break;
    case Kind::Double: value = cell.number; break;
    case Kind::Text:
        if (auto* held = std::get_if<std::string>(&value))
            held->assign(Text(cell));
        else
            value.emplace<std::string>(Text(cell));
        break;
    case Kind::Binary: {
        const std::string_view bytes = Text(cell);
        value.emplace<Bytes>(bytes.begin(), bytes.end());
        break;
    }
    }
}

Value RowStore::Read(std::size_t row, std::size_t column) const {
    Value value;
    Read(row, column, value);
    return value;
}

void RowStore::Write(std::size_t row, std::size_t column, const Value& value) {
    lclCells[row * lclColumns + column] = MakeCell(value);
}

} // namespace kavidex::data
