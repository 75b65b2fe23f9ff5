// The members of clsTable and clsSettings as hosts see them.
#include "data/clsTable.h"

#include "com/adodb/RecordsetObject.h"
#include "com/data/faces.h"
#include "data/clsSettings.h"
#include "data/win32/AdoRecordset.h"
#include "data/win32/Convert.h"
#include "kavidex_idl.h"
#include "platform/Workstation.h"

namespace kavidex::com {

namespace {

using data::clsSettings;
using data::clsTable;

// Nothing where there is no current row, as the core's null; a database null never gets here. What
// is no text is the 0 of an empty column of numbers, an Integer.
Variant FieldVariant(const data::Value& value) {
    return data::IsNull(value) ? Variant() : data::win32::ToVariant(value, data::AdoType::SmallInt);
}

// An Integer where there is no current row, else a Long.
Variant LengthVariant(const data::Value& value) {
    const auto length = static_cast<std::int32_t>(data::ToInt64(value));
    return length == 0 ? Variant(std::int16_t{0}) : Variant(length);
}

// An empty variant is an empty text, null is null.
data::Value FieldValue(const Variant& value) {
    return value.IsEmpty() ? data::Value(std::string()) : data::win32::FromVariant(value.Get());
}

// ADO's own recordset where there is one, since hosts hand it on to what takes no other.
ComPtr<IDispatch> RecordSetOf(const clsTable& table) {
    const auto& rows = table.RecordSet();
    if (!rows) return {};
    if (auto* ado = dynamic_cast<data::win32::AdoRecordset*>(rows.get()))
        if (ComPtr<IDispatch> own = ado->HandOut()) return own;
    return Make<adodb::RecordsetObject>(rows);
}

using TableFace = SharedFace<clsTable>;
using Row = Rows<TableFace>;
using Flag = ByRef<std::string>;

constexpr Member tableMembers[] = {
    Row::Get<[](clsTable& table) { return RecordSetOf(table); }>(L"RecordSet", 1),
    Row::PutRef<&clsTable::SetDbConnection>(L"DbConnection", 2),
    Row::Get<&clsTable::Connected>(L"Connected", 3),
    Row::Get<&clsTable::TableName>(L"TableName", 4),
    Row::Put<&clsTable::SetTableName>(L"TableName", 4),
    Row::Get<&clsTable::Criteria>(L"Criteria", 5),
    Row::Put<&clsTable::SetCriteria>(L"Criteria", 5),
    Row::Get<&clsTable::Ordering>(L"Ordering", 6),
    Row::Put<&clsTable::SetOrdering>(L"Ordering", 6),
    Row::Get<[](clsTable& table) { return static_cast<std::int32_t>(table.AbsolutePosition()); }>(
        L"AbsolutePosition", 7),
    Row::Put<[](clsTable& table, std::int32_t position) { table.SetAbsolutePosition(position); }>(
        L"AbsolutePosition", 7),
    Row::Method<[](clsTable& table, std::string field) {
        return LengthVariant(table.GetFieldLength(field));
    }>(L"GetFieldLength", 8, L"Field"),
    Row::Method<[](clsTable& table, std::string field) {
        return FieldVariant(table.GetField(field));
    }>(L"GetField", 9, L"Field"),
    Row::Method<[](clsTable& table, std::string field, Variant value) {
        table.SetField(field, FieldValue(value));
    }>(L"SetField", 10, L"Field,Value"),
    Row::Method<&clsTable::OpenDbConnection>(L"OpenDbConnection", 11),
    Row::Method<&clsTable::CloseDataSource>(L"CloseDataSource", 12),
    Row::Method<&clsTable::ReQuery>(L"ReQuery", 13),
    Row::Get<[](clsTable& table) { return static_cast<std::int32_t>(table.RecordCount()); }>(
        L"RecordCount", 14),
    Row::Get<&clsTable::Eof>(L"EOF", 15),
    Row::Get<&clsTable::Bof>(L"BOF", 16),
    Row::Method<[](clsTable& table, std::int32_t rows) { table.Move(rows); }>(L"Move", 17, L"Rows"),
    Row::Method<&clsTable::MoveFirst>(L"MoveFirst", 18),
    Row::Method<&clsTable::MoveLast>(L"MoveLast", 19),
    Row::Method<&clsTable::MoveNext>(L"MoveNext", 20),
    Row::Method<&clsTable::MovePrevious>(L"MovePrevious", 21),
    Row::Method<[](clsTable& table, std::string idField, std::string guidField,
                   ByRef<std::int32_t>& id, std::string copyField) {
        return table.SaveNewRow(idField, guidField, id.value, copyField);
    }>(L"SaveNewRow", 22, L"IdField,GuidField,NewId,CopyField"),
    Row::Method<&clsTable::UpdateCurrentRow>(L"UpdateCurrentRow", 23),
    Row::Method<&clsTable::DeleteCurrentRow>(L"DeleteCurrentRow", 24),
};
constexpr Table table{"Kavidex.clsTable", &DIID__clsTable, tableMembers};

using Setting = Rows<SharedFace<clsSettings>>;

constexpr Member settingsMembers[] = {
    Setting::Get<&clsSettings::DbConnection>(L"DbConnection", 1),
    Setting::PutRef<&clsSettings::SetDbConnection>(L"DbConnection", 1),
    Setting::Method<[](clsSettings& self, std::string section, std::string key, Flag& value) {
        return self.GetSetting(section, key, value.value);
    }>(L"GetSetting", 2, L"Section,Key,Value"),
    Setting::Method<[](clsSettings& self, std::string sections, std::string keys, Flag& value,
                       Flag& section, Flag& key, std::optional<bool> close) {
        return self.GetSettingLike(sections, keys, value.value, section.value, key.value,
                                   close.value_or(false));
    }>(L"GetSettingLike", 3, L"SectionPattern,KeyPattern,Value,Section,Key,Close"),
    Setting::Method<[](clsSettings& self, Flag& value) {
        return self.GetNextSetting(value.value);
    }>(L"GetNextSetting", 4, L"Value"),
    Setting::Method<[](clsSettings& self, Flag& value, Flag& section, Flag& key) {
        return self.GetNextSettingLike(value.value, section.value, key.value);
    }>(L"GetNextSettingLike", 5, L"Value,Section,Key"),
    Setting::Method<&clsSettings::SetSetting>(L"SetSetting", 6, L"Section,Key,Value"),
    Setting::Method<&clsSettings::DeleteSetting>(L"DeleteSetting", 7, L"Section,Key"),
    Setting::Method<&clsSettings::DeleteCurrentSetting>(L"DeleteCurrentSetting", 8),
    Setting::Get<&clsSettings::Id>(L"Id", 9),
    Setting::Method<&clsSettings::CloseSettings>(L"CloseSettings", 10),
};
constexpr Table settingsTable{"Kavidex.clsSettings", &DIID__clsSettings, settingsMembers};

} // namespace

template <>
const Table& TableOf<clsTable>() {
    return table;
}
template <>
const Table& TableOf<clsSettings>() {
    return settingsTable;
}

ComPtr<IDispatch> FaceOf<clsTable>::Make(std::shared_ptr<clsTable> object) {
    return SharedFace<clsTable>::For(std::move(object));
}
ComPtr<IDispatch> FaceOf<clsSettings>::Make(std::shared_ptr<clsSettings> object) {
    return SharedFace<clsSettings>::For(std::move(object));
}

ComPtr<IDispatch> NewTable() {
    return FaceOf<clsTable>::Make(std::make_shared<clsTable>(platform::TheWorkstation()));
}
ComPtr<IDispatch> NewSettings() {
    return FaceOf<clsSettings>::Make(std::make_shared<clsSettings>(platform::TheWorkstation()));
}

} // namespace kavidex::com
