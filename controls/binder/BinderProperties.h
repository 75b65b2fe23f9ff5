// What the binder control keeps in its host's property bag.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "controls/common/PropertyTable.h"

namespace kavidex::controls {

struct BinderProperties {
    std::int32_t BackColor = 0, ForeColor = 0;
    bool Enabled = true;
    std::int16_t BackStyle = 0, BorderStyle = 0;
    std::int16_t OLEDropMode = 1; // 0: the tree takes no drops
    std::int32_t ColWidth = 0;
    std::string IniFile;
    std::string NameForInsert = "Nieuwe tab;Nieuwe notitie", TypeForInsert = "Tab;nnt";
    std::string DossierType = "Dossiermap";
    std::int32_t Id = 0; // as it goes into the bag; the tree control holds the live one
    std::string ExternalId, InitString, Description;
    std::string DbProvider, DbPassWord, DbUserId, DbPath;
    bool ShowParentsOnly = false, ShowTreeOnly = false, ShowExternalViewer = false;
    bool AllowSettings = true, ShowAddButton = true;
    std::string DossierStatus, ShowCheckList;
    std::string ValueFile, AlternateScanSetting;
    bool ChecklistPresent = false, SelectItems = false;
    std::int32_t Language = 0;
    std::int16_t LastUsedLayout = 0;
    std::string FirstLast;
    bool ScannedDoc = false;
    std::string TemplatePath;
    std::int16_t SelectedTabId = 0;
    bool DbOpened = false;

    // Not saved with the host.
    bool ShowDescriptionsInToolTip = true;
    std::string EmailAddress;
};

std::span<const Property<BinderProperties>> BinderPropertyTable();

} // namespace kavidex::controls
