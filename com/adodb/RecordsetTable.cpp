// The members of a recordset as scripts see them.
#include "com/adodb/Interfaces.h"
#include "com/adodb/RecordsetObject.h"

namespace kavidex::com::adodb {

namespace {

using Row = Rows<RecordsetObject>;
using Self = RecordsetObject;

template <auto move>
void Leaving(Self& self) {
    self.Leave([](data::Recordset& rows) { (rows.*move)(); });
}

constexpr Member members[] = {
    Row::Get<&Self::Fields>(L"Fields", 0),
    Row::Get<[](Self& self) { return static_cast<std::int32_t>(self.Rows().AbsolutePosition()); }>(
        L"AbsolutePosition", 1000),
    Row::Put<[](Self& self, std::int32_t value) {
        self.Leave([&](auto& rows) { rows.SetAbsolutePosition(value); });
    }>(L"AbsolutePosition", 1000),
    Row::Get<&Self::ActiveConnection>(L"ActiveConnection", 1001),
    Row::Put<&Self::SetActiveConnection>(L"ActiveConnection", 1001),
    Row::Get<[](Self& self) { return self.Rows().Bof(); }>(L"BOF", 1002),
    Row::Get<[](Self& self) { return static_cast<double>(self.Rows().AbsolutePosition()); }>(
        L"Bookmark", 1003),
    Row::Put<[](Self& self, double value) {
        self.Leave([&](auto& rows) { rows.SetAbsolutePosition(static_cast<std::int64_t>(value)); });
    }>(L"Bookmark", 1003),
    Row::Get<&Self::CacheSize>(L"CacheSize", 1004),
    Row::Put<&Self::SetCacheSize>(L"CacheSize", 1004),
    Row::Get<&Self::CursorType>(L"CursorType", 1005),
    Row::Put<&Self::SetCursorType>(L"CursorType", 1005),
    Row::Get<[](Self& self) { return self.Rows().Eof(); }>(L"EOF", 1006),
    Row::Get<&Self::LockType>(L"LockType", 1008),
    Row::Put<&Self::SetLockType>(L"LockType", 1008),
    Row::Get<[](Self& self) { return static_cast<std::int32_t>(self.Rows().RecordCount()); }>(
        L"RecordCount", 1010),
    Row::Get<&Self::Source>(L"Source", 1011),
    Row::Put<&Self::SetSource>(L"Source", 1011),
    Row::Method<&Self::AddNew>(L"AddNew", 1012, L"FieldList,Values"),
    Row::Method<&Self::CancelUpdate>(L"CancelUpdate", 1013),
    Row::Method<&Self::Close>(L"Close", 1014),
    Row::Method<&Self::Delete>(L"Delete", 1015, L"AffectRecords"),
    Row::Method<&Self::GetRows>(L"GetRows", 1016, L"Rows,Start,Fields"),
    Row::Method<&Self::Move>(L"Move", 1017, L"NumRecords,Start"),
    Row::Method<&Leaving<&data::Recordset::MoveNext>>(L"MoveNext", 1018),
    Row::Method<&Leaving<&data::Recordset::MovePrevious>>(L"MovePrevious", 1019),
    Row::Method<&Leaving<&data::Recordset::MoveFirst>>(L"MoveFirst", 1020),
    Row::Method<&Leaving<&data::Recordset::MoveLast>>(L"MoveLast", 1021),
    Row::Method<&Self::Open>(L"Open", 1022, L"Source,ActiveConnection,CursorType,LockType,Options"),
    Row::Method<&Leaving<&data::Recordset::Requery>>(L"Requery", 1023),
    Row::Method<&Self::Update>(L"Update", 1025, L"Fields,Values"),
    Row::Get<&Self::EditMode>(L"EditMode", 1026),
    Row::Get<&Self::Filter>(L"Filter", 1030),
    Row::Put<&Self::SetFilter>(L"Filter", 1030),
    Row::Get<[](Self& self) { return self.Rows().Sort(); }>(L"Sort", 1031),
    Row::Put<[](Self& self, std::string order) {
        self.Leave([&](auto& rows) { rows.SetSort(order); });
    }>(L"Sort", 1031),
    Row::Method<[](Self& self, std::optional<std::int32_t>) { return self.Clone(); }>(
        L"Clone", 1034, L"LockType"),
    Row::Method<&Self::Supports>(L"Supports", 1036, L"CursorOptions"),
    Row::Get<&Self::AbsolutePage>(L"AbsolutePage", 1047),
    Row::Put<&Self::SetAbsolutePage>(L"AbsolutePage", 1047),
    Row::Get<&Self::PageSize>(L"PageSize", 1048),
    Row::Put<&Self::SetPageSize>(L"PageSize", 1048),
    Row::Get<&Self::PageCount>(L"PageCount", 1050),
    Row::Get<&Self::CursorLocation>(L"CursorLocation", 1051),
    Row::Put<&Self::SetCursorLocation>(L"CursorLocation", 1051),
    Row::Get<&Self::State>(L"State", 1054),
    Row::Method<&Self::Find>(L"Find", 1058, L"Criteria,SkipRecords,SearchDirection,Start"),
    Row::Method<&Self::GetString>(L"GetString", 1062,
                                  L"StringFormat,NumRows,ColumnDelimeter,RowDelimeter,NullExpr"),
};
constexpr Table table{"Kavidex.Recordset", &iidRecordset, members};

} // namespace

const Table& RecordsetObject::Members() const { return table; }

} // namespace kavidex::com::adodb
