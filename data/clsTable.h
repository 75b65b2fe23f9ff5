// The generic record wrapper: one table, a current row, values by column name.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "data/Connection.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::data {

// Set DbConnection, TableName and perhaps Criteria and Ordering (all put into the statement as
// written), call OpenDbConnection, test Eof, read with GetField, change with SetField and commit
// with UpdateCurrentRow. The connection is shared, the recordset its own.
class clsTable {
public:
    explicit clsTable(const platform::Workstation& workstation);
    ~clsTable();
    clsTable(const clsTable&) = delete;
    clsTable& operator=(const clsTable&) = delete;

    // Null before the first read; another one after each OpenDbConnection and SaveNewRow. Who keeps
    // it keeps the rows of its time.
    const std::shared_ptr<Recordset>& RecordSet() const { return lclRecordset; }
    void SetDbConnection(ConnectionPtr connection) { lclConnection = std::move(connection); }
    const ConnectionPtr& DbConnection() const { return lclConnection; }
    bool Connected() const { return lclConnected; }
    const std::string& TableName() const { return lclTableName; }
    void SetTableName(std::string_view name) { lclTableName = name; }
    const std::string& Criteria() const { return lclCriteria; }
    void SetCriteria(std::string_view criteria) { lclCriteria = criteria; }
    const std::string& Ordering() const { return lclOrdering; }
    void SetOrdering(std::string_view ordering) { lclOrdering = ordering; }

    bool OpenDbConnection();
    // Why the last OpenDbConnection, ReQuery or SaveNewRow read nothing; empty where it could, so
    // that no row means that there is none.
    const std::string& Failure() const { return lclFailure; }
    void CloseDataSource();
    void ReQuery();

    std::int64_t RecordCount() const;
    std::int64_t AbsolutePosition() const;
    void SetAbsolutePosition(std::int64_t position); // values below 1 are ignored
    bool Eof() const;                                // also true for a recordset without rows
    bool Bof() const;

    // MoveFirst, MoveLast and MoveNext swallow errors; Move and MovePrevious pass them on.
    void Move(std::int64_t rows);
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();

    // The column's width; 0 when there is no current row.
    Value GetFieldLength(std::string_view field) const;
    // The value as trimmed text; null comes back as 0 in numeric columns and as an empty text in
    // all others. Null itself (an empty variant) when there is no current row.
    Value GetField(std::string_view field) const;
    // Changes the current row in memory; nothing happens without one.
    void SetField(std::string_view field, const Value& value);

    // Inserts a row by a fresh GUID and finds it again by that; the row becomes current and
    // `newId` its key. With `copyField` the key is also written there; when only that fails, the
    // row stays and `newId` names it.
    bool SaveNewRow(std::string_view idField, std::string_view guidField, std::int32_t& newId,
                    std::string_view copyField);
    bool UpdateCurrentRow();
    bool DeleteCurrentRow();

private:
    bool HasRows() const; // connected, and the rows are there
    bool AtRow() const;
    void Swallowed(std::string_view where, const std::exception& error) const;
    void DeleteUplinks(std::string_view linkField);

    const platform::Workstation& lclWorkstation;
    ConnectionPtr lclConnection;
    std::shared_ptr<Recordset> lclRecordset;
    std::string lclTableName, lclCriteria, lclOrdering, lclFailure;
    bool lclConnected = false;
};

// The type rules of clsTable by themselves, for the record classes that follow its pattern.
Value FieldText(const Recordset& recordset, std::string_view field);
void SetFieldByType(Recordset& recordset, std::string_view field, const Value& value);

} // namespace kavidex::data
