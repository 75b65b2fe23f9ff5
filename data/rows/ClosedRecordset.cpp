// A recordset in state closed: every use but IsOpen and Close is refused as ADO refuses it.
#include "data/rows/ClosedRecordset.h"

#include "data/Error.h"

namespace kavidex::data {
namespace {

[[noreturn]] void Refuse() {
    throw Error(errors::objectClosed, "Operation is not allowed when the object is closed.",
                "Recordset");
}

class ClosedRecordset final : public Recordset {
public:
    bool IsOpen() const override { return false; }
    void Close() override {}
    bool Eof() const override { Refuse(); }
    bool Bof() const override { Refuse(); }
    std::int64_t RecordCount() const override { Refuse(); }
    std::int64_t AbsolutePosition() const override { Refuse(); }
    void SetAbsolutePosition(std::int64_t) override { Refuse(); }
    void Move(std::int64_t) override { Refuse(); }
    void MoveFirst() override { Refuse(); }
    void MoveLast() override { Refuse(); }
    void MoveNext() override { Refuse(); }
    void MovePrevious() override { Refuse(); }
    const std::vector<Field>& Fields() const override { Refuse(); }
    const Value& Get(std::size_t) const override { Refuse(); }
    void Set(std::size_t, Value) override { Refuse(); }
    void AddNew() override { Refuse(); }
    void Update() override { Refuse(); }
    void CancelUpdate() override { Refuse(); }
    void Delete() override { Refuse(); }
    void Requery() override { Refuse(); }
    void SetSort(std::string_view) override { Refuse(); }
    std::string Sort() const override { Refuse(); }
    void SetFilter(std::string_view) override { Refuse(); }
    std::string Filter() const override { Refuse(); }
    std::unique_ptr<Recordset> Clone() const override { Refuse(); }
};

} // namespace

RecordsetPtr MakeClosedRecordset() { return std::make_unique<ClosedRecordset>(); }

} // namespace kavidex::data
