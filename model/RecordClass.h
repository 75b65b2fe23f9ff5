// What the record classes share: one table, one open recordset, a current row, moves, and one way
// to report a failure.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "data/Connection.h"
#include "data/Texts.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::model {

// Operations that return bool report a failure in a message box and return false. Moves without an
// open recordset do nothing; MoveFirst, MoveLast and MoveNext swallow errors, Move and MovePrevious
// pass them on.
class RecordClass {
public:
    virtual ~RecordClass();
    RecordClass(const RecordClass&) = delete;
    RecordClass& operator=(const RecordClass&) = delete;

    const data::ConnectionPtr& DbConnection() const { return lclConnection; }
    void SetDbConnection(data::ConnectionPtr connection) { lclConnection = std::move(connection); }
    // What the messages shown pass through; without it they are shown as they stand.
    void SetTranslation(data::Translation translation) { lclTranslation = std::move(translation); }
    const std::string& TableName() const { return lclTableName; }
    void SetTableName(std::string_view name) { lclTableName = name; }
    const std::string& Ordering() const { return lclOrdering; }
    void SetOrdering(std::string_view ordering) { lclOrdering = ordering; }
    bool Connected() const { return lclConnected; }

    bool OpenDataSource();
    void CloseDataSource();
    void ReQuery();
    // Copies the current row into the properties; false at BOF and EOF.
    bool LoadData();
    virtual bool SaveNewRow() = 0;
    virtual bool UpdateCurrentRow() = 0;
    virtual bool DeleteCurrentRow() = 0;

    std::int64_t RecordCount() const;
    std::int64_t AbsolutePosition() const;
    void SetAbsolutePosition(std::int64_t position); // values below 1 are ignored
    bool Eof() const;                                // also true for a recordset without rows
    bool Bof() const;
    void Move(std::int64_t rows);
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();

protected:
    // `title` is the message's caption, with a place for the class name.
    RecordClass(const platform::Workstation& workstation, std::string_view table,
                std::string_view title, std::string_view className);

    virtual std::string SelectStatement() const = 0;
    // What is read where that finds no row; empty for nothing.
    virtual std::string OtherStatement() const { return {}; }
    // A filter over the rows read that leaves out soft-deleted ones; empty for all rows.
    virtual std::string_view LiveRows() const { return {}; }
    virtual void ReadRow(const data::Recordset& row) = 0;
    // After an open or a move put another row in place.
    virtual void RowChanged() {}

    bool AtRow() const;
    // Runs a change of the current row as Guarded does; false, and nothing done, where an open data
    // source stands at its end, or could not be opened: the properties still show the row before.
    template <class Work>
    bool GuardedRow(std::string_view where, Work work) {
        const bool shown = lclConnected ? AtRow() : !lclOpenFailed;
        if (shown || lclSaved) return Guarded(where, work);
        ReportNoRow(where);
        return false;
    }
    void RowSaved() { lclSaved = true; } // a new row is the one that the properties show
    const data::Recordset* Current() const { return AtRow() ? lclRecordset.get() : nullptr; }
    std::int64_t FieldSize(std::string_view column) const; // 0 when there is no current row
    // Runs the work; a failure is shown and logged, and gives false.
    template <class Work>
    bool Guarded(std::string_view where, Work work) {
        try {
            return work();
        } catch (const std::exception& error) {
            Report(where, error);
            return false;
        }
    }
    void ReportNoRow(std::string_view where) const; // in the log
    void Report(std::string_view where, const std::exception& error) const;
    const data::Translation& Translation() const { return lclTranslation; }
    const platform::Workstation& Machine() const { return lclWorkstation; }

private:
    data::RecordsetPtr ReadRows(const std::string& statement) const;
    void Moved();
    void MoveQuietly(void (data::Recordset::*move)());

    const platform::Workstation& lclWorkstation;
    data::ConnectionPtr lclConnection;
    data::Translation lclTranslation;
    data::RecordsetPtr lclRecordset;
    std::string lclTableName, lclOrdering;
    std::string lclTitle, lclClassName;
    bool lclConnected = false;
    bool lclOpenFailed = false; // the last time; whoever closes the data source lets it rest
    bool lclSaved = false;      // since the data source was opened or moved
};

} // namespace kavidex::model
