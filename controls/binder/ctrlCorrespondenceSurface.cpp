// Layout, and what the children report.
#include <algorithm>
#include <iterator>

#include "controls/binder/BinderWindow.h"
#include "controls/binder/IntakeWiring.h"
#include "controls/binder/ctrlCorrespondenceGuarded.h"
#include "controls/splitter/ctlSplitPanel.h"
#include "controls/tree/ctrlTree.h"
#include "controls/viewer/ctlViewer.h"
#include "controls/viewer/external/ctrlExtViewer.h"
#include "model/clsItem.h"
#include "platform/Error.h"
#include "platform/General.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::string_view inWindow = "Dit document wordt in een eigen venster getoond.";
constexpr std::string_view correspSetting = "CorrespSetting", splitterKey = "SPPos",
                           viewerSetting = "ViewerSetting";

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
    keep(tree.Refreshed.Subscribe([this] { TreeRefreshed(); }));
    keep(tree.EvItemSelected.Subscribe([this](const TreeItemInfo& item) { OnItemSelected(item); }));
    keep(tree.ChosenAgain.Subscribe(
        [this](const TreeItemInfo& item, bool& shown) { shown = OnChosenAgain(item); }));
    keep(tree.EvItemSelectedExternal.Subscribe([this](const TreeItemInfo& item) {
        const auto found = lclTree->GetItem(item.id);
        if (found && !found->AllowChildren())
            Guarded("EvItemSelectedExternal", [&] {
                if (!ShowElsewhere(found, true)) lclViewer->ShowItem(found);
            });
    }));
    keep(tree.EvItemDropped.Subscribe([this](const DropEvent& drop) {
        Guarded("EvItemDropped", [&] {
            const auto dossier = OpenDossier(); // the host may go on to another one
            OLEDragDrop.Raise(drop.data, drop.effect);
            lclIntake->intake.Dropped(dossier, drop);
            TakeWaiting();
        }); // the tree tells when all of it is done
    }));
    keep(tree.EvItemDroppedAndHandled.Subscribe([this] {
        RefreshList();
        ShowInChecklist();
        ItemDropped.Raise();
    }));
    keep(tree.EvItemPaste.Subscribe([this] {
        RefreshList();
        ShowInChecklist();
    }));
    keep(tree.EvItemPastedSpecial.Subscribe(
        [this](const std::vector<std::string>& files, std::int32_t) {
            Guarded("EvItemPastedSpecial", [&] { lclIntake->intake.Pasted(files); });
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
    keep(tree.EvItemCreated.Subscribe([this](const TreeItemInfo& item) {
        EvItemCreated.Raise(item);
        if (!lclLock.Held()) ShowInChecklist(); // of many at once it hears at the end
    }));
    keep(tree.MayWriteChanged.Subscribe([this](const std::vector<std::int32_t>& ids) {
        const auto has = [&](std::int32_t id) {
            return std::find(ids.begin(), ids.end(), id) != ids.end();
        };
        if (lclExtViewer->Form() && has(lclExtViewer->Form()->Id()))
            lclExtViewer->Form()->Viewer().Refresh();
        if (lclViewer->Item() && has(lclViewer->Item()->Id())) lclViewer->Refresh();
    }));
    keep(tree.NoteMade.Subscribe([this](std::int32_t id) {
        if (lclExtViewer->Form() && lclExtViewer->Form()->Id() == id)
            lclExtViewer->SetFocus();
        else if (lclWindow && lclViewer->Item() && lclViewer->Item()->Id() == id)
            lclWindow->FocusViewer();
    }));
    keep(tree.EvItemDelete.Subscribe([this](const TreeItemInfo& item) {
        EvItemDelete.Raise(item);
        // With a folder all below it went.
        const auto gone = [&](std::int32_t id) {
            return id <= 0 || lclTree->IsWithin(id, item.id);
        };
        if (lclViewer->Asked() && gone(lclViewer->Asked()->Id())) lclViewer->LeaveDeleted();
        if (lclExtViewer->Form() && gone(lclExtViewer->Form()->Id())) {
            lclExtViewer->Form()->Viewer().LeaveDeleted();
            lclExtViewer->CloseForm();
        }
        RefreshList();
        ShowInChecklist();
    }));
    keep(tree.EvItemRenamed.Subscribe([this](const TreeItemInfo& item, const std::string&) {
        const auto renamed = lclTree->GetItem(item.id);
        lclViewer->Renamed(renamed);
        if (auto* form = lclExtViewer->Form()) form->Viewer().Renamed(renamed);
        RefreshList();
        ShowInChecklist();
    }));
    keep(tree.EvCompleteDrag.Subscribe([this] { EvCompleteDrag.Raise(); }));
    keep(lclSplitPanel->Moved.Subscribe([this] {
        platform::SaveRegSetting(lclWorkstation, platform::applicationName, correspSetting,
                                 splitterKey, std::to_string(lclSplitPanel->Position()));
    }));
}

// The embedded viewer and the external window ask for the same.
void ctrlCorrespondence::SubscribeToViewers() {
    const auto follow = [&](auto& event, auto handler) {
        lclSubscriptions.push_back(event.Subscribe(std::move(handler)));
    };
    const auto next = [this] { lclTree->SetNextChildItem(); };
    const auto previous = [this] { lclTree->SetPreviousChildItem(); };
    const auto inWindow = [this](int step) { return [this, step] { StepInWindow(step); }; };
    const auto open = [this](const std::string& key, const std::string& type) {
        EvOpenDossier.Raise(key, type);
    };
    const auto exportedFrom = [this](const auto& shown) {
        return [this, shown](const std::string& file, const std::vector<std::int32_t>& pages,
                             bool& done) {
            Guarded("ExportPages", [&] { done = FilePages(shown(), file, pages); });
        };
    };
    follow(lclViewer->NextDocumentRequest, next);
    follow(lclViewer->PreviousDocumentRequest, previous);
    follow(lclViewer->EvOpenDossier, open);
    follow(lclViewer->ExportPages, exportedFrom([this] { return lclViewer->Item(); }));
    follow(lclViewer->DocumentChosen,
           [this](std::int32_t id) { Guarded("DocumentChosen", [&] { SelectItem(id); }); });
    follow(lclExtViewer->EvNextDocumentRequest, inWindow(1));
    follow(lclExtViewer->EvPreviousDocumentRequest, inWindow(-1));
    follow(lclExtViewer->EvOpenDossier, open);
    follow(lclExtViewer->EvExportPages, exportedFrom([this] {
               auto* const form = lclExtViewer->Form();
               return form ? form->Viewer().Item() : nullptr;
           }));
    follow(lclExtViewer->Shown, [this] { FollowExternalWindow(); });
    const auto accepts = [this](std::string_view type) { return lclTree->AcceptsType(type); };
    lclViewer->SetAcceptsType(accepts);
    lclExtViewer->SetAcceptsType(accepts);
    lclViewer->SetAllowMultipleDocScroll(true);
    lclExtViewer->SetAllowMultipleDocScroll(true);
}

// From the document that the window shows, whichever is selected, to one that the window shows too;
// past what no window shows, such as a link.
void ctrlCorrespondence::StepInWindow(int step) {
    const auto* form = lclExtViewer->Form();
    if (!form) return;
    const auto selected = lclTree->SelectedItem();
    const bool goesOn = selected && selected->Id() == lclSteppedTo;
    const auto from = goesOn ? selected->Id() : form->Id();
    lclStepsInWindow = true;
    const std::shared_ptr<void> done(nullptr, [this](void*) { lclStepsInWindow = false; });
    lclTree->StepToDocument(step, from);
}

void ctrlCorrespondence::EmptyViewers() {
    lclViewer->ShowItem(nullptr);
    lclExtViewer->CloseForm();
}

std::int32_t ctrlCorrespondence::ListedFolder() const {
    const auto& shown = lclViewer->Item();
    return Usable() && shown && shown->AllowChildren() ? shown->Id() : 0;
}

void ctrlCorrespondence::RefreshList() {
    if (ListedFolder() != 0) lclViewer->Refresh();
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
    const auto turn = lclTurn;
    const bool stepped = std::exchange(lclStepsInWindow, false); // not what the host selects then
    lclSteppedTo = stepped ? item.id : 0;
    EvItemSelected.Raise(item);
    if (Overtaken(turn)) return; // the host opened another dossier on hearing of it
    if (lclRights.Unreadable()) WriteSwitches();
    lclIntake->scan.Close(); // which may hand over what it has
    if (Overtaken(turn)) return;
    Guarded("EvItemSelected", [&] {
        ShowItem(item, stepped);
        // What waits asks for a folder: a document that comes to be selected is no answer.
        const auto chosen = lclTree->GetItem(item.id);
        if (chosen && chosen->AllowChildren()) lclIntake->intake.FolderSelected();
    });
    ShowInChecklist();
    ToolbarChanged();
}

void ctrlCorrespondence::ShowItem(const TreeItemInfo& item, bool inWindow) {
    lclClosedOutside = 0;
    const auto type = platform::LowerCase(platform::TrimView(item.type));
    const auto found = lclTree->GetItem(item.id);
    const bool shown = found && std::find(std::begin(administrative), std::end(administrative),
                                          type) == std::end(administrative);
    if (shown && !found->AllowChildren() && ShowElsewhere(found, inWindow)) return;
    if (!inWindow &&
        platform::GetRegFlag(lclWorkstation, "ViewerSettings", "CloseViewerAfterSelect"))
        lclExtViewer->CloseForm();
    if (shown && found->AllowChildren())
        lclViewer->ShowList(found);
    else
        lclViewer->ShowItem(shown ? found : nullptr);
}

bool ctrlCorrespondence::ShowElsewhere(const std::shared_ptr<model::clsItem>& document,
                                       bool asked) {
    const auto option = [&](std::string_view key) {
        return platform::GetRegFlag(lclWorkstation, viewerSetting, key);
    };
    const auto type = platform::LowerCase(platform::TrimView(document->ItemType()));
    if (type == "edf") return false; // nothing is shown of a link: the host opens its dossier
    // A note has no program of its own.
    if (option("AllwaysShowOrg") && type != "nnt") {
        const auto opening = lclViewer->OpenDefault(document);
        if (opening == Opening::Opened)
            lclViewer->ShowElsewhere(document, "Dit document is in zijn eigen programma geopend.");
        if (opening == Opening::NotFound) lclViewer->ShowItem(nullptr); // the user was told
        if (opening != Opening::Refused) return true;
    }
    const bool window = asked || lclState.ShowExternalViewer || option("AllwaysExternal") ||
                        (lclExtViewer->Form() && option("AlwaysExternal"));
    if (!window) return false;
    // First what is shown here is left: it may be the same document.
    lclViewer->ShowElsewhere(document, inWindow, [this, document] {
        const bool shown = lclExtViewer->ShowItem(document);
        auto* const form = lclExtViewer->Form(); // it may have a question up, and show it then
        const bool stays = shown || (form && form->Viewer().Waits());
        if (!stays) lclClosedOutside = 0; // nobody closed it
        return stays;
    });
    return true;
}

// The notice stands here for as long as the window shows the document.
void ctrlCorrespondence::FollowExternalWindow() {
    const auto* form = lclExtViewer->Form();
    if (lclViewer->Elsewhere() != inWindow || (form && form->Id() == lclViewer->Item()->Id()))
        return;
    lclClosedOutside = lclViewer->Item()->Id();
    lclViewer->ShowItem(nullptr);
}

// Who closed its window has done with the document, and may want it again; the selection, of which
// the host is told, is the same.
bool ctrlCorrespondence::OnChosenAgain(const TreeItemInfo& item) {
    if (item.id != lclClosedOutside) return false;
    Guarded("EvItemSelected", [&] { ShowItem(item, false); });
    return true;
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
    const bool scanning = lclIntake && lclIntake->scan.IsOpen();
    const bool treeOnly = !scanning && (lclState.ShowTreeOnly || layout == layouts::treeOnly);
    const bool viewerOnly = !lclState.ShowTreeOnly && layout == layouts::viewerOnly;
    lclSplitPanel->ShowControls(!viewerOnly, !treeOnly);
    if (lclWindow) lclWindow->LayoutChanged();
    ToolbarChanged();
}

void ctrlCorrespondence::AttachWindow(BinderWindow* window) {
    lclWindow = window;
    if (!window) return lclIntake->scan.Close();
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
