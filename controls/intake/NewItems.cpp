#include "controls/intake/NewItems.h"

#include <exception>

#include "controls/tree/ctrlTree.h"
#include "data/clsSettings.h"
#include "model/Store.h"
#include "model/filing.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

void NewItems::Ask() {
    const auto folder = lclSite.SelectedFolder();
    auto* const presenter = lclSite.Forms();
    if (!folder) return lclSite.Tell("Selecteer eerst een map voor de toevoeging");
    if (!presenter) return;
    const auto given = lclSite.NewItem();
    const auto dossier = lclSite.OpenDossier();
    data::clsSettings settings(lclSite.Machine());
    settings.SetDbConnection(lclSite.DbConnection());
    frmNew form(lclSite.Machine(), lclSite.Translate());
    form.DossierType = given.dossierType;
    form.DossierStatus = given.dossierStatus;
    form.TempPath = given.templatePath;
    form.Settings = &settings;
    form.kinds = given.kinds;
    form.mayMakeLetters = lclSite.MayUser(UserAction::Create);
    form.mayAddFiles = lclSite.MayUser(UserAction::AddExternal);
    if (!form.Show(*presenter)) return;
    if (dossier != lclSite.OpenDossier())
        return lclSite.Machine().log.Write("NewItems", "Another dossier was opened meanwhile");
    if (form.WantsFiles())
        AddFiles(*presenter, folder);
    else if (form.SelectedKind() >= 0)
        lclSite.InsertNew(static_cast<std::size_t>(form.SelectedKind()));
    else if (frmNew::IsTemplate(form.SelectedFile()))
        lclLetters.Make({form.SelectedFile(), given.valueFile, form.LetterName(), form.OpenFile});
}

// Where documents for the dossiers are put, if anywhere.
std::string NewItems::ImportFolder() const {
    try {
        return platform::Trim(model::ReadSetting(lclSite.Machine(), lclSite.DbConnection(),
                                                 "DossierSettings", "ImportDocumentsPath")
                                  .value_or(std::string()));
    } catch (const std::exception& error) {
        lclSite.Machine().log.Write("NewItems", error.what());
        return {};
    }
}

void NewItems::AddFiles(forms::FormPresenter& presenter, const ItemPtr& folder) {
    const auto dossier = lclSite.OpenDossier();
    std::vector<IntakeFile> files;
    std::string refused;
    for (const auto& file :
         presenter.ChooseFiles(lclSite.Text("Documenten toevoegen"), ImportFolder()))
        if (lclSite.AcceptsType(model::DocumentTypeOf(platform::FileName(file))))
            files.push_back({file});
        else
            refused += (refused.empty() ? "" : ", ") + platform::FileName(file);
    if (!refused.empty())
        lclSite.Tell("Bestanden van dit type worden hier niet opgenomen: $%$", {refused});
    if (!files.empty()) lclIntake.AddByUser(dossier, files, folder);
}

} // namespace kavidex::controls
