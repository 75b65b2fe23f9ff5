// The face of ADODB.Recordset over the data layer's recordsets.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "com/adodb/ConnectionObject.h"
#include "data/Recordset.h"

namespace kavidex::com::adodb {

class RecordsetObject : public Reporting {
public:
    // Closed: takes its settings, then Open. Locked for reading only until LockType says otherwise,
    // as ADO has it.
    RecordsetObject() = default;
    // A result of the connection; it can be edited.
    RecordsetObject(ComPtr<ConnectionObject> connection, data::RecordsetPtr rows);
    // Over a recordset that it shares with another object.
    explicit RecordsetObject(std::shared_ptr<data::Recordset> rows);

    const Table& Members() const override;

    data::Recordset& Rows() const; // open; throws errors::objectClosed
    data::Recordset& RowsToEdit() const;
    std::size_t FieldIndex(const Variant& index) const; // by name or number from 0
    Variant Value(std::size_t field) const;
    void SetValue(std::size_t field, const Variant& value);

    void Open(std::optional<Variant> source, std::optional<Variant> connection,
              std::optional<std::int32_t> cursorType, std::optional<std::int32_t> lockType,
              std::optional<std::int32_t> options);
    void Close();
    std::int32_t State() const;
    ComPtr<IDispatch> Fields();

    void Move(std::int32_t rows, std::optional<Variant> start);
    Variant GetRows(std::optional<std::int32_t> rows, std::optional<Variant> start,
                    std::optional<Variant> fields);
    void AddNew(std::optional<Variant> fields, std::optional<Variant> values);
    void Update(std::optional<Variant> fields, std::optional<Variant> values);
    void CancelUpdate();
    void Delete(std::optional<std::int32_t> affect);
    Variant Filter() const;
    void SetFilter(const Variant& filter);
    std::int32_t EditMode() const { return lclEditMode; }
    // Runs what leaves the current row: afterwards none is under change.
    template <class Work>
    void Leave(Work work) {
        work(Rows());
        lclEditMode = 0;
    }
    void Find(const std::string& criteria, std::optional<std::int32_t> skip,
              std::optional<std::int32_t> direction, std::optional<Variant> start);
    std::string GetString(std::optional<std::int32_t> format, std::optional<std::int32_t> count,
                          std::optional<std::string> columnDelimiter,
                          std::optional<std::string> rowDelimiter,
                          std::optional<std::string> nullText);
    bool Supports(std::int32_t options) const;
    ComPtr<IDispatch> Clone() const; // for reading only, whatever the lock of this one

    // Pages are counted from 1 over the rows shown.
    std::int32_t PageSize() const { return lclPageSize; }
    void SetPageSize(std::int32_t rows);
    std::int32_t PageCount() const;
    std::int32_t AbsolutePage() const;
    void SetAbsolutePage(std::int32_t page);

    Variant ActiveConnection() const;
    void SetActiveConnection(const Variant& connection);
    Variant Source() const;
    void SetSource(const Variant& source);
    void SetCursorLocation(std::int32_t value);
    void SetCursorType(std::int32_t value);
    void SetLockType(std::int32_t value);

    std::int32_t CursorLocation() const { return lclCursorLocation; }
    std::int32_t CursorType() const { return lclCursorType; }
    std::int32_t LockType() const { return lclLockType; }
    std::int32_t CacheSize() const { return lclCacheSize; }
    void SetCacheSize(std::int32_t rows);

protected:
    ConnectionObject* Reporter() override { return lclConnection.Get(); }

private:
    void NeedClosed() const;
    void SetValues(const std::optional<Variant>& fields, const std::optional<Variant>& values);

    ComPtr<ConnectionObject> lclConnection;
    std::shared_ptr<data::Recordset> lclRows;
    Variant lclSource;
    std::int32_t lclCursorLocation = 2, lclCursorType = 0, lclLockType = 1, lclCacheSize = 1;
    std::int32_t lclPageSize = 10;
    std::int32_t lclEditMode = 0; // 0 none, 1 changing, 2 adding
};

// The connection that an argument means: one of ours, any other ADODB connection, or the text of a
// connection string, which is opened.
ComPtr<ConnectionObject> ConnectionFor(const Variant& connection);

} // namespace kavidex::com::adodb
