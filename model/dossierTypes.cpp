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
            types.push_back({data::ToInt32(rows->Get(0)), TrimmedText(rows->Get(1)),
                             TrimmedText(rows->Get(2))});
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
    const auto types =
        Types(workstation, connection, " where DossierType = " + data::SqlValue(name));
    return types.empty() ? DossierType{0, std::string(name), {}} : types.front();
}

std::vector<DossierTab> TabsOfType(const Store& store, std::int32_t typeId) {
    std::vector<DossierTab> tabs;
    const auto rows = store.Read("Select TabId, TabDescription, TabType, IntOrder, AutoCreate from "
                                 "tblDossierTabs where DossierTypeId = " +
                                 Number(typeId) + " order by IntOrder, TabId");
    for (; !rows->Eof(); rows->MoveNext())
        tabs.push_back({data::ToInt32(rows->Get(0)), TrimmedText(rows->Get(1)),
                        TrimmedText(rows->Get(2)), data::ToInt32(rows->Get(3)),
                        IsAutomatic(TrimmedText(rows->Get(4)))});
    return tabs;
}

} // namespace kavidex::model
