// The items that one tab of one dossier type is expected to hold.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "data/Connection.h"
#include "model/clsField.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::model {

class clsCheckListType {
public:
    explicit clsCheckListType(const platform::Workstation& workstation);

    const data::ConnectionPtr& DbConnection() const { return lclConnection; }
    void SetDbConnection(data::ConnectionPtr connection) { lclConnection = std::move(connection); }
    std::int32_t CheckListId() const { return lclCheckListId; }
    void SetCheckListId(std::int32_t id) { lclCheckListId = id; }
    // Dossier type, "^", tab type.
    const std::string& CheckListTabType() const { return lclCheckListTabType; }
    void SetCheckListTabType(std::string_view type) { lclCheckListTabType = type; }
    const std::vector<clsFieldPtr>& CheckListFields() const { return lclFields; } // in load order
    void SetCheckListFields(std::vector<clsFieldPtr> fields) { lclFields = std::move(fields); }

    // 0 loaded, 2 nothing to load, -1 when the database refused (what was loaded so far stays, and
    // is no list: it is not written).
    std::int32_t GetType(std::string_view dossierType, std::string_view tabType);
    void NewType();
    clsFieldPtr CreateField(std::int16_t order, std::string_view fieldDescription,
                            std::int16_t numberToRecieve, std::string_view descriptionsToCheck,
                            std::string_view fieldType);
    // Replaces the stored list, wholly or not at all. Both throw data::Error when refused; so does
    // the first after a load that failed, until one succeeds or a new list is begun.
    void UpdateCurrentType();
    void DeleteCurrentType();

private:
    void LoadFields();
    void DeleteRows();

    const platform::Workstation& lclWorkstation;
    data::ConnectionPtr lclConnection;
    std::int32_t lclCheckListId = 0;
    std::string lclCheckListTabType;
    std::vector<clsFieldPtr> lclFields;
    bool lclUnread = false; // the stored list, or a part of it
};

} // namespace kavidex::model
