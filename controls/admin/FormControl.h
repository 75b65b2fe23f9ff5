// What the controls have in common that are one form over the database: the checklist, and all that
// an administrator works with. Each stands on a host's form, as a panel, or as a dialog.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "controls/common/Event.h"
#include "controls/common/GrantedRights.h"
#include "controls/common/PropertyTable.h"
#include "controls/common/Translator.h"
#include "controls/forms/Form.h"
#include "platform/Messages.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls {

class OwnTranslator;

struct FormControlProperties {
    bool Enabled = true; // otherwise it only shows
    std::int32_t Language = 0;
};

class FormControl {
public:
    // Both must outlive it.
    FormControl(const forms::Layout& layout, const platform::Workstation& workstation);
    virtual ~FormControl();
    FormControl(const FormControl&) = delete;
    FormControl& operator=(const FormControl&) = delete;

    bool Enabled() const { return lclState.Enabled; }
    void SetEnabled(bool enabled);
    std::int32_t Language() const { return lclState.Language; }
    void SetLanguage(std::int32_t language); // of its own translator
    // Null: its own, over the texts of the database.
    const std::shared_ptr<Translator>& Translate() const { return lclTranslator; }
    void SetTranslate(std::shared_ptr<Translator> translator);
    const std::shared_ptr<model::clsUserAuth>& UserAuth() const { return lclUserAuth; }
    void SetUserAuth(std::shared_ptr<model::clsUserAuth> rights);
    const data::ConnectionPtr& DbConnection() const { return lclConnection; }
    void SetDbConnection(data::ConnectionPtr connection);
    void LoadProperties(PropertyBag& bag);
    void SaveProperties(PropertyBag& bag) const;

    virtual void Refresh(); // reads the database again; what could not be read is told

    Event<std::string_view> PropertyChanged;

    forms::Form& Form() { return lclForm; }
    // What shows the dialogs that it asks for; null: there is no window.
    std::function<forms::FormPresenter*()> presenter;

protected:
    virtual void Read() = 0;                 // from the database, or empties itself without one
    virtual void Show() = 0;                 // what was read, and what the user may do
    virtual bool MayLeave() { return true; } // changes that are not written would be lost
    virtual void RightsChanged() { ShowNow(); }
    void ShowNow(); // once there is something to show
    bool May(std::string_view right) const;
    bool MayRead(std::string_view right) const; // also while it only shows
    // Binds what the user does with a field to a member of the control.
    template <class Control>
    void On(std::string_view field, forms::What what, void (Control::*act)()) {
        lclForm.On(field, what,
                   [this, act](forms::FieldEvent&) { (static_cast<Control*>(this)->*act)(); });
    }
    template <class Control>
    void On(std::string_view field, forms::What what, void (Control::*act)(forms::FieldEvent&)) {
        lclForm.On(field, what, [this, act](forms::FieldEvent& event) {
            (static_cast<Control*>(this)->*act)(event);
        });
    }
    const platform::Workstation& Machine() const { return lclWorkstation; }
    std::string Text(std::string_view text, const std::vector<std::string>& values = {}) const {
        return lclForm.Text(text, values);
    }
    void Tell(std::string_view text, const std::vector<std::string>& values = {}) const;
    bool Ask(std::string_view text, std::string_view caption,
             const std::vector<std::string>& values = {}) const;
    // True when it went through; what it throws is shown and logged.
    bool Guarded(const std::function<void()>& work) { return lclForm.Guarded(work); }
    forms::FormPresenter* Presenter() const { return presenter ? presenter() : nullptr; }

private:
    const platform::Workstation& lclWorkstation;
    FormControlProperties lclState;
    forms::Form lclForm;
    std::shared_ptr<OwnTranslator> lclOwnTranslator; // null while the host's is in use
    std::shared_ptr<Translator> lclTranslator;
    std::shared_ptr<model::clsUserAuth> lclUserAuth;
    data::ConnectionPtr lclConnection;
    GrantedRights lclRights;
};

std::span<const Property<FormControlProperties>> FormControlPropertyTable();

} // namespace kavidex::controls
