#include "model/Checklist.h"

#include <algorithm>
#include <cctype>

#include "data/Error.h"
#include "data/modData.h"
#include "model/clsCheckListType.h"
#include "model/clsTree.h"
#include "model/filing.h"
#include "model/treeRows.h"
#include "model/walk.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/User.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::model {
namespace {

bool Matches(std::string_view pattern, std::string_view text) {
    if (pattern.find_first_of("*?") != std::string_view::npos)
        return platform::MatchesPattern(text, pattern);
    return platform::LowerCase(text).find(platform::LowerCase(pattern)) != std::string::npos;
}

bool IsExtension(std::string_view text) {
    return !text.empty() && text.size() <= 4 &&
           std::all_of(text.begin(), text.end(),
                       [](unsigned char c) { return c < 128 && std::isalnum(c); });
}

std::string_view AfterKey(std::string_view key) { return key.substr(key.find('^') + 1); }

} // namespace

TypedField TypedKind(std::string_view fieldType) {
    constexpr std::pair<std::string_view, TypedField> kinds[] = {
        {"tekst", TypedField::Text}, {"datum", TypedField::Date}, {"getal", TypedField::Number}};
    for (const auto& [name, kind] : kinds)
        if (platform::EqualAsciiNoCase(platform::TrimView(fieldType), name)) return kind;
    return TypedField::None;
}

bool Describes(const clsField& field, std::string_view type, std::string_view description) {
    bool named = false, ofType = false;
    for (const auto& part : platform::Split(field.FieldType(), ';')) {
        const auto wanted = platform::TrimView(part);
        if (!IsExtension(wanted)) continue;
        named = true;
        ofType = ofType || platform::EqualAsciiNoCase(wanted, platform::TrimView(type));
    }
    if (named && !ofType) return false;
    bool asked = false;
    for (const auto& part : platform::Split(field.DescriptionsToCheck(), ';')) {
        const auto pattern = platform::TrimView(part);
        if (pattern.empty()) continue;
        asked = true;
        if (Matches(pattern, description)) return true;
    }
    const auto own = platform::TrimView(field.FieldDescription());
    return !asked && !own.empty() && Matches(own, description);
}

bool IsOfTab(const DossierTab& tab, std::string_view folderName) {
    // The last step of a path, with anything for each token.
    std::string pattern;
    const auto name = platform::FileName(tab.description);
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] != '%') {
            pattern += name[i] == '*' ? '?' : name[i];
            continue;
        }
        static constexpr std::string_view tokens[] = {"%YYYY", "%DD", "%MM", "%hh", "%mm", "%ss"};
        const auto rest = std::string_view(name).substr(i);
        const auto token = std::find_if(std::begin(tokens), std::end(tokens),
                                        [&](std::string_view t) { return rest.starts_with(t); });
        const auto length = token != std::end(tokens) ? token->size()
                            : rest.starts_with("%#")  ? rest.find_first_not_of('#', 1)
                                                      : 1;
        if (length == 1)
            pattern += '%';
        else
            pattern += '*';
        if (length != 1) i += std::min(length, rest.size()) - 1;
    }
    return platform::MatchesPattern(folderName, pattern);
}

ChecklistState ChecklistLine::State() const {
    if (!said.needed) return ChecklistState::NotNeeded;
    const bool typed = TypedKind(field->FieldType()) != TypedField::None;
    if (said.present || (typed && !said.value.empty()) || (!typed && found >= Wanted()))
        return ChecklistState::Present;
    if (field->NumberToRecieve() < 1) return ChecklistState::Optional;
    return found > 0 ? ChecklistState::Partly : ChecklistState::Missing;
}

std::vector<clsFieldPtr> LoadChecklist(const platform::Workstation& workstation,
                                       const data::ConnectionPtr& connection,
                                       std::string_view key) {
    clsCheckListType list(workstation);
    list.SetDbConnection(connection);
    // It puts the key between the quotes as it is.
    list.SetCheckListTabType(platform::Replace(AsWritten(connection, key), "'", "''"));
    if (list.GetType(key, {}) != 0)
        throw data::Error(data::errors::objectClosed,
                          "The checklist " + std::string(key) + " cannot be read.", "Kavidex");
    for (const auto& field : list.CheckListFields()) {
        field->SetFieldDescription(AsTyped(connection, field->FieldDescription()));
        field->SetFieldType(AsTyped(connection, field->FieldType()));
        field->SetDescriptionsToCheck(AsTyped(connection, field->DescriptionsToCheck()));
    }
    return list.CheckListFields();
}

void Checklist::Load(const data::ConnectionPtr& connection, std::string_view type, clsTree* tree) {
    lclConnection = connection;
    lclTabs.clear();
    lclLists.clear();
    lclValues.clear();
    lclLines.clear();
    type = platform::TrimView(type);
    if (!connection || type.empty()) return;
    const Store store(connection);
    const bool one = type.find('^') != std::string_view::npos;
    const auto dossierType = type.substr(0, type.find('^'));
    const auto keys =
        one ? std::vector<std::string>{std::string(type)} : ChecklistKeys(store, dossierType);
    std::vector<List> lists;
    for (const auto& key : keys)
        lists.push_back(
            {std::string(AfterKey(key)), LoadChecklist(lclWorkstation, store.Connection(), key)});
    if (const auto found = FindDossierType(lclWorkstation, connection, dossierType); found.id != 0)
        lclTabs = TabsOfType(store, found.id);
    for (auto& tab : KeptTabs(lclWorkstation, store, dossierType))
        lclTabs.push_back(std::move(tab));
    lclLists = std::move(lists);
    // The values of every folder that has a list.
    Match(tree);
    for (const auto& line : lclLines)
        if (line.folder != 0 && !lclValues.contains(line.folder))
            lclValues[line.folder] = ReadValues(store, line.folder, false);
    Match(tree);
}

std::vector<ChecklistValue> Checklist::ReadValues(const Store& store, NodeId folder,
                                                  bool now) const {
    const auto statement = "Select * from tblCheckListRefFields where TabRefId = " + Number(folder);
    const auto rows = now ? store.ReadNow(statement) : store.Read(statement);
    std::vector<ChecklistValue> values;
    for (; !rows->Eof(); rows->MoveNext()) {
        ChecklistValue value;
        value.id = data::ToInt32(rows->Get("Id"));
        const auto text = [&](std::string_view column) {
            return AsTyped(store.Connection(), TrimmedText(rows->Get(column)));
        };
        value.description = text("FieldDescription");
        value.needed = data::IsNull(rows->Get("IsNeeded")) || data::ToInt32(rows->Get("IsNeeded"));
        value.present = data::ToInt32(rows->Get("IsPresent")) != 0;
        value.value = text("DescriptionsToCheck");
        value.checkedOn = text("CheckDate");
        value.checkedBy = text("Checkuser");
        values.push_back(std::move(value));
    }
    return values;
}

const Checklist::List* Checklist::ListOf(const clsItem& folder, bool top) const {
    const auto named = [&](std::string_view tabType) -> const List* {
        for (const auto& list : lclLists)
            if (platform::EqualNoCase(list.tabType, tabType)) return &list;
        return nullptr;
    };
    if (top) return named(wholeDossier);
    for (const auto& tab : lclTabs)
        if (IsOfTab(tab, folder.DescriptionText()))
            if (const auto* list = named(TabTypeOf(tab))) return list;
    return named(folder.DescriptionText());
}

const ChecklistValue* Checklist::SaidOf(NodeId folder, const clsField& field) const {
    const auto known = lclValues.find(folder);
    if (known == lclValues.end()) return nullptr;
    for (const auto& value : known->second)
        if (platform::EqualNoCase(value.description, field.FieldDescription())) return &value;
    return nullptr;
}

void Checklist::AddLines(const List& list, const clsItem* folder) {
    for (const auto& field : list.fields) {
        ChecklistLine line;
        line.field = field;
        line.tabType = list.tabType;
        line.folder = folder ? folder->Id() : 0;
        line.folderName = folder ? folder->Description() : list.tabType;
        if (const auto* said = folder ? SaidOf(line.folder, *field) : nullptr) line.said = *said;
        lclLines.push_back(std::move(line));
    }
}

void Checklist::Match(clsTree* tree) {
    lclLines.clear();
    if (!tree || !tree->Item() || lclLists.empty()) return;
    struct Level {
        WalkLevel walk;
        std::size_t first, count; // the lines that a document there may be one of
    };
    std::vector<const List*> used;
    const auto enter = [&](clsItem& folder, bool top, const Level* around) {
        const auto* list = ListOf(folder, top);
        if (!list) return Level{{&folder}, around ? around->first : 0, around ? around->count : 0};
        used.push_back(list);
        const auto first = lclLines.size();
        AddLines(*list, &folder);
        return Level{{&folder}, first, list->fields.size()};
    };
    std::vector<Level> levels{enter(*tree->Item(), true, nullptr)};
    while (!levels.empty()) {
        clsItem* const child = levels.back().walk.NextChild();
        if (!child) {
            levels.pop_back();
        } else if (child->Id() < 0) { // deleted, and only shown
            continue;
        } else if (child->AllowChildren()) {
            levels.push_back(enter(*child, false, &levels.back()));
        } else {
            const auto& at = levels.back();
            for (auto i = at.first; i < at.first + at.count; ++i)
                if (Describes(*lclLines[i].field, child->TypeText(), child->DescriptionText()))
                    ++lclLines[i].found;
        }
    }
    for (const auto& list : lclLists)
        if (std::find(used.begin(), used.end(), &list) == used.end()) AddLines(list, nullptr);
}

NodeId Checklist::FolderWithList(clsTree& tree, NodeId folder) const {
    const auto has = [&](NodeId id) {
        return std::any_of(lclLines.begin(), lclLines.end(),
                           [&](const auto& line) { return line.folder == id; });
    };
    if (folder == 0 || !tree.Item()) return 0;
    std::vector<WalkLevel> way{{tree.Item().get()}};
    while (!way.empty()) {
        if (way.back().item->Id() == folder) break;
        if (clsItem* const child = way.back().NextChild())
            way.push_back({child});
        else
            way.pop_back();
    }
    for (; !way.empty(); way.pop_back())
        if (has(way.back().item->Id())) return way.back().item->Id();
    return 0;
}

bool Checklist::Say(std::size_t index, ChecklistValue said) {
    auto& line = lclLines.at(index);
    if (line.folder == 0)
        throw platform::Error(platform::errors::invalidArgument,
                              "The dossier has no folder " + line.folderName + ".");
    const Store store(lclConnection);
    Transaction transaction(store, lclWorkstation);
    HoldNode(store, line.folder);
    auto& values = lclValues[line.folder];
    values = ReadValues(store, line.folder, true);
    const auto* there = SaidOf(line.folder, *line.field);
    const auto current = there ? *there : ChecklistValue{};
    if (!current.SameMeaning(line.said)) {
        line.said = current;
        return false;
    }
    said.value = ColumnText(said.value);
    const auto on = platform::DayFirst(lclWorkstation.clock.Now());
    const auto by = ColumnText(lclWorkstation.user.Name());
    auto id = current.id;
    if (id == 0) {
        const auto guid = data::SqlValue(NewGuid(lclWorkstation));
        id = InsertRow(lclWorkstation, store,
                       {"Insert into tblCheckListRefFields (TabRefId, FieldDescription, FieldType, "
                        "CLGuid) Values (" +
                            Number(line.folder) + ", " +
                            data::SqlValue(line.field->FieldDescription()) + ", " +
                            data::SqlValue(line.field->FieldType()) + ", " + guid + ")",
                        "Select * from tblCheckListRefFields where CLGuid = " + guid},
                       [&](data::Recordset& row, std::int32_t) {
                           SetNumber(row, "IntOrder", line.field->Order());
                       });
    }
    store.Write("Update tblCheckListRefFields set IsNeeded = " + Number(said.needed) +
                ", IsPresent = " + Number(said.present) + ", CheckDate = " + data::SqlValue(on) +
                ", Checkuser = " + data::SqlValue(by) + ", DescriptionsToCheck = " +
                data::SqlValue(said.value) + " where Id = " + Number(id));
    transaction.Commit();
    values = ReadValues(store, line.folder, false);
    if (const auto* now = SaidOf(line.folder, *line.field)) line.said = *now;
    return true;
}

} // namespace kavidex::model
