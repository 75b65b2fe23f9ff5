#include "controls/lists/VirtualList.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <tuple>
#include <unordered_set>

#include "platform/text.h"

namespace kavidex::controls {

namespace {

// The sixteen bytes of a key that decide most comparisons, beside its row.
struct KeyHead {
    std::pair<std::uint64_t, std::uint64_t> bytes;
    std::uint32_t row;
};

std::uint64_t EightBytes(std::string_view key, std::size_t from) {
    char bytes[8]{};
    if (from < key.size()) key.copy(bytes, sizeof bytes, from);
    std::uint64_t number = 0;
    std::memcpy(&number, bytes, sizeof number);
    return __builtin_bswap64(number); // the first byte weighs most
}

} // namespace

VirtualList::VirtualList(std::span<const ListColumn> columns, bool manySelected)
    : lclColumns(columns.begin(), columns.end()), lclMany(manySelected) {
    for (std::size_t i = 0; i < lclColumns.size(); ++i)
        if (!lclColumns[i].hidden) lclShown.push_back(i);
}

void VirtualList::SetTranslation(data::Translation translation) {
    lclTranslation = std::move(translation);
    if (lclWindow) lclWindow->TitlesChanged();
}

void VirtualList::SetRows(std::unique_ptr<ListRows> rows) {
    lclRows = std::move(rows);
    lclOrder = Sorted();
    KeepSelection();
    if (!lclWindow) return;
    lclWindow->RowsChanged();
    lclWindow->SelectionChanged();
}

void VirtualList::KeepSelection() {
    if (lclSelected.empty()) return;
    std::unordered_set<std::int32_t> present;
    for (std::size_t row = 0; row < Count(); ++row) present.insert(Id(row));
    std::erase_if(lclSelected, [&](std::int32_t id) { return !present.contains(id); });
}

std::int32_t VirtualList::Id(std::size_t row) const {
    const auto position = lclOrder.at(row); // throws where there is no such row, nor any rows
    return lclRows->Id(position);
}

std::optional<std::size_t> VirtualList::RowOf(std::int32_t id) const {
    for (std::size_t row = 0; row < Count(); ++row)
        if (Id(row) == id) return row;
    return std::nullopt;
}

std::string VirtualList::Text(std::size_t row, std::size_t column) const {
    if (row >= Count() || column >= Columns()) return {};
    return lclRows->Text(lclOrder[row], Column(column).field);
}

std::string VirtualList::Picture(std::size_t row) const {
    return row < Count() ? lclRows->Picture(lclOrder[row]) : std::string();
}

std::string VirtualList::Title(std::size_t column) const {
    std::string title = data::Translated(lclTranslation, Column(column).caption);
    if (lclSortColumn == column)
        title +=
            " " + data::Translated(lclTranslation, lclDescending ? "(aflopend)" : "(oplopend)");
    return title;
}

void VirtualList::SetWidth(std::size_t column, int width) {
    lclColumns[lclShown.at(column)].width = std::max(width, 0);
    if (lclWindow) lclWindow->WidthsChanged();
}

std::vector<int> VirtualList::Widths(int room, int dpi, const std::vector<int>& titles) const {
    std::vector<int> widths(Columns());
    int shares = 0;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        widths[i] = Column(i).width * dpi / 96;
        shares += widths[i] == 0;
        room -= widths[i];
    }
    for (std::size_t i = 0; i < widths.size(); ++i)
        if (widths[i] == 0) {
            widths[i] = std::max(
                {room / shares, Column(i).least * dpi / 96, i < titles.size() ? titles[i] : 0});
            room -= widths[i]; // the last takes what dividing left over
            --shares;
        }
    return widths;
}

std::string_view VirtualList::SortField() const {
    const auto& column = Column(*lclSortColumn);
    return column.sortField.empty() ? column.field : column.sortField;
}

std::string VirtualList::Sort() const {
    if (!lclSortColumn) return {};
    return "[" + std::string(SortField()) + "] " + (lclDescending ? "DESC" : "ASC");
}

std::vector<std::uint32_t> VirtualList::Sorted() const {
    std::vector<std::uint32_t> order(lclRows ? lclRows->Count() : 0);
    std::iota(order.begin(), order.end(), 0U);
    if (!lclSortColumn) return order;
    const auto field = SortField();
    std::string keys; // one after another
    std::vector<std::size_t> ends;
    ends.reserve(order.size());
    const auto key = [&](std::uint32_t row) {
        const std::size_t from = row ? ends[row - 1] : 0;
        return std::string_view(keys).substr(from, ends[row] - from);
    };
    for (const auto row : order) {
        lclRows->SortKey(row, field, keys);
        ends.push_back(keys.size());
    }
    // What all begin with decides nothing: scans are often called by one word and a number.
    std::string_view same = order.empty() ? std::string_view() : key(0);
    for (const auto row : order) {
        const auto other = key(row);
        same = same.substr(
            0, static_cast<std::size_t>(
                   std::mismatch(same.begin(), same.end(), other.begin(), other.end()).first -
                   same.begin()));
    }
    std::vector<KeyHead> heads(order.size());
    for (const auto row : order)
        heads[row] = {{EightBytes(key(row), same.size()), EightBytes(key(row), same.size() + 8)},
                      row};
    // Equal keys keep the order of the rows, both ways round.
    std::sort(heads.begin(), heads.end(), [&](const KeyHead& a, const KeyHead& b) {
        if (a.bytes != b.bytes) return (a.bytes < b.bytes) != lclDescending;
        if (const int compared = key(a.row).compare(key(b.row)); compared != 0)
            return (compared < 0) != lclDescending;
        return a.row < b.row;
    });
    std::transform(heads.begin(), heads.end(), order.begin(),
                   [](const KeyHead& head) { return head.row; });
    return order;
}

void VirtualList::HeadingClicked(std::size_t column) {
    if (column >= Columns()) return;
    const auto before = std::pair(lclSortColumn, lclDescending);
    lclDescending = lclSortColumn == column && !lclDescending;
    lclSortColumn = column;
    try {
        lclOrder = Sorted();
    } catch (...) {
        std::tie(lclSortColumn, lclDescending) = before;
        throw;
    }
    if (!lclWindow) return;
    lclWindow->TitlesChanged();
    lclWindow->RowsChanged();
    lclWindow->SelectionChanged();
}

void VirtualList::Unsort() {
    lclSortColumn.reset();
    lclDescending = false;
    lclOrder = Sorted();
    if (!lclWindow) return;
    lclWindow->TitlesChanged();
    lclWindow->RowsChanged();
}

std::optional<std::size_t> VirtualList::Find(std::string_view text, std::size_t from) const {
    const auto wanted = platform::LowerCase(text);
    for (std::size_t step = 0; step < Count(); ++step) {
        const auto row = (from + step) % Count();
        if (platform::LowerCase(Text(row, 0)).starts_with(wanted)) return row;
    }
    return std::nullopt;
}

void VirtualList::Select(const std::vector<std::int32_t>& ids) {
    lclSelected = ids;
    if (!lclMany && lclSelected.size() > 1)
        lclSelected.erase(lclSelected.begin() + 1, lclSelected.end());
    KeepSelection();
    if (!lclWindow) return;
    lclWindow->SelectionChanged();
    if (lclSelected.empty()) return;
    if (const auto row = RowOf(lclSelected.front())) lclWindow->ShowRow(*row);
}

void VirtualList::SelectAll() {
    if (!lclMany) return;
    std::vector<std::size_t> rows(Count());
    std::iota(rows.begin(), rows.end(), std::size_t{0});
    RowsSelected(rows);
    if (lclWindow) lclWindow->SelectionChanged();
}

void VirtualList::RowsSelected(const std::vector<std::size_t>& rows) {
    std::vector<std::int32_t> ids;
    for (const auto row : rows)
        if (row < Count()) ids.push_back(Id(row));
    if (ids == lclSelected) return;
    lclSelected = std::move(ids);
    SelectionChanged.Raise();
}

void VirtualList::RowActivated(std::size_t row) {
    if (row < Count()) Activated.Raise(Id(row));
}

void VirtualList::SetBoxes(std::function<bool(std::int32_t)> ticked) {
    lclTicked = std::move(ticked);
    BoxesChanged();
}

void VirtualList::BoxesChanged() {
    if (lclWindow) lclWindow->BoxesChanged();
}

void VirtualList::RowBoxClicked(std::size_t row) {
    if (lclTicked && row < Count()) BoxClicked.Raise(Id(row));
}

void VirtualList::EditLabel(std::int32_t id) {
    const auto row = lclWindow ? RowOf(id) : std::nullopt;
    if (row) lclWindow->EditRow(*row);
}

bool VirtualList::EditBegun(std::size_t row) {
    bool may = false;
    if (row >= Count()) return may;
    lclEdited = Id(row);
    EditAsked.Raise(lclEdited, may);
    return may;
}

void VirtualList::EditEnded(const std::string& text) { Edited.Raise(lclEdited, text); }

void VirtualList::AttachWindow(ListWindow* window) {
    lclWindow = window;
    if (!window) return;
    window->BoxesChanged();
    window->TitlesChanged();
    window->RowsChanged();
    window->SelectionChanged();
}

} // namespace kavidex::controls
