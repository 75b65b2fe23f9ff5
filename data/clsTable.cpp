// The generic record wrapper and its type rules.
#include "data/clsTable.h"

#include <optional>

#include "data/Error.h"
#include "data/logText.h"
#include "data/modData.h"
#include "data/transactions.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/modCreateGuid.h"
#include "platform/text.h"

namespace kavidex::data {
namespace {

bool IsNumericType(AdoType type) {
    switch (type) {
    case AdoType::SmallInt:
    case AdoType::Integer:
    case AdoType::Single:
    case AdoType::Double:
    case AdoType::Decimal:
    case AdoType::TinyInt:
    case AdoType::UnsignedTinyInt:
    case AdoType::UnsignedSmallInt:
    case AdoType::UnsignedInt:
    case AdoType::BigInt:
    case AdoType::UnsignedBigInt:
    case AdoType::Numeric:
    case AdoType::VarNumeric: return true;
    default: return false;
    }
}

bool HasRow(const Recordset* rows) {
    return rows && rows->IsOpen() && !rows->Bof() && !rows->Eof();
}

} // namespace

Value FieldText(const Recordset& recordset, std::string_view field) {
    const std::size_t index = recordset.IndexOf(field);
    const Value& value = recordset.Get(index);
    if (!IsNull(value)) return platform::Trim(ToText(value));
    if (IsNumericType(recordset.Fields()[index].type)) return std::int64_t{0};
    return std::string();
}

void SetFieldByType(Recordset& recordset, std::string_view field, const Value& value) {
    const std::size_t index = recordset.IndexOf(field);
    const AdoType type = recordset.Fields()[index].type;
    if (type == AdoType::Double || type == AdoType::Integer)
        recordset.Set(index, platform::Val(ToText(value))); // an empty text reads as 0
    else if (IsNull(value))
        recordset.Set(index, value);
    else
        recordset.Set(index, platform::Trim(ToText(value)));
}

clsTable::clsTable(const platform::Workstation& workstation) : lclWorkstation(workstation) {}

clsTable::~clsTable() {
    try {
        CloseDataSource();
    } catch (const std::exception& error) {
        Swallowed("clsTable.Terminate", error);
    }
}

void clsTable::Swallowed(std::string_view where, const std::exception& error) const {
    lclWorkstation.log.Write(where, lclTableName + ": " + InLog(error));
}

bool clsTable::OpenDbConnection() {
    lclConnected = false;
    std::string statement = "select * from " + lclTableName;
    if (!lclCriteria.empty()) statement += " where " + lclCriteria;
    if (!lclOrdering.empty()) statement += " order by " + lclOrdering;
    lclRecordset =
        OpenRecordset(lclWorkstation, statement, lclConnection, CommandType::Text, &lclFailure);
    lclConnected = lclRecordset->IsOpen();
    return lclConnected;
}

void clsTable::CloseDataSource() {
    if (!lclRecordset || !lclConnected) return;
    if (lclRecordset->IsOpen()) lclRecordset->Close();
    lclRecordset.reset();
    lclConnected = false;
}

void clsTable::ReQuery() {
    if (!lclConnected) return;
    CloseDataSource();
    OpenDbConnection();
}

bool clsTable::HasRows() const { return lclConnected && lclRecordset->IsOpen(); }

std::int64_t clsTable::RecordCount() const { return HasRows() ? lclRecordset->RecordCount() : 0; }

std::int64_t clsTable::AbsolutePosition() const {
    return HasRows() ? lclRecordset->AbsolutePosition() : 0;
}

void clsTable::SetAbsolutePosition(std::int64_t position) {
    if (HasRows() && position > 0) lclRecordset->SetAbsolutePosition(position);
}

bool clsTable::Eof() const {
    return !HasRows() || lclRecordset->Eof() || lclRecordset->RecordCount() == 0;
}

bool clsTable::Bof() const { return !HasRows() || lclRecordset->Bof(); }

void clsTable::Move(std::int64_t rows) {
    if (HasRows()) lclRecordset->Move(rows);
}

void clsTable::MoveFirst() {
    try {
        if (HasRows() && !(lclRecordset->Bof() && lclRecordset->Eof())) lclRecordset->MoveFirst();
    } catch (const std::exception& error) {
        Swallowed("clsTable.MoveFirst", error);
    }
}

void clsTable::MoveLast() {
    try {
        if (RecordCount() > 0) lclRecordset->MoveLast();
    } catch (const std::exception& error) {
        Swallowed("clsTable.MoveLast", error);
    }
}

void clsTable::MoveNext() {
    try {
        if (RecordCount() > 0) lclRecordset->MoveNext();
    } catch (const std::exception& error) {
        Swallowed("clsTable.MoveNext", error);
    }
}

void clsTable::MovePrevious() {
    if (HasRows()) lclRecordset->MovePrevious();
}

bool clsTable::AtRow() const { return HasRow(lclRecordset.get()); }

Value clsTable::GetFieldLength(std::string_view field) const {
    if (!AtRow()) return std::int64_t{0};
    return lclRecordset->Fields()[lclRecordset->IndexOf(field)].definedSize;
}

Value clsTable::GetField(std::string_view field) const {
    if (!AtRow()) return {};
    return FieldText(*lclRecordset, field);
}

void clsTable::SetField(std::string_view field, const Value& value) {
    if (AtRow()) SetFieldByType(*lclRecordset, field, value);
}

bool clsTable::SaveNewRow(std::string_view idField, std::string_view guidField, std::int32_t& newId,
                          std::string_view copyField) {
    try {
        std::string guid;
        if (platform::CreateGuid(lclWorkstation, guid) != 0)
            throw platform::Error(platform::errors::fail, "The system made no GUID.", "clsTable");
        if (!lclConnection)
            throw Error(errors::objectClosed, "There is no connection.", "clsTable");
        const std::string guidColumn(guidField);
        lclConnection->Execute("Insert into " + lclTableName + " (" + guidColumn + ") Values (" +
                               SqlValue(guid) + ")");
        lclRecordset = OpenRecordset(lclWorkstation,
                                     "Select * from " + lclTableName + " where " + guidColumn +
                                         " = " + SqlValue(guid),
                                     lclConnection, CommandType::Text, &lclFailure);
        if (!lclFailure.empty())
            throw Error(errors::objectClosed, "The new row cannot be read: " + lclFailure,
                        "clsTable");
        newId = ToInt32(lclRecordset->Get(idField));
        if (!copyField.empty()) {
            lclRecordset->Set(copyField, std::int64_t{newId});
            lclRecordset->Update();
        }
        return true;
    } catch (const std::exception& error) {
        Swallowed("clsTable.SaveNewRow", error);
        return false;
    }
}

bool clsTable::UpdateCurrentRow() {
    try {
        if (!lclRecordset) throw Error(errors::objectClosed, "There is no recordset.", "clsTable");
        lclRecordset->Update();
        return true;
    } catch (const std::exception& error) {
        Swallowed("clsTable.UpdateCurrentRow", error);
        return false;
    }
}

// The rows of the companion table that point at the current row; many databases have no such table.
void clsTable::DeleteUplinks(std::string_view linkField) {
    try {
        lclConnection->Execute(
            "Delete from " + platform::Trim(lclTableName) +
            "uplink where serverrefid = " + ToText(lclRecordset->Get(linkField)));
    } catch (const std::exception& error) {
        Swallowed("clsTable.DeleteCurrentRow", error);
    }
}

bool clsTable::DeleteCurrentRow() {
    try {
        if (!lclRecordset || !lclConnection)
            throw Error(errors::objectClosed, "There is no recordset.", "clsTable");
        const std::string table = platform::LowerCase(lclTableName);
        const std::string_view linkField = table == "tbldossierreftabs"     ? "reftabid"
                                           : table == "tbldossierreference" ? "refid"
                                                                            : "";
        std::optional<Transaction> both;
        if (!linkField.empty()) {
            both.emplace(lclConnection, lclWorkstation);
            DeleteUplinks(linkField);
        }
        lclRecordset->Delete();
        if (both) both->Commit();
        return true;
    } catch (const std::exception& error) {
        Swallowed("clsTable.DeleteCurrentRow", error);
        return false;
    }
}

} // namespace kavidex::data
