#include "controls/viewer/ctlViewer.h"

#include "controls/forms/FormView.h"
#include "controls/viewer/ViewerViews.h"
#include "controls/viewer/ViewerWindow.h"
#include "data/logText.h"
#include "model/clsUserAuth.h"
#include "platform/Error.h"
#include "platform/ErrorNumber.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

using platform::Buttons;
using platform::Icon;

namespace {

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
