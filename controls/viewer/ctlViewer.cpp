#include "controls/viewer/ctlViewer.h"

#include "controls/common/Causes.h"
#include "controls/forms/FormView.h"
#include "controls/viewer/ViewerViews.h"
#include "controls/viewer/ViewerWindow.h"
#include "controls/viewer/pages/PageSource.h"
#include "data/logText.h"
#include "model/clsItem.h"
#include "model/clsUserAuth.h"
#include "platform/Error.h"
#include "platform/ErrorNumber.h"
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

// For as long as a question is up; the idle work that rested goes on afterwards.
class Asking {
public:
    Asking(int& count, ViewerWindow* const& window) : lclCount(++count), lclWindow(window) {}
    ~Asking() {
        --lclCount;
        if (lclWindow) lclWindow->WantIdle();
    }
    Asking(const Asking&) = delete;
    Asking& operator=(const Asking&) = delete;

private:
    int& lclCount;
    ViewerWindow* const& lclWindow; // it may be gone by then
};

} // namespace

ctlViewer::ctlViewer(const platform::Workstation& workstation)
    : lclWorkstation(workstation),
      lclRights(workstation,
                [this] {
                    Ask("De rechten kunnen niet gelezen worden", "Melding viewer", Buttons::Ok,
                        Icon::Exclamation);
                }),
      lclViews(std::make_unique<ViewerViews>(static_cast<ViewerFrame&>(*this),
                                             static_cast<PageHost&>(*this))),
      lclChosen(lclViews->list.DocumentChosen.Subscribe(
          [this](std::int32_t id) { DocumentChosen.Raise(id); })) {}

ctlViewer::~ctlViewer() {
    lclWindow = nullptr;
    try {
        Leave();
    } catch (const std::exception& error) {
        lclWorkstation.log.Write("ctlViewer", error.what());
    }
}

// --- Properties
// -----------------------------------------------------------------------------------

bool ctlViewer::ThumbsShown() const { return Pages() && Pages()->ThumbsShown(); }

bool ctlViewer::ThumbsExported() const { return Pages() && Pages()->ThumbsExported(); }

void ctlViewer::SetTranslate(std::shared_ptr<Translator> translator) {
    lclTranslator = std::move(translator);
    SurroundingsChanged();
}

void ctlViewer::SetDbConnection(data::ConnectionPtr connection) {
    lclConnection = std::move(connection);
    lclRights.Set(lclUserAuth, lclConnection);
    SurroundingsChanged();
}

void ctlViewer::SetAcceptsType(std::function<bool(std::string_view)> accepts) {
    lclViews->facts.acceptsType = std::move(accepts);
}

void ctlViewer::SetUserAuth(std::shared_ptr<model::clsUserAuth> rights) {
    lclUserAuth = std::move(rights);
    lclRights.Set(lclUserAuth, lclConnection);
    SurroundingsChanged();
}

void ctlViewer::SetFont(std::optional<FontFace> font) {
    lclFont = std::move(font);
    PropertyChanged.Raise("Font");
    TakeEffect();
}

void ctlViewer::SetColWidth(std::int32_t width) { lclViews->list.SetColWidth(width); }

void ctlViewer::SetDescription(const std::string& description) {
    if (Assign(lclState, &ViewerProperties::Description, description))
        PropertyChanged.Raise("Description");
}

void ctlViewer::LoadProperties(PropertyBag& bag) {
    controls::LoadProperties(ViewerPropertyTable(), lclState, bag);
    lclFont = bag.ReadFont("Font");
    TakeEffect();
}

void ctlViewer::SaveProperties(PropertyBag& bag) const {
    controls::SaveProperties(ViewerPropertyTable(), lclState, bag);
    if (lclFont) bag.WriteFont("Font", *lclFont);
}

void ctlViewer::TakeEffect() {
    if (lclWindow) lclWindow->AppearanceChanged();
    ContentChanged();
}

void ctlViewer::SurroundingsChanged() {
    if (lclView) lclView->SurroundingsChanged();
    ContentChanged();
}

// --- Showing
// --------------------------------------------------------------------------------------

// Nothing begins within a question of what runs: the pages that it is about could be others then.
bool ctlViewer::Guarded(std::string_view routine, const std::function<bool()>& work) {
    if (lclAsking > 0) return false;
    bool done = false;
    try {
        done = work();
    } catch (const std::exception& error) {
        TellError(routine, error);
    }
    ShowWhatWaits();
    return done;
}

bool ctlViewer::Switch(const std::function<bool()>& show) {
    lclNext = show;
    if (lclSwitching || lclAsking > 0) return true;
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

bool ctlViewer::ShowElsewhere(const ItemPtr& item, std::string_view notice) {
    return Switch([this, item, text = std::string(notice)] {
        if (!item) return false;
        lclViews->elsewhere.Show(text);
        return Stage(lclViews->elsewhere, item);
    });
}

bool ctlViewer::Stage(StageView& view, const ItemPtr& item) {
    lclView = &view;
    lclItem = item;
    SetDescription(item->Description());
    return true;
}

bool ctlViewer::RefreshAs(const ItemPtr& now) {
    const auto item = now ? now : lclItem;
    if (!item || lclView == &lclViews->elsewhere) return false;
    if (lclView == &lclViews->list) return ShowList(item);
    const int page = Pages() ? Pages()->Page() : 1;
    if (!ShowItem(item)) return false;
    if (Pages()) Pages()->GoTo(page);
    return true;
}

bool ctlViewer::OpenDefault(const ItemPtr& item) {
    return Guarded("OpenDefault", [&] {
        ShownDocument document;
        return item && FindDocument(item, document) && lclViews->facts.OpenDefault(document);
    });
}

bool ctlViewer::SetNextPage() {
    return Guarded("SetNextPage", [this] {
        if (Pages() && Pages()->SetNextPage()) return true;
        if (lclState.AllowMultipleDocScroll && lclView) NextDocumentRequest.Raise();
        return false;
    });
}

bool ctlViewer::SetPreviousPage() {
    return Guarded("SetPreviousPage", [this] {
        if (Pages() && Pages()->SetPreviousPage()) return true;
        if (lclState.AllowMultipleDocScroll && lclView) PreviousDocumentRequest.Raise();
        return false;
    });
}

bool ctlViewer::SaveImage() {
    return Guarded("SaveImage", [this] { return Pages() && Pages()->SaveImage(); });
}

bool ctlViewer::CloseImage() {
    return Switch([] { return true; });
}

bool ctlViewer::DeleteSelectedThumbs() {
    return Guarded("DeleteSelectedThumbs",
                   [this] { return Pages() && Pages()->DeleteSelectedThumbs(); });
}

// --- The window ----------------------------------------------------------------------------------

void ctlViewer::AttachWindow(ViewerWindow* window) {
    lclWindow = window;
    if (!window) return;
    window->AppearanceChanged();
    window->ContentChanged();
    window->WantIdle();
}

void ctlViewer::ContentChanged() {
    if (lclWindow && !lclSwitching) lclWindow->ContentChanged();
}

void ctlViewer::WantIdle() {
    if (lclWindow) lclWindow->WantIdle();
}

PartSet ctlViewer::Parts() const { return lclView ? lclView->Parts() : PartSet(); }

StatusTexts ctlViewer::Status() const { return lclView ? lclView->Status() : StatusTexts(); }

std::string ctlViewer::NothingSelected() const {
    return Text("Selecteer het document dat u getoond wilt hebben.");
}

void ctlViewer::HintActivated() {
    if (lclView) lclView->HintActivated();
}

bool ctlViewer::Idle() {
    if (lclAsking > 0 || lclSwitching) return false;
    ShowWhatWaits();
    return lclView && lclView->Idle();
}

void ctlViewer::Run(std::string_view routine, const std::function<void()>& work) {
    Guarded(routine, [&] {
        work();
        return true;
    });
}

bool ctlViewer::ExportPagesOf(const std::string& path, const std::vector<std::int32_t>& pages) {
    bool done = false;
    ExportPages.Raise(path, pages, done);
    return done;
}

// --- What the views ask --------------------------------------------------------------------------

std::string ctlViewer::Text(std::string_view text, const std::vector<std::string>& values) const {
    return lclTranslator ? lclTranslator->Translate(text, values)
                         : platform::FillPlaceholders(text, values);
}

// Behind a message stands what there is by then, no half of what was shown before.
void ctlViewer::ShowMeanwhile() const {
    if (lclWindow && lclSwitching) lclWindow->ContentChanged();
}

platform::Answer ctlViewer::Ask(std::string_view text, std::string_view caption, Buttons buttons,
                                Icon icon, const std::vector<std::string>& values) const {
    const Asking asking(lclAsking, lclWindow);
    ShowMeanwhile();
    return lclWorkstation.messages.Show({Text(text, values), Text(caption), buttons, icon});
}

bool ctlViewer::ShowForm(forms::Form& form) const {
    auto* presenter = lclWindow ? lclWindow->Forms() : nullptr;
    const Asking asking(lclAsking, lclWindow);
    return presenter && presenter->ShowModal(form);
}

void ctlViewer::Undisturbed(const std::function<void()>& work) const {
    const Asking asking(lclAsking, lclWindow);
    work();
}

void ctlViewer::TellError(std::string_view routine, const std::exception& error) const {
    const auto* ours = dynamic_cast<const platform::Error*>(&error);
    const auto number = platform::ShownNumber(ours ? ours->Number() : platform::errors::fail);
    lclWorkstation.log.Write(routine, data::InLog(error));
    const Asking asking(lclAsking, lclWindow);
    ShowMeanwhile();
    lclWorkstation.messages.Show({std::to_string(number) + " " + error.what(),
                                  Text("Error in $%$", {std::string(routine)}), Buttons::Ok,
                                  Icon::Critical});
}

void ctlViewer::OpenDossier(const std::string& key, const std::string& type) {
    EvOpenDossier.Raise(key, type);
}

} // namespace kavidex::controls
