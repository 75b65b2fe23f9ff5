#include "controls/intake/frmFolder.h"

#include "controls/forms/Form.h"
#include "controls/pictures/IconKeys.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"

namespace kavidex::controls {

namespace {

using forms::FieldRow;
using forms::Kind;
using forms::What;
namespace anchor = forms::anchor;
namespace style = forms::style;

constexpr FieldRow fields[] = {
    {"lblFolder",
     Kind::Label,
     {8, 8, 204, 18},
     "In welke map worden de documenten opgeborgen?",
     anchor::wide},
    {"treFolders", Kind::Tree, {8, 30, 204, 146}, "", anchor::all},
    {"btnOk", Kind::Button, {104, 184, 52, 14}, "OK", anchor::rightBottom, style::isDefault},
    {"btnCancel",
     Kind::Button,
     {160, 184, 52, 14},
     "Annuleren",
     anchor::rightBottom,
     style::isCancel},
};
constexpr forms::Layout layout = {"frmFolder", "Map kiezen", 220, 204, true, fields};

void AddFolders(const ItemPtr& item, std::int32_t parent, std::vector<forms::Item>& items) {
    if (!item || !item->AllowChildren() || item->Id() <= 0) return;
    forms::Item row;
    row.id = item->Id();
    row.parent = parent;
    row.texts = {item->Description()};
    row.icon = ItemIconKey(item->ItemType());
    row.expanded = true;
    items.push_back(std::move(row));
    if (const auto children = item->ChildCollection())
        for (const auto& child : children->Items()) AddFolders(child, item->Id(), items);
}

} // namespace

ItemPtr ChooseFolder(IntakeSite& site) {
    const auto tree = site.Tree();
    auto* const presenter = site.Forms();
    if (!tree || !presenter) return nullptr;
    forms::Form form(layout, site.Machine(), site.Translate());
    std::vector<forms::Item> items;
    AddFolders(tree->Item(), 0, items);
    auto& folders = form["treFolders"];
    folders.SetItems(std::move(items));
    const auto selected = site.SelectedFolder();
    folders.Select(selected ? selected->Id() : tree->Item()->Id());
    form.On("treFolders", What::Changed,
            [&](forms::FieldEvent&) { form["btnOk"].SetEnabled(folders.Selected() != 0); });
    form.On("treFolders", What::Activated, [&](forms::FieldEvent&) { form.Close(true); });
    if (!presenter->ShowModal(form) || site.Tree() != tree) return nullptr;
    return tree->GetItem(folders.Selected(), {});
}

} // namespace kavidex::controls
