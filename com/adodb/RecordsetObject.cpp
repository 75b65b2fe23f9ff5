#include "com/adodb/RecordsetObject.h"

#include <algorithm>

#include "com/adodb/Collections.h"
#include "data/Error.h"
#include "data/rows/RowSearch.h"
#include "data/win32/Convert.h"
#include "data/win32/LateAdoConnection.h"

namespace kavidex::com::adodb {

namespace {

constexpr const char* source = "Kavidex.Recordset";
constexpr std::int32_t readOnlyLock = 1, optimisticLock = 3, staticCursor = 3, clientSide = 3;

} // namespace

ComPtr<ConnectionObject> ConnectionFor(const Variant& connection) {
    if (connection.IsText()) {
        auto opened = ComPtr<ConnectionObject>::Attach(new ConnectionObject);
        opened->Open(connection.ToText(), {}, {}, {});
        return opened;
    }
    const ComPtr<IDispatch> object = connection.ToDispatch();
    if (!object) return {};
    if (auto known = ConnectionObject::From(object.Get())) return known;
    return ComPtr<ConnectionObject>::Attach(new ConnectionObject(
        std::make_shared<data::win32::LateAdoConnection>(platform::win32::Late(object))));
}

RecordsetObject::RecordsetObject(ComPtr<ConnectionObject> connection, data::RecordsetPtr rows)
    : lclConnection(std::move(connection)), lclRows(std::move(rows)), lclCursorLocation(clientSide),
      lclCursorType(staticCursor), lclLockType(optimisticLock) {}

RecordsetObject::RecordsetObject(std::shared_ptr<data::Recordset> rows)
    : lclRows(std::move(rows)), lclCursorLocation(clientSide), lclCursorType(staticCursor),
      lclLockType(optimisticLock) {}

std::int32_t RecordsetObject::State() const { return lclRows && lclRows->IsOpen() ? 1 : 0; }

data::Recordset& RecordsetObject::Rows() const {
    if (!State()) throw data::Error(data::errors::objectClosed, "The recordset is closed.", source);
    return *lclRows;
}

data::Recordset& RecordsetObject::RowsToEdit() const {
    data::Recordset& rows = Rows();
    if (lclLockType == readOnlyLock)
        throw data::Error(data::errors::featureNotAvailable,
                          "The recordset was opened for reading only (LockType).", source);
    return rows;
}

void RecordsetObject::NeedClosed() const {
    if (State()) throw data::Error(data::errors::objectOpen, "The recordset is open.", source);
}

std::size_t RecordsetObject::FieldIndex(const Variant& index) const {
    const data::Recordset& rows = Rows();
    return index.IsNumber() ? PlaceOf(index, rows.Fields().size()) : rows.IndexOf(index.ToText());
}

Variant RecordsetObject::Value(std::size_t field) const {
    const data::Recordset& rows = Rows();
    return data::win32::ToVariant(rows.Get(field), rows.Fields()[field].type);
}

void RecordsetObject::SetValue(std::size_t field, const Variant& value) {
    data::Recordset& rows = RowsToEdit();
    rows.Set(field, data::win32::FromVariant(value.Get(), rows.Fields()[field].type));
    lclEditMode = std::max(lclEditMode, 1);
}

void RecordsetObject::Open(std::optional<Variant> from, std::optional<Variant> connection,
                           std::optional<std::int32_t> cursorType,
                           std::optional<std::int32_t> lockType,
                           std::optional<std::int32_t> options) {
    NeedClosed();
    if (from) lclSource = *from;
    if (connection) SetActiveConnection(*connection);
    if (cursorType.value_or(-1) >= 0) lclCursorType = *cursorType;
    if (lockType.value_or(-1) >= 0) lclLockType = *lockType;

    data::Command command;
    if (lclSource.IsObject()) {
        const ComPtr<CommandObject> given = CommandObject::From(lclSource.ToDispatch().Get());
        if (!given)
            throw data::Error(data::errors::invalidArgument,
                              "The source is no command of this kind.", source);
        command = given->Spec();
        lclConnection = given->Connection();
    } else {
        command = CommandOf(lclSource.ToText(), options.value_or(-1));
    }
    if (!lclConnection)
        throw data::Error(data::errors::objectClosed, "The recordset has no connection.", source);
    lclEditMode = 0;
    lclRows = lclConnection->NeedOpen().Open(command);
}

void RecordsetObject::Close() {
    Rows().Close();
    lclEditMode = 0;
}

ComPtr<IDispatch> RecordsetObject::Fields() {
    return Make<FieldsObject>(ComPtr<RecordsetObject>(this));
}

void RecordsetObject::Move(std::int32_t count, std::optional<Variant> start) {
    data::Recordset& rows = Rows();
    // 0 is the current row, 1 the first, 2 the last; other bookmarks are positions.
    if (start) {
        const std::int64_t bookmark = start->ToInt64();
        if (start->Type() != VT_R8 && bookmark == 1)
            rows.MoveFirst();
        else if (start->Type() != VT_R8 && bookmark == 2)
            rows.MoveLast();
        else if (bookmark > 0)
            rows.SetAbsolutePosition(bookmark);
    }
    rows.Move(count);
    lclEditMode = 0;
}

Variant RecordsetObject::GetRows(std::optional<std::int32_t> count, std::optional<Variant> start,
                                 std::optional<Variant> fields) {
    data::Recordset& rows = Rows();
    if (start) Move(0, start);
    if (rows.Eof() || rows.Bof())
        throw data::Error(data::errors::badEof, "There is no current row.", source);
    std::vector<std::size_t> places;
    if (fields && fields->IsArray())
        for (const Variant& name : platform::win32::ElementsOf(fields->Get()))
            places.push_back(FieldIndex(name));
    else if (fields)
        places.push_back(FieldIndex(*fields));
    else
        for (std::size_t i = 0; i < rows.Fields().size(); ++i) places.push_back(i);

    std::vector<std::vector<Variant>> columns(places.size());
    std::size_t read = 0;
    for (const auto wanted = count.value_or(-1);
         !rows.Eof() && (wanted < 0 || read < static_cast<std::size_t>(wanted)); ++read) {
        for (std::size_t i = 0; i < places.size(); ++i) columns[i].push_back(Value(places[i]));
        rows.MoveNext();
    }
    lclEditMode = 0;
    return platform::win32::TableOf(columns, read);
}

void RecordsetObject::SetValues(const std::optional<Variant>& fields,
                                const std::optional<Variant>& values) {
    if (!fields || !values) return;
    if (!fields->IsArray()) return SetValue(FieldIndex(*fields), *values);
    const auto names = platform::win32::ElementsOf(fields->Get());
    const auto contents = platform::win32::ElementsOf(values->Get());
    if (names.size() != contents.size())
        throw data::Error(data::errors::invalidArgument, "There are not as many values as fields.",
                          source);
    for (std::size_t i = 0; i < names.size(); ++i) SetValue(FieldIndex(names[i]), contents[i]);
}

void RecordsetObject::AddNew(std::optional<Variant> fields, std::optional<Variant> values) {
    RowsToEdit().AddNew();
    lclEditMode = 2;
    SetValues(fields, values);
    if (fields && values) Update({}, {}); // with values given, the row is written at once
}

void RecordsetObject::Update(std::optional<Variant> fields, std::optional<Variant> values) {
    data::Recordset& rows = RowsToEdit();
    SetValues(fields, values);
    rows.Update();
    lclEditMode = 0;
}

void RecordsetObject::CancelUpdate() {
    Rows().CancelUpdate();
    lclEditMode = 0;
}

void RecordsetObject::Delete(std::optional<std::int32_t> affect) {
    if (affect.value_or(1) != 1)
        throw data::Error(data::errors::featureNotAvailable, "Only the current row can be deleted.",
                          source);
    RowsToEdit().Delete();
    lclEditMode = 0;
}

void RecordsetObject::Find(const std::string& criteria, std::optional<std::int32_t> skip,
                           std::optional<std::int32_t> direction, std::optional<Variant> start) {
    if (start) Move(0, start);
    const auto way =
        direction.value_or(1) < 0 ? data::Direction::Backward : data::Direction::Forward;
    Leave([&](auto& rows) { data::FindRow(rows, criteria, skip.value_or(0), way); });
}

std::string RecordsetObject::GetString(std::optional<std::int32_t> format,
                                       std::optional<std::int32_t> count,
                                       std::optional<std::string> columnDelimiter,
                                       std::optional<std::string> rowDelimiter,
                                       std::optional<std::string> nullText) {
    constexpr std::int32_t clipString = 2;
    if (format.value_or(clipString) != clipString)
        throw data::Error(data::errors::invalidArgument, "Rows are printed as text only (2).",
                          source);
    data::TextForm form;
    if (columnDelimiter && !columnDelimiter->empty()) form.column = *columnDelimiter;
    if (rowDelimiter && !rowDelimiter->empty()) form.row = *rowDelimiter;
    form.null = nullText.value_or("");
    std::string text;
    Leave([&](auto& rows) { text = data::RowsAsText(rows, count.value_or(-1), form); });
    return text;
}

bool RecordsetObject::Supports(std::int32_t options) const {
    constexpr std::int32_t movePrevious = 0x200, bookmark = 0x2000, approxPosition = 0x4000,
                           find = 0x80000, addNew = 0x1000400, remove = 0x1000800,
                           update = 0x1008000;
    constexpr std::int32_t reading = movePrevious | bookmark | approxPosition | find;
    Rows();
    const std::int32_t offered =
        lclLockType == readOnlyLock ? reading : reading | addNew | remove | update;
    return (options & offered) == options;
}

ComPtr<IDispatch> RecordsetObject::Clone() const {
    auto copy = ComPtr<RecordsetObject>::Attach(new RecordsetObject(lclConnection, Rows().Clone()));
    copy->lclLockType = readOnlyLock;
    copy->lclSource = lclSource;
    return ComPtr<IDispatch>(copy.Get());
}

void RecordsetObject::SetPageSize(std::int32_t rows) {
    if (rows < 1)
        throw data::Error(data::errors::invalidArgument, "A page holds at least one row.", source);
    lclPageSize = rows;
}

std::int32_t RecordsetObject::PageCount() const {
    return static_cast<std::int32_t>((Rows().RecordCount() + lclPageSize - 1) / lclPageSize);
}

std::int32_t RecordsetObject::AbsolutePage() const {
    const auto position = static_cast<std::int32_t>(Rows().AbsolutePosition());
    return position < 1 ? position : (position - 1) / lclPageSize + 1;
}

void RecordsetObject::SetAbsolutePage(std::int32_t page) {
    if (page < 1)
        throw data::Error(data::errors::invalidArgument, "Pages are counted from 1.", source);
    const std::int64_t first = std::int64_t{page - 1} * lclPageSize + 1;
    Leave([&](auto& rows) { rows.SetAbsolutePosition(first); });
}

Variant RecordsetObject::Filter() const {
    const std::string filter = Rows().Filter();
    return filter.empty() ? Variant(0) : Variant(filter);
}

void RecordsetObject::SetFilter(const Variant& filter) {
    if (!filter.IsText() && filter.ToInt32() != 0)
        throw data::Error(data::errors::featureNotAvailable,
                          "This kind of filter is not available.", source);
    const std::string criteria = filter.IsText() ? filter.ToText() : std::string();
    Leave([&](auto& rows) { rows.SetFilter(criteria); });
}

Variant RecordsetObject::ActiveConnection() const {
    return lclConnection ? Variant(lclConnection) : Variant(static_cast<IDispatch*>(nullptr));
}

// An open recordset can only be taken off its connection: its rows can then still be read.
void RecordsetObject::SetActiveConnection(const Variant& connection) {
    ComPtr<ConnectionObject> given = ConnectionFor(connection);
    if (State() && given.Get() == lclConnection.Get()) return;
    if (given) NeedClosed();
    if (State()) lclLockType = readOnlyLock;
    lclConnection = std::move(given);
}

Variant RecordsetObject::Source() const { return lclSource; }

void RecordsetObject::SetSource(const Variant& from) {
    NeedClosed();
    lclSource = from;
}

void RecordsetObject::SetCursorLocation(std::int32_t value) {
    NeedClosed(), lclCursorLocation = value;
}
void RecordsetObject::SetCursorType(std::int32_t value) { NeedClosed(), lclCursorType = value; }
void RecordsetObject::SetLockType(std::int32_t value) { NeedClosed(), lclLockType = value; }

void RecordsetObject::SetCacheSize(std::int32_t rows) {
    if (rows < 1)
        throw data::Error(data::errors::invalidArgument, "The cache holds at least one row.",
                          source);
    lclCacheSize = rows;
}

} // namespace kavidex::com::adodb
