#include "controls/admin/AdminControl.h"

#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

using forms::What;

namespace {

constexpr int deleteKey = 0x2E, insertKey = 0x2D, leftKey = 0x25, upKey = 0x26, rightKey = 0x27,
              downKey = 0x28;

bool Sure(const platform::Workstation& workstation, std::string_view text,
          std::string_view caption) {
    return workstation.messages.Show({std::string(text), std::string(caption),
                                      platform::Buttons::YesNo, platform::Icon::Question}) ==
           platform::Answer::Yes;
}

} // namespace

bool ConfirmNobodyLeft(const forms::Form& form, const platform::Workstation& workstation) {
    return Sure(workstation,
                form.Text("Geen enkele gebruiker mag rechten wijzigen: niemand kan dit dan nog "
                          "terugdraaien. Wilt u echt doorgaan?"),
                form.Text("Gebruik van rechten activeren"));
}

bool ConfirmRightsSwitch(const forms::Form& form, const platform::Workstation& workstation, bool on,
                         bool left) {
    if (!on)
        return Sure(workstation,
                    form.Text("Hiermee schakelt u het gebruik van rechten uit. Gebruikers hebben "
                              "vanaf nu volledige rechten. Wilt u echt doorgaan?"),
                    form.Text("Gebruik van rechten deactiveren"));
    return Sure(workstation,
                form.Text("Hiermee schakelt u het gebruik van rechten in. Gebruikers hebben vanaf "
                          "nu standaard geen rechten meer. Wilt u echt doorgaan?"),
                form.Text("Gebruik van rechten activeren")) &&
           (left || ConfirmNobodyLeft(form, workstation));
}

AdminControl::AdminControl(const forms::Layout& layout, const platform::Workstation& workstation,
                           std::string_view rightToSee, std::string_view rightToChange)
    : FormControl(layout, workstation), lclRightToSee(rightToSee), lclRightToChange(rightToChange) {
    Form().On("btnSave", What::Clicked, [this](forms::FieldEvent&) { Save(); });
    On("btnUndo", What::Clicked, &AdminControl::Undo);
    Form()["btnSave"].SetEnabled(false);
    Form()["btnUndo"].SetEnabled(false);
}

void AdminControl::SetDossierType(std::string_view type) {
    if (type == lclDossierType) return;
    lclDossierType = type;
    PropertyChanged.Raise("DossierType");
    if (!lclChanged) Refresh();
}

void AdminControl::EditsItemsOf(std::string_view field) {
    struct Row {
        int key;
        bool control;
        std::string_view button;
        bool (*act)(AdminControl&); // false: the key has no use here
    };
    static constexpr Row rows[] = {
        {insertKey, false, "btnNew", [](AdminControl& on) { return on.Add(), true; }},
        {deleteKey, false, "btnDelete", [](AdminControl& on) { return on.Remove(), true; }},
        {upKey, true, "btnUp", [](AdminControl& on) { return on.MoveBy(-1), true; }},
        {downKey, true, "btnDown", [](AdminControl& on) { return on.MoveBy(1), true; }},
        {leftKey, true, "", [](AdminControl& on) { return on.Indent(false); }},
        {rightKey, true, "", [](AdminControl& on) { return on.Indent(true); }},
    };
    for (const Row& row : rows)
        if (!row.button.empty())
            Form().On(row.button, What::Clicked,
                      [this, &row](forms::FieldEvent&) { row.act(*this); });
    Form().On(field, What::Key, [this](forms::FieldEvent& event) {
        event.refused = true;
        for (const Row& row : rows)
            if (row.key == event.key && row.control <= event.control)
                event.refused = !row.act(*this);
    });
}

void AdminControl::Changed() {
    const bool first = !lclChanged;
    lclChanged = true;
    ShowButtons();
    if (first) EvChanged.Raise();
}

void AdminControl::ShowButtons() {
    Form()["btnSave"].SetEnabled(lclChanged && MayWrite());
    Form()["btnUndo"].SetEnabled(lclChanged);
}

bool AdminControl::Save() {
    if (!lclChanged) return true;
    if (!MayWrite()) {
        Tell("U heeft geen bevoegdheid om dit te wijzigen");
        return false;
    }
    // The host may have had it read again while that was asked.
    if (!MaySave() || !lclChanged || !Written([this](const model::Store& store) { Write(store); }))
        return false;
    Undo();
    EvSaved.Raise();
    return true;
}

bool AdminControl::Written(const std::function<void(const model::Store&)>& work) {
    std::string taken, failure;
    try {
        const model::Store store(DbConnection());
        model::Transaction transaction(store, Machine());
        work(store);
        transaction.Commit();
    } catch (const ChangedMeanwhile& conflict) {
        taken = conflict.what;
    } catch (const std::exception& error) {
        failure = error.what();
    }
    if (!taken.empty()) {
        Tell("'$%$' is intussen door iemand anders gewijzigd. Er is niets opgeslagen.", {taken});
        return false;
    }
    if (!failure.empty()) {
        Machine().log.Write(Form().Table().name, failure);
        Tell("Opslaan is niet gelukt: $%$", {failure});
        return false;
    }
    return true;
}

void AdminControl::Refresh() {
    lclChanged = false;
    FormControl::Refresh();
    ShowButtons();
}

// Another user sees other things; what the one before had begun stays until it is saved, for who
// may see it.
void AdminControl::RightsChanged() {
    if (DbConnection() && (!lclChanged || !MaySee()))
        Refresh();
    else
        ShowNow();
}

bool AdminControl::MayLeave() {
    if (!lclChanged) return true;
    const auto answer = Machine().messages.Show(
        {Text("Wilt u de wijzigingen opslaan?"), Text("Bevestigen opslaan wijzigingen"),
         platform::Buttons::YesNoCancel, platform::Icon::Question});
    if (answer == platform::Answer::Yes) return Save();
    return answer == platform::Answer::No;
}

void AdminControl::ShowModal(forms::FormPresenter& forms) {
    presenter = [&forms] { return &forms; };
    ShowNow(); // what asks for dialogs can be used now
    Form()["btnClose"].SetVisible(true);
    forms.ShowModal(Form());
    Form()["btnClose"].SetVisible(false);
    presenter = nullptr;
}

} // namespace kavidex::controls
