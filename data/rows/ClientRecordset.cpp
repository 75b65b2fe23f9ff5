#include "data/rows/ClientRecordset.h"

#include <algorithm>

#include "data/Error.h"
#include "data/rows/RowOrder.h"

namespace kavidex::data {

namespace {

constexpr const char* component = "Recordset";

[[noreturn]] void RefuseRow() {
    throw Error(errors::badEof,
                "There is no current row: the recordset is empty, at its begin or end, or the row "
                "was deleted.",
                component);
}

} // namespace

ClientRecordset::ClientRecordset(ResultRows result, std::unique_ptr<RowSource> rowSource)
    : lclOpen(result.fields != nullptr), lclFields(std::move(result.fields)),
      lclRows(std::move(result.rows)), lclSource(std::move(rowSource)) {
    if (lclOpen) BuildView({}, {});
}

void ClientRecordset::Close() {
    lclOpen = false;
    lclRows.Clear(0);
    lclView.clear();
    lclRemoved.clear();
    DropChanges();
    lclSource.reset();
}

void ClientRecordset::CheckOpen() const {
    if (!lclOpen) throw Error(errors::objectClosed, "The recordset is closed.", component);
}

RowSource& ClientRecordset::Source() const {
    if (!lclSource)
        throw Error(errors::featureNotAvailable, "The recordset can only be read.", component);
    return *lclSource;
}

// Position

bool ClientRecordset::Eof() const {
    CheckOpen();
    if (lclAdding) return false;
    return !lclOnDeleted && lclPosition >= RecordCount();
}

bool ClientRecordset::Bof() const {
    CheckOpen();
    if (lclAdding || lclOnDeleted) return false;
    return lclPosition < 0 || lclView.empty();
}

std::int64_t ClientRecordset::RecordCount() const {
    CheckOpen();
    return static_cast<std::int64_t>(lclView.size());
}

std::int64_t ClientRecordset::AbsolutePosition() const {
    if (RecordCount() == 0 || lclOnDeleted || lclAdding) return -1;
    if (lclPosition < 0) return -2;
    if (lclPosition >= RecordCount()) return -3;
    return lclPosition + 1;
}

void ClientRecordset::SetAbsolutePosition(std::int64_t position) {
    CheckOpen();
    if (position < 1)
        throw Error(errors::invalidArgument, "A position in a recordset begins at 1.", component);
    LeaveRow();
    GoTo(position - 1);
}

void ClientRecordset::GoTo(std::int64_t position) {
    lclPosition = std::clamp<std::int64_t>(position, -1, RecordCount());
    lclOnDeleted = false;
    ++lclStamp;
}

void ClientRecordset::LeaveRow() {
    if (!lclChanges.empty() && !lclRefused) Update();
    DropChanges();
}

void ClientRecordset::DropChanges() {
    lclChanges.clear();
    lclAdding = false;
    lclRefused = false;
    ++lclStamp;
}

void ClientRecordset::Move(std::int64_t rows) {
    CheckOpen();
    LeaveRow();
    if (rows == 0) return;
    if ((rows > 0 && Eof()) || (rows < 0 && Bof())) RefuseRow();
    // The rows after a deleted one moved up: going forward, the next stands here already.
    const std::int64_t from = lclOnDeleted && rows > 0 ? lclPosition - 1 : lclPosition;
    const std::int64_t target = rows > 0 ? (rows > RecordCount() ? RecordCount() : from + rows)
                                         : (rows < -RecordCount() - 1 ? -1 : from + rows);
    GoTo(target);
}

void ClientRecordset::MoveFirst() {
    CheckOpen();
    LeaveRow();
    if (lclView.empty()) RefuseRow();
    GoTo(0);
}

void ClientRecordset::MoveLast() {
    CheckOpen();
    LeaveRow();
    if (lclView.empty()) RefuseRow();
    GoTo(RecordCount() - 1);
}

void ClientRecordset::MoveNext() { Move(1); }
void ClientRecordset::MovePrevious() { Move(-1); }

// Values

const std::vector<Field>& ClientRecordset::Fields() const {
    CheckOpen();
    return *lclFields;
}

std::size_t ClientRecordset::CurrentRow() const {
    CheckOpen();
    if (lclOnDeleted || lclPosition < 0 || lclPosition >= RecordCount()) RefuseRow();
    return lclView[static_cast<std::size_t>(lclPosition)];
}

const Value& ClientRecordset::Get(std::size_t field) const {
    CheckOpen();
    if (field >= lclFields->size())
        throw Error(errors::itemNotFound,
                    "The recordset has no field number " + std::to_string(field) + ".", component);
    static const Value null;
    if (lclAdding) return lclChanges[field] ? *lclChanges[field] : null;
    const std::size_t row = CurrentRow();
    if (!lclChanges.empty() && lclChanges[field]) return *lclChanges[field];
    if (lclStamps[field] != lclStamp) {
        lclRows.Read(row, field, lclCurrent[field]);
        lclStamps[field] = lclStamp;
    }
    return lclCurrent[field];
}

void ClientRecordset::Set(std::size_t field, Value value) {
    CheckOpen();
    if (!lclAdding) CurrentRow();
    if (field >= lclFields->size())
        throw Error(errors::itemNotFound,
                    "The recordset has no field number " + std::to_string(field) + ".", component);
    const Field& target = (*lclFields)[field];
    if (target.baseColumn.empty())
        throw Error(errors::featureNotAvailable,
                    "The field '" + target.name + "' is computed and cannot be written.",
                    component);
    Value coerced = Coerced(target, std::move(value));
    if (lclChanges.empty()) lclChanges.resize(lclFields->size());
    lclChanges[field] = std::move(coerced);
    lclRefused = false;
}

// Writing

void ClientRecordset::AddNew() {
    CheckOpen();
    Source();
    LeaveRow();
    lclAdding = true;
    lclChanges.assign(lclFields->size(), std::nullopt);
}

void ClientRecordset::Update() {
    CheckOpen();
    if (lclChanges.empty()) return;
    lclRefused = true; // until the database has taken the row
    if (lclAdding) {
        for (const Value& value : InsertRow(Source(), *lclFields, lclChanges)) lclRows.Add(value);
        lclRemoved.push_back(false);
        lclView.push_back(static_cast<std::uint32_t>(lclRows.Rows() - 1));
        DropChanges();
        GoTo(RecordCount() - 1);
        return;
    }
    const std::size_t row = CurrentRow();
    std::vector<Value> old(lclFields->size());
    for (std::size_t i = 0; i < old.size(); ++i) lclRows.Read(row, i, old[i]);
    const std::vector<Value> now = UpdateRow(Source(), *lclFields, old, lclChanges);
    for (std::size_t i = 0; i < now.size(); ++i)
        if (now[i] != old[i]) lclRows.Write(row, i, now[i]);
    DropChanges();
}

void ClientRecordset::CancelUpdate() {
    CheckOpen();
    DropChanges();
}

void ClientRecordset::Delete() {
    CheckOpen();
    if (lclAdding) {
        DropChanges();
        return;
    }
    const std::size_t row = CurrentRow();
    std::vector<Value> old(lclFields->size());
    for (std::size_t i = 0; i < old.size(); ++i) lclRows.Read(row, i, old[i]);
    DeleteRow(Source(), *lclFields, old);
    lclRemoved[row] = true;
    lclView.erase(lclView.begin() + static_cast<std::ptrdiff_t>(lclPosition));
    DropChanges();
    lclOnDeleted = true;
}

void ClientRecordset::Requery() {
    CheckOpen();
    ResultRows result = Source().Fetch();
    DropChanges();
    if (!result.fields) {
        Close();
        return;
    }
    lclFields = std::move(result.fields);
    lclRows = std::move(result.rows);
    lclRemoved.clear();
    BuildView(lclSort, lclFilter);
}

// Order and filter

void ClientRecordset::BuildView(std::string_view sort, std::string_view filter) {
    lclRemoved.resize(lclRows.Rows(), false);
    lclCurrent.resize(lclFields->size());
    lclStamps.resize(lclFields->size(), 0);
    std::vector<std::uint32_t> view;
    view.reserve(lclRows.Rows());
    const RowTest shown = filter.empty() ? RowTest() : ParseFilter(filter, *lclFields, lclRows);
    for (std::uint32_t row = 0; row < lclRows.Rows(); ++row)
        if (!lclRemoved[row] && (!shown || shown(row))) view.push_back(row);
    SortRows(sort, *lclFields, lclRows, view);
    lclView = std::move(view);
    GoTo(0);
}

void ClientRecordset::SetSort(std::string_view order) {
    CheckOpen();
    LeaveRow();
    BuildView(order, lclFilter);
    lclSort = order;
}

void ClientRecordset::SetFilter(std::string_view criteria) {
    CheckOpen();
    LeaveRow();
    BuildView(lclSort, criteria);
    lclFilter = criteria;
}

std::unique_ptr<Recordset> ClientRecordset::Clone() const {
    CheckOpen();
    ResultRows copy{lclFields, RowStore(lclFields->size())};
    for (std::size_t row = 0; row < lclRows.Rows(); ++row)
        for (std::size_t i = 0; !lclRemoved[row] && i < lclFields->size(); ++i)
            copy.rows.Add(lclRows.Read(row, i));
    return std::make_unique<ClientRecordset>(std::move(copy), nullptr);
}

} // namespace kavidex::data
