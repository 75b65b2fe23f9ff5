#include <algorithm>

#include "data/Error.h"
#include "data/rows/RowOrder.h"
#include "platform/text.h"

namespace kavidex::data {

namespace {

using Kind = RowStore::Kind;

bool IsNumber(const RowStore::Cell& cell) {
    return cell.kind == Kind::Bool || cell.kind == Kind::Integer || cell.kind == Kind::Double;
}

double NumberOf(const RowStore::Cell& cell) {
    if (cell.kind == Kind::Double) return cell.number;
    // Yes is -1 in this dialect, so that it sorts before no.
    return cell.kind == Kind::Bool ? -static_cast<double>(cell.integer)
                                   : static_cast<double>(cell.integer);
}

template <class Number>
int Order(Number a, Number b) {
    return a < b ? -1 : b < a ? 1 : 0;
}

// Null, numbers, texts, bytes.
int Rank(const RowStore::Cell& cell) {
    if (cell.kind == Kind::Null) return 0;
    return IsNumber(cell) ? 1 : cell.kind == Kind::Text ? 2 : 3;
}

struct SortKey {
    std::size_t column;
    bool descending;
};

[[noreturn]] void RefuseOrder(std::string_view order) {
    throw Error(errors::invalidArgument,
                "'" + std::string(order) +
                    "' is no sort order: name the fields, each with ASC or "
                    "DESC, separated by commas.",
                "Recordset");
}

SortKey ParseKey(std::string_view part, std::string_view order, const std::vector<Field>& fields) {
    part = platform::TrimView(part);
    std::string_view name;
    if (!part.empty() && part[0] == '[') {
        const std::size_t close = part.find(']');
        if (close == std::string_view::npos) RefuseOrder(order);
        name = part.substr(1, close - 1);
        part = platform::TrimView(part.substr(close + 1));
    } else {
        const std::size_t blank = std::min(part.find(' '), part.size());
        name = part.substr(0, blank);
        part = platform::TrimView(part.substr(blank));
    }
    if (name.empty()) RefuseOrder(order);
    const bool descending = platform::EqualAsciiNoCase(part, "desc");
    if (!descending && !part.empty() && !platform::EqualAsciiNoCase(part, "asc"))
        RefuseOrder(order);
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (platform::EqualAsciiNoCase(fields[i].name, name)) return {i, descending};
    throw Error(errors::itemNotFound, "The recordset has no field '" + std::string(name) + "'.",
                "Recordset");
}

std::vector<SortKey> ParseOrder(std::string_view order, const std::vector<Field>& fields) {
    std::vector<SortKey> keys;
    std::size_t begin = 0;
    bool bracketed = false;
    for (std::size_t i = 0; i <= order.size(); ++i) {
        if (i < order.size() && order[i] == '[') bracketed = true;
        if (i < order.size() && order[i] == ']') bracketed = false;
        if (i < order.size() && (order[i] != ',' || bracketed)) continue;
        keys.push_back(ParseKey(order.substr(begin, i - begin), order, fields));
        begin = i + 1;
    }
    return keys;
}

} // namespace

int CompareCells(const RowStore& rows, const RowStore::Cell& a, const RowStore::Cell& b) {
    const int rank = Rank(a);
    if (rank != Rank(b)) return Order(rank, Rank(b));
    switch (rank) {
    case 0: return 0;
    case 1:
        if (a.kind == Kind::Integer && b.kind == Kind::Integer) return Order(a.integer, b.integer);
        return Order(NumberOf(a), NumberOf(b));
    case 2: return platform::CompareNoCase(rows.Text(a), rows.Text(b));
    default: return rows.Text(a).compare(rows.Text(b));
    }
}

void SortRows(std::string_view order, const std::vector<Field>& fields, const RowStore& rows,
              std::vector<std::uint32_t>& view) {
    if (platform::TrimView(order).empty()) return;
    const std::vector<SortKey> keys = ParseOrder(order, fields);
    std::stable_sort(view.begin(), view.end(), [&](std::uint32_t a, std::uint32_t b) {
        for (const SortKey& key : keys) {
            const int result = CompareCells(rows, rows.At(a, key.column), rows.At(b, key.column));
            if (result != 0) return key.descending ? result > 0 : result < 0;
        }
        return false;
    });
}

} // namespace kavidex::data
