// What the controls of an administrator add: changes are kept in memory until they are saved, all
// of them or none, and never over what someone else has saved meanwhile.
#pragma once

#include "controls/admin/FormControl.h"
#include "model/Store.h"

namespace kavidex::controls {

// Thrown while saving: someone else has changed the same. The text names it.
struct ChangedMeanwhile {
    std::string what;
};

class AdminControl : public FormControl {
public:
    // The layout has the buttons btnSave, btnUndo and, hidden, btnClose. Nothing is shown, and no
    // other right counts, without `rightToSee`.
    AdminControl(const forms::Layout& layout, const platform::Workstation& workstation,
                 std::string_view rightToSee, std::string_view rightToChange);

    // Which dossier type it begins with, where it is about types.
    const std::string& DossierType() const { return lclDossierType; }
    void SetDossierType(std::string_view type);

    bool IsChanged() const { return lclChanged; }
    bool Save(); // true when nothing is left to save; the user was told why not
    void Undo() { Refresh(); }
    void Refresh() override; // what is not saved is given up

    Event<> EvChanged; // the user changed something that is not saved yet
    Event<> EvSaved;

    // As a dialog, with a button to close it.
    void ShowModal(forms::FormPresenter& forms);

protected:
    virtual bool MayWrite() const { return MayChange(); }
    virtual bool MaySave() { return true; }            // asks what has to be asked; false: not now
    virtual void Write(const model::Store& store) = 0; // within one transaction
    // Does the work in one transaction; false when it was refused, which the user was told.
    bool Written(const std::function<void(const model::Store&)>& work);
    // Makes the field's items edited by keys (Ins, Del, with Ctrl the arrows) and by the buttons
    // btnNew, btnDelete, btnUp and btnDown.
    void EditsItemsOf(std::string_view field);
    virtual void Add() {}
    virtual void Remove() {}
    virtual void MoveBy(int /*steps*/) {}                  // among those beside it
    virtual bool Indent(bool /*deeper*/) { return false; } // false: there are no levels
    void Changed();
    bool MaySee() const { return MayRead(lclRightToSee); }
    bool May(std::string_view right) const { return MaySee() && FormControl::May(right); }
    bool MayChange() const { return May(lclRightToChange); }
    void ShowButtons();
    bool MayLeave() override;
    void RightsChanged() override;

private:
    std::string lclDossierType;
    std::string_view lclRightToSee, lclRightToChange;
    bool lclChanged = false;
};

// The two questions before rights begin or cease to count; `left` tells whether anybody may change
// rights then.
bool ConfirmRightsSwitch(const forms::Form& form, const platform::Workstation& workstation, bool on,
                         bool left);
// The same question when a change takes the right to change rights from the last who has it.
bool ConfirmNobodyLeft(const forms::Form& form, const platform::Workstation& workstation);

} // namespace kavidex::controls
