// The dossier types and the folders that each one's dossiers have.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/Store.h"

namespace kavidex::model {

struct DossierType {
    std::int32_t id = 0; // 0: a type of that name has no row
    std::string name, description;
};

// A folder of a type; its description may hold tokens, and be a path with backslashes.
struct DossierTab {
    std::int32_t id = 0; // of its row, 0 for a new one
    std::string description, type;
    std::int32_t order = 0;
    bool automatic = true; // made with the dossier, else only offered
    bool operator==(const DossierTab&) const = default;
};

// All by name. Databases without these tables, which some installations never had, hold none.
std::vector<DossierType> DossierTypes(const platform::Workstation& workstation,
                                      const data::ConnectionPtr& connection);
DossierType FindDossierType(const platform::Workstation& workstation,
                            const data::ConnectionPtr& connection, std::string_view name);
std::vector<DossierTab> TabsOfType(const Store& store, std::int32_t typeId); // in their order

// Within a transaction: others who want to change the type wait. False: it is gone.
bool HoldType(const Store& store, std::int32_t typeId);
// Makes the rows of the type those of `after`; one with an id keeps its row.
void SaveTabs(const platform::Workstation& workstation, const Store& store, std::int32_t typeId,
              const std::vector<DossierTab>& before, const std::vector<DossierTab>& after);
std::int32_t AddDossierType(const platform::Workstation& workstation, const Store& store,
                            std::string_view name, std::string_view description);
// With its folders; those that have a checklist are kept for its dossiers (KeptTabs).
void RemoveDossierType(const Store& store, const DossierType& type);

// A type goes by its name and the type of a folder where checklists are kept; neither holds a "^".
std::string ChecklistKey(std::string_view dossierType, std::string_view tabType);
// What a folder made from this row goes by there.
std::string TabTypeOf(const DossierTab& tab);
// The keys of all checklists of a type, or of every type when it is empty.
std::vector<std::string> ChecklistKeys(const Store& store, std::string_view dossierType);
// The folders of types of that name that were deleted, as far as they have a checklist.
std::vector<DossierTab> KeptTabs(const platform::Workstation& workstation, const Store& store,
                                 std::string_view dossierType);
// Once the list is empty.
void ForgetKeptTabs(const platform::Workstation& workstation, const Store& store,
                    std::string_view dossierType, std::string_view tabType);

// What a row's column AutoCreate says.
bool IsAutomatic(std::string_view autoCreate);

} // namespace kavidex::model
