// What the tree control saves with its host, and the options that the workstation keeps for it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "controls/common/PropertyTable.h"

namespace kavidex::controls {

struct TreeProperties {
    bool ShowExternalViewer = false;
    std::int32_t BackColor = 0, ForeColor = 0;
    bool Enabled = true;
    std::int16_t BackStyle = 0, BorderStyle = 0;
    bool AllowCreateFolders = true, AllowAddExternal = true, UpdateEnabled = true;
    bool DeleteEnabled = true, NewEnabled = true, ReadOnly = false;
    std::int32_t TreeId = 0;
    std::string Description, AllowedTypes;
    bool ShowParentsOnly = false;
    std::string ShowParentsOnlyTypes;
    bool SelectItems = false;
    std::string NameForInsert, TypeForInsert = "Tab;nnt", DossierType;
    bool FullExpand = false, OrderByName = false, FoldersAndDocs = false;
    bool AllwaysShowExt = false, AllwaysShowOrg = false;
    bool ShowMail = true, ShowPrint = true, ShowProperties = true;
    bool ShowDescriptionsInToolTip = true, ShowNumberOfChildren = false;
    std::string ValueFile;

    // The state of a drag, saved like the rest.
    bool IntDrag = false;
    std::string DropString;
    bool DeSelected = false, InternalMove = false;
    std::int16_t AllreadySelected = 0;
    bool ManualDragDropCopy = false, ManualDragDropMove = false, JustStartedDrag = false;

    // Not saved with the host.
    std::string EmailAddress;
    std::int16_t OLEDropMode = 1; // 0: the tree takes no drops
    bool OpenDoubleClick = false, ShowDeleted = false;
};

std::span<const Property<TreeProperties>> TreePropertyTable();

// One workstation option: where it is kept, its menu entry (empty: none), the property it drives.
struct TreeOption {
    std::string_view key, section, menuEntry;
    bool TreeProperties::*member;
};

std::span<const TreeOption> TreeOptionTable();

} // namespace kavidex::controls
