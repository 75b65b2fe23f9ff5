#include "model/dossierTypes.h"

#include <algorithm>

#include "data/modData.h"
#include "data/schema/upgradeSteps.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::model {
namespace {

// What cannot be read because the installation never had the table is nothing.
template <class Work>
void OrNone(const platform::Workstation& workstation, const data::ConnectionPtr& connection,
            const std::string& table, Work read) {
    try {
        read();
    } catch (const platform::Error& error) {
        workstation.log.Write("DossierTypes", error.what());
        if (data::UpgradeContext{workstation, connection}.HasTable(table)) throw;
    }
}

std::vector<DossierType> Types(const platform::Workstation& workstation,
                               const data::ConnectionPtr& connection, std::string_view where) {
    std::vector<DossierType> types;
    OrNone(workstation, connection, "tblDossierTypes", [&] {
        const auto rows =
            Store(connection)
                .Read("Select TypeId, DossierType, DossierDescription from tblDossierTypes" +
                      std::string(where));
        for (; !rows->Eof(); rows->MoveNext())
            types.push_back({data::ToInt32(rows->Get(0)),
                             AsTyped(connection, TrimmedText(rows->Get(1))),
                             AsTyped(connection, TrimmedText(rows->Get(2)))});
    });
    return types;
}

std::vector<DossierTab> Tabs(const Store& store, const std::string& ofTypes) {
    std::vector<DossierTab> tabs;
    const auto rows = store.Read("Select TabId, TabDescription, TabType, IntOrder, AutoCreate from "
                                 "tblDossierTabs where DossierTypeId " +
                                 ofTypes + " order by IntOrder, TabId");
    for (; !rows->Eof(); rows->MoveNext())
        tabs.push_back({data::ToInt32(rows->Get(0)),
                        AsTyped(store.Connection(), TrimmedText(rows->Get(1))),
                        AsTyped(store.Connection(), TrimmedText(rows->Get(2))),
                        data::ToInt32(rows->Get(3)), IsAutomatic(TrimmedText(rows->Get(4)))});
    return tabs;
}

void DeleteTab(const Store& store, std::int32_t id) {
    store.Write("Delete from tblDossierTabs where TabId = " + Number(id));
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
    return Tabs(store, "= " + Number(typeId));
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
        if (in(after, tab.id) == after.end()) DeleteTab(store, tab.id);
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

std::string TabTypeOf(const DossierTab& tab) {
    return tab.type.empty() ? std::string(platform::FileName(tab.description)) : tab.type;
}

std::string ChecklistKey(std::string_view dossierType, std::string_view tabType) {
    return std::string(dossierType) + "^" + std::string(tabType);
}

std::vector<std::string> ChecklistKeys(const Store& store, std::string_view dossierType) {
    std::vector<std::string> keys;
    const auto rows = store.Read("Select distinct TabType from tblCheckListFields");
    for (; !rows->Eof(); rows->MoveNext()) {
        auto key = AsTyped(store.Connection(), TrimmedText(rows->Get(0)));
        const auto type = std::string_view(key).substr(0, key.find('^'));
        if (key.find('^') != std::string::npos &&
            (dossierType.empty() || platform::EqualNoCase(type, dossierType)))
            keys.push_back(std::move(key));
    }
    std::sort(keys.begin(), keys.end(),
              [](const auto& a, const auto& b) { return platform::CompareNoCase(a, b) < 0; });
    return keys;
}

// What the narrowest column of an upgraded database holds.
constexpr std::size_t keptKey = 50;

// A kept folder stands under its type's number with a minus sign and has its list's key for a type.
void RemoveDossierType(const Store& store, const DossierType& type) {
    const auto keys = ChecklistKeys(store, type.name);
    for (const auto& tab : TabsOfType(store, type.id)) {
        const auto key = ChecklistKey(type.name, TabTypeOf(tab));
        if (key.size() <= keptKey && std::any_of(keys.begin(), keys.end(), [&](const auto& known) {
                return platform::EqualNoCase(known, key);
            }))
            store.Write("Update tblDossierTabs set DossierTypeId = " + Number(-type.id) +
                        ", TabType = " + data::SqlValue(key) + " where TabId = " + Number(tab.id));
    }
    store.Write("Delete from tblDossierTabs where DossierTypeId = " + Number(type.id));
    store.Write("Delete from tblDossierTypes where TypeId = " + Number(type.id));
}

std::vector<DossierTab> KeptTabs(const platform::Workstation& workstation, const Store& store,
                                 std::string_view dossierType) {
    std::vector<DossierTab> kept;
    OrNone(workstation, store.Connection(), "tblDossierTabs", [&] {
        for (auto& tab : Tabs(store, "< 0")) {
            const auto mark = std::min(tab.type.find('^'), tab.type.size());
            if (!platform::EqualNoCase(tab.type.substr(0, mark), dossierType)) continue;
            tab.type.erase(0, mark + 1);
            kept.push_back(std::move(tab));
        }
    });
    return kept;
}

void ForgetKeptTabs(const platform::Workstation& workstation, const Store& store,
                    std::string_view dossierType, std::string_view tabType) {
    for (const auto& tab : KeptTabs(workstation, store, dossierType))
        if (platform::EqualNoCase(tab.type, tabType)) DeleteTab(store, tab.id);
}

} // namespace kavidex::model
