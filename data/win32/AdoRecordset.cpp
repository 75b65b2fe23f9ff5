#include "data/win32/AdoRecordset.h"

#include <algorithm>

#include "data/Error.h"
#include "data/win32/Convert.h"
#include "data/win32/Guard.h"

namespace kavidex::data::win32 {

namespace {

using platform::win32::Late;
using platform::win32::Variant;

constexpr std::int64_t blockRows = 256;
constexpr int keyAttribute = 0x8000, nullableAttribute = 0x20, maybeNullAttribute = 0x40;

} // namespace

AdoRecordset::AdoRecordset(Late recordset) : lclRecordset(std::move(recordset)) {
    if (!IsOpen()) return;
    lclCount = Guarded({}, [&] { return lclRecordset.Get(L"RecordCount").ToInt64(); });
    lclForwardOnly = lclCount < 0;
    if (lclForwardOnly) ReadAll();
    lclPosition = 1;
}

AdoRecordset::~AdoRecordset() {
    if (lclHandedOut) return;
    try {
        Close();
    } catch (const platform::Error&) {
        // A connection that is gone took the recordset along.
    }
}

platform::win32::ComPtr<IDispatch> AdoRecordset::HandOut() {
    if (lclForwardOnly || !lclRecordset) return {};
    if (!AsksObject() && IsOpen() && lclCount > 0)
        Guarded({}, [&] {
            if (lclPosition < 1 || lclPosition > lclCount) {
                lclRecordset.Call(lclPosition < 1 ? L"MoveFirst" : L"MoveLast");
                lclRecordset.Call(lclPosition < 1 ? L"MovePrevious" : L"MoveNext");
            } else if (!lclOnDeleted) {
                PlaceObject();
            }
        });
    lclHandedOut = true;
    return lclRecordset.Object();
}

bool AdoRecordset::IsOpen() const {
    if (!lclRecordset) return false;
    return Guarded({}, [&] { return (lclRecordset.Get(L"State").ToInt32() & 1) != 0; });
}

void AdoRecordset::Close() {
    lclFieldObjects.clear();
    if (!IsOpen()) return;
    // ADO refuses to close over a pending change; the port drops it.
    if (Pending()) CancelUpdate();
    lclOnDeleted = false;
    Guarded({}, [&] { lclRecordset.Call(L"Close"); });
}

void AdoRecordset::NeedOpen() const {
    if (!IsOpen()) throw Error(errors::objectClosed, "The recordset is closed.", source);
}

void AdoRecordset::NeedRow() const {
    if (!AsksObject() && (lclOnDeleted || lclPosition < 1 || lclPosition > lclCount))
        throw Error(errors::badEof, "There is no current row.", source);
}

void AdoRecordset::NeedField(std::size_t field) const {
    if (field >= Fields().size())
        throw Error(errors::itemNotFound, "There is no such field.", source);
}

bool AdoRecordset::Eof() const {
    NeedOpen();
    if (AsksObject()) return Guarded({}, [&] { return lclRecordset.Get(L"EOF").ToBool(); });
    return !lclOnDeleted && lclPosition > lclCount;
}

bool AdoRecordset::Bof() const {
    NeedOpen();
    if (AsksObject()) return Guarded({}, [&] { return lclRecordset.Get(L"BOF").ToBool(); });
    return !lclOnDeleted && (lclPosition < 1 || lclCount == 0);
}

std::int64_t AdoRecordset::RecordCount() const {
    NeedOpen();
    return AsksObject() ? Guarded({}, [&] { return lclRecordset.Get(L"RecordCount").ToInt64(); })
                        : lclCount;
}

std::int64_t AdoRecordset::AbsolutePosition() const {
    NeedOpen();
    if (AsksObject())
        return Guarded({}, [&] { return lclRecordset.Get(L"AbsolutePosition").ToInt64(); });
    if (lclCount == 0 || lclOnDeleted) return -1;
    if (lclPosition < 1) return -2;
    return lclPosition > lclCount ? -3 : lclPosition;
}

void AdoRecordset::ReadState() {
    lclEditing = lclAdding = lclOnDeleted = false;
    lclBlock.clear();
    lclEdited.clear();
    if (!lclHandedOut) ReadPosition();
}

void AdoRecordset::ReadPosition() {
    lclCount = lclRecordset.Get(L"RecordCount").ToInt64();
    if (lclRecordset.Get(L"EOF").ToBool())
        lclPosition = lclCount + 1;
    else if (lclRecordset.Get(L"BOF").ToBool())
        lclPosition = 0;
    else
        lclPosition = lclRecordset.Get(L"AbsolutePosition").ToInt64();
}

void AdoRecordset::GoTo(std::int64_t position) {
    lclPosition = std::clamp<std::int64_t>(position, 0, lclCount + 1);
    lclOnDeleted = false;
}

// With a row under change the object moves, which writes or drops the change as ADO does.
void AdoRecordset::MoveDirect(const wchar_t* member, std::int64_t rows) {
    Guarded({}, [&] {
        if (rows)
            lclRecordset.Call(member, {Variant::Big(rows)});
        else
            lclRecordset.Call(member);
        EndEdit(true);
    });
}

void AdoRecordset::SetAbsolutePosition(std::int64_t position) {
    NeedOpen();
    if (AsksObject()) {
        Guarded({}, [&] {
            lclRecordset.Put(L"AbsolutePosition", {Variant::Big(position)});
            EndEdit(true);
        });
        return;
    }
    if (position < 1)
        throw Error(errors::invalidArgument, "A position in a recordset begins at 1.", source);
    GoTo(position);
}

void AdoRecordset::Move(std::int64_t rows) {
    NeedOpen();
    if (AsksObject() && rows) return MoveDirect(L"Move", rows);
    if (rows == 0) return;
    if (rows > 0 && lclPosition > lclCount && !lclOnDeleted)
        throw Error(errors::badEof, "The recordset is at its end.", source);
    if (rows < 0 && lclPosition < 1)
        throw Error(errors::badEof, "The recordset is before its start.", source);
    if (lclCount == 0 && !lclOnDeleted)
        throw Error(errors::badEof, "The recordset has no rows.", source);
    GoTo(lclPosition + rows - (lclOnDeleted && rows > 0 ? 1 : 0));
}

void AdoRecordset::MoveFirst() {
    if (AsksObject()) return MoveDirect(L"MoveFirst");
    NeedOpen();
    if (lclCount == 0) throw Error(errors::badEof, "The recordset has no rows.", source);
    GoTo(1);
}

void AdoRecordset::MoveLast() {
    if (AsksObject()) return MoveDirect(L"MoveLast");
    NeedOpen();
    if (lclCount == 0) throw Error(errors::badEof, "The recordset has no rows.", source);
    GoTo(lclCount);
}

void AdoRecordset::MoveNext() {
    if (AsksObject()) return MoveDirect(L"MoveNext");
    Move(1);
}

void AdoRecordset::MovePrevious() {
    if (AsksObject()) return MoveDirect(L"MovePrevious");
    Move(-1);
}

const std::vector<Field>& AdoRecordset::Fields() const {
    if (!lclFields.empty()) return lclFields;
    NeedOpen();
    Guarded({}, [&] {
        std::vector<Field> fields;
        const Late list = lclRecordset.Child(L"Fields");
        const int count = list.Get(L"Count").ToInt32();
        for (int i = 0; i < count; ++i) {
            const Late field = list.Child(L"Item", {i});
            const int attributes =
                field.Has(L"Attributes") ? field.Get(L"Attributes").ToInt32() : nullableAttribute;
            fields.push_back({field.Get(L"Name").ToText(),
                              static_cast<AdoType>(field.Get(L"Type").ToInt32()),
                              field.Get(L"DefinedSize").ToInt64(),
                              {},
                              {},
                              (attributes & keyAttribute) != 0,
                              (attributes & (nullableAttribute | maybeNullAttribute)) != 0});
        }
        lclFields = std::move(fields);
    });
    return lclFields;
}

const Late& AdoRecordset::FieldObject(std::size_t field) const {
    lclFieldObjects.resize(Fields().size());
    Late& object = lclFieldObjects[field];
    if (!object) object = lclRecordset.Child(L"Fields").Child(L"Item", {static_cast<int>(field)});
    return object;
}

std::vector<AdoRecordset::Row> AdoRecordset::ReadRows(std::int64_t count) const {
    const std::vector<Field>& fields = Fields();
    const Variant table = lclRecordset.Call(L"GetRows", {Variant::Big(count)});
    const auto columns = platform::win32::ColumnsOf(table.Get());
    std::vector<Row> rows(columns.empty() ? 0 : columns[0].size(), Row(fields.size()));
    for (std::size_t column = 0; column < std::min(columns.size(), fields.size()); ++column)
        for (std::size_t row = 0; row < rows.size(); ++row)
            rows[row][column] = FromVariant(columns[column][row].Get(), fields[column].type);
    return rows;
}

void AdoRecordset::ReadAll() {
    Guarded({}, [&] {
        lclBlock.clear();
        while (!lclRecordset.Get(L"EOF").ToBool()) {
            auto rows = ReadRows(blockRows);
            if (rows.empty()) break;
            std::move(rows.begin(), rows.end(), std::back_inserter(lclBlock));
        }
        lclBlockFirst = 1;
        lclCount = static_cast<std::int64_t>(lclBlock.size());
    });
}

void AdoRecordset::ReadBlock(std::int64_t first) const {
    Guarded({}, [&] {
        lclRecordset.Put(L"AbsolutePosition", {Variant::Big(first)});
        lclBlock = ReadRows(std::min(blockRows, lclCount - first + 1));
        lclBlockFirst = first;
        if (lclBlock.empty()) throw Error(errors::badEof, "The recordset gave no rows.", source);
    });
}

AdoRecordset::Row AdoRecordset::ReadRow(std::int64_t position) const {
    return Guarded({}, [&] {
        lclRecordset.Put(L"AbsolutePosition", {Variant::Big(position)});
        std::vector<Row> rows = ReadRows(1);
        if (rows.empty()) throw Error(errors::badEof, "The recordset gave no row.", source);
        return std::move(rows[0]);
    });
}

const Value& AdoRecordset::Get(std::size_t field) const {
    NeedField(field);
    NeedRow();
    if (AsksObject()) {
        lclEdited.resize(Fields().size());
        lclEdited[field] = Guarded({}, [&] {
            return FromVariant(FieldObject(field).Get(L"Value").Get(), lclFields[field].type);
        });
        return lclEdited[field];
    }
    if (!lclForwardOnly && !IsOpen()) NeedOpen();
    const std::int64_t end = lclBlockFirst + static_cast<std::int64_t>(lclBlock.size());
    if (lclBlock.empty() || lclPosition < lclBlockFirst || lclPosition >= end)
        ReadBlock(lclPosition);
    Row& row = lclBlock[static_cast<std::size_t>(lclPosition - lclBlockFirst)];
    if (row.empty()) row = ReadRow(lclPosition);
    return row[field];
}

void AdoRecordset::Requery() {
    NeedOpen();
    Guarded({}, [&] {
        lclRecordset.Call(L"Requery");
        if (lclForwardOnly) {
            ReadAll();
            lclPosition = 1;
        } else {
            ReadState();
        }
    });
}

void AdoRecordset::SetSort(std::string_view order) {
    NeedOpen();
    Guarded({}, [&] {
        lclRecordset.Put(L"Sort", {order});
        lclOrdered = true;
        ReadState();
    });
}

std::string AdoRecordset::Sort() const {
    NeedOpen();
    return Guarded({}, [&] { return lclRecordset.Get(L"Sort").ToText(); });
}

void AdoRecordset::SetFilter(std::string_view criteria) {
    NeedOpen();
    Guarded({}, [&] {
        // No filter is a number to ADO (adFilterNone), not the empty text.
        if (criteria.empty())
            lclRecordset.Put(L"Filter", {0});
        else
            lclRecordset.Put(L"Filter", {criteria});
        lclOrdered = true;
        ReadState();
    });
}

std::string AdoRecordset::Filter() const {
    NeedOpen();
    return Guarded({}, [&] {
        const Variant filter = lclRecordset.Get(L"Filter");
        return filter.IsText() ? filter.ToText() : std::string();
    });
}

std::unique_ptr<Recordset> AdoRecordset::Clone() const {
    NeedOpen();
    constexpr int readOnly = 1;
    return Guarded({}, [&] {
        return std::make_unique<AdoRecordset>(lclRecordset.Child(L"Clone", {readOnly}));
    });
}

} // namespace kavidex::data::win32
