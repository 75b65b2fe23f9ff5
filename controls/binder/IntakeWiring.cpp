#include "controls/binder/IntakeWiring.h"

#include <unordered_set>

#include "controls/binder/BinderWindow.h"
#include "controls/binder/ctrlCorrespondence.h"
#include "controls/tree/ctrlTree.h"
#include "controls/viewer/ViewerViews.h"
#include "controls/viewer/ctlViewer.h"
#include "controls/viewer/external/ctrlExtViewer.h"
#include "controls/viewer/external/frmViewer.h"
#include "data/ConnectionAssignment.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "platform/Error.h"
#include "platform/text.h"

namespace kavidex::controls {

std::shared_ptr<Translator> IntakeWiring::Translate() const { return lclBinder.Translate(); }

data::ConnectionPtr IntakeWiring::DbConnection() const { return lclBinder.DbConnection(); }

std::shared_ptr<model::clsTree> IntakeWiring::Tree() const {
    return lclBinder.Usable() ? lclBinder.treCorr().Tree() : nullptr;
}

bool IntakeWiring::IsElsewhere() const { return lclBinder.lclAssignment->IsElsewhere(); }

std::string IntakeWiring::DossierKey() { return lclBinder.DossierKey(); }

Dossier IntakeWiring::OpenDossier() const { return lclBinder.OpenDossier(); }

ItemPtr IntakeWiring::SelectedFolder() const { return lclBinder.SelectedFolder(); }

std::vector<ItemPtr> IntakeWiring::SelectedItems() const {
    std::unordered_set<std::int32_t> selected;
    for (const auto& item : lclBinder.treCorr().SelectedItems()) selected.insert(item->Id());
    std::vector<ItemPtr> items;
    if (selected.empty()) return items;
    for (auto& item : lclBinder.treCorr().AllItems())
        if (item->Id() > 0 && selected.contains(item->Id())) items.push_back(std::move(item));
    return items;
}

ItemPtr IntakeWiring::ParentOf(const model::clsItem& item) const {
    return lclBinder.treCorr().GetParent(item.Id());
}

void IntakeWiring::Show(const ItemPtr& item, std::int32_t folder, bool select) {
    lclBinder.treCorr().AddItem(item, folder, select);
}

void IntakeWiring::ShowAgain() { lclBinder.RefreshList(); }

bool IntakeWiring::Delete(const model::clsItem& item) {
    return lclBinder.treCorr().DeleteItem(item.Id());
}

bool IntakeWiring::SaveShown(const model::clsItem& item) {
    const auto saved = [&](ctlViewer& viewer) {
        const auto shown = viewer.Item();
        return !shown || shown->Id() != item.Id() || viewer.Views().image.Count() == 0 ||
               viewer.SaveImage();
    };
    auto* const window = lclBinder.ExtViewer().Form();
    return saved(lclBinder.Viewer()) && (!window || saved(window->Viewer()));
}

void IntakeWiring::OpenDefault(const ItemPtr& item) { lclBinder.Viewer().OpenDefault(item); }

bool IntakeWiring::HasRight(std::string_view right) const { return lclBinder.HasRight(right); }

bool IntakeWiring::MayUser(UserAction action) const { return lclBinder.treCorr().MayUser(action); }

bool IntakeWiring::AcceptsType(std::string_view type) const {
    return lclBinder.treCorr().AcceptsType(type);
}

ScanPlace* IntakeWiring::Scanner() {
    return lclBinder.lclWindow ? lclBinder.lclWindow->Scanner() : nullptr;
}

std::string IntakeWiring::ScanProfile() const { return lclBinder.AlternateScanSetting(); }

// A bag without the item gives the text "0" for the path: none.
std::vector<std::pair<const wchar_t*, std::string>> IntakeWiring::TextsForScanner() const {
    const auto& ini = lclBinder.IniFile();
    return {{L"IniFile", ini == "0" ? std::string() : ini},
            {L"InitString", lclBinder.InitString()}};
}

std::unique_ptr<LetterGenerator> IntakeWiring::MakeLetterGenerator() {
    if (lclComponents.letters) return lclComponents.letters();
    throw platform::Error(platform::errors::notFound, "There is no letter generator here.");
}

NewItemFacts IntakeWiring::NewItem() const {
    const auto names = platform::Split(lclBinder.NameForInsert(), ';');
    const auto types = platform::Split(lclBinder.TypeForInsert(), ';');
    NewItemFacts facts{lclBinder.DossierType(),
                       lclBinder.DossierStatus(),
                       lclBinder.lclAssignment->TemplatePath(),
                       lclBinder.ValueFile(),
                       {}};
    for (std::size_t i = 0; i < names.size() && i < types.size(); ++i) {
        const bool named = !platform::TrimView(names[i]).empty();
        facts.kinds.push_back(
            {lclBinder.Text(names[i]), types[i], named && lclBinder.treCorr().MayInsert(i)});
    }
    return facts;
}

void IntakeWiring::InsertNew(std::size_t kind) { lclBinder.InsertNew(kind); }

forms::FormPresenter* IntakeWiring::Forms() {
    return lclBinder.lclWindow ? lclBinder.lclWindow->Forms() : nullptr;
}

} // namespace kavidex::controls
