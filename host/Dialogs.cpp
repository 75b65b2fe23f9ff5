#include "host/Dialogs.h"

#include "controls/forms/Form.h"
#include "controls/forms/win32/WindowsForms.h"
#include "host/Menu.h"
#include "platform/Workstation.h"

namespace kavidex::host {

namespace {

using controls::forms::FieldRow;
using controls::forms::Form;
using controls::forms::Kind;
using controls::forms::What;
namespace anchor = controls::forms::anchor;
namespace style = controls::forms::style;

constexpr FieldRow dossierFields[] = {
    {"lblKey", Kind::Label, {8, 12, 70, 9}, "Key of the record:"},
    {"txtKey", Kind::Edit, {82, 10, 130, 13}, "", anchor::wide},
    {"lblDescription", Kind::Label, {8, 32, 70, 9}, "Description:"},
    {"txtDescription", Kind::Edit, {82, 30, 130, 13}, "", anchor::wide},
    {"btnOk", Kind::Button, {106, 62, 50, 14}, "OK", anchor::rightBottom, style::isDefault},
    {"btnCancel", Kind::Button, {162, 62, 50, 14}, "Cancel", anchor::rightBottom, style::isCancel},
};
constexpr controls::forms::Layout dossierLayout = {"OpenDossier", "Open binder", 220, 84,
                                                   true,          dossierFields};

constexpr FieldRow connectionFields[] = {
    {"lblDatabase", Kind::Label, {8, 12, 70, 9}, "Database file:"},
    {"txtDatabase", Kind::Browse, {82, 10, 210, 13}, "", anchor::wide},
    {"lblStore", Kind::Label, {8, 32, 70, 9}, "Document folder:"},
    {"txtStore", Kind::Browse, {82, 30, 210, 13}, "", anchor::wide},
    {"btnOk", Kind::Button, {186, 62, 50, 14}, "OK", anchor::rightBottom, style::isDefault},
    {"btnCancel", Kind::Button, {242, 62, 50, 14}, "Cancel", anchor::rightBottom, style::isCancel},
};
constexpr controls::forms::Layout connectionLayout = {"Connection", "Connection", 300,
                                                      84,           true,         connectionFields};

struct HostTexts final : controls::Translator {
    explicit HostTexts(int shown) : language(shown) {}
    std::string Translate(std::string_view text, const std::vector<std::string>&) override {
        return std::string(Text(text, language));
    }
    int language;
};

// Nothing can be opened while the field that names it is empty.
void NeedText(Form& form, const char* field) {
    const auto check = [&form, field] { form["btnOk"].SetEnabled(!form[field].Text().empty()); };
    form.On(field, What::Changed, [check](auto&) { check(); });
    check();
}

} // namespace

bool AskDossier(HWND owner, int language, std::string& key, std::string& description) {
    const auto& workstation = platform::TheWorkstation();
    controls::forms::win32::WindowsForms forms(workstation, [owner] { return owner; });
    Form form(dossierLayout, workstation);
    form.SetTranslate(std::make_shared<HostTexts>(language));
    form["txtKey"].SetText(key);
    form["txtDescription"].SetText(description);
    NeedText(form, "txtKey");
    if (!forms.ShowModal(form)) return false;
    key = form["txtKey"].Text();
    description = form["txtDescription"].Text();
    return true;
}

bool AskConnection(HWND owner, int language, std::string& database, std::string& store) {
    const auto& workstation = platform::TheWorkstation();
    controls::forms::win32::WindowsForms forms(workstation, [owner] { return owner; });
    Form form(connectionLayout, workstation);
    form.SetTranslate(std::make_shared<HostTexts>(language));
    form["txtDatabase"].SetText(database);
    form["txtStore"].SetText(store);
    NeedText(form, "txtDatabase");
    form.On("txtDatabase", What::Clicked, [&](controls::forms::FieldEvent& event) {
        const auto file =
            forms.ChooseFile(form.Text("Database file:"), event.field.Text(), "*.kdb", true);
        if (file) event.field.SetText(*file);
        form["btnOk"].SetEnabled(!event.field.Text().empty());
    });
    form.On("txtStore", What::Clicked, [&](controls::forms::FieldEvent& event) {
        if (const auto folder =
                forms.ChooseFolder(form.Text("Document folder:"), event.field.Text()))
            event.field.SetText(*folder);
    });
    if (!forms.ShowModal(form)) return false;
    database = form["txtDatabase"].Text();
    store = form["txtStore"].Text();
    return true;
}

std::vector<std::string> ChooseFiles(HWND owner, int language) {
    controls::forms::win32::WindowsForms forms(platform::TheWorkstation(),
                                               [owner] { return owner; });
    return forms.ChooseFiles(std::string(Text("Add files", language)), {});
}

} // namespace kavidex::host
