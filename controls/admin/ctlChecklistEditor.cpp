#include "controls/admin/ctlChecklistEditor.h"

#include <algorithm>

#include "model/clsCheckListType.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

using forms::Column;
using forms::FieldRow;
using forms::Item;
using forms::Kind;
using forms::What;
namespace anchor = forms::anchor;
namespace style = forms::style;

constexpr std::size_t mostLines = 1000; // far more than anybody checks; the order has 16 bits

enum ColumnNumber { description, kind, number, required, toCheck };
constexpr Column columns[] = {
    {"Omschrijving", 130, false, true}, {"Soort", 60, false, true},
    {"Aantal", 34, true, true},         {"Verplicht", 42, false, true},
    {"Herkennen aan", 0, false, true},
};

constexpr FieldRow fields[] = {
    {"lblType", Kind::Label, {6, 8, 58, 9}, "Dossiertype:"},
    {"cmbType", Kind::Combo, {66, 6, 104, 13}},
    {"lblTab", Kind::Label, {178, 8, 76, 9}, "Type map:"},
    {"cmbTab", Kind::Combo, {256, 6, 178, 13}, "", anchor::wide, style::edits},
    {"lstLines",
     Kind::List,
     {6, 24, 428, 142},
     "Verwachte documenten",
     anchor::all,
     style::drags,
     {},
     0,
     columns},
    {"btnNew", Kind::Button, {6, 170, 54, 14}, "Nieuw", anchor::leftBottom},
    {"btnDelete", Kind::Button, {64, 170, 54, 14}, "Verwijderen", anchor::leftBottom},
    {"btnUp", Kind::Button, {122, 170, 46, 14}, "Omhoog", anchor::leftBottom},
    {"btnDown", Kind::Button, {172, 170, 46, 14}, "Omlaag", anchor::leftBottom},
    {"lblFrom", Kind::Label, {222, 173, 66, 9}, "Overnemen van:", anchor::rightBottom},
    {"cmbFrom", Kind::Combo, {290, 170, 98, 13}, "", anchor::rightBottom},
    {"btnCopy", Kind::Button, {392, 170, 42, 14}, "Neem", anchor::rightBottom},
    {"btnSave", Kind::Button, {234, 190, 54, 14}, "Opslaan", anchor::rightBottom},
    {"btnUndo", Kind::Button, {292, 190, 88, 14}, "Ongedaan maken", anchor::rightBottom},
    {"btnClose",
     Kind::Button,
     {384, 190, 50, 14},
     "Sluiten",
     anchor::rightBottom,
     style::isCancel | style::hidden | style::givesRoom},
};
constexpr forms::Layout layout = {"ctlChecklistEditor", "Checklists", 440, 210, true, fields};

std::vector<std::string>::const_iterator Named(const std::vector<std::string>& names,
                                               std::string_view name) {
    return std::find_if(names.begin(), names.end(),
                        [&](const auto& one) { return platform::EqualNoCase(one, name); });
}

} // namespace

ctlChecklistEditor::ctlChecklistEditor(const platform::Workstation& workstation)
    : AdminControl(layout, workstation, "ReadDossierType", "UpdateDossierType") {
    On("cmbType", What::Changed, &ctlChecklistEditor::ChooseType);
    On("cmbTab", What::Changed, &ctlChecklistEditor::ChooseList);
    On("btnCopy", What::Clicked, &ctlChecklistEditor::CopyFrom);
    EditsItemsOf("lstLines");
    On("lstLines", What::Changed, &ctlChecklistEditor::ShowButtonsOfLines);
    On("lstLines", What::Editing, &ctlChecklistEditor::Editing);
    On("lstLines", What::Edited, &ctlChecklistEditor::Edited);
    On("lstLines", What::DragOver, &ctlChecklistEditor::DragOver);
    On("lstLines", What::Dropped, &ctlChecklistEditor::Dropped);
    Show();
}

// --- Reading and showing ------------------------------------------------------------------------

std::string ctlChecklistEditor::Key() const {
    return lclType.empty() || lclTabType.empty() ? std::string()
                                                 : model::ChecklistKey(lclType, lclTabType);
}

std::vector<ctlChecklistEditor::Line> ctlChecklistEditor::Load(const std::string& key) const {
    std::vector<Line> lines;
    for (const auto& field : model::LoadChecklist(Machine(), DbConnection(), key))
        lines.push_back({field->FieldDescription(), field->FieldType(),
                         field->DescriptionsToCheck(), field->NumberToRecieve()});
    return lines;
}

void ctlChecklistEditor::Read() {
    lclTypes.clear();
    lclTabTypes.clear();
    lclKeys.clear();
    lclStored.clear();
    lclLines.clear();
    const auto typeBefore = std::exchange(lclType, {});
    if (!MaySee()) return;
    const model::Store store(DbConnection());
    lclTypes = model::DossierTypes(Machine(), DbConnection());
    lclKeys = model::ChecklistKeys(store, {});
    // A type that was deleted still has the lists that its dossiers are checked by.
    const auto known = [&](std::string_view name) {
        return std::find_if(lclTypes.begin(), lclTypes.end(), [&](const auto& type) {
            return platform::EqualNoCase(type.name, name);
        });
    };
    const auto offer = [&](const std::string& name) {
        if (!name.empty() && known(name) == lclTypes.end()) lclTypes.push_back({0, name, {}});
    };
    for (const auto& key : lclKeys) offer(key.substr(0, key.find('^')));
    offer(DossierType());
    auto chosen = known(typeBefore.empty() ? DossierType() : typeBefore);
    if (chosen == lclTypes.end()) chosen = lclTypes.begin();
    if (chosen != lclTypes.end()) lclType = chosen->name;
    if (!platform::EqualNoCase(lclType, typeBefore)) lclTabType.clear();
    const auto add = [&](std::string tab) {
        if (!tab.empty() && Named(lclTabTypes, tab) == lclTabTypes.end())
            lclTabTypes.push_back(std::move(tab));
    };
    if (!lclType.empty()) add(std::string(model::wholeDossier));
    if (chosen != lclTypes.end() && chosen->id != 0)
        for (const auto& tab : model::TabsOfType(store, chosen->id)) add(model::TabTypeOf(tab));
    for (const auto& key : lclKeys)
        if (platform::EqualNoCase(key.substr(0, key.find('^')), lclType))
            add(key.substr(key.find('^') + 1));
    if (lclTabType.empty() && !lclTabTypes.empty()) {
        const auto filled =
            std::find_if(lclTabTypes.begin(), lclTabTypes.end(), [&](const auto& tab) {
                return Named(lclKeys, model::ChecklistKey(lclType, tab)) != lclKeys.end();
            });
        lclTabType = filled == lclTabTypes.end() ? lclTabTypes.front() : *filled;
    }
    if (Key().empty()) return;
    lclStored = Load(Key());
    lclLines = lclStored;
}

void ctlChecklistEditor::Show() {
    auto& form = Form();
    const auto named = [](const std::vector<std::string>& names) {
        std::vector<Item> items;
        for (const auto& name : names)
            items.push_back({static_cast<std::int32_t>(items.size()) + 1, {name}});
        return items;
    };
    std::vector<std::string> types;
    for (const auto& type : lclTypes) types.push_back(type.name);
    form["cmbType"].SetItems(named(types));
    form["cmbTab"].SetItems(named(lclTabTypes));
    form["cmbFrom"].SetItems(named(lclKeys));
    if (lclType.empty()) form["cmbType"].SetText({});
    for (const auto& item : form["cmbType"].Items())
        if (item.Cell() == lclType) form["cmbType"].Select(item.id);
    form["cmbTab"].SetText(lclTabType);
    ShowLines(0);
}

void ctlChecklistEditor::ShowLines(std::size_t chosen) {
    std::vector<Item> items;
    for (const auto& line : lclLines)
        items.push_back({static_cast<std::int32_t>(items.size()) + 1,
                         {line.description, line.type,
                          line.number > 0 ? std::to_string(line.number) : std::string(),
                          Text(line.number > 0 ? "Ja" : "Nee"), line.toCheck}});
    Form()["lstLines"].SetItems(std::move(items));
    Form()["lstLines"].Select(chosen < lclLines.size() ? static_cast<std::int32_t>(chosen) + 1 : 0);
    ShowButtonsOfLines();
}

void ctlChecklistEditor::ShowButtonsOfLines() {
    auto& form = Form();
    const bool may = MayChange() && !Key().empty();
    form["btnNew"].SetEnabled(may);
    form["btnCopy"].SetEnabled(may && !lclKeys.empty());
    for (const auto* name : {"btnDelete", "btnUp", "btnDown"})
        form[name].SetEnabled(may && Chosen());
    ShowButtons();
}

ctlChecklistEditor::Line* ctlChecklistEditor::Chosen() {
    const auto id = static_cast<std::size_t>(Form()["lstLines"].Selected());
    return id == 0 || id > lclLines.size() ? nullptr : &lclLines[id - 1];
}

// --- What the user does -------------------------------------------------------------------------

void ctlChecklistEditor::ChooseType() {
    const auto text = Form()["cmbType"].Text();
    if (text.empty() || text == lclType) return;
    if (!MayLeave()) return Show();
    lclType = text;
    lclTabType.clear();
    Undo();
}

void ctlChecklistEditor::ChooseList() {
    auto text = platform::Trim(Form()["cmbTab"].Text());
    if (const auto known = Named(lclTabTypes, text); known != lclTabTypes.end()) text = *known;
    if (text == lclTabType) return;
    if (IsChanged() && !MayLeave()) return Form()["cmbTab"].SetText(lclTabType);
    lclTabType = text;
    Undo();
}

void ctlChecklistEditor::CopyFrom() {
    const auto* from = Form()["cmbFrom"].Find(Form()["cmbFrom"].Selected());
    if (!from || !MayChange()) return;
    const auto key = from->Cell();
    if (!Guarded([&] {
            for (auto& line : Load(key)) lclLines.push_back(std::move(line));
        }) ||
        lclLines.empty())
        return;
    Changed();
    ShowLines(lclLines.size() - 1);
}

void ctlChecklistEditor::Add() {
    if (!MayChange() || Key().empty() || lclLines.size() >= mostLines) return;
    const auto* at = Chosen();
    const auto place = at ? static_cast<std::size_t>(at - lclLines.data()) + 1 : lclLines.size();
    lclLines.insert(lclLines.begin() + static_cast<std::ptrdiff_t>(place),
                    {Text("Nieuw document"), "Document", {}});
    Changed();
    ShowLines(place);
    Form()["lstLines"].EditItem(static_cast<std::int32_t>(place) + 1);
}

void ctlChecklistEditor::Remove() {
    const auto* at = Chosen();
    if (!at || !MayChange()) return;
    const auto place = static_cast<std::size_t>(at - lclLines.data());
    lclLines.erase(lclLines.begin() + static_cast<std::ptrdiff_t>(place));
    Changed();
    ShowLines(std::min(place, lclLines.empty() ? 0 : lclLines.size() - 1));
}

void ctlChecklistEditor::MoveTo(std::size_t from, std::size_t to) {
    if (from == to || from >= lclLines.size() || to >= lclLines.size() || !MayChange()) return;
    auto line = std::move(lclLines[from]);
    lclLines.erase(lclLines.begin() + static_cast<std::ptrdiff_t>(from));
    lclLines.insert(lclLines.begin() + static_cast<std::ptrdiff_t>(to), std::move(line));
    Changed();
    ShowLines(to);
}

void ctlChecklistEditor::MoveBy(int steps) {
    const auto* at = Chosen();
    if (!at) return;
    const auto from = at - lclLines.data();
    if (from + steps >= 0)
        MoveTo(static_cast<std::size_t>(from), static_cast<std::size_t>(from + steps));
}

void ctlChecklistEditor::DragOver(forms::FieldEvent& event) {
    event.refused = event.source != &event.field || event.dragged.size() != 1 || !MayChange();
}

void ctlChecklistEditor::Dropped(forms::FieldEvent& event) {
    const auto from = static_cast<std::size_t>(event.dragged.front()) - 1;
    auto to = event.item == 0 ? lclLines.size() : static_cast<std::size_t>(event.item) - 1;
    if (event.item != 0 && event.place == forms::Place::After) ++to;
    MoveTo(from, to > from ? to - 1 : to);
}

void ctlChecklistEditor::Editing(forms::FieldEvent& event) {
    const auto line = static_cast<std::size_t>(event.item) - 1;
    // How many are expected of what is not required is no question.
    event.refused = !MayChange() || line >= lclLines.size() ||
                    (event.column == number && lclLines[line].number < 1);
    if (event.refused) return;
    if (event.column == required) event.choices = {Text("Ja"), Text("Nee")};
    // As they are stored, so in the system's own language.
    if (event.column == kind)
        event.choices = {"Document", "tif", "pdf", "tif;pdf", "msg", "Tekst", "Datum", "Getal"};
}

void ctlChecklistEditor::Edited(forms::FieldEvent& event) {
    auto& line = lclLines.at(static_cast<std::size_t>(event.item) - 1);
    const auto text = platform::Trim(event.text);
    event.refused = true; // shown from what was taken over
    if (text.size() > 255 || (event.column == description && text.empty()))
        return Tell("'$%$' is geen bruikbare naam", {text});
    const auto before = line;
    switch (event.column) {
    case description: line.description = text; break;
    case kind: line.type = text; break;
    case toCheck: line.toCheck = text; break;
    case required: line.number = text == Text("Ja") ? std::max(line.number, 1) : 0; break;
    case number: {
        const auto wanted = platform::Val(text);
        if (wanted < 1 || wanted > 999 || text.find_first_not_of("0123456789") != std::string::npos)
            return Tell("'$%$' is geen getal", {text});
        line.number = static_cast<int>(wanted);
        break;
    }
    default: break;
    }
    if (line == before) return;
    Changed();
    ShowLines(static_cast<std::size_t>(event.item) - 1);
}

// --- Saving -------------------------------------------------------------------------------------

bool ctlChecklistEditor::MaySave() {
    const bool bad = Key().size() > 255 || lclTabType.find('^') != std::string::npos;
    if (bad) Tell("'$%$' is geen bruikbare naam", {lclTabType});
    for (std::size_t i = 0; i < lclLines.size(); ++i)
        for (std::size_t k = 0; k < i; ++k)
            if (platform::EqualNoCase(lclLines[i].description, lclLines[k].description)) {
                Tell("'$%$' staat er tweemaal in", {lclLines[i].description});
                return false;
            }
    return !bad;
}

void ctlChecklistEditor::Write(const model::Store& store) {
    // Others who save a list of this type wait.
    for (const auto& type : lclTypes)
        if (type.name == lclType && type.id == 0)
            model::HoldSettings(store);
        else if (type.name == lclType && !model::HoldType(store, type.id))
            throw ChangedMeanwhile{lclType};
    if (Load(Key()) != lclStored) throw ChangedMeanwhile{Key()};
    model::clsCheckListType list(Machine());
    list.SetDbConnection(store.Connection());
    list.SetCheckListTabType(Key());
    std::int16_t order = 0;
    for (const auto& line : lclLines)
        list.CreateField(++order, line.description, static_cast<std::int16_t>(line.number),
                         line.toCheck, line.type);
    list.UpdateCurrentType();
    if (lclLines.empty()) model::ForgetKeptTabs(Machine(), store, lclType, lclTabType);
}

} // namespace kavidex::controls
