// What the viewer shows, and in what order: one thing after the other, and nothing within the work
// of what is shown.
#include <utility>

#include "controls/common/Causes.h"
#include "controls/viewer/ViewerViews.h"
#include "controls/viewer/ctlViewer.h"
#include "controls/viewer/pages/PageSource.h"
#include "model/clsItem.h"
#include "model/treeRows.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

using model::DocumentLook;
using platform::Buttons;
using platform::Icon;

namespace {

constexpr std::string_view noteType = "nnt",
                           notHereNotice = "Dit document kan hier niet getoond worden.";

bool Failed(const model::DocumentFile& file) {
    return file.outcome == DocumentLook::ReadFailed || file.outcome == DocumentLook::LookFailed;
}

} // namespace

// Nothing begins within a question of what runs: the pages that it is about could be others then.
bool ctlViewer::Guarded(std::string_view routine, const std::function<bool()>& work) {
    if (lclAsking > 0) return false;
    bool done = false;
    ++lclWorking;
    try {
        done = work();
    } catch (const std::exception& error) {
        TellError(routine, error);
    }
    --lclWorking;
    TellPage();
    ShowWhatWaits();
    return done;
}

void ctlViewer::PageShown(int page) {
    lclPageToTell = page;
    TellPage();
}

// Only when nothing runs: the host may show something else on hearing of it.
void ctlViewer::TellPage() {
    if (lclWorking > 0 || lclSwitching) return;
    if (const int page = std::exchange(lclPageToTell, 0)) EvImageSelected.Raise(page);
}

// False also for what has to wait.
bool ctlViewer::Switch(const std::function<bool()>& show) {
    lclNext = show;
    if (lclSwitching || lclAsking > 0) return false;
    lclSwitching = true;
    bool done = false;
    while (const auto next = std::exchange(lclNext, nullptr)) {
        try {
            done = Leave() && next();
        } catch (const std::exception& error) {
            TellError("ShowItem", error);
            done = false;
        }
    }
    lclSwitching = false;
    ContentChanged();
    TellPage();
    Shown.Raise();
    return done;
}

void ctlViewer::ShowWhatWaits() {
    if (lclNext && !lclSwitching && lclAsking == 0) Switch(std::exchange(lclNext, nullptr));
}

bool ctlViewer::Leave() {
    if (lclView && !lclView->Close()) return false;
    ShowNothing();
    return true;
}

void ctlViewer::ShowNothing() {
    lclView = nullptr;
    lclItem.reset();
    lclAsked.reset();
    lclPageToTell = 0;
}

bool ctlViewer::ShowItem(const ItemPtr& item) {
    return Switch([this, item] { return item && ShowDocument(item); });
}

bool ctlViewer::FindDocument(const ItemPtr& item, ShownDocument& document) const {
    document = {item, model::FindDocumentFile(lclWorkstation, lclConnection, *item),
                platform::LowerCase(platform::Trim(item->ItemType()))};
    const auto& file = document.file;
    if (Failed(file)) throw platform::Error(file.number, file.error);
    if (!file.HasFile() && document.type != noteType) {
        Ask("Document kan niet gevonden worden.", "Melding viewer", Buttons::Ok, Icon::Critical);
        return false;
    }
    if (file.HasFile())
        document.readOnly =
            (lclWorkstation.files.Attributes(file.path) & platform::attributes::readOnly) != 0;
    return true;
}

bool ctlViewer::ShowDocument(const ItemPtr& item) {
    ShownDocument document;
    lclAsked = item;
    if (!FindDocument(item, document)) return false;
    auto* view = lclViews->For(document);
    const auto instead = [&](std::string_view notice) {
        lclViews->other.ShowInstead(document, notice);
        return Stage(lclViews->other, item);
    };
    try {
        return view && view->Show(document) && Stage(*view, item);
    } catch (const CannotDraw& refusal) {
        lclWorkstation.log.Write("ShowItem", refusal.what());
        return instead(refusal.notice);
    } catch (const std::exception& error) {
        if (view != &lclViews->image) throw;
        // The message has the cause as the user knows it, the log as it was found.
        lclWorkstation.log.Write("ShowItem", error.what());
        const auto* ours = dynamic_cast<const platform::Error*>(&error);
        const auto number = ours ? ours->Number() : platform::errors::fail;
        const bool damaged = number == platform::errors::invalidData;
        instead(damaged ? damagedNotice : notHereNotice);
        throw platform::Error(
            number, damaged ? platform::FileName(document.Path()) + ": " + Text(damagedNotice)
                            : CauseText(TranslationBy(lclTranslator), document.Path(), error));
    }
}

bool ctlViewer::ShowList(const ItemPtr& folder) {
    return Switch([this, folder] {
        if (!folder) return false;
        lclViews->list.Show(folder);
        return Stage(lclViews->list, folder);
    });
}

bool ctlViewer::ShowElsewhere(const ItemPtr& item, std::string_view notice,
                              const std::function<bool()>& show) {
    return Switch([this, item, text = std::string(notice), show] {
        if (!item) return false;
        lclViews->elsewhere.Show(text);
        Stage(lclViews->elsewhere, item);
        ShowMeanwhile();
        if (!show || show()) return true;
        ShowNothing();
        return false;
    });
}

std::string_view ctlViewer::Elsewhere() const {
    return lclView == &lclViews->elsewhere ? lclViews->elsewhere.Notice() : std::string_view();
}

bool ctlViewer::Stage(StageView& view, const ItemPtr& item) {
    lclView = &view;
    lclItem = lclAsked = item;
    lclDeletedHere = false;
    SetDescription(item->Description());
    return true;
}

bool ctlViewer::RefreshAs(const ItemPtr& now) {
    const auto item = now ? now : lclAsked;
    if (!item || lclView == &lclViews->elsewhere) return false;
    // A link asks the host for its dossier when it is chosen, and then only.
    if (lclView == &lclViews->link) {
        Renamed(item);
        return true;
    }
    if (lclView == &lclViews->list) return ShowList(item);
    return Switch([this, item, page = Pages() ? Pages()->Page() : 1] {
        if (!ShowDocument(item)) return false;
        if (Pages()) Pages()->GoTo(page);
        return true;
    });
}

void ctlViewer::Renamed(const ItemPtr& item) {
    if (!item || !lclAsked || lclAsked->Id() != item->Id()) return;
    lclAsked = item;
    if (!lclItem) return;
    lclItem = item;
    SetDescription(item->Description());
    Shown.Raise();
}

Opening ctlViewer::OpenDefault(const ItemPtr& item) {
    auto opening = Opening::Refused; // while something is being asked
    Guarded("OpenDefault", [&] {
        opening = Opening::NotFound;
        ShownDocument document;
        if (!item || !FindDocument(item, document)) return false;
        opening = lclViews->facts.OpenDefault(document) ? Opening::Opened : Opening::Refused;
        return true;
    });
    return opening;
}

bool ctlViewer::SetNextPage() {
    return Guarded("SetNextPage", [this] {
        if (Pages() && Pages()->SetNextPage()) return true;
        if (lclState.AllowMultipleDocScroll) NextDocumentRequest.Raise();
        return false;
    });
}

bool ctlViewer::SetPreviousPage() {
    return Guarded("SetPreviousPage", [this] {
        if (Pages() && Pages()->SetPreviousPage()) return true;
        if (lclState.AllowMultipleDocScroll) PreviousDocumentRequest.Raise();
        return false;
    });
}

bool ctlViewer::SaveImage() {
    return Guarded("SaveImage", [this] { return Pages() && Pages()->SaveImage(); });
}

bool ctlViewer::CloseImage() {
    return Switch([] { return true; });
}

bool ctlViewer::LeaveDeleted() {
    lclDeletedHere = true;
    return CloseImage();
}

// A deleted item keeps its row under the negated id. One that was shown as deleted has such an id
// itself; what the database does not say now is no reason to keep changes from the file.
void ctlViewer::NeedItem(const model::clsItem& item) const {
    if (item.Id() <= 0 || lclDeletedHere) return;
    bool deleted = false;
    try {
        deleted = model::HasRow(model::Store(lclConnection), -item.Id());
    } catch (const std::exception& error) {
        lclWorkstation.log.Write("NeedItem", error.what());
    }
    if (deleted)
        throw platform::Error(platform::errors::fail,
                              Text("Dit is intussen door een andere gebruiker verwijderd. Met F5 "
                                   "wordt het dossier opnieuw gelezen."));
}

bool ctlViewer::DeleteSelectedThumbs() {
    return Guarded("DeleteSelectedThumbs",
                   [this] { return Pages() && Pages()->DeleteSelectedThumbs(); });
}

} // namespace kavidex::controls
