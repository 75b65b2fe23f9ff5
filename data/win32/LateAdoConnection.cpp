#include "data/win32/LateAdoConnection.h"

#include <functional>

#include "data/Error.h"
#include "data/odbc/OdbcDialect.h"
#include "data/win32/AdoRecordset.h"
#include "data/win32/Convert.h"
#include "data/win32/Guard.h"
#include "platform/text.h"

namespace kavidex::data::win32 {

namespace {

using platform::win32::Late;
using platform::win32::Variant;

constexpr int clientCursor = 3, staticCursor = 3, readOnly = 1, optimistic = 3, unspecified = -1;

// The settings in the order that the system documents; all of Open's arguments are left open.
void OpenClientSide(const Late& recordset, const Late& command) {
    recordset.Put(L"CursorLocation", {clientCursor});
    recordset.Put(L"LockType", {readOnly});
    recordset.Put(L"CacheSize", {1});
    recordset.PutRef(L"Source", {command.Object()});
    recordset.Put(L"CursorType", {staticCursor});
    recordset.Put(L"LockType", {optimistic});
    recordset.Call(L"Open",
                   {Variant::Missing(), Variant::Missing(), unspecified, unspecified, unspecified});
}

void AppendParameters(const Late& command, const std::vector<Parameter>& parameters) {
    if (parameters.empty()) return;
    const Late list = command.Child(L"Parameters");
    for (const Parameter& parameter : parameters)
        list.Call(L"Append", {command.Call(L"CreateParameter",
                                           {parameter.name, static_cast<int>(parameter.type),
                                            parameter.direction, Variant::Big(parameter.size),
                                            ToVariant(parameter.value, parameter.type)})});
}

// What a command says to an object that is no connection of ADO's. Any other failure may pass.
bool RefusesTheObject(std::int32_t number) {
    return number == errors::invalidArgument || number == E_NOINTERFACE || number == E_NOTIMPL ||
           number == E_INVALIDARG || number == DISP_E_TYPEMISMATCH ||
           number == DISP_E_MEMBERNOTFOUND;
}

// What a machine without ADO's classes says.
bool HasNoClass(std::int32_t number) {
    return number == REGDB_E_CLASSNOTREG || number == CO_E_CLASSSTRING;
}

// Every name that ADO gives a server of this dialect.
Value DialectName(Value dbmsName) {
    const std::string_view known = odbc::DialectOf(ToText(dbmsName)).dbmsName;
    return known.empty() ? dbmsName : Value(std::string(known));
}

} // namespace

bool LateAdoConnection::SameAs(const Connection& other) const {
    const auto* const late = dynamic_cast<const LateAdoConnection*>(&other);
    return late && platform::win32::SameObject(Object().Get(), late->Object().Get());
}

bool LateAdoConnection::IsOpen() const {
    return Guarded({}, [&] { return (lclConnection.Get(L"State").ToInt32() & 1) != 0; });
}

void LateAdoConnection::NeedOpen() const {
    if (!IsOpen())
        throw Error(errors::objectClosed, "The connection is closed.", "Kavidex.AdoConnection");
}

void LateAdoConnection::Close() {
    lclTransactions = 0;
    lclDbmsNameOf = 0;
    if (IsOpen()) Guarded({}, [&] { lclConnection.Call(L"Close"); });
}

Late LateAdoConnection::NewObject(const wchar_t* member, const char* progId) const {
    return lclMeans == Means::OwnObjects ? lclConnection.Child(member) : Late::Create(progId);
}

LateAdoConnection::Means LateAdoConnection::ChooseMeans() {
    if (lclMeans != Means::Unknown) return lclMeans;
    if (lclConnection.Has(L"NewCommand") && lclConnection.Has(L"NewRecordset"))
        return lclMeans = Means::OwnObjects;
    try {
        const Late command = Late::Create("ADODB.Command");
        Late::Create("ADODB.Recordset");
        command.PutRef(L"ActiveConnection", {lclConnection.Object()});
        return lclMeans = Means::AdoClasses;
    } catch (const platform::Error& error) {
        if (HasNoClass(error.Number()) || RefusesTheObject(error.Number()))
            lclMeans = Means::ExecuteOnly;
        return Means::ExecuteOnly;
    }
}

Late LateAdoConnection::NewCommand(const Command& command) const {
    const Late made = NewObject(L"NewCommand", "ADODB.Command");
    made.PutRef(L"ActiveConnection", {lclConnection.Object()});
    made.Put(L"CommandType", {static_cast<int>(command.type)});
    made.Put(L"CommandText", {command.text});
    AppendParameters(made, command.parameters);
    return made;
}

Late LateAdoConnection::RunByExecute(const Command& command) const {
    if (!command.parameters.empty())
        throw Error(errors::featureNotAvailable,
                    "This connection offers no commands with parameters.", "Kavidex.AdoConnection",
                    command.text);
    return Late(lclConnection.Call(
        L"Execute", {command.text, Variant::Missing(), static_cast<int>(command.type)}));
}

RecordsetPtr LateAdoConnection::Open(const Command& command) {
    return Guarded(command.text, [&] {
        NeedOpen();
        if (ChooseMeans() == Means::ExecuteOnly)
            return std::make_unique<AdoRecordset>(RunByExecute(command));
        const Late made = NewCommand(command);
        const Late recordset = NewObject(L"NewRecordset", "ADODB.Recordset");
        OpenClientSide(recordset, made);
        return std::make_unique<AdoRecordset>(recordset);
    });
}

std::int64_t LateAdoConnection::Execute(std::string_view statement) {
    return Guarded(statement, [&]() -> std::int64_t {
        NeedOpen();
        Variant touched;
        lclConnection.Call(L"Execute", {statement, Variant::Reference(touched), unspecified});
        return touched.IsNumber() ? touched.ToInt64() : -1;
    });
}

// 0 where the object does not tell.
std::size_t LateAdoConnection::Address() const {
    if (!lclConnection.Has(L"ConnectionString")) return 0;
    return std::hash<std::string>()(lclConnection.Get(L"ConnectionString").ToText()) | 1;
}

Value LateAdoConnection::Property(std::string_view name) const {
    return Guarded({}, [&] {
        const bool dbmsName = platform::EqualAsciiNoCase(name, "DBMS Name");
        const std::size_t address = dbmsName ? Address() : 0;
        if (address != 0 && address == lclDbmsNameOf) return Value(lclDbmsName);
        if (name == "Transaction DDL" && !lclConnection.Has(L"BeginTrans"))
            throw Error(errors::itemNotFound, "The object has no transactions.",
                        "Kavidex.AdoConnection");
        const Late property = lclConnection.Child(L"Properties").Child(L"Item", {name});
        Value value = FromVariant(property.Get(L"Value").Get());
        if (!dbmsName) return value;
        value = DialectName(std::move(value));
        lclDbmsName = ToText(value);
        lclDbmsNameOf = address;
        return value;
    });
}

std::string LateAdoConnection::DefaultDatabase() const {
    return Guarded({}, [&] { return lclConnection.Get(L"DefaultDatabase").ToText(); });
}

RecordsetPtr LateAdoConnection::OpenSchema(Schema schema) {
    return Guarded("OpenSchema", [&] {
        NeedOpen();
        return std::make_unique<AdoRecordset>(
            Late(lclConnection.Call(L"OpenSchema", {static_cast<int>(schema)})));
    });
}

std::vector<ErrorDetail> LateAdoConnection::Errors() const {
    return Guarded({}, [&] {
        std::vector<ErrorDetail> details;
        const Late list = lclConnection.Child(L"Errors");
        const int count = list.Get(L"Count").ToInt32();
        for (int i = 0; i < count; ++i) {
            const Late error = list.Child(L"Item", {i});
            details.push_back({error.Get(L"Number").ToInt32(), error.Get(L"Description").ToText(),
                               error.Get(L"Source").ToText()});
        }
        return details;
    });
}

// Not every provider nests transactions; counted here, only the outermost pair reaches it.
void LateAdoConnection::BeginTrans() {
    if (lclTransactions == 0) {
        Guarded("BeginTrans", [&] { lclConnection.Call(L"BeginTrans"); });
        lclUndone = false;
    }
    ++lclTransactions;
}

// What was not begun here is not ended here: the object may stand in a transaction of its host.
void LateAdoConnection::NeedTransaction(const char* statement) const {
    if (lclTransactions > 0) return;
    throw Error(errors::noTransaction, "No transaction is under way on this connection.",
                "Kavidex.AdoConnection", statement);
}

// A commit that fails leaves the level, so that it can be undone.
void LateAdoConnection::CommitTrans() {
    NeedTransaction("CommitTrans");
    if (lclTransactions == 1) {
        if (lclUndone) {
            RollbackTrans();
            throw Error(errors::unspecified,
                        "The transaction was rolled back, since a part of it was.",
                        "Kavidex.AdoConnection", "CommitTrans");
        }
        Guarded("CommitTrans", [&] { lclConnection.Call(L"CommitTrans"); });
    }
    --lclTransactions;
}

// Whatever the object answers, the level is left: undoing is not tried twice.
void LateAdoConnection::RollbackTrans() {
    NeedTransaction("RollbackTrans");
    const bool outermost = --lclTransactions == 0;
    lclUndone = !outermost;
    if (outermost) Guarded("RollbackTrans", [&] { lclConnection.Call(L"RollbackTrans"); });
}

void LateAdoConnection::SetMode(std::int32_t mode) {
    Guarded({}, [&] { lclConnection.Put(L"Mode", {mode}); });
}

// The connection string may hold a password: errors do not repeat it.
void LateAdoConnection::OpenDatabase(std::string_view connectionString) {
    Guarded({}, [&] { lclConnection.Call(L"Open", {connectionString, "", "", unspecified}); });
}

} // namespace kavidex::data::win32
