// Rows of the ADO engine under change: the object stands on the row, and holds what was set, until
// it is written or dropped.
#include "data/Error.h"
#include "data/win32/AdoRecordset.h"
#include "data/win32/Convert.h"
#include "data/win32/Guard.h"

namespace kavidex::data::win32 {

using platform::win32::Variant;

// One row changed where it stands: the others of the block are as they were.
void AdoRecordset::EndEdit(bool moved) {
    if (!lclEditing || lclAdding || lclOrdered || lclHandedOut) return ReadState();
    const std::int64_t place = lclPosition - lclBlockFirst;
    if (place >= 0 && place < static_cast<std::int64_t>(lclBlock.size()))
        lclBlock[static_cast<std::size_t>(place)].clear();
    lclEditing = false;
    lclEdited.clear();
    if (moved) ReadPosition();
}

// ADO refuses to write or drop a change where there is none.
bool AdoRecordset::Pending() const {
    if (!lclHandedOut) return lclEditing;
    return Guarded({}, [&] { return lclRecordset.Get(L"EditMode").ToInt32() != 0; });
}

void AdoRecordset::PlaceObject() {
    if (!AsksObject())
        Guarded({}, [&] { lclRecordset.Put(L"AbsolutePosition", {Variant::Big(lclPosition)}); });
}

void AdoRecordset::Set(std::size_t field, Value value) {
    NeedField(field);
    NeedRow();
    if (lclForwardOnly)
        throw Error(errors::featureNotAvailable, "This recordset is read-only.", source);
    PlaceObject();
    lclEditing = true;
    Guarded({},
            [&] { FieldObject(field).Put(L"Value", {ToVariant(value, lclFields[field].type)}); });
}

void AdoRecordset::AddNew() {
    NeedOpen();
    if (lclForwardOnly)
        throw Error(errors::featureNotAvailable, "This recordset is read-only.", source);
    Guarded({}, [&] { lclRecordset.Call(L"AddNew"); });
    lclEditing = lclAdding = true;
    lclOnDeleted = false;
}

void AdoRecordset::Update() {
    NeedOpen();
    if (!Pending()) return;
    Guarded({}, [&] {
        lclRecordset.Call(L"Update");
        EndEdit(false);
    });
}

void AdoRecordset::CancelUpdate() {
    NeedOpen();
    if (!Pending()) return;
    Guarded({}, [&] {
        lclRecordset.Call(L"CancelUpdate");
        EndEdit(false);
    });
}

void AdoRecordset::Delete() {
    NeedOpen();
    NeedRow();
    if (lclForwardOnly)
        throw Error(errors::featureNotAvailable, "This recordset is read-only.", source);
    const bool adding = lclAdding;
    PlaceObject();
    Guarded({}, [&] { lclRecordset.Call(L"Delete", {1}); }); // adAffectCurrent
    if (adding || lclHandedOut) return Guarded({}, [&] { ReadState(); });
    // The deleted row stays current until the next move; the rows after it moved up.
    const std::int64_t place = lclPosition - lclBlockFirst;
    lclEditing = false;
    lclEdited.clear();
    if (place >= 0 && place < static_cast<std::int64_t>(lclBlock.size()))
        lclBlock.erase(lclBlock.begin() + static_cast<std::ptrdiff_t>(place));
    else
        lclBlock.clear();
    --lclCount;
    lclOnDeleted = true;
}

} // namespace kavidex::data::win32
