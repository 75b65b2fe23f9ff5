// The dialog "Instellingen": the installation's settings in the database, the options of this
// workstation, and the way to what an administrator works with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "controls/forms/Form.h"
#include "controls/forms/FormView.h"
#include "data/Connection.h"

namespace kavidex::model {
class clsUserAuth;
}

namespace kavidex::controls {

class ctlViewer;

// The language of this workstation, a value of the binder's property; Dutch where none is kept.
std::int32_t LanguageOption(const platform::Workstation& workstation);

class frmSettings {
public:
    // `workstation` must outlive it.
    frmSettings(const platform::Workstation& workstation, data::ConnectionPtr connection,
                std::shared_ptr<Translator> translator, std::shared_ptr<model::clsUserAuth> rights);

    // --- From the control, before it is shown ----------------------------------------------------
    std::string DossierType;   // which type's folders the editors begin with
    std::int32_t Language = 0; // as it is; as it shall be, once the dialog was left by OK

    std::function<std::unique_ptr<forms::PaneContent>(ctlViewer&)> showViewer; // null: no window

    // False when the user cancels: nothing is written then.
    bool Show(forms::FormPresenter& presenter);
    // Keys of the workstation's options that the user changed.
    const std::vector<std::string_view>& ChangedOptions() const { return lclChanged; }

    forms::Form& Form() { return lclForm; }

private:
    void ReadSettings();
    void Fill();
    void FillOptions();
    void ChooseFolder(forms::Field& field);
    void TestPath(std::string_view field);
    void SwitchRights();
    void ShowRights();
    void Accept();
    void Open(std::size_t which); // an editor
    bool ConfirmFolder(const std::string& path) const;
    bool WriteSettings();
    void WriteOptions();
    std::string Setting(std::string_view section, std::string_view key) const;
    bool May(std::string_view right) const;
    void Tell(std::string_view text, const std::vector<std::string>& values = {}) const;

    const platform::Workstation& lclWorkstation;
    data::ConnectionPtr lclConnection;
    std::shared_ptr<Translator> lclTranslator;
    std::shared_ptr<model::clsUserAuth> lclUserAuth;
    forms::Form lclForm;
    forms::FormPresenter* lclPresenter = nullptr;
    std::map<std::string_view, std::string> lclRead; // what the settings were, by field
    std::string lclUse;                              // and the rights' switch
    bool lclNobodyAccepted = false; // that nobody may change rights once they are in use
    std::vector<std::string_view> lclChanged;
};

} // namespace kavidex::controls
