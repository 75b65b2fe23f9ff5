#include "controls/tree/ctrlTree.h"

#include "controls/common/Listed.h"
#include "controls/forms/Form.h"
#include "data/logText.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "model/filing.h"
#include "platform/Error.h"
#include "platform/ErrorNumber.h"
#include "platform/Exchange.h"
#include "platform/General.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

ctrlTree::ctrlTree(const platform::Workstation& workstation)
    : lclWorkstation(workstation),
      lclRights(workstation,
                [this] {
                    lclWorkstation.messages.Show({Text("De rechten kunnen niet gelezen worden"),
                                                  Text("Geen authorisatie"), platform::Buttons::Ok,
                                                  platform::Icon::Exclamation});
                }),
      lclGrid(workstation), lclOwnLock(workstation), lclImages([this](const std::exception& error) {
          ShowError("Error in $%$", {"fncSetIcon"}, error);
      }) {
    SubscribeToGrid();
    for (const auto& option : TreeOptionTable())
        lclState.*option.member = platform::GetRegFlag(workstation, option.section, option.key);
    lclState.NameForInsert = lclDefaultNames = "Nieuwe map;Nieuwe notitie";
}

ctrlTree::~ctrlTree() {
    if (lclTaker == this) lclTaker = nullptr;
    for (auto* form : lclForms) form->Close(false);
}

std::optional<bool> ctrlTree::ShowForm(forms::Form& form) {
    auto* presenter = lclWindow ? lclWindow->Forms() : nullptr;
    if (!presenter) return false;
    const std::weak_ptr<void> alive = lclAlive;
    lclForms.push_back(&form);
    const bool result = presenter->ShowModal(form);
    if (alive.expired()) return std::nullopt;
    std::erase(lclForms, &form);
    return result;
}

void ctrlTree::TakeEffect(const Row::Member& member) {
    using P = TreeProperties;
    const auto is = [&](auto wanted) { return member == Row::Member(wanted); };
    if (is(&P::OrderByName) || is(&P::FoldersAndDocs) || is(&P::ShowDeleted))
        Refresh();
    else if (is(&P::ShowParentsOnly) || is(&P::ShowParentsOnlyTypes))
        Fill();
    else if (is(&P::ShowNumberOfChildren))
        for (const auto& [id, node] : lclNodes) UpdateText(id);
    else if (is(&P::FullExpand) && lclState.FullExpand)
        Fill();
    else if (is(&P::Description) && lclTree && lclState.TreeId > 0)
        Guarded("ctrlTree",
                [&] { lclTree->SetDescription(model::ColumnText(lclState.Description)); });
    else if (is(&P::BackColor) || is(&P::ForeColor) || is(&P::Enabled) || is(&P::BorderStyle) ||
             is(&P::BackStyle))
        ShowAppearance();
    else if (is(&P::SelectItems)) {
        Collect({}); // what was marked is not what is ticked
        ShowAppearance();
    }
}

void ctrlTree::SetTreeId(std::int32_t id) {
    const bool changed = Assign(lclState, &TreeProperties::TreeId, id);
    if (changed) {
        ForgetTree();
        lclTree.reset(); // a long load lets the host in, which must not find the tree of before
    }
    ShowTree(!changed);
    if (changed) PropertyChanged.Raise("TreeId");
}

void ctrlTree::SetDbConnection(data::ConnectionPtr connection) {
    if (connection == lclConnection) return;
    const bool other = lclConnection != nullptr;
    ForgetTaken();
    lclConnection = std::move(connection);
    AskRights();
    if (other) return SetTreeId(0);
    ShowTree(false);
}

void ctrlTree::SetUserAuth(std::shared_ptr<model::clsUserAuth> rights) {
    lclUserAuth = std::move(rights);
    AskRights();
}

void ctrlTree::Serve(OperationLock& lock, std::function<std::string()> dossierKey) {
    lclLock = &lock;
    lclDossierKey = std::move(dossierKey);
}

void ctrlTree::AskRights() { lclRights.Set(lclUserAuth, lclConnection); }

void ctrlTree::SetTranslate(std::shared_ptr<Translator> translator) {
    // Names that nobody chose follow the language; those of the host stay.
    const bool ours = lclState.NameForInsert == lclDefaultNames;
    lclTranslator = std::move(translator);
    if (lclTree) lclTree->SetTranslation(TranslationBy(lclTranslator));
    if (ours) {
        lclDefaultNames = Text("Nieuwe map") + ";" + Text("Nieuwe notitie");
        lclState.NameForInsert = lclDefaultNames;
    }
    Grid().SetTranslation(TranslationBy(lclTranslator));
    ShowStatusText();
}

void ctrlTree::SetFont(std::optional<FontFace> font) {
    if (font == lclFont) return;
    lclFont = std::move(font);
    PropertyChanged.Raise("Font");
    ShowAppearance();
}

void ctrlTree::ToggleOption(const TreeOption& option) {
    const bool value = !platform::GetRegFlag(lclWorkstation, option.section, option.key);
    // First where the model reads it: a changed option may load the tree again.
    platform::SaveRegFlag(lclWorkstation, option.section, option.key, value);
    if (lclState.*option.member == value)
        TakeEffect(Row::Member(option.member)); // the host had set it, not the workstation
    else
        Change(option.member, value);
}

void ctrlTree::LoadProperties(PropertyBag& bag) {
    ForgetTree();
    controls::LoadProperties(TreePropertyTable(), lclState, bag);
    lclState.IntDrag = false; // of the control that was saved: nothing is dragged here
    if (auto font = bag.ReadFont("Font")) lclFont = std::move(font);
    ShowAppearance();
    ShowTree(false);
}

void ctrlTree::SaveProperties(PropertyBag& bag) const {
    controls::SaveProperties(TreePropertyTable(), lclState, bag);
    if (lclFont) bag.WriteFont("Font", *lclFont);
}

void ctrlTree::AttachWindow(TreeWindow* window) {
    lclWindow = window;
    lclImages.Forget();
    for (auto& [id, node] : lclNodes) node.handle = 0;
    if (!window) return;
    ShowAppearance();
    ShowStatusText();
    window->ShowStatusBar(lclShowStatusBar);
    window->ShowList(lclListMode);
    lclGridDue = false; // the window that was asked is gone
    Fill();
}

void ctrlTree::ShowAppearance() {
    ShowBoxes();
    if (!lclWindow) return;
    lclWindow->SetColours(static_cast<std::uint32_t>(lclState.BackColor),
                          static_cast<std::uint32_t>(lclState.ForeColor), lclState.BackStyle != 0);
    lclWindow->SetFont(lclFont);
    lclWindow->SetEnabled(lclState.Enabled);
    lclWindow->SetBorder(lclState.BorderStyle != 0);
    lclWindow->SetCheckBoxes(lclState.SelectItems);
}

void ctrlTree::ShowBoxes() {
    const auto ticked = [this](std::int32_t id) { return lclCollected.contains(id); };
    Grid().SetBoxes(lclState.SelectItems ? std::function<bool(std::int32_t)>(ticked) : nullptr);
}

std::string ctrlTree::StatusText() const {
    return lclListMode ? Text("Lijst van aanwezige documenten")
                       : Text("Dossier met aanwezige documenten");
}

void ctrlTree::ShowStatusText() {
    if (lclWindow) lclWindow->SetStatusText(StatusText());
}

void ctrlTree::fncShowStatusBar(bool show) {
    lclShowStatusBar = show;
    if (lclWindow) lclWindow->ShowStatusBar(show);
}

std::string ctrlTree::Text(std::string_view text, const std::vector<std::string>& values) const {
    return lclTranslator ? lclTranslator->Translate(text, values)
                         : platform::FillPlaceholders(text, values);
}

bool ctrlTree::Guarded(std::string_view routine, const std::function<void()>& work) const {
    try {
        work();
        return true;
    } catch (const std::exception& error) {
        ShowError("Error in $%$", {std::string(routine)}, error);
        return false;
    }
}

void ctrlTree::OnItem(const std::function<void()>& work) const {
    try {
        work();
    } catch (const platform::Error& error) {
        if (error.Number() != platform::errors::notFound) throw;
        lclWorkstation.log.Write("ctrlTree", error.what());
        ThrowGone(error.Number());
    }
}

void ctrlTree::ThrowGone(std::int32_t number) const {
    throw platform::Error(number, Text("Dit is intussen door een andere gebruiker verwijderd. Met "
                                       "F5 wordt het dossier opnieuw gelezen."));
}

std::string ctrlTree::Listed(const std::vector<std::string>& names,
                             std::string_view between) const {
    return controls::Listed(names, TranslationBy(lclTranslator), between);
}

void ctrlTree::ShowError(std::string_view caption, const std::vector<std::string>& values,
                         const std::exception& error) const {
    const auto* ours = dynamic_cast<const platform::Error*>(&error);
    const std::string number =
        ours ? std::to_string(platform::ShownNumber(ours->Number())) + " " : std::string();
    std::string text = number + error.what();
    lclWorkstation.log.Write(platform::FillPlaceholders(caption, values),
                             number + data::InLog(error));
    if (ours && ours->Number() == platform::errors::clipboardHeld)
        text = std::to_string(ours->Number()) + " " +
               Text("Het klembord is in gebruik bij een ander programma. Probeer het opnieuw.");
    lclWorkstation.messages.Show(
        {text, Text(caption, values), platform::Buttons::Ok, platform::Icon::Critical});
}

} // namespace kavidex::controls
