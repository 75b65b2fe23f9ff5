// The database-wide settings: rows of section, key and value in tblSettings.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "data/Connection.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::data {

// One recordset, reused: the last query stays open so that the "next" members can walk on.
// Failures read as "not found" and leave a trace in the log; Failure tells one from the other.
class clsSettings {
public:
    explicit clsSettings(const platform::Workstation& workstation);
    ~clsSettings();
    clsSettings(const clsSettings&) = delete;
    clsSettings& operator=(const clsSettings&) = delete;

    void SetDbConnection(ConnectionPtr connection);
    const ConnectionPtr& DbConnection() const { return lclConnection; }

    // Why the last operation could not read or write; empty where it could. "Not found" is an
    // answer only then.
    const std::string& Failure() const { return lclFailure; }

    // `value` is trimmed; empty when the row's value is null or there is no row.
    bool GetSetting(std::string_view section, std::string_view key, std::string& value);
    // The patterns bring their own wildcards.
    bool GetSettingLike(std::string_view sectionPattern, std::string_view keyPattern,
                        std::string& value, std::string& section, std::string& key, bool close);
    bool GetNextSetting(std::string& value);
    bool GetNextSettingLike(std::string& value, std::string& section, std::string& key);

    // Inserts or updates. Key and value go into the statement with their single quotes as they
    // are: one that would end the text there is refused, and the setting stays as it was.
    void SetSetting(std::string_view section, std::string_view key, std::string_view value);

    // False when there is no such setting, or its deletion was refused.
    bool DeleteSetting(std::string_view section, std::string_view key);
    bool DeleteCurrentSetting();
    std::int32_t Id(); // of the current row, 0 without one
    void CloseSettings();

private:
    void Failed(std::string_view where, std::string_view what);
    bool Query(const std::string& statement);
    bool LookUp(const std::string& where);
    void MigrateKeyColumn();
    bool ReadCurrent(std::string& value, std::string* section, std::string* key);
    void Insert(std::string_view section, std::string_view key, std::string_view value);
    void Write(const std::string& statement);
    void DeleteRows(std::string_view section, std::string_view key);

    const platform::Workstation& lclWorkstation;
    ConnectionPtr lclConnection;
    RecordsetPtr lclRecordset;
    std::string lclFailure;
};

} // namespace kavidex::data
