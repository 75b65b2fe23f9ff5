#include "model/dossierTypes.h"

#include <algorithm>

#include "data/modData.h"
#include "data/schema/upgradeSteps.h"
#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::model {
namespace {

std::vector<DossierType> Types(const platform::Workstation& workstation,
                               const data::ConnectionPtr& connection, std::string_view where) {
    std::vector<DossierType> types;
    try {
        const auto rows =
            Store(connection)
                .Read("Select TypeId, DossierType, DossierDescription from tblDossierTypes" +
                      std::string(where));
        for (; !rows->Eof(); rows->MoveNext())
            types.push_back({data::ToInt32(rows->Get(0)),
                             AsTyped(connection, TrimmedText(rows->Get(1))),
                             AsTyped(connection, TrimmedText(rows->Get(2)))});
    } catch (const platform::Error& error) {
        workstation.log.Write("DossierTypes", error.what());
        if (data::UpgradeContext{workstation, connection}.HasTable("tblDossierTypes")) throw;
    }
    return types;
}

} // namespace

bool IsAutomatic(std::string_view autoCreate) {
    static constexpr std::string_view no[] = {"0", "no", "nee", "false"};
    const auto value = platform::LowerCase(platform::TrimView(autoCreate));
    return std::find(std::begin(no), std::end(no), value) == std::end(no);
}

std::vector<DossierType> DossierTypes(const platform::Workstation& workstation,
                                      const data::ConnectionPtr& connection) {
    return Types(workstation, connection, " order by DossierType");
}

DossierType FindDossierType(const platform::Workstation& workstation,
                            const data::ConnectionPtr& connection, std::string_view name) {
    const auto types = Types(workstation, connection,
                             " where DossierType = " + data::SqlValue(AsWritten(connection, name)));
    return types.empty() ? DossierType{0, std::string(name), {}} : types.front();
}

std::vector<DossierTab> TabsOfType(const Store& store, std::int32_t typeId) {
    std::vector<DossierTab> tabs;
    const auto rows = store.Read("Select TabId, TabDescription, TabType, IntOrder, AutoCreate from "
                                 "tblDossierTabs where DossierTypeId = " +
                                 Number(typeId) + " order by IntOrder, TabId");
    for (; !rows->Eof(); rows->MoveNext())
        tabs.push_back({data::ToInt32(rows->Get(0)),
                        AsTyped(store.Connection(), TrimmedText(rows->Get(1))),
                        AsTyped(store.Connection(), TrimmedText(rows->Get(2))),
                        data::ToInt32(rows->Get(3)), IsAutomatic(TrimmedText(rows->Get(4)))});
    return tabs;
}

bool HoldType(const Store& store, std::int32_t typeId) {
    const auto number = Number(typeId);
    store.Write("update tblDossierTypes set DossierType = DossierType where TypeId = " + number);
    return !store.ReadNow("Select TypeId from tblDossierTypes where TypeId = " + number)->Eof();
}

void SaveTabs(const platform::Workstation& workstation, const Store& store, std::int32_t typeId,
              const std::vector<DossierTab>& before, const std::vector<DossierTab>& after) {
    const auto in = [](const std::vector<DossierTab>& tabs, std::int32_t id) {
        return std::find_if(tabs.begin(), tabs.end(),
                            [&](const DossierTab& tab) { return tab.id == id; });
    };
    for (const auto& tab : before)
        if (in(after, tab.id) == after.end())
            store.Write("Delete from tblDossierTabs where TabId = " + Number(tab.id));
    for (const auto& tab : after) {
        const auto known = tab.id ? in(before, tab.id) : before.end();
        if (known != before.end() && *known == tab) continue;
        auto id = tab.id;
        if (known == before.end()) {
            const auto guid = data::SqlValue(NewGuid(workstation));
            id = InsertRow(
                workstation, store,
                {"Insert into tblDossierTabs (DossierTypeId, TabGuid) Values (" + Number(typeId) +
                     ", " + guid + ")",
                 "Select * from tblDossierTabs where TabGuid = " + guid},
                [](data::Recordset& row, std::int32_t key) { SetNumber(row, "TabId", key); });
        }
        store.Write(
            "Update tblDossierTabs set TabDescription = " + data::SqlValue(tab.description) +
            ", TabType = " + data::SqlValue(tab.type) + ", IntOrder = " + Number(tab.order) +
            ", AutoCreate = " + data::SqlValue(tab.automatic ? "1" : "0") +
            " where TabId = " + Number(id));
    }
}

std::int32_t AddDossierType(const platform::Workstation& workstation, const Store& store,
                            std::string_view name, std::string_view description) {
    const auto guid = data::SqlValue(NewGuid(workstation));
    return InsertRow(workstation, store,
                     {"Insert into tblDossierTypes (DossierType, DossierDescription, TypeGuid) "
                      "Values (" +
                          data::SqlValue(name) + ", " + data::SqlValue(description) + ", " + guid +
                          ")",
                      "Select * from tblDossierTypes where TypeGuid = " + guid},
                     [](data::Recordset& row, std::int32_t key) { SetNumber(row, "TypeId", key); });
}

void RemoveDossierType(const Store& store, std::int32_t typeId) {
    store.Write("Delete from tblDossierTabs where DossierTypeId = " + Number(typeId));
    store.Write("Delete from tblDossierTypes where TypeId = " + Number(typeId));
}

} // namespace kavidex::model
