#include "controls/admin/FormControl.h"

#include "controls/common/OwnTranslator.h"
#include "model/clsUserAuth.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

std::span<const Property<FormControlProperties>> FormControlPropertyTable() {
    using P = FormControlProperties;
    static constexpr Property<P> table[] = {{"Enabled", &P::Enabled}, {"Language", &P::Language}};
    return table;
}

FormControl::FormControl(const forms::Layout& layout, const platform::Workstation& workstation)
    : lclWorkstation(workstation), lclForm(layout, workstation),
      lclRights(workstation, [this] { Tell("De rechten kunnen niet gelezen worden"); }) {
    lclForm.mayCancel = [this] { return MayLeave(); };
    SetTranslate(nullptr);
}

FormControl::~FormControl() = default;

void FormControl::SetEnabled(bool enabled) {
    if (!Assign(lclState, &FormControlProperties::Enabled, enabled)) return;
    ShowNow();
    PropertyChanged.Raise("Enabled");
}

void FormControl::SetLanguage(std::int32_t language) {
    if (!Assign(lclState, &FormControlProperties::Language, language)) return;
    if (lclOwnTranslator) SetTranslate(nullptr);
    PropertyChanged.Raise("Language");
}

// While the control is being made there is nothing to show yet.
void FormControl::ShowNow() {
    if (lclConnection) Guarded([this] { Show(); });
}

void FormControl::SetTranslate(std::shared_ptr<Translator> translator) {
    lclOwnTranslator.reset();
    lclTranslator = std::move(translator);
    if (!lclTranslator) {
        lclOwnTranslator = std::make_shared<OwnTranslator>(lclWorkstation);
        lclOwnTranslator->SetDbConnection(lclConnection);
        lclOwnTranslator->SetLanguage(static_cast<controls::Language>(lclState.Language));
        lclTranslator = lclOwnTranslator;
    }
    lclForm.SetTranslate(lclTranslator);
    ShowNow();
}

void FormControl::SetUserAuth(std::shared_ptr<model::clsUserAuth> rights) {
    lclUserAuth = std::move(rights);
    if (lclUserAuth && !lclUserAuth->DbConnection()) lclUserAuth->SetDbConnection(lclConnection);
    lclRights.Set(lclUserAuth, lclConnection);
    RightsChanged();
}

void FormControl::SetDbConnection(data::ConnectionPtr connection) {
    lclConnection = std::move(connection);
    if (lclOwnTranslator) {
        lclOwnTranslator->SetDbConnection(lclConnection);
        lclForm.SetTranslate(lclTranslator);
    }
    Refresh();
}

void FormControl::Refresh() {
    lclRights.Set(lclUserAuth, lclConnection); // rights may be in use by now
    Guarded([this] { Read(); });
    Guarded([this] { Show(); });
}

void FormControl::LoadProperties(PropertyBag& bag) {
    controls::LoadProperties(FormControlPropertyTable(), lclState, bag);
    if (lclOwnTranslator)
        SetTranslate(nullptr);
    else
        ShowNow();
}

void FormControl::SaveProperties(PropertyBag& bag) const {
    controls::SaveProperties(FormControlPropertyTable(), lclState, bag);
}

bool FormControl::May(std::string_view right) const { return lclState.Enabled && MayRead(right); }

bool FormControl::MayRead(std::string_view right) const {
    return lclConnection && lclRights.Has(right);
}

void FormControl::Tell(std::string_view text, const std::vector<std::string>& values) const {
    platform::Message message;
    message.text = lclForm.Text(text, values);
    message.icon = platform::Icon::Exclamation;
    lclWorkstation.messages.Show(message);
}

bool FormControl::Ask(std::string_view text, std::string_view caption,
                      const std::vector<std::string>& values) const {
    return lclWorkstation.messages.Show({lclForm.Text(text, values), lclForm.Text(caption),
                                         platform::Buttons::YesNo, platform::Icon::Question}) ==
           platform::Answer::Yes;
}

} // namespace kavidex::controls
