#include "com/adodb/ConnectionObject.h"

#include <map>
#include <mutex>
#include <utility>

#include "com/adodb/Collections.h"
#include "com/adodb/Interfaces.h"
#include "data/Error.h"
#include "data/win32/Convert.h"

namespace kavidex::com::adodb {

namespace {

constexpr const char* source = "Kavidex.Connection";

// What a restriction's place in OpenSchema's array stands for.
struct SchemaColumns {
    data::Schema schema;
    const char* names[5];
};
constexpr SchemaColumns schemaColumns[] = {
    {data::Schema::Tables, {"TABLE_CATALOG", "TABLE_SCHEMA", "TABLE_NAME", "TABLE_TYPE", nullptr}},
    {data::Schema::Columns,
     {"TABLE_CATALOG", "TABLE_SCHEMA", "TABLE_NAME", "COLUMN_NAME", nullptr}},
    {data::Schema::Indexes, {"TABLE_CATALOG", "TABLE_SCHEMA", "INDEX_NAME", "TYPE", "TABLE_NAME"}},
    {data::Schema::Procedures,
     {"PROCEDURE_CATALOG", "PROCEDURE_SCHEMA", "PROCEDURE_NAME", nullptr, nullptr}},
};

const SchemaColumns& ColumnsOf(std::int32_t schema) {
    for (const SchemaColumns& row : schemaColumns)
        if (static_cast<std::int32_t>(row.schema) == schema) return row;
    throw data::Error(data::errors::featureNotAvailable, "This schema is not available.", source);
}

std::string FilterText(const SchemaColumns& columns, const std::optional<Variant>& restrictions) {
    std::string filter;
    if (!restrictions || !restrictions->IsArray()) return filter;
    const auto values = platform::win32::ElementsOf(restrictions->Get());
    for (std::size_t i = 0; i < values.size() && i < std::size(columns.names); ++i) {
        if (!columns.names[i] || values[i].ToText().empty()) continue;
        std::string quoted;
        for (const char c : values[i].ToText()) quoted.append(c == '\'' ? 2 : 1, c);
        filter +=
            (filter.empty() ? "" : " and ") + std::string(columns.names[i]) + " = '" + quoted + "'";
    }
    return filter;
}

// An object belongs to one apartment, the map to all of them.
std::mutex& Guard() {
    static std::mutex guard;
    return guard;
}
std::map<const data::Connection*, ConnectionObject*>& Faces() {
    static std::map<const data::Connection*, ConnectionObject*> faces;
    return faces;
}

} // namespace

ConnectionObject::ConnectionObject(Opener opener) : lclOpener(std::move(opener)) {}
ConnectionObject::ConnectionObject(data::ConnectionPtr connection) : lclOpener(OpenEmbedded) {
    SetEngine(std::move(connection));
}
ConnectionObject::~ConnectionObject() { SetEngine(nullptr); }

ComPtr<IDispatch> ConnectionObject::Over(const data::Connection* connection) {
    const std::lock_guard lock(Guard());
    const auto known = Faces().find(connection);
    return known == Faces().end() ? ComPtr<IDispatch>() : ComPtr<IDispatch>(known->second);
}

void ConnectionObject::SetEngine(data::ConnectionPtr connection) {
    // Let go outside: the last reference closes the database.
    const data::ConnectionPtr before = std::exchange(lclConnection, std::move(connection));
    const std::lock_guard lock(Guard());
    const auto known = Faces().find(before.get());
    if (known != Faces().end() && known->second == this) Faces().erase(known);
    if (lclConnection) Faces()[lclConnection.get()] = this;
}

ComPtr<ConnectionObject> ConnectionObject::From(IDispatch* object) {
    return ComPtr<IDispatch>(object).Query<ConnectionObject>(iidConnectionObject);
}

void* ConnectionObject::Further(REFIID iid) { return iid == iidConnectionObject ? this : nullptr; }

std::shared_ptr<void> ConnectionObject::Native(const std::type_info& wanted) {
    if (wanted != typeid(data::Connection) || settings.lateBound) return nullptr;
    return lclConnection;
}

data::Connection& ConnectionObject::NeedOpen() const {
    if (!lclConnection || !lclConnection->IsOpen())
        throw data::Error(data::errors::objectClosed, "The connection is closed.", source);
    return *lclConnection;
}

// The engine's own list says more than the error that came through, where it is about the same one.
void ConnectionObject::Note(const data::ErrorDetail& error) {
    try {
        if (lclConnection) lclErrors = lclConnection->Errors();
    } catch (const platform::Error&) {
        lclErrors.clear();
    }
    if (lclErrors.empty() || lclErrors.back().description != error.description) lclErrors = {error};
}

void ConnectionObject::SetConnectionString(const std::string& text) {
    if (State()) throw data::Error(data::errors::objectOpen, "The connection is open.", source);
    lclConnectionString = text;
}

void ConnectionObject::Open(std::optional<std::string> connectionString,
                            std::optional<std::string> user, std::optional<std::string> password,
                            std::optional<std::int32_t>) {
    if (State())
        throw data::Error(data::errors::objectOpen, "The connection is open already.", source);
    if (connectionString && !connectionString->empty()) lclConnectionString = *connectionString;
    std::string whole = lclConnectionString;
    if (user && !user->empty()) whole += ";UID=" + *user;
    if (password && !password->empty()) whole += ";PWD=" + *password;
    lclErrors.clear();
    SetEngine(lclOpener(whole));
}

void ConnectionObject::Close() {
    NeedOpen().Close();
    lclTransactions = 0;
}

std::int32_t ConnectionObject::State() const {
    return lclConnection && lclConnection->IsOpen() ? 1 : 0;
}

ComPtr<IDispatch> ConnectionObject::Execute(const std::string& statement, std::int64_t& touched,
                                            std::optional<std::int32_t> options) {
    data::Connection& connection = NeedOpen();
    const data::Command command = CommandOf(statement, options.value_or(-1));
    touched = -1;
    const ComPtr<ConnectionObject> self(this);
    if (command.type == data::CommandType::Text && HasNoRows(command.text)) {
        touched = connection.Execute(command.text);
        return Make<RecordsetObject>(self, nullptr);
    }
    return Make<RecordsetObject>(self, connection.Open(command));
}

std::int32_t ConnectionObject::BeginTrans() {
    NeedOpen().BeginTrans();
    return ++lclTransactions;
}

void ConnectionObject::CommitTrans() {
    NeedOpen().CommitTrans();
    if (lclTransactions > 0) --lclTransactions;
}

void ConnectionObject::RollbackTrans() {
    NeedOpen().RollbackTrans();
    if (lclTransactions > 0) --lclTransactions;
}

std::string ConnectionObject::DefaultDatabase() const {
    return lclConnection ? lclConnection->DefaultDatabase() : std::string();
}

ComPtr<IDispatch> ConnectionObject::OpenSchema(std::int32_t schema,
                                               std::optional<Variant> restrictions) {
    const SchemaColumns& columns = ColumnsOf(schema);
    data::RecordsetPtr rows = NeedOpen().OpenSchema(columns.schema);
    if (const std::string filter = FilterText(columns, restrictions); !filter.empty())
        rows->SetFilter(filter);
    return Make<RecordsetObject>(ComPtr<ConnectionObject>(this), std::move(rows));
}

ComPtr<IDispatch> ConnectionObject::Errors() {
    return Make<ErrorsObject>(ComPtr<ConnectionObject>(this));
}

ComPtr<IDispatch> ConnectionObject::Properties() {
    const ComPtr<ConnectionObject> self(this);
    const auto find = [self](const std::string& name) {
        return data::win32::ToVariant(self->NeedOpen().Property(name));
    };
    std::vector<std::string> known;
    for (const char* name :
         {"DBMS Name", "DBMS Version", "Data Source Name", "Current Catalog", "User Name"})
        try {
            if (lclConnection) lclConnection->Property(name), known.emplace_back(name);
        } catch (const platform::Error&) {
            // This engine has no such property.
        }
    return Make<PropertiesObject>(std::move(known), find);
}

ComPtr<IDispatch> ConnectionObject::NewCommand() { return Make<CommandObject>(); }
ComPtr<IDispatch> ConnectionObject::NewRecordset() { return Make<RecordsetObject>(); }

namespace {

using Row = Rows<ConnectionObject>;
using Self = ConnectionObject;

constexpr Member members[] = {
    Row::Get<&Self::ConnectionString>(L"ConnectionString", 0),
    Row::Put<&Self::SetConnectionString>(L"ConnectionString", 0),
    Row::Get<[](Self& self) { return self.settings.commandTimeout; }>(L"CommandTimeout", 2),
    Row::Put<[](Self& self, std::int32_t value) { self.settings.commandTimeout = value; }>(
        L"CommandTimeout", 2),
    Row::Get<[](Self& self) { return self.settings.connectionTimeout; }>(L"ConnectionTimeout", 3),
    Row::Put<[](Self& self, std::int32_t value) { self.settings.connectionTimeout = value; }>(
        L"ConnectionTimeout", 3),
    Row::Get<[](Self&) { return std::string("2.8"); }>(L"Version", 4),
    Row::Method<&Self::Close>(L"Close", 5),
    Row::Method<[](Self& self, std::string statement, std::optional<ByRef<Variant>>& touched,
                   std::optional<std::int32_t> options) {
        std::int64_t count = -1;
        auto rows = self.Execute(statement, count, options);
        if (touched) touched->value = Variant::Big(count);
        return rows;
    }>(L"Execute", 6, L"CommandText,RecordsAffected,Options"),
    Row::Method<&Self::BeginTrans>(L"BeginTrans", 7),
    Row::Method<&Self::CommitTrans>(L"CommitTrans", 8),
    Row::Method<&Self::RollbackTrans>(L"RollbackTrans", 9),
    Row::Method<&Self::Open>(L"Open", 10, L"ConnectionString,UserID,Password,Options"),
    Row::Get<&Self::Errors>(L"Errors", 11),
    Row::Get<&Self::DefaultDatabase>(L"DefaultDatabase", 12),
    Row::Get<[](Self& self) { return self.settings.cursorLocation; }>(L"CursorLocation", 15),
    Row::Put<[](Self& self, std::int32_t value) { self.settings.cursorLocation = value; }>(
        L"CursorLocation", 15),
    Row::Get<[](Self& self) { return self.settings.mode; }>(L"Mode", 16),
    Row::Put<[](Self& self, std::int32_t value) { self.settings.mode = value; }>(L"Mode", 16),
    Row::Get<[](Self& self) { return self.settings.provider; }>(L"Provider", 17),
    Row::Put<[](Self& self, std::string value) { self.settings.provider = std::move(value); }>(
        L"Provider", 17),
    Row::Get<&Self::State>(L"State", 18),
    Row::Method<&Self::OpenSchema>(L"OpenSchema", 19, L"Schema,Restrictions"),
    Row::Get<&Self::Properties>(L"Properties", 500),
    Row::Get<[](Self& self) { return self.settings.lateBound; }>(L"LateBound", 501),
    Row::Put<[](Self& self, bool value) { self.settings.lateBound = value; }>(L"LateBound", 501),
    Row::Method<&Self::NewCommand>(L"NewCommand", 502),
    Row::Method<&Self::NewRecordset>(L"NewRecordset", 503),
};
constexpr Table table{source, &iidConnection, members};

} // namespace

const Table& ConnectionObject::Members() const { return table; }

} // namespace kavidex::com::adodb
