// A recordset whose rows live in memory: for engines without a client cursor of their own.
//
// Static and optimistic: Update and Delete name the row by its key and by every value it was read
// with, and refuse with errors::rowChanged when no such row is left. A move away from a changed row
// writes it first, as ADO does; a row whose Update failed is left without another try, so that a
// loop over all rows ends. Close and Requery drop what was not written.
#pragma once

#include "data/rows/RowEdit.h"
#include "data/rows/RowSource.h"

namespace kavidex::data {

class ClientRecordset : public Recordset {
public:
    // A closed one, from a statement without rows.
    ClientRecordset() = default;
    // `source` may be null: the rows can be read, sorted and filtered, not written.
    ClientRecordset(ResultRows result, std::unique_ptr<RowSource> source);

    bool IsOpen() const override { return lclOpen; }
    void Close() override;

    bool Eof() const override;
    bool Bof() const override;
    std::int64_t RecordCount() const override;
    std::int64_t AbsolutePosition() const override;
    void SetAbsolutePosition(std::int64_t position) override;
    void Move(std::int64_t rows) override;
    void MoveFirst() override;
    void MoveLast() override;
    void MoveNext() override;
    void MovePrevious() override;

    const std::vector<Field>& Fields() const override;
    using Recordset::Get;
    using Recordset::Set;
    const Value& Get(std::size_t field) const override;
    void Set(std::size_t field, Value value) override;

    void AddNew() override;
    void Update() override;
    void CancelUpdate() override;
    void Delete() override;
    void Requery() override;

    void SetSort(std::string_view order) override;
    std::string Sort() const override { return lclSort; }
    void SetFilter(std::string_view criteria) override;
    std::string Filter() const override { return lclFilter; }
    std::unique_ptr<Recordset> Clone() const override;

private:
    void CheckOpen() const;
    std::size_t CurrentRow() const; // in the store; throws errors::badEof without one
    void GoTo(std::int64_t position);
    void LeaveRow(); // writes pending changes before a move
    void DropChanges();
    void BuildView(std::string_view sort, std::string_view filter);
    RowSource& Source() const;

    bool lclOpen = false;
    FieldsPtr lclFields;
    RowStore lclRows;
    std::unique_ptr<RowSource> lclSource;

    std::vector<std::uint32_t> lclView; // rows of the store, sorted and filtered
    std::vector<bool> lclRemoved;       // rows of the store deleted through this recordset; lazily
    std::int64_t lclPosition = 0;       // 0-based in the view; -1 BOF, size EOF
    bool lclOnDeleted = false;          // the row at lclPosition was deleted, the next stands there
    bool lclAdding = false;
    bool lclRefused = false; // the pending changes failed, and that was reported
    RowChanges lclChanges;   // empty when nothing is pending

    // Values of the current row, converted on first reading; lclStamps tells which are current.
    mutable std::vector<Value> lclCurrent;
    mutable std::vector<std::uint32_t> lclStamps;
    mutable std::uint32_t lclStamp = 1;

    std::string lclSort;
    std::string lclFilter;
};

} // namespace kavidex::data
