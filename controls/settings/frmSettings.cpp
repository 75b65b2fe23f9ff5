#include "controls/settings/frmSettings.h"

#include <algorithm>

#include "controls/admin/ctlChecklistEditor.h"
#include "controls/admin/ctlDefaultFolders.h"
#include "controls/admin/ctlPost.h"
#include "controls/admin/ctlRights.h"
#include "controls/settings/settingRows.h"
#include "data/clsSettings.h"
#include "model/Store.h"
#include "model/clsUserAuth.h"
#include "model/userRights.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/General.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

using forms::What;

namespace {

using Machine = platform::Workstation;

struct Editor {
    std::string_view button, right;
    std::unique_ptr<AdminControl> (*make)(const Machine& workstation);
};

template <class Control>
std::unique_ptr<AdminControl> Made(const Machine& workstation) {
    return std::make_unique<Control>(workstation);
}

constexpr Editor editors[] = {
    {"btnRights", "ReadEditRights", &Made<ctlRights>},
    {"btnFolders", "ReadDossierType", &Made<ctlDefaultFolders>},
    {"btnChecklists", "ReadDossierType", &Made<ctlChecklistEditor>},
    {"btnPost", "ReadDossiers", &Made<ctlPost>},
};

} // namespace

std::int32_t LanguageOption(const platform::Workstation& workstation) {
    const auto kept = platform::Val(platform::GetRegSetting(workstation, platform::applicationName,
                                                            settingRows::languageSection,
                                                            settingRows::languageKey, "0"));
    return kept >= 0 && kept <= 3 ? static_cast<std::int32_t>(kept) : 0;
}

frmSettings::frmSettings(const platform::Workstation& workstation, data::ConnectionPtr connection,
                         std::shared_ptr<Translator> translator,
                         std::shared_ptr<model::clsUserAuth> rights)
    : lclWorkstation(workstation), lclConnection(std::move(connection)), lclTranslator(translator),
      lclUserAuth(std::move(rights)),
      lclForm(settingRows::FormLayout(), workstation, std::move(translator)) {
    for (const auto& row : settingRows::Paths()) {
        lclForm.On(row.field, What::Clicked,
                   [this](forms::FieldEvent& event) { ChooseFolder(event.field); });
        lclForm.On(row.test, What::Clicked,
                   [this, &row](forms::FieldEvent&) { TestPath(row.field); });
    }
    lclForm.On("chkUseRights", What::Changed, [this](forms::FieldEvent&) { SwitchRights(); });
    for (std::size_t i = 0; i < std::size(editors); ++i)
        lclForm.On(editors[i].button, What::Clicked, [this, i](forms::FieldEvent&) { Open(i); });
    lclForm.On("btnOk", What::Clicked, [this](forms::FieldEvent&) { Accept(); });
}

bool frmSettings::Show(forms::FormPresenter& presenter) {
    lclPresenter = &presenter;
    if (!lclForm.Guarded([this] { Fill(); })) return false; // what was not read is not written
    return presenter.ShowModal(lclForm);
}

// --- Filling ------------------------------------------------------------------------------------

std::string frmSettings::Setting(std::string_view section, std::string_view key) const {
    const auto kept = model::ReadSetting(lclWorkstation, lclConnection, section, key);
    return model::AsTyped(lclConnection, kept.value_or(""));
}

bool frmSettings::May(std::string_view right) const {
    return lclUserAuth
               ? lclUserAuth->HasRight(right)
               : !model::UseRights(lclWorkstation, lclConnection, TranslationBy(lclTranslator));
}

void frmSettings::ReadSettings() {
    for (const auto& row : settingRows::Paths()) lclRead[row.field] = Setting(row.section, row.key);
    lclUse = Setting("Rights", "Use");
}

void frmSettings::Fill() {
    ReadSettings();
    for (const auto& row : settingRows::Paths()) lclForm[row.field].SetText(lclRead[row.field]);
    lclForm["chkUseRights"].SetChecked(platform::EqualAsciiNoCase(lclUse, "true"));
    lclForm["chkUseRights"].SetEnabled(May("ReadEditRights") && May("UpdateEditRights"));
    for (const auto& editor : editors) lclForm[editor.button].SetEnabled(May(editor.right));
    ShowRights();
    FillOptions();
}

void frmSettings::ShowRights() {
    const bool used = lclForm["chkUseRights"].Checked();
    lclForm["lblRights"].SetText(
        lclForm.Text(used ? "Gebruikers hebben alleen de rechten die zij gekregen hebben."
                          : "Gebruikers hebben volledige rechten."));
}

void frmSettings::FillOptions() {
    const auto kept = [&](const auto& row) {
        return platform::GetRegSetting(lclWorkstation, platform::applicationName, row.section,
                                       row.key, row.absent);
    };
    for (const auto& row : settingRows::Flags())
        lclForm[row.field].SetChecked(platform::EqualAsciiNoCase(kept(row), row.yes));
    for (const auto& row : settingRows::Texts()) lclForm[row.field].SetText(kept(row));
    for (const auto& row : settingRows::Choices())
        lclForm[row.field].Select(static_cast<std::int32_t>(platform::Val(kept(row))) + 1);
    lclForm["cmbLanguage"].Select(Language >= 0 && Language <= 3 ? Language + 1 : 1);
}

// --- What the user does -------------------------------------------------------------------------

void frmSettings::ChooseFolder(forms::Field& field) {
    if (!lclPresenter) return;
    if (const auto folder = lclPresenter->ChooseFolder(lclForm.Caption(), field.Text()))
        field.SetText(*folder);
}

// By a file of its own, as the work there needs it.
void frmSettings::TestPath(std::string_view field) {
    const auto path = platform::Trim(lclForm[field].Text());
    auto& files = lclWorkstation.files;
    auto& result = lclForm["lblTest"];
    result.SetVisible(true);
    if (path.empty()) return result.SetText(lclForm.Text("Er is geen map ingevuld"));
    try {
        if (!files.DirectoryExists(path))
            return result.SetText(lclForm.Text("De map '$%$' bestaat niet", {path}));
        const auto probe =
            platform::JoinPath(path, "~kavidex" + model::NewGuid(lclWorkstation) + ".tmp");
        files.WriteAll(probe, "test");
        files.Remove(probe);
        result.SetText(lclForm.Text("De map '$%$' kan gebruikt worden", {path}));
    } catch (const std::exception& error) {
        lclWorkstation.log.Write("frmSettings", error.what());
        result.SetText(lclForm.Text("In de map '$%$' kan niet geschreven worden", {path}));
    }
}

void frmSettings::SwitchRights() {
    auto& box = lclForm["chkUseRights"];
    const bool on = box.Checked();
    const bool left = !on || model::AnAdministratorIsLeft(lclWorkstation, lclConnection);
    lclNobodyAccepted = !left;
    if (!ConfirmRightsSwitch(lclForm, lclWorkstation, on, left)) box.SetChecked(!on);
    ShowRights();
}

// --- The editors of an administrator ------------------------------------------------------------

void frmSettings::Open(std::size_t which) {
    const auto& editor = editors[which];
    if (!lclPresenter || !May(editor.right)) return;
    const auto control = editor.make(lclWorkstation);
    control->SetTranslate(lclTranslator);
    control->SetUserAuth(lclUserAuth);
    control->SetDossierType(DossierType);
    if (auto* post = dynamic_cast<ctlPost*>(control.get()); post && showViewer)
        post->Form()["panViewer"].SetPane(showViewer(post->Viewer()));
    control->SetDbConnection(lclConnection);
    control->ShowModal(*lclPresenter);
    // The rights' switch is on both; what was changed there holds.
    lclForm.Guarded([this] {
        const auto use = Setting("Rights", "Use");
        if (use == lclUse) return;
        lclUse = use;
        lclForm["chkUseRights"].SetChecked(platform::EqualAsciiNoCase(use, "true"));
        ShowRights();
    });
}

// --- Writing ------------------------------------------------------------------------------------

void frmSettings::Accept() {
    if (!WriteSettings()) return;
    WriteOptions();
    lclForm.Close(true);
}

// One that another workstation alone reaches may be right.
bool frmSettings::ConfirmFolder(const std::string& path) const {
    return path.empty() || lclWorkstation.files.DirectoryExists(path) ||
           lclWorkstation.messages.Show(
               {lclForm.Text("De map '$%$' bestaat niet. Wilt u deze toch opslaan?", {path}),
                lclForm.Caption(), platform::Buttons::YesNo, platform::Icon::Question}) ==
               platform::Answer::Yes;
}

// All of them or none, and none over what someone else has written since they were read.
bool frmSettings::WriteSettings() {
    struct Change {
        std::string_view section, key;
        std::string before, after;
    };
    std::vector<Change> changes;
    for (const auto& row : settingRows::Paths())
        if (const auto text = platform::Trim(lclForm[row.field].Text()); text != lclRead[row.field])
            changes.push_back({row.section, row.key, lclRead[row.field], text});
    for (const auto& change : changes)
        if (!ConfirmFolder(change.after)) return false;
    const bool use = lclForm["chkUseRights"].Checked();
    if (use != platform::EqualAsciiNoCase(lclUse, "true"))
        changes.push_back({"Rights", "Use", lclUse, use ? "True" : "False"});
    if (changes.empty()) return true;
    for (const auto& change : changes)
        if (change.after.size() > 255 || change.after.find('\'') != std::string::npos) {
            Tell("'$%$' is te lang of bevat een aanhalingsteken", {change.after});
            return false;
        }
    std::string taken, failure;
    try {
        const model::Store store(lclConnection);
        model::Transaction transaction(store, lclWorkstation);
        model::HoldSettings(store);
        data::clsSettings settings(lclWorkstation);
        settings.SetDbConnection(lclConnection);
        for (const auto& change : changes) {
            if (Setting(change.section, change.key) != change.before) {
                taken = std::string(change.section) + " / " + std::string(change.key);
                break;
            }
            settings.SetSetting(change.section, change.key, change.after);
            failure = settings.Failure();
            if (failure.empty() && Setting(change.section, change.key) != change.after)
                failure = "The setting was not stored.";
            if (!failure.empty()) break;
        }
        // The last who may change rights went since the question.
        if (use && !platform::EqualAsciiNoCase(lclUse, "true") && !lclNobodyAccepted &&
            !model::AnAdministratorIsLeft(lclWorkstation, lclConnection))
            taken = "Rights / UpdateEditRights";
        if (taken.empty() && failure.empty()) transaction.Commit();
    } catch (const std::exception& error) {
        failure = error.what();
    }
    if (taken.empty() && failure.empty()) {
        ReadSettings(); // what follows may fail, and is tried again
        return true;
    }
    if (!taken.empty())
        Tell("De instelling '$%$' is intussen door iemand anders gewijzigd. Er is niets "
             "opgeslagen.",
             {taken});
    else {
        lclWorkstation.log.Write("frmSettings", failure);
        Tell("De instellingen kunnen niet opgeslagen worden: $%$", {failure});
    }
    return false;
}

// An option that nobody touched stays as absent as it was.
void frmSettings::WriteOptions() {
    const auto write = [&](const auto& row, const std::string& now) {
        const auto before = platform::GetRegSetting(lclWorkstation, platform::applicationName,
                                                    row.section, row.key, row.absent);
        if (before == now) return;
        platform::SaveRegSetting(lclWorkstation, platform::applicationName, row.section, row.key,
                                 now);
        lclChanged.push_back(row.key);
    };
    for (const auto& row : settingRows::Flags()) {
        const bool was = platform::EqualAsciiNoCase(
            platform::GetRegSetting(lclWorkstation, platform::applicationName, row.section, row.key,
                                    row.absent),
            row.yes);
        if (was != lclForm[row.field].Checked()) write(row, std::string(was ? row.no : row.yes));
    }
    for (const auto& row : settingRows::Texts()) write(row, lclForm[row.field].Text());
    for (const auto& row : settingRows::Choices())
        if (const auto chosen = lclForm[row.field].Selected(); chosen != 0)
            write(row, std::to_string(chosen - 1));
    const auto language = lclForm["cmbLanguage"].Selected() - 1;
    if (language < 0 || language == Language) return;
    Language = language;
    platform::SaveRegSetting(lclWorkstation, platform::applicationName,
                             settingRows::languageSection, settingRows::languageKey,
                             std::to_string(language));
}

void frmSettings::Tell(std::string_view text, const std::vector<std::string>& values) const {
    platform::Message message;
    message.text = lclForm.Text(text, values);
    message.caption = lclForm.Caption();
    message.icon = platform::Icon::Exclamation;
    lclWorkstation.messages.Show(message);
}

} // namespace kavidex::controls
