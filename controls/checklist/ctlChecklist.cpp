#include "controls/checklist/ctlChecklist.h"

#include <algorithm>
#include <cstdio>

#include "model/clsTree.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

using forms::Column;
using forms::FieldRow;
using forms::Kind;
using forms::What;
using model::ChecklistState;
using model::ChecklistValue;
using model::TypedField;
namespace anchor = forms::anchor;
namespace style = forms::style;

enum ColumnNumber { description, state, needed, value, folder, checked };
constexpr Column columns[] = {
    {"Document", 96},
    {"Aanwezigheid", 50},
    {"Nodig", 28, false, true},
    {"Waarde", 50, false, true},
    {"Map", 56},
    {"Gecontroleerd", 80},
};

constexpr FieldRow fields[] = {
    {"lstItems",
     Kind::List,
     {2, 40, 156, 96},
     "Verwachte documenten",
     anchor::all,
     style::checks,
     {},
     0,
     columns},
    {"chkMissing", Kind::Check, {4, 16, 150, 10}, "Alleen wat ontbreekt", anchor::wide},
    {"chkWhole", Kind::Check, {4, 27, 150, 10}, "Hele dossier", anchor::wide},
    {"lblHeading", Kind::Label, {4, 3, 150, 9}, "", anchor::wide, style::bold},
    {"lblSummary",
     Kind::Label,
     {4, 139, 150, 9},
     "",
     anchor::left | anchor::right | anchor::bottom},
};
constexpr forms::Layout layout = {"ctlChecklist", "Checklist", 160, 150, true, fields};

struct Shown {
    ChecklistState state;
    std::string_view text, icon;
};
constexpr Shown states[] = {
    {ChecklistState::Present, "Aanwezig", "checkpresent"},
    {ChecklistState::Missing, "Ontbreekt", "checkmissing"},
    {ChecklistState::Partly, "$%$ van $%$", "checkmissing"},
    {ChecklistState::Optional, "Niet verplicht", "checkoptional"},
    {ChecklistState::NotNeeded, "Niet nodig", "checkoptional"},
};

const Shown& ShownOf(ChecklistState wanted) {
    return *std::find_if(std::begin(states), std::end(states),
                         [&](const Shown& row) { return row.state == wanted; });
}

bool IsMissing(const model::ChecklistLine& line) {
    return line.State() == ChecklistState::Missing || line.State() == ChecklistState::Partly;
}

// dd-mm-yyyy, of the calendar.
bool IsDate(const std::string& text) {
    int day = 0, month = 0, year = 0, end = 0;
    if (std::sscanf(text.c_str(), "%2d-%2d-%4d%n", &day, &month, &year, &end) != 3 ||
        static_cast<std::size_t>(end) != text.size() || month < 1 || month > 12 || year < 1000)
        return false;
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return day >= 1 && day <= days[month - 1] + (leap && month == 2 ? 1 : 0);
}

bool IsNumber(std::string_view text) {
    if (text.starts_with('-')) text.remove_prefix(1);
    const auto mark = text.find_first_of(",.");
    const auto digits = [](std::string_view part) {
        return !part.empty() && part.find_first_not_of("0123456789") == std::string_view::npos;
    };
    return digits(text.substr(0, mark)) &&
           (mark == std::string_view::npos || digits(text.substr(mark + 1)));
}

} // namespace

ctlChecklist::ctlChecklist(const platform::Workstation& workstation)
    : FormControl(layout, workstation), lclList(workstation) {
    auto& form = Form();
    form.mayCancel = [] { return false; }; // Escape is the host's
    const auto show = [this](forms::FieldEvent&) { Show(); };
    form.On("chkMissing", What::Changed, show);
    form.On("chkWhole", What::Changed, show);
    form.On("lstItems", What::Checked, [this](forms::FieldEvent& event) { Checked(event); });
    form.On("lstItems", What::Editing, [this](forms::FieldEvent& event) { Editing(event); });
    form.On("lstItems", What::Edited, [this](forms::FieldEvent& event) { Edited(event); });
    form.On("lstItems", What::Activated, [this](forms::FieldEvent& event) {
        if (const auto* line = LineOf(event.item); line && line->folder != 0)
            FolderChosen.Raise(line->folder);
    });
    Show();
}

// --- What is shown ------------------------------------------------------------------------------

void ctlChecklist::SetCheckListType(std::string_view type) {
    type = platform::TrimView(type);
    if (type == lclType) return;
    lclType = type;
    PropertyChanged.Raise("CheckListType");
    Refresh();
}

void ctlChecklist::SetDossierStatus(std::string_view status) {
    if (status == lclStatus) return;
    lclStatus = status;
    PropertyChanged.Raise("DossierStatus");
    Show();
}

std::int32_t ctlChecklist::TreeId() const { return lclTree ? lclTree->TreeId() : 0; }

void ctlChecklist::SetTreeId(std::int32_t id) {
    if (id == TreeId()) return;
    if (id == 0) return SetTree(nullptr);
    auto tree = std::make_shared<model::clsTree>(Machine());
    tree->SetTranslation(TranslationBy(Translate()));
    tree->SetDbConnection(DbConnection());
    tree->SetTreeId(id);
    SetTree(std::move(tree));
    lclOwnTree = true;
    PropertyChanged.Raise("TreeId");
}

void ctlChecklist::SetTree(std::shared_ptr<model::clsTree> tree) {
    if (tree == lclTree) return;
    lclTree = std::move(tree);
    lclOwnTree = false;
    lclFolder = 0;
    Refresh();
}

void ctlChecklist::SetFolderId(std::int32_t chosen) {
    if (chosen == lclFolder) return;
    lclFolder = chosen;
    Show();
}

void ctlChecklist::ItemsChanged() {
    if (lclType.empty()) return;
    lclList.Match(lclTree.get());
    Show();
}

void ctlChecklist::Read() {
    if (lclOwnTree && lclTree) {
        lclTree->SetDbConnection(DbConnection());
        lclTree->SetTreeId(lclTree->TreeId());
    }
    lclList.Load(DbConnection(), lclType, lclTree.get());
}

std::int32_t ctlChecklist::Missing() const {
    const auto& lines = lclList.Lines();
    return static_cast<std::int32_t>(std::count_if(lines.begin(), lines.end(), IsMissing));
}

const model::ChecklistLine* ctlChecklist::LineOf(std::int32_t item) const {
    const auto& lines = lclList.Lines();
    return item < 1 || static_cast<std::size_t>(item) > lines.size()
               ? nullptr
               : &lines[static_cast<std::size_t>(item) - 1];
}

forms::Item ctlChecklist::ItemOf(std::size_t number) const {
    const auto& line = lclList.Lines()[number];
    const auto& shown = ShownOf(line.State());
    const auto when = line.said.checkedOn.empty() ? std::string()
                                                  : line.said.checkedOn + " " + line.said.checkedBy;
    forms::Item item;
    item.id = static_cast<std::int32_t>(number) + 1;
    item.texts = {line.field->FieldDescription(),
                  Text(shown.text, {std::to_string(line.found), std::to_string(line.Wanted())}),
                  Text(line.said.needed ? "Ja" : "Nee"),
                  model::TypedKind(line.field->FieldType()) == TypedField::None ? std::string()
                                                                                : line.said.value,
                  line.folder ? line.folderName : Text("Map '$%$' ontbreekt", {line.folderName}),
                  when};
    item.icon = shown.icon;
    item.checked = line.State() == ChecklistState::Present;
    return item;
}

void ctlChecklist::Show() {
    auto& form = Form();
    const auto only =
        !lclTree || form["chkWhole"].Checked() ? 0 : lclList.FolderWithList(*lclTree, lclFolder);
    std::vector<forms::Item> items;
    const auto& lines = lclList.Lines();
    for (std::size_t i = 0; i < lines.size(); ++i)
        if ((only == 0 || lines[i].folder == only) &&
            (!form["chkMissing"].Checked() || IsMissing(lines[i])))
            items.push_back(ItemOf(i));
    form["lstItems"].SetItems(std::move(items));
    form["lstItems"].SetEnabled(Enabled());
    auto heading = Text("Checklist") + (lclType.empty() ? "" : " " + lclType);
    if (!lclStatus.empty()) heading += " (" + lclStatus + ")";
    form["lblHeading"].SetText(heading);
    ShowSummary();
}

void ctlChecklist::ShowSummary() {
    const auto& lines = lclList.Lines();
    const auto required = std::count_if(lines.begin(), lines.end(), [](const auto& line) {
        return line.said.needed && line.field->NumberToRecieve() > 0;
    });
    Form()["lblSummary"].SetText(lines.empty() ? Text("Er is geen checklist voor dit dossier")
                                 : Missing() > 0
                                     ? Text("$%$ van $%$ ontbreken nog",
                                            {std::to_string(Missing()), std::to_string(required)})
                                     : Text("Alles is aanwezig"));
}

// --- What a user says ---------------------------------------------------------------------------

void ctlChecklist::Checked(forms::FieldEvent& event) {
    const auto* line = LineOf(event.item);
    const auto* item = event.field.Find(event.item);
    if (!line || !item) return;
    const bool ticked = item->checked;
    if (!Say(event.item, [&](ChecklistValue& said) {
            said.present = ticked;
            if (ticked) said.needed = true;
        }))
        Show(); // as it was
}

void ctlChecklist::Editing(forms::FieldEvent& event) const {
    const auto* line = LineOf(event.item);
    event.refused =
        !line || line->folder == 0 || !May("EditDossiers") ||
        (event.column == value && model::TypedKind(line->field->FieldType()) == TypedField::None);
    if (!event.refused && event.column == needed) event.choices = {Text("Ja"), Text("Nee")};
}

void ctlChecklist::Edited(forms::FieldEvent& event) {
    const auto* line = LineOf(event.item);
    event.refused = true; // what holds is shown anew
    if (!line) return;
    if (event.column == needed) {
        const bool yes = event.text == Text("Ja");
        Say(event.item, [&](ChecklistValue& said) { said.needed = yes; });
        return;
    }
    const auto text = platform::Trim(event.text);
    const auto kind = model::TypedKind(line->field->FieldType());
    if (!text.empty() && kind == TypedField::Date && !IsDate(text))
        return Tell("'$%$' is geen datum (dd-mm-jjjj)", {text});
    if (!text.empty() && kind == TypedField::Number && !IsNumber(text))
        return Tell("'$%$' is geen getal", {text});
    Say(event.item, [&](ChecklistValue& said) { said.value = text; });
}

bool ctlChecklist::Say(std::int32_t item, const std::function<void(ChecklistValue&)>& change) {
    const auto* line = LineOf(item);
    if (!line) return false;
    if (line->folder == 0) {
        Tell("Maak eerst de map '$%$' in het dossier", {line->folderName});
        return false;
    }
    if (!May("EditDossiers")) {
        Tell("U heeft geen bevoegdheid om de checklist te wijzigen");
        return false;
    }
    auto said = line->said;
    change(said);
    if (said.SameMeaning(line->said)) return false;
    bool written = false;
    const auto by = [&] { return LineOf(item)->said.checkedBy; };
    if (!Guarded([&] { written = lclList.Say(static_cast<std::size_t>(item) - 1, said); }))
        return false;
    Show();
    if (!written) {
        Tell("Dit is intussen door '$%$' gewijzigd", {by()});
        return true;
    }
    EvChecklistChanged.Raise();
    return true;
}

} // namespace kavidex::controls
