#include "controls/tree/TreeProperties.h"

namespace kavidex::controls {

std::span<const Property<TreeProperties>> TreePropertyTable() {
    using P = TreeProperties;
    // A row without a fallback keeps the value that the workstation or the host gave.
    static constexpr Property<P> table[] = {
        {"ShowExternalViewer", &P::ShowExternalViewer, false},
        {"BackColor", &P::BackColor, 0},
        {"ForeColor", &P::ForeColor, 0},
        {"Enabled", &P::Enabled},
        {"BackStyle", &P::BackStyle, 0, {}, {}, 0, 1},
        {"BorderStyle", &P::BorderStyle, 0, {}, {}, 0, 1},
        {"AllowCreateFolders", &P::AllowCreateFolders, true},
        {"AllowAddExternal", &P::AllowAddExternal, true},
        {"UpdateEnabled", &P::UpdateEnabled, true},
        {"DeleteEnabled", &P::DeleteEnabled, true},
        {"NewEnabled", &P::NewEnabled, true},
        {"ReadOnly", &P::ReadOnly, false},
        {.name = "TreeId", .member = &P::TreeId, .fallback = 0, .narrow = true},
        {"Description", &P::Description, ""},
        {"AllowedTypes", &P::AllowedTypes, ""},
        {"ShowParentsOnly", &P::ShowParentsOnly, false},
        {"ShowParentsOnlyTypes", &P::ShowParentsOnlyTypes, ""},
        {"SelectItems", &P::SelectItems, false},
        {"NameForInsert", &P::NameForInsert},
        {"TypeForInsert", &P::TypeForInsert, "Tab;nnt"},
        {"DossierType", &P::DossierType, ""},
        {"FullExpand", &P::FullExpand},
        {"OrderByName", &P::OrderByName},
        {"FoldersAndDocs", &P::FoldersAndDocs},
        {"AllwaysShowExt", &P::AllwaysShowExt},
        {"AllwaysShowOrg", &P::AllwaysShowOrg},
        {"ShowMail", &P::ShowMail, true},
        {"ShowPrint", &P::ShowPrint, true},
        {"ShowProperties", &P::ShowProperties, true},
        {"ShowDescriptionsInToolTip", &P::ShowDescriptionsInToolTip, true},
        {"ShowNumberOfChildren", &P::ShowNumberOfChildren},
        {"ValueFile", &P::ValueFile, ""},
        {"IntDrag", &P::IntDrag, false},
        {"DropString", &P::DropString, ""},
        {"DeSelected", &P::DeSelected, false},
        {"InternalMove", &P::InternalMove, false},
        {"AllreadySelected", &P::AllreadySelected, 0},
        {"ManualDragDropCopy", &P::ManualDragDropCopy, false},
        {"ManualDragDropMove", &P::ManualDragDropMove, false},
        {"JustStartedDrag", &P::JustStartedDrag, false},
    };
    return table;
}

std::span<const TreeOption> TreeOptionTable() {
    using P = TreeProperties;
    static constexpr TreeOption table[] = {
        {"FullExpand", "TreeSettings", "mnuExpandAllways", &P::FullExpand},
        {"ShowNumberOfChildren", "TreeSettings", "mnuShowChildCount", &P::ShowNumberOfChildren},
        {"OpenDoubleClick", "TreeSettings", "mnuOpenDoubleClick", &P::OpenDoubleClick},
        {"ShowDeleted", "TreeSettings", "mnuShowDeleted", &P::ShowDeleted},
        {"OrderByName", "ViewerSetting", "mnusortByName", &P::OrderByName},
        {"FoldersAndDocs", "ViewerSetting", "", &P::FoldersAndDocs},
        {"AllwaysExternal", "ViewerSetting", "mnuAllwaysShowExt", &P::AllwaysShowExt},
        {"AllwaysShowOrg", "ViewerSetting", "mnuShowInOrg", &P::AllwaysShowOrg},
    };
    return table;
}

} // namespace kavidex::controls
