// The settings table: look-ups that stay open, writes in each dialect's form.
#include "data/clsSettings.h"

#include <algorithm>

#include "data/Error.h"
#include "data/modData.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::data {
namespace {

bool HasField(const Recordset& rows, std::string_view name) {
    return std::any_of(rows.Fields().begin(), rows.Fields().end(), [&](const Field& field) {
        return platform::EqualAsciiNoCase(field.name, name);
    });
}

Parameter TextParameter(std::string_view name, std::string_view value) {
    // ADO takes no text parameter of size 0.
    const std::size_t size = std::max<std::size_t>(platform::ToUtf16(value).size(), 1);
    return {std::string(name), AdoType::Char, 1, static_cast<std::int64_t>(size),
            std::string(value)};
}

std::string Where(std::string_view section, std::string_view key) {
    return "Section = " + SqlValue(section) + " and sKey = " + SqlValue(key);
}

// The text between single quotes; throws where it would end there, at a quote that is not doubled.
std::string Bare(std::string_view text) {
    if (platform::Replace(text, "''", "").find('\'') != std::string::npos)
        throw Error(errors::invalidArgument,
                    "A setting holds no single quotes: " + std::string(text), "clsSettings");
    return "'" + std::string(text) + "'";
}

} // namespace

clsSettings::clsSettings(const platform::Workstation& workstation) : lclWorkstation(workstation) {}

clsSettings::~clsSettings() { CloseSettings(); }

void clsSettings::SetDbConnection(ConnectionPtr connection) {
    CloseSettings();
    lclRecordset.reset();
    lclConnection = std::move(connection);
    lclFailure.clear();
}

void clsSettings::Failed(std::string_view where, std::string_view what) {
    lclFailure = what;
    lclWorkstation.log.Write(where, what);
}

void clsSettings::CloseSettings() {
    try {
        if (lclRecordset && lclRecordset->IsOpen()) lclRecordset->Close();
    } catch (const std::exception& error) {
        lclWorkstation.log.Write("clsSettings.CloseSettings", error.what());
    }
}

// False when the statement was refused.
bool clsSettings::Query(const std::string& statement) {
    CloseSettings();
    lclRecordset =
        OpenRecordset(lclWorkstation, statement, lclConnection, CommandType::Text, &lclFailure);
    return lclRecordset->IsOpen();
}

// Opens a look-up; false when the table cannot be read. A table that still has the column Key
// beside or instead of SKey is converted on the way.
bool clsSettings::LookUp(const std::string& where) {
    const std::string statement = "Select * from tblSettings where " + where;
    const bool open = Query(statement);
    if (open && !(lclRecordset->Eof() && HasField(*lclRecordset, "Key"))) return true;
    const std::string refused = lclFailure;
    if (!open && !Query("select * from tblsettings")) return false;
    const bool old = HasField(*lclRecordset, "Key");
    if (old)
        MigrateKeyColumn();
    else
        lclFailure = refused;
    CloseSettings(); // nobody walks on over rows that were only looked at
    return lclFailure.empty() && Query(statement);
}

// The column Key goes only after every row was copied.
void clsSettings::MigrateKeyColumn() {
    CloseSettings();
    ExecuteSql(lclWorkstation, "ALTER TABLE tblSettings ADD COLUMN SKey TEXT(255)", lclConnection);
    if (!Query("select * from tblsettings")) return;
    try {
        for (; !lclRecordset->Eof(); lclRecordset->MoveNext()) {
            const Value& key = lclRecordset->Get("Key");
            if (IsNull(key)) continue; // written after an interrupted conversion
            lclRecordset->Set("SKey", Value(key));
            lclRecordset->Update();
        }
    } catch (const std::exception& error) {
        Failed("clsSettings.MigrateKeyColumn", error.what());
        return;
    }
    CloseSettings();
    ExecuteSql(lclWorkstation, "ALTER TABLE tblSettings DROP COLUMN [Key]", lclConnection);
}

// The current row's texts, trimmed; false at the end of the rows.
bool clsSettings::ReadCurrent(std::string& value, std::string* section, std::string* key) {
    value.clear();
    if (section) section->clear();
    if (key) key->clear();
    try {
        if (!lclRecordset || !lclRecordset->IsOpen() || lclRecordset->Eof()) return false;
        value = platform::Trim(ToText(lclRecordset->Get("Value")));
        if (section) *section = platform::Trim(ToText(lclRecordset->Get("Section")));
        if (key) *key = platform::Trim(ToText(lclRecordset->Get("sKey")));
        return true;
    } catch (const std::exception& error) {
        Failed("clsSettings", error.what());
        return false;
    }
}

bool clsSettings::GetSetting(std::string_view section, std::string_view key, std::string& value) {
    value.clear();
    return LookUp(Where(section, key)) && ReadCurrent(value, nullptr, nullptr);
}

bool clsSettings::GetSettingLike(std::string_view sectionPattern, std::string_view keyPattern,
                                 std::string& value, std::string& section, std::string& key,
                                 bool close) {
    LookUp("Section like " + SqlValue(sectionPattern) + " and sKey like " + SqlValue(keyPattern));
    const bool found = ReadCurrent(value, &section, &key); // closed when the look-up failed
    if (close) CloseSettings();
    return found;
}

bool clsSettings::GetNextSetting(std::string& value) {
    std::string section, key;
    return GetNextSettingLike(value, section, key);
}

bool clsSettings::GetNextSettingLike(std::string& value, std::string& section, std::string& key) {
    lclFailure.clear();
    try {
        if (lclRecordset && lclRecordset->IsOpen() && !lclRecordset->Eof())
            lclRecordset->MoveNext();
    } catch (const std::exception& error) {
        Failed("clsSettings.GetNextSetting", error.what());
    }
    return ReadCurrent(value, &section, &key);
}

void clsSettings::Write(const std::string& statement) {
    ExecuteSql(lclWorkstation, statement, lclConnection, nullptr, &lclFailure);
}

void clsSettings::Insert(std::string_view section, std::string_view key, std::string_view value) {
    const bool access = IsAccessConnection(lclConnection);
    if (access || IsMySqlConnection(lclConnection))
        return Write("Insert into tblSettings (Section,sKey," +
                     std::string(access ? "[Value]" : "Value") + ") Values(" + SqlValue(section) +
                     "," + Bare(key) + "," + Bare(value) + ")");
    for (const auto text : {key, value}) Bare(text); // what a later update would refuse
    lclConnection->Open({"AddToSettings",
                         CommandType::StoredProcedure,
                         {TextParameter("Section", section), TextParameter("Key", key),
                          TextParameter("Value", value)}});
}

void clsSettings::SetSetting(std::string_view section, std::string_view key,
                             std::string_view value) {
    try {
        if (!LookUp(Where(section, key))) return;
        const bool exists = !lclRecordset->Eof();
        CloseSettings();
        if (!exists) return Insert(section, key, value);
        Write("update tblSettings set " +
              std::string(IsAccessConnection(lclConnection) ? "[Value]" : "Value") + " = " +
              Bare(value) + " WHERE  " + Where(section, key));
    } catch (const std::exception& error) {
        Failed("clsSettings.SetSetting", error.what());
    }
}

void clsSettings::DeleteRows(std::string_view section, std::string_view key) {
    CloseSettings();
    Write("Delete from tblSettings where " + Where(section, key));
}

bool clsSettings::DeleteSetting(std::string_view section, std::string_view key) {
    std::string value;
    if (!GetSetting(section, key, value)) return false;
    DeleteRows(section, key);
    return lclFailure.empty();
}

bool clsSettings::DeleteCurrentSetting() {
    std::string value, section, key;
    if (!ReadCurrent(value, &section, &key)) return false;
    DeleteRows(section, key);
    return lclFailure.empty();
}

std::int32_t clsSettings::Id() {
    try {
        if (!lclRecordset || !lclRecordset->IsOpen() || lclRecordset->Eof()) return 0;
        std::int32_t id = ToInt32(lclRecordset->Get("Id"));
        if (id == 0) {
            lclRecordset->Requery();
            if (!lclRecordset->Eof()) id = ToInt32(lclRecordset->Get("Id"));
        }
        return id;
    } catch (const std::exception& error) {
        Failed("clsSettings.Id", error.what());
        return 0;
    }
}

} // namespace kavidex::data
