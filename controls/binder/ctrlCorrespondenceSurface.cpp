// Layout, and what the children report.
#include "controls/binder/BinderWindow.h"
#include "controls/binder/ctrlCorrespondenceGuarded.h"
#include "controls/splitter/ctlSplitPanel.h"
#include "controls/tree/ctrlTree.h"
#include "controls/viewer/DocumentPanel.h"
#include "model/clsItem.h"
#include "platform/Error.h"
#include "platform/General.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::string_view correspSetting = "CorrespSetting", splitterKey = "SPPos";

// Administrative items; they show no document.
constexpr std::string_view administrative[] = {"batch", "usergroup", "users", "user", "userpost"};

} // namespace

void ctrlCorrespondence::SubscribeToChildren() {
    const auto keep = [&](std::shared_ptr<void> token) {
        lclSubscriptions.push_back(std::move(token));
    };
    auto& tree = *lclTree;
    keep(tree.Click.Subscribe([this] { Click.Raise(); }));
    keep(tree.DblClick.Subscribe([this] { DblClick.Raise(); }));
    keep(tree.KeyDown.Subscribe(
        [this](std::int16_t& key, std::int16_t shift) { KeyDown.Raise(key, shift); }));
    keep(tree.KeyUp.Subscribe(
        [this](std::int16_t& key, std::int16_t shift) { KeyUp.Raise(key, shift); }));
    keep(tree.KeyPress.Subscribe([this](std::int16_t& key) { KeyPress.Raise(key); }));
    const auto mouse = [](auto& event) {
        return [&event](std::int16_t button, std::int16_t shift, float x, float y) {
            event.Raise(button, shift, x, y);
        };
    };
    keep(tree.MouseDown.Subscribe(mouse(MouseDown)));
    keep(tree.MouseMove.Subscribe(mouse(MouseMove)));
    keep(tree.MouseUp.Subscribe(mouse(MouseUp)));
    keep(tree.EvItemSelected.Subscribe([this](const TreeItemInfo& item) { OnItemSelected(item); }));
    keep(tree.EvItemSelectedExternal.Subscribe([this](const TreeItemInfo& item) {
        if (const auto found = lclTree->GetItem(item.id)) lclViewer->OpenDefault(found);
    }));
    keep(tree.EvItemDropped.Subscribe([this](const DropEvent& drop) { OnItemDropped(drop); }));
    keep(tree.EvItemDroppedAndHandled.Subscribe([this] {
        lclViewer->Refresh();
        ItemDropped.Raise();
    }));
    keep(tree.EvItemPaste.Subscribe([this] { lclViewer->Refresh(); }));
    keep(tree.EvItemPastedSpecial.Subscribe(
        [this](const std::vector<std::string>& files, std::int32_t) {
            AddFiles(files, {}, 0, false, false);
        }));
    keep(tree.DragStarted.Subscribe([this](const DropData& data, std::int32_t& allowed) {
        OLEStartDrag.Raise(data, allowed);
    }));
    keep(tree.DragDataAsked.Subscribe(
        [this](const DropData& data, std::int16_t& format) { OLESetData.Raise(data, format); }));
    keep(tree.DragFeedback.Subscribe(
        [this](std::int32_t& effect, bool& pointers) { OLEGiveFeedback.Raise(effect, pointers); }));
    keep(tree.DraggedOver.Subscribe(
        [this](const DropData& data, std::int32_t& effect, DragState state) {
            OLEDragOver.Raise(data, effect, state);
        }));
    keep(tree.DragCompleted.Subscribe(
        [this](std::int32_t& effect) { OLECompleteDrag.Raise(effect); }));
    keep(tree.EvItemCreated.Subscribe(
        [this](const TreeItemInfo& item) { EvItemCreated.Raise(item); }));
    keep(tree.EvItemDelete.Subscribe([this](const TreeItemInfo& item) {
        EvItemDelete.Raise(item);
        if (lclViewer->Content() == PanelContent::Document) lclViewer->ShowNothing();
    }));
    keep(tree.EvItemRenamed.Subscribe(
        [this](const TreeItemInfo&, const std::string&) { lclViewer->Refresh(); }));
    keep(tree.EvCompleteDrag.Subscribe([this] { EvCompleteDrag.Raise(); }));
    keep(lclViewer->DocumentChosen.Subscribe(
        [this](std::int32_t id) { Guarded("DocumentChosen", [&] { SelectItem(id); }); }));
    keep(lclSplitPanel->Moved.Subscribe([this] {
        platform::SaveRegSetting(lclWorkstation, platform::applicationName, correspSetting,
                                 splitterKey, std::to_string(lclSplitPanel->Position()));
    }));
}

// The tree shows the choice without an event of its own.
void ctrlCorrespondence::SelectItem(std::int32_t id) {
    const auto item = lclTree->GetItem(id);
    if (!item) return;
    lclTree->SetHighLightToItem(id); // false: the tree shows folders only
    OnItemSelected(
        {item->Description(), item->ItemType(), id, lclTree->NodeFullPath(id), item->ItemId()});
}

void ctrlCorrespondence::OnItemSelected(const TreeItemInfo& item) {
    EvItemSelected.Raise(item);
    if (lclRights.Unreadable()) WriteSwitches();
    Guarded("EvItemSelected", [&] {
        ShowItem(item);
        if (lclPending.empty() || lclLock.Held()) return;
        const auto folder = SelectedFolder();
        if (!folder) return;
        const auto files = std::move(lclPending); // they waited for this choice
        lclPending.clear();
        FileInto(folder, files);
    });
    ToolbarChanged();
}

void ctrlCorrespondence::ShowItem(const TreeItemInfo& item) {
    const auto type = platform::LowerCase(platform::TrimView(item.type));
    const auto found = lclTree->GetItem(item.id);
    for (const auto name : administrative)
        if (type == name) return lclViewer->ShowNothing();
    if (!found) return lclViewer->ShowNothing();
    if (found->AllowChildren())
        lclViewer->ShowList(found);
    else
        lclViewer->ShowItem(found);
}

// --- Layout -------------------------------------------------------------------------------------

std::int32_t ctrlCorrespondence::SplitterPosition() const {
    const auto kept = platform::GetRegSetting(lclWorkstation, platform::applicationName,
                                              correspSetting, splitterKey, "");
    const double position = platform::Val(kept);
    const bool usable = position > 0 && position < ctlSplitPanel::wholePosition;
    return usable ? static_cast<std::int32_t>(position) : lclSplitPanel->Position();
}

void ctrlCorrespondence::SetLayout(std::int16_t layout) {
    lclState.LastUsedLayout = layout;
    Report(&BinderProperties::LastUsedLayout);
    ApplyLayout();
}

std::int16_t ctrlCorrespondence::ShownLayout() const {
    if (!lclSplitPanel->Control2Visible()) return layouts::treeOnly;
    if (!lclSplitPanel->Control1Visible()) return layouts::viewerOnly;
    return lclSplitPanel->Horizontal() ? layouts::treeTop : layouts::treeLeft;
}

void ctrlCorrespondence::ApplyLayout() {
    const auto layout = lclState.LastUsedLayout;
    if (layout == layouts::treeLeft || layout == layouts::treeTop)
        lclSplitPanel->SetHorizontal(layout == layouts::treeTop);
    const bool treeOnly = lclState.ShowTreeOnly || layout == layouts::treeOnly;
    const bool viewerOnly = !lclState.ShowTreeOnly && layout == layouts::viewerOnly;
    lclSplitPanel->ShowControls(!viewerOnly, !treeOnly);
    if (lclWindow) lclWindow->LayoutChanged();
    ToolbarChanged();
}

void ctrlCorrespondence::AttachWindow(BinderWindow* window) {
    lclWindow = window;
    if (!window) return;
    window->AppearanceChanged();
    window->LayoutChanged();
    window->ToolbarChanged();
}

void ctrlCorrespondence::ToolbarChanged() {
    if (lclWindow) lclWindow->ToolbarChanged();
}

void ctrlCorrespondence::OLEDrag() {
    if (const auto item = lclTree->SelectedItem()) lclTree->Drag(item->Id());
}

} // namespace kavidex::controls
