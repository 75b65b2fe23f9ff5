// The checklist's panel, and the settings dialog.
#include <algorithm>

#include "controls/binder/BinderWindow.h"
#include "controls/binder/ctrlCorrespondenceGuarded.h"
#include "controls/checklist/ctlChecklist.h"
#include "controls/common/OwnTranslator.h"
#include "controls/forms/Field.h"
#include "controls/settings/frmSettings.h"
#include "controls/splitter/ctlSplitPanel.h"
#include "controls/tree/ctrlTree.h"
#include "controls/viewer/ctlViewer.h"
#include "data/ConnectionAssignment.h"
#include "model/clsItem.h"
#include "platform/General.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::string_view section = "CorrespSetting", checklistKey = "SPCheckList";
constexpr std::int32_t checklistPosition = 7200; // where the workstation keeps none

} // namespace

// --- The checklist ------------------------------------------------------------------------------

void ctrlCorrespondence::SubscribeToChecklist() {
    const auto kept = platform::Val(platform::GetRegSetting(
        lclWorkstation, platform::applicationName, section, checklistKey, ""));
    lclSpCheckList->SetPosition(kept > 0 && kept < ctlSplitPanel::wholePosition
                                    ? static_cast<std::int32_t>(kept)
                                    : checklistPosition);
    lclSpCheckList->ShowControls(true, false);
    lclSubscriptions.push_back(lclSpCheckList->Moved.Subscribe([this] {
        platform::SaveRegSetting(lclWorkstation, platform::applicationName, section, checklistKey,
                                 std::to_string(lclSpCheckList->Position()));
    }));
    lclSubscriptions.push_back(
        lclChecklist->EvChecklistChanged.Subscribe([this] { EvChecklistChanged.Raise(); }));
    lclSubscriptions.push_back(lclChecklist->FolderChosen.Subscribe(
        [this](std::int32_t id) { Guarded("FolderChosen", [&] { SelectItem(id); }); }));
}

void ctrlCorrespondence::SetShowCheckList(const std::string& type) {
    const auto trimmed = platform::Trim(type);
    lclChecklistOpen = !trimmed.empty();
    Change(&BinderProperties::ShowCheckList, trimmed);
    ShowInChecklist();
}

bool ctrlCorrespondence::ChecklistShown() const {
    return lclChecklistOpen && !lclState.ShowCheckList.empty() && !lclState.ShowTreeOnly;
}

void ctrlCorrespondence::ToggleChecklist() {
    lclChecklistOpen = !lclChecklistOpen;
    ApplyLayout();
}

void ctrlCorrespondence::ShowInChecklist() {
    if (lclState.ShowCheckList.empty()) return;
    if (lclTree->Tree() != lclChecklist->Tree())
        lclChecklist->SetTree(lclTree->Tree());
    else
        lclChecklist->ItemsChanged();
    const auto folder = SelectedFolder();
    lclChecklist->SetFolderId(folder ? folder->Id() : 0);
}

// --- The settings -------------------------------------------------------------------------------

void ctrlCorrespondence::ShowSettings() {
    auto* presenter = lclWindow ? lclWindow->Forms() : nullptr;
    if (!presenter || !DbConnection()) return;
    frmSettings settings(lclWorkstation, DbConnection(), lclTranslator, lclUserAuth);
    settings.DossierType = lclState.DossierType;
    settings.Language = lclState.Language;
    settings.showViewer = [this](ctlViewer& viewer) {
        return lclWindow ? lclWindow->MakePane(viewer) : nullptr;
    };
    settings.Show(*presenter);
    lclAssignment->ReadTemplatePath();
    lclState.TemplatePath = lclAssignment->TemplatePath();
    HandDownRights(); // whether they count may have changed
    if (settings.Language != lclState.Language) SetLanguage(settings.Language);
    TakeOptions(settings.ChangedOptions());
}

// What the host had set stays unless the user chose otherwise.
void ctrlCorrespondence::TakeOptions(std::span<const std::string_view> changed) {
    const std::pair<std::string_view, void (ctrlTree::*)(const bool&)> setters[] = {
        {"FullExpand", &ctrlTree::SetFullExpand},
        {"ShowNumberOfChildren", &ctrlTree::SetShowNumberOfChildren},
        {"OpenDoubleClick", &ctrlTree::SetOpenDoubleClick},
        {"ShowDeleted", &ctrlTree::SetShowDeleted},
        {"OrderByName", &ctrlTree::SetOrderByName},
        {"FoldersAndDocs", &ctrlTree::SetFoldersAndDocs},
        {"AllwaysExternal", &ctrlTree::SetAllwaysShowExt},
        {"AllwaysShowOrg", &ctrlTree::SetAllwaysShowOrg},
    };
    for (const auto& option : TreeOptionTable())
        for (const auto& [key, set] : setters)
            if (key == option.key &&
                std::find(changed.begin(), changed.end(), key) != changed.end())
                ((*lclTree).*set)(platform::GetRegFlag(lclWorkstation, option.section, key));
    if (changed.empty()) return;
    ShowInChecklist();
    RefreshList();
}

} // namespace kavidex::controls
