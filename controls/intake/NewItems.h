// The toolbar's "Nieuw": what the dialog is given, and what is made of its answer.
#pragma once

#include "controls/intake/Intake.h"
#include "controls/intake/Letters.h"
#include "controls/intake/frmNew.h"

namespace kavidex::controls {

// What of the control the dialog needs.
struct NewItemFacts {
    std::string dossierType, dossierStatus, templatePath, valueFile;
    std::vector<NewKind> kinds;
};

class NewItems {
public:
    NewItems(IntakeSite& site, Intake& intake)
        : lclSite(site), lclIntake(intake), lclLetters(site, intake) {}

    // Throws what the toolbar's box shows.
    void Ask();

private:
    void AddFiles(forms::FormPresenter& presenter, const ItemPtr& folder);
    std::string ImportFolder() const;

    IntakeSite& lclSite;
    Intake& lclIntake;
    Letters lclLetters;
};

} // namespace kavidex::controls
