#include "controls/admin/ctlRights.h"

#include <algorithm>

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

constexpr int deleteKey = 0x2E, insertKey = 0x2D;
// Ids of the tree of rights: groups from 1, rights from 101.
constexpr std::int32_t firstRight = 101;

constexpr FieldRow fields[] = {
    {"lblFind", Kind::Label, {6, 8, 43, 9}, "Zoeken:"},
    {"txtFind", Kind::Edit, {50, 6, 132, 13}},
    {"treUsers",
     Kind::Tree,
     {6, 23, 176, 166},
     "Gebruikers en groepen",
     anchor::tall,
     style::edits | style::drags},
    {"treRights", Kind::Tree, {188, 23, 222, 150}, "Rechten", anchor::all, style::checks},
    {"btnGroup", Kind::Button, {6, 193, 60, 14}, "Nieuwe groep", anchor::leftBottom},
    {"btnUser", Kind::Button, {68, 193, 64, 14}, "Nieuwe gebruiker", anchor::leftBottom},
    {"btnDelete", Kind::Button, {134, 193, 48, 14}, "Verwijderen", anchor::leftBottom},
    {"btnCopy", Kind::Button, {188, 193, 74, 14}, "Kopiëren naar...", anchor::leftBottom},
    {"chkUseRights", Kind::Check, {6, 214, 130, 10}, "Rechten gebruiken", anchor::leftBottom},
    {"btnSave", Kind::Button, {210, 212, 54, 14}, "Opslaan", anchor::rightBottom},
    {"btnUndo", Kind::Button, {268, 212, 88, 14}, "Ongedaan maken", anchor::rightBottom},
    {"btnClose",
     Kind::Button,
     {360, 212, 50, 14},
     "Sluiten",
     anchor::rightBottom,
     style::isCancel | style::hidden | style::givesRoom},
    {"lblName", Kind::Label, {190, 8, 218, 9}, "", anchor::wide, style::bold},
    {"lblEffective",
     Kind::Label,
     {190, 176, 218, 14},
     "",
     anchor::left | anchor::right | anchor::bottom},
};
constexpr forms::Layout layout = {"ctlRights", "Rechten", 416, 232, true, fields};

constexpr forms::Column targetColumns[] = {{"Gebruikers en groepen", 0}};
constexpr FieldRow targetFields[] = {
    {"lstTargets",
     Kind::List,
     {6, 20, 188, 130},
     "Gebruikers en groepen",
     anchor::all,
     style::checks,
     {},
     0,
     targetColumns},
    {"btnOk", Kind::Button, {90, 156, 50, 14}, "OK", anchor::rightBottom, style::isDefault},
    {"btnCancel",
     Kind::Button,
     {144, 156, 50, 14},
     "Annuleren",
     anchor::rightBottom,
     style::isCancel},
    {"lblFrom", Kind::Label, {8, 6, 184, 9}, "", anchor::wide},
};
constexpr forms::Layout targetLayout = {"CopyRights", "Rechten kopiëren", 200, 176,
                                        true,         targetFields};

} // namespace

ctlRights::ctlRights(const platform::Workstation& workstation)
    : AdminControl(layout, workstation, "ReadEditRights", "UpdateEditRights") {
    On("txtFind", What::Changed, &ctlRights::Search);
    On("treUsers", What::Changed, &ctlRights::ShowRights);
    On("btnGroup", What::Clicked, &ctlRights::AddGroup);
    On("btnUser", What::Clicked, &ctlRights::AddUser);
    On("btnDelete", What::Clicked, &ctlRights::Remove);
    On("btnCopy", What::Clicked, &ctlRights::Copy);
    On("chkUseRights", What::Changed, &ctlRights::SwitchUse);
    On("treUsers", What::Editing, &ctlRights::Editing);
    On("treUsers", What::Edited, &ctlRights::Rename);
    On("treUsers", What::DragOver, &ctlRights::DragOver);
    On("treUsers", What::Dropped, &ctlRights::Dropped);
    On("treUsers", What::Key, &ctlRights::Key);
    On("treRights", What::Checked, &ctlRights::Tick);
    Show();
}

// --- What is shown ------------------------------------------------------------------------------

void ctlRights::Read() {
    lclStored.clear();
    lclHolders.clear();
    lclKept.clear();
    lclStoredUse = lclUse = false;
    lclNobodyAccepted = false;
    lclPlace = {};
    if (!MaySee()) return;
    const model::Store store(DbConnection());
    lclPlace = model::FindUserTree(Machine(), store);
    lclStored = model::LoadHolders(Machine(), store);
    lclHolders = lclStored;
    const auto use = model::ReadSetting(Machine(), DbConnection(), "Rights", "Use");
    lclStoredUse = lclUse = use && platform::EqualAsciiNoCase(*use, "true");
}

void ctlRights::Show() {
    auto& form = Form();
    std::vector<Item> items;
    for (const auto& holder : lclHolders) {
        Item item;
        item.id = holder.id;
        item.texts = {holder.name};
        item.parent = holder.group;
        item.icon = holder.isGroup ? "Users" : "SelectedUser";
        item.expanded = holder.isGroup;
        items.push_back(std::move(item));
    }
    form["treUsers"].SetItems(std::move(items));
    if (!form["treUsers"].Selected() && !lclHolders.empty())
        form["treUsers"].Select(lclHolders.front().id);
    form["chkUseRights"].SetChecked(lclUse);
    form["chkUseRights"].SetEnabled(MayChange());
    ShowRights();
}

void ctlRights::ShowRights() {
    auto& form = Form();
    const auto* holder = Chosen();
    std::vector<Item> items;
    std::int32_t top = 0;
    for (const auto& group : model::RightGroups()) {
        Item head{++top, {Text(group.caption)}};
        head.expanded = head.bold = head.checked = true;
        const auto at = items.size();
        items.push_back(std::move(head));
        const auto all = model::Rights();
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (all[i].topKey != group.topKey) continue;
            Item item{firstRight + static_cast<std::int32_t>(i), {Text(all[i].caption)}, top};
            item.checked = holder && holder->rights[i];
            if (!item.checked) items[at].checked = false;
            items.push_back(std::move(item));
        }
    }
    form["treRights"].SetItems(std::move(items));
    form["treRights"].SetEnabled(holder && MayChange());
    form["lblName"].SetText(holder ? holder->name : "");
    form["btnUser"].SetEnabled(May("CreateEditRights"));
    form["btnGroup"].SetEnabled(May("CreateEditRights"));
    form["btnDelete"].SetEnabled(holder && May("DeleteEditRights"));
    form["btnCopy"].SetEnabled(holder && MayChange() && Presenter());
    ShowEffective();
    ShowButtons();
}

void ctlRights::ShowEffective() {
    const auto* holder = Chosen();
    const auto all = std::to_string(model::Rights().size());
    Form()["lblEffective"].SetText(
        !holder ? std::string()
        : !lclUse
            ? Text("Geldig nu: $%$ van $%$ rechten, omdat rechten niet gebruikt worden", {all, all})
        : holder->isGroup
            ? Text("Rechten van een groep gelden na het opslaan voor al haar gebruikers")
            : Text("Geldig nu: $%$ van $%$ rechten",
                   {std::to_string(holder->rights.count()), all}));
}

void ctlRights::Choose(std::int32_t id) {
    Form()["treUsers"].Select(id);
    ShowRights();
}

// --- Who is meant -------------------------------------------------------------------------------

ctlRights::Holder* ctlRights::Find(std::int32_t id) {
    const auto found = std::find_if(lclHolders.begin(), lclHolders.end(),
                                    [&](const Holder& holder) { return holder.id == id; });
    return found == lclHolders.end() ? nullptr : &*found;
}

ctlRights::Holder* ctlRights::Chosen() { return Find(Form()["treUsers"].Selected()); }

const ctlRights::Holder* ctlRights::Named(std::string_view name) const {
    const auto found =
        std::find_if(lclHolders.begin(), lclHolders.end(), [&](const Holder& holder) {
            return platform::EqualNoCase(holder.name, name);
        });
    return found == lclHolders.end() ? nullptr : &*found;
}

const ctlRights::Holder* ctlRights::Before(std::int32_t id) const {
    const auto found = std::find_if(lclStored.begin(), lclStored.end(),
                                    [&](const Holder& holder) { return holder.id == id; });
    return found == lclStored.end() ? nullptr : &*found;
}

std::optional<model::RightSet> ctlRights::KeptUnder(std::string_view name) const {
    const bool known = std::any_of(lclStored.begin(), lclStored.end(), [&](const Holder& holder) {
        return platform::EqualNoCase(holder.name, name);
    });
    if (known) return std::nullopt;
    return model::KeptRights(Machine(), model::Store(DbConnection()), name);
}

void ctlRights::Search() {
    const auto& text = Form()["txtFind"].Text();
    if (text.empty()) return;
    if (const auto* found = Form()["treUsers"].Find(text)) Choose(found->id);
}

// --- What the user does -------------------------------------------------------------------------

void ctlRights::AddHolder(bool group) {
    if (!May("CreateEditRights")) return;
    const auto* at = Chosen();
    Holder made;
    made.id = lclNext--;
    made.isGroup = group;
    if (!group && at) made.group = at->isGroup ? at->id : at->group;
    const auto base = group ? Text("Nieuwe groep") : Text("Nieuwe gebruiker");
    made.name = base;
    for (int n = 2; Named(made.name); ++n) made.name = base + " " + std::to_string(n);
    if (!Guarded([&] { lclKept[made.id] = KeptUnder(made.name).value_or(model::RightSet()); }))
        return;
    made.rights = lclKept[made.id];
    const auto id = made.id, into = made.group;
    PutInto(into, {std::move(made)});
    Form()["treUsers"].EditItem(id);
}

void ctlRights::PutInto(std::int32_t group, std::vector<Holder> moved) {
    auto place = lclHolders.end();
    if (group != 0)
        place = std::next(std::find_if(lclHolders.begin(), lclHolders.end(),
                                       [&](const Holder& h) { return h.id == group; }));
    moved.front().group = group;
    lclHolders.insert(place, moved.begin(), moved.end());
    Changed();
    Show();
    Choose(moved.front().id);
}

void ctlRights::Remove() {
    const auto* holder = Chosen();
    if (!holder || !May("DeleteEditRights")) return;
    if (!Ask(holder->isGroup ? "Wilt u de groep '$%$' met al haar gebruikers verwijderen?"
                             : "Wilt u de gebruiker '$%$' verwijderen?",
             "Bevestigen verwijderen", {holder->name}))
        return;
    std::vector<Holder> left;
    for (const auto& other : lclHolders)
        if (!IsWithin(other.id, holder->id)) left.push_back(other);
    lclHolders = std::move(left);
    Changed();
    Show();
}

void ctlRights::Editing(forms::FieldEvent& event) {
    const bool made = event.item < 0 && May("CreateEditRights");
    event.refused = !(made || MayChange()) || !Find(event.item);
}

void ctlRights::Key(forms::FieldEvent& event) {
    if (event.key == deleteKey)
        Remove();
    else if (event.key == insertKey)
        AddHolder(event.shift);
    else
        event.refused = true;
}

void ctlRights::Rename(forms::FieldEvent& event) {
    auto* holder = Find(event.item);
    const auto name = platform::Trim(event.text);
    event.refused = true;
    if (!holder || name == holder->name) return;
    if (!model::CanHoldRights(name)) return Tell("'$%$' is geen bruikbare naam", {name});
    if (const auto* other = Named(name); other && other != holder)
        return Tell("Er is al een gebruiker of groep '$%$'", {name});
    std::optional<model::RightSet> kept;
    if (!Guarded([&] { kept = KeptUnder(name); })) return;
    if (const auto known = lclKept.find(holder->id); known == lclKept.end()) {
        if (kept) return Tell("'$%$' heeft al rechten in deze database", {name});
    } else {
        if (kept || holder->rights == known->second)
            holder->rights = kept.value_or(model::RightSet());
        known->second = kept.value_or(model::RightSet());
    }
    holder->name = name;
    event.refused = name != event.text; // shown trimmed
    Changed();
    if (event.refused) Show();
    ShowRights();
}

// A user or a group with all it holds goes into a group, or out of all of them.
void ctlRights::DragOver(forms::FieldEvent& event) {
    const auto* moved = event.dragged.empty() ? nullptr : Find(event.dragged.front());
    const auto* target = Find(event.item);
    event.refused = event.source != &event.field || !moved || !MayChange() ||
                    (event.item != 0 && !target) || IsWithin(event.item, moved->id);
}

void ctlRights::Dropped(forms::FieldEvent& event) {
    auto* moved = event.dragged.empty() ? nullptr : Find(event.dragged.front());
    const auto* target = Find(event.item);
    if (!moved) return;
    const auto group = !target ? 0 : target->isGroup ? target->id : target->group;
    if (group == moved->group) return;
    std::vector<Holder> held, left;
    for (const auto& holder : lclHolders)
        (IsWithin(holder.id, moved->id) ? held : left).push_back(holder);
    lclHolders = std::move(left);
    PutInto(group, std::move(held));
}

void ctlRights::Tick(forms::FieldEvent& event) {
    auto* holder = Chosen();
    const auto* item = event.field.Find(event.item);
    if (!holder || !item || !MayChange()) return ShowRights();
    const bool granted = item->checked;
    const auto all = model::Rights();
    if (event.item >= firstRight) {
        holder->rights[static_cast<std::size_t>(event.item - firstRight)] = granted;
    } else { // all of a group, or none
        const auto top = model::RightGroups()[static_cast<std::size_t>(event.item) - 1].topKey;
        for (std::size_t i = 0; i < all.size(); ++i)
            if (all[i].topKey == top) holder->rights[i] = granted;
    }
    Changed();
    ShowRights();
}

void ctlRights::Copy() {
    auto* const dialogs = Presenter();
    const auto* from = Chosen();
    if (!from || !dialogs) return;
    forms::Form targets(targetLayout, Machine(), Translate());
    targets["lblFrom"].SetText(
        Text("De rechten van '$%$' komen in de plaats van die van:", {from->name}));
    std::vector<Item> items;
    for (const auto& holder : lclHolders)
        if (holder.id != from->id) {
            Item item{holder.id, {holder.name}};
            item.icon = holder.isGroup ? "Users" : "SelectedUser";
            items.push_back(std::move(item));
        }
    targets["lstTargets"].SetItems(std::move(items));
    const auto rights = from->rights;
    if (!dialogs->ShowModal(targets)) return;
    for (const auto& item : targets["lstTargets"].Items())
        if (auto* holder = item.checked ? Find(item.id) : nullptr) {
            holder->rights = rights;
            Changed();
        }
    ShowRights();
}

void ctlRights::SwitchUse() {
    const bool on = Form()["chkUseRights"].Checked();
    if (on == lclUse) return;
    const bool left = model::SomebodyAdministers(lclHolders);
    if (!ConfirmRightsSwitch(Form(), Machine(), on, left)) {
        Form()["chkUseRights"].SetChecked(lclUse);
        return;
    }
    lclUse = on;
    lclNobodyAccepted = on && !left;
    Changed();
    ShowEffective();
}

} // namespace kavidex::controls
