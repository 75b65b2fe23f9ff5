#include "controls/admin/ctlDefaultFolders.h"

#include <algorithm>

#include "controls/tree/DefaultTabs.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

using forms::FieldRow;
using forms::Item;
using forms::Kind;
using forms::What;
namespace anchor = forms::anchor;
namespace style = forms::style;

constexpr FieldRow fields[] = {
    {"lblType", Kind::Label, {6, 8, 60, 9}, "Dossiertype:"},
    {"cmbType", Kind::Combo, {68, 6, 130, 13}},
    {"btnNewType", Kind::Button, {202, 6, 60, 13}, "Nieuw type..."},
    {"btnDeleteType", Kind::Button, {266, 6, 70, 13}, "Type verwijderen"},
    {"treFolders",
     Kind::Tree,
     {6, 24, 192, 164},
     "Standaardmappen",
     anchor::all,
     style::edits | style::drags | style::checks},
    {"btnNew", Kind::Button, {206, 24, 80, 14}, "Nieuwe map", anchor::rightTop},
    {"btnDelete", Kind::Button, {290, 24, 60, 14}, "Verwijderen", anchor::rightTop},
    {"btnUp", Kind::Button, {206, 42, 80, 14}, "Omhoog", anchor::rightTop},
    {"btnDown", Kind::Button, {290, 42, 60, 14}, "Omlaag", anchor::rightTop},
    {"lblTabType", Kind::Label, {206, 64, 144, 9}, "Type voor de checklist:", anchor::rightTop},
    {"txtTabType", Kind::Edit, {206, 75, 144, 13}, "", anchor::rightTop},
    {"lblToken", Kind::Label, {206, 94, 144, 9}, "Invullen bij het maken:", anchor::rightTop},
    {"cmbToken",
     Kind::Combo,
     {206, 105, 98, 13},
     "%DD-%MM-%YYYY;%YYYY;%hh:%mm (%ss);%##;%####",
     anchor::rightTop},
    {"btnToken", Kind::Button, {308, 105, 42, 13}, "Voeg in", anchor::rightTop},
    {"lblFrom", Kind::Label, {206, 142, 144, 9}, "Overnemen van:", anchor::rightTop},
    {"cmbFrom", Kind::Combo, {206, 153, 98, 13}, "", anchor::rightTop},
    {"btnCopy", Kind::Button, {308, 153, 42, 13}, "Neem", anchor::rightTop},
    {"btnSave", Kind::Button, {150, 194, 54, 14}, "Opslaan", anchor::rightBottom},
    {"btnUndo", Kind::Button, {208, 194, 88, 14}, "Ongedaan maken", anchor::rightBottom},
    {"btnClose",
     Kind::Button,
     {300, 194, 50, 14},
     "Sluiten",
     anchor::rightBottom,
     style::isCancel | style::hidden | style::givesRoom},
    {"lblPreview", Kind::Label, {206, 121, 144, 18}, "", anchor::rightTop},
};
constexpr forms::Layout layout = {"ctlDefaultFolders", "Standaardmappen", 356, 214, true, fields};

constexpr FieldRow nameFields[] = {
    {"lblName", Kind::Label, {8, 10, 60, 9}, "Naam:"},
    {"txtName", Kind::Edit, {72, 8, 140, 13}, "", anchor::wide},
    {"btnOk", Kind::Button, {108, 32, 50, 14}, "OK", anchor::rightBottom, style::isDefault},
    {"btnCancel",
     Kind::Button,
     {162, 32, 50, 14},
     "Annuleren",
     anchor::rightBottom,
     style::isCancel},
};
constexpr forms::Layout nameLayout = {"NewType", "Nieuw dossiertype", 220, 52, true, nameFields};

} // namespace

ctlDefaultFolders::ctlDefaultFolders(const platform::Workstation& workstation)
    : AdminControl(layout, workstation, "ReadDossierType", "UpdateDossierType") {
    On("cmbType", What::Changed, &ctlDefaultFolders::ChooseType);
    On("btnNewType", What::Clicked, &ctlDefaultFolders::AddType);
    On("btnDeleteType", What::Clicked, &ctlDefaultFolders::RemoveType);
    On("btnCopy", What::Clicked, &ctlDefaultFolders::CopyFrom);
    EditsItemsOf("treFolders");
    On("btnToken", What::Clicked, &ctlDefaultFolders::InsertToken);
    On("txtTabType", What::Changed, &ctlDefaultFolders::NameType);
    On("treFolders", What::Changed, &ctlDefaultFolders::ShowChosen);
    On("treFolders", What::Editing, &ctlDefaultFolders::Editing);
    On("treFolders", What::Edited, &ctlDefaultFolders::Rename);
    On("treFolders", What::Checked, &ctlDefaultFolders::Tick);
    On("treFolders", What::DragOver, &ctlDefaultFolders::DragOver);
    On("treFolders", What::Dropped, &ctlDefaultFolders::Dropped);
    Show();
}

// --- Reading and showing ------------------------------------------------------------------------

void ctlDefaultFolders::Read() {
    lclTypes.clear();
    lclStored.clear();
    lclFolders.clear();
    if (!MaySee()) return;
    lclTypes = model::DossierTypes(Machine(), DbConnection());
    const auto named = [&](std::string_view name) {
        return std::find_if(lclTypes.begin(), lclTypes.end(), [&](const auto& type) {
            return platform::EqualNoCase(type.name, name);
        });
    };
    auto chosen = named(lclType.name);
    if (chosen == lclTypes.end()) chosen = named(DossierType());
    if (chosen == lclTypes.end()) chosen = lclTypes.begin();
    lclType = chosen == lclTypes.end() ? model::DossierType{} : *chosen;
    ReadFolders();
}

void ctlDefaultFolders::ReadFolders() {
    lclStored.clear();
    lclFolders.clear();
    if (lclType.id == 0) return;
    lclStored = model::TabsOfType(model::Store(DbConnection()), lclType.id);
    lclFolders = FromTabs(lclStored);
}

std::vector<ctlDefaultFolders::Folder>
ctlDefaultFolders::FromTabs(const std::vector<model::DossierTab>& tabs) {
    std::vector<Folder> all;
    const auto in = [&](std::int32_t parent, const std::string& name) {
        return std::find_if(all.begin(), all.end(), [&](const Folder& folder) {
            return folder.parent == parent && platform::EqualNoCase(folder.name, name);
        });
    };
    for (const auto& tab : tabs) {
        std::int32_t parent = 0;
        const auto steps = platform::Split(tab.description, '\\');
        for (std::size_t i = 0; i < steps.size(); ++i) {
            const bool last = i + 1 == steps.size();
            auto folder = in(parent, steps[i]);
            // One that has no row of its own is made with what it holds.
            if (folder == all.end() || (last && folder->row != 0))
                folder = all.insert(all.end(), {lclNext++, parent, 0, steps[i], {}, false});
            parent = folder->id;
            if (last) {
                folder->row = tab.id;
                folder->type = tab.type;
                folder->automatic = tab.automatic;
            } else if (folder->row == 0) {
                folder->automatic |= tab.automatic;
            }
        }
    }
    // Each before what it holds, whatever the rows' order.
    std::vector<Folder> ordered;
    const auto take = [&](const auto& self, std::int32_t of) -> void {
        for (const auto& folder : all)
            if (folder.parent == of) {
                ordered.push_back(folder);
                self(self, folder.id);
            }
    };
    take(take, 0);
    return ordered;
}

std::string ctlDefaultFolders::PathOf(const Folder& folder) const {
    for (const auto& other : lclFolders)
        if (other.id == folder.parent) return PathOf(other) + "\\" + folder.name;
    return folder.name;
}

std::vector<model::DossierTab> ctlDefaultFolders::Tabs() const {
    std::vector<model::DossierTab> tabs;
    std::int32_t order = 0;
    for (const auto& folder : lclFolders)
        tabs.push_back({folder.row, PathOf(folder), folder.type, ++order, folder.automatic});
    return tabs;
}

void ctlDefaultFolders::Show() {
    auto& form = Form();
    std::vector<Item> types, others, folders;
    for (const auto& type : lclTypes) {
        types.push_back({type.id, {type.name}});
        if (type.id != lclType.id) others.push_back({type.id, {type.name}});
    }
    form["cmbType"].SetItems(std::move(types));
    form["cmbType"].Select(lclType.id);
    form["cmbFrom"].SetItems(std::move(others));
    for (const auto& folder : lclFolders) {
        Item item{folder.id, {folder.name}, folder.parent, "closedtab"};
        item.checked = folder.automatic;
        item.expanded = true;
        folders.push_back(std::move(item));
    }
    form["treFolders"].SetItems(std::move(folders));
    form["btnNewType"].SetEnabled(May("CreateDossierType") && Presenter());
    form["btnDeleteType"].SetEnabled(lclType.id != 0 && May("DeleteDossierType"));
    ShowChosen();
}

void ctlDefaultFolders::ShowChosen() {
    auto& form = Form();
    const auto* folder = Chosen();
    const bool may = lclType.id != 0 && MayChange();
    for (const auto* name : {"btnDelete", "btnUp", "btnDown", "txtTabType", "btnToken"})
        form[name].SetEnabled(folder && may);
    form["btnNew"].SetEnabled(may);
    form["btnCopy"].SetEnabled(may && !form["cmbFrom"].Items().empty());
    form["txtTabType"].SetText(folder ? folder->type : "");
    form["lblPreview"].SetText(
        folder ? Text("Vandaag: $%$", {FillTokens(folder->name, Machine().clock.Now(), 1)}) : "");
    ShowButtons();
}

// --- Which is meant -----------------------------------------------------------------------------

ctlDefaultFolders::Folder* ctlDefaultFolders::Find(std::int32_t id) {
    const auto found = std::find_if(lclFolders.begin(), lclFolders.end(),
                                    [&](const Folder& folder) { return folder.id == id; });
    return found == lclFolders.end() ? nullptr : &*found;
}

ctlDefaultFolders::Folder* ctlDefaultFolders::Chosen() {
    return Find(Form()["treFolders"].Selected());
}

void ctlDefaultFolders::Choose(std::int32_t id) {
    Form()["treFolders"].Select(id);
    ShowChosen();
}

bool ctlDefaultFolders::LiesWithin(std::int32_t id, std::int32_t top) {
    for (const auto* folder = Find(id); folder; folder = Find(folder->parent))
        if (folder->id == top) return true;
    return false;
}

bool ctlDefaultFolders::HasNamed(std::int32_t parent, std::string_view name) const {
    return std::any_of(lclFolders.begin(), lclFolders.end(), [&](const Folder& other) {
        return other.parent == parent && platform::EqualNoCase(other.name, name);
    });
}

bool ctlDefaultFolders::MayBeNamed(const Folder& folder, std::string_view name) {
    auto named = folder;
    named.name = name;
    if (name.empty() || name.find('\\') != std::string_view::npos || PathOf(named).size() > 255) {
        Tell("'$%$' is geen bruikbare naam", {std::string(name)});
        return false;
    }
    for (const auto& other : lclFolders)
        if (other.id != folder.id && other.parent == folder.parent &&
            platform::EqualNoCase(other.name, name)) {
            Tell("Er is hier al een map '$%$'", {std::string(name)});
            return false;
        }
    return true;
}

// --- Types --------------------------------------------------------------------------------------

void ctlDefaultFolders::ChooseType() {
    const auto wanted = Form()["cmbType"].Selected();
    if (wanted == 0 || wanted == lclType.id) return;
    if (!MayLeave()) return Form()["cmbType"].Select(lclType.id);
    for (const auto& type : lclTypes)
        if (type.id == wanted) lclType = type;
    Undo();
}

void ctlDefaultFolders::AddType() {
    auto* const dialogs = Presenter();
    if (!dialogs || !May("CreateDossierType") || !MayLeave()) return;
    forms::Form dialog(nameLayout, Machine(), Translate());
    if (!dialogs->ShowModal(dialog)) return;
    const auto name = platform::Trim(dialog["txtName"].Text());
    const bool known = std::any_of(lclTypes.begin(), lclTypes.end(), [&](const auto& type) {
        return platform::EqualNoCase(type.name, name);
    });
    // "^" parts a type from a folder's type in the keys of checklists.
    if (known || name.empty() || name.size() > 255 || name.find('^') != std::string::npos)
        return Tell("'$%$' is geen bruikbare naam", {name});
    if (!Written([&](const model::Store& store) {
            model::HoldSettings(store); // another makes it too
            if (model::FindDossierType(Machine(), DbConnection(), name).id == 0)
                model::AddDossierType(Machine(), store, name, name);
        }))
        return;
    lclType = {0, name, {}};
    Undo();
    EvSaved.Raise();
}

void ctlDefaultFolders::RemoveType() {
    if (lclType.id == 0 || !May("DeleteDossierType") ||
        !Ask("Wilt u het dossiertype '$%$' met zijn standaardmappen verwijderen? Dossiers blijven "
             "bestaan.",
             "Bevestigen verwijderen", {lclType.name}))
        return;
    if (!Written([&](const model::Store& store) {
            HoldUnchanged(store);
            model::RemoveDossierType(store, lclType);
        })) {
        if (!IsChanged()) Undo(); // as it is by now, it may be deleted
        return;
    }
    lclType = {};
    Undo();
    EvSaved.Raise();
}

void ctlDefaultFolders::CopyFrom() {
    const auto from = Form()["cmbFrom"].Selected();
    if (from == 0 || !MayChange()) return;
    const bool taken = Guarded([&] {
        const auto tabs = model::TabsOfType(model::Store(DbConnection()), from);
        for (auto& folder : FromTabs(tabs)) {
            folder.row = 0;
            const auto path = folder.name;
            if (folder.parent == 0)
                for (int n = 2; HasNamed(0, folder.name); ++n)
                    folder.name = path + " (" + std::to_string(n) + ")";
            lclFolders.push_back(std::move(folder));
        }
    });
    if (!taken) return;
    Changed();
    Show();
}

// --- Saving -------------------------------------------------------------------------------------

bool ctlDefaultFolders::MaySave() {
    const auto tabs = Tabs();
    const auto tooLong = std::find_if(tabs.begin(), tabs.end(), [](const auto& tab) {
        return tab.description.size() > 255 || tab.type.size() > 255;
    });
    if (tooLong == tabs.end()) return true;
    Tell("'$%$' is geen bruikbare naam", {tooLong->description});
    return false;
}

void ctlDefaultFolders::HoldUnchanged(const model::Store& store) const {
    if (!model::HoldType(store, lclType.id) || model::TabsOfType(store, lclType.id) != lclStored)
        throw ChangedMeanwhile{lclType.name};
}

void ctlDefaultFolders::Write(const model::Store& store) {
    HoldUnchanged(store);
    model::SaveTabs(Machine(), store, lclType.id, lclStored, Tabs());
}

} // namespace kavidex::controls
