// The steps of the upgrade chain that are more than statements: they copy, number and fill rows.
// Each may be broken off anywhere and run again.
#pragma once

#include "data/schema/upgradeSteps.h"

namespace kavidex::data::upgrade {

void CreateDossierTabs(const UpgradeContext& context); // 1.0.1
void ConvertSettings(const UpgradeContext& context);   // 1.0.6, and all that follow
void ConvertRefTabs(const UpgradeContext& context);
void ConvertDbRelations(const UpgradeContext& context);
void ConvertCheckListFields(const UpgradeContext& context);
void ConvertCheckListRefFields(const UpgradeContext& context);
void ConvertDossierFields(const UpgradeContext& context);
void ConvertDossierTabs(const UpgradeContext& context);
void ConvertScreens(const UpgradeContext& context);
void ConvertScreenSettings(const UpgradeContext& context);
void ConvertReferences(const UpgradeContext& context);
void ConvertRelations(const UpgradeContext& context);
void ConvertTypes(const UpgradeContext& context);
void ConvertDocuments(const UpgradeContext& context);
void ConvertTrees(const UpgradeContext& context);
void ConvertItems(const UpgradeContext& context);
void FillRelationIds(const UpgradeContext& context); // 1.0.7
void CompleteRights(const UpgradeContext& context);  // 1.0.8
void Translations109(const UpgradeContext& context);
void Translations110(const UpgradeContext& context);
void Translations111(const UpgradeContext& context);
void Translations113(const UpgradeContext& context);
void Translations114(const UpgradeContext& context);
// Adds the texts that the table lacks, of whichever version; all or, at the first that is refused,
// none (UpgradeHalted). What an installation wrote itself stays. False without the table.
bool MissingTranslations(const UpgradeContext& context);
void FillCheckListGuids(const UpgradeContext& context); // 1.1.6
void FillDocumentGuids(const UpgradeContext& context);  // 1.1.7

} // namespace kavidex::data::upgrade
