// A recordset of the ADO engine. While it is only read, the position is kept here and rows come in
// blocks by GetRows; an edit moves the object to the row and works through its fields until the
// next move. Once the object itself was handed out, its own position is the current row for all.
#pragma once

#include "data/Recordset.h"
#include "platform/win32/Late.h"

namespace kavidex::data::win32 {

class AdoRecordset : public Recordset {
public:
    // `recordset` is open, closed (a statement without rows) or nothing (the same).
    explicit AdoRecordset(platform::win32::Late recordset);
    ~AdoRecordset() override;
    AdoRecordset(const AdoRecordset&) = delete;
    AdoRecordset& operator=(const AdoRecordset&) = delete;

    // The object itself, standing on the current row; from now on everything is asked of it, and it
    // stays open when this recordset ends. Empty for one whose rows all lie in memory here.
    platform::win32::ComPtr<IDispatch> HandOut();

    bool IsOpen() const override;
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
    const Value& Get(std::size_t field) const override;
    void Set(std::size_t field, Value value) override;
    using Recordset::Get;
    using Recordset::Set;

    void AddNew() override;
    void Update() override;
    void CancelUpdate() override;
    void Delete() override;
    void Requery() override;

    void SetSort(std::string_view order) override;
    std::string Sort() const override;
    void SetFilter(std::string_view criteria) override;
    std::string Filter() const override;
    std::unique_ptr<Recordset> Clone() const override;

private:
    using Row = std::vector<Value>;
    static constexpr const char* source = "Kavidex.AdoRecordset"; // of errors

    void NeedOpen() const;
    void NeedRow() const;
    void NeedField(std::size_t field) const;
    void GoTo(std::int64_t position); // local; clamped to BOF and EOF
    void MoveDirect(const wchar_t* member, std::int64_t rows = 0);
    bool AsksObject() const { return lclEditing || lclHandedOut; }
    bool Pending() const;
    void ReadState(); // count and position from the object
    void ReadPosition();
    void EndEdit(bool moved); // by a move, or where the row stands
    void ReadAll();           // a forward-only recordset, to its end
    void PlaceObject();       // the object onto the current row
    void ReadBlock(std::int64_t first) const;
    Row ReadRow(std::int64_t position) const;
    std::vector<Row> ReadRows(std::int64_t count) const;
    const platform::win32::Late& FieldObject(std::size_t field) const;

    platform::win32::Late lclRecordset;
    bool lclForwardOnly = false; // every row is in the block
    bool lclHandedOut = false;
    bool lclEditing = false;   // the object holds the current row, maybe changed
    bool lclAdding = false;    // and that row is new
    bool lclOnDeleted = false; // the current row was deleted, the next one took its place
    bool lclOrdered = false;   // a sort or filter moves rows that are edited
    std::int64_t lclCount = 0;
    std::int64_t lclPosition = 0; // 0 before the first row, count + 1 after the last
    mutable std::vector<Field> lclFields;
    mutable std::vector<platform::win32::Late> lclFieldObjects;
    mutable std::vector<Row> lclBlock;      // an empty row is to be read again
    mutable std::int64_t lclBlockFirst = 0; // position of the block's first row
    mutable Row lclEdited;                  // values last read of a row under change
};

} // namespace kavidex::data::win32
