// The rows of the upgrade chain. A change is issued in each dialect's form, one after the other;
// the form that the database knows takes effect, the others are refused without harm.
#include "data/schema/upgradeSteps.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "data/schema/schema.h"
#include "data/schema/upgradeConversions.h"

namespace kavidex::data {
namespace {

using Statements = std::vector<std::string>;
using Name = std::string;

Statements Together(std::initializer_list<Statements> parts) {
    Statements all;
    for (const Statements& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

// Access first: MySQL takes its words too, and then indexes the column by a prefix.
Statements AddText(const Name& table, const Name& column, int width) {
    const Name size = "(" + std::to_string(width) + ")";
    return {"ALTER TABLE " + table + " ADD COLUMN " + column + " Text" + size,
            "ALTER TABLE " + table + " ADD " + column + " Char" + size};
}

Statements GuidIndex(const Name& index, const Name& table, const Name& column) {
    return {"CREATE INDEX " + index + " on " + table + " (" + column + " )",
            "CREATE INDEX " + index + " on " + table + " (" + column + "(38) )"};
}

Statements GuidColumn(const Name& table, const Name& column) {
    return Together({AddText(table, column, 38), GuidIndex("ind" + column, table, column)});
}

Statements CreateInAllForms(const schema::Table& table) {
    using schema::Dialect;
    return {schema::CreateTable(table, Dialect::Access),
            schema::CreateTable(table, Dialect::SqlServer),
            schema::CreateTable(table, Dialect::MySql)};
}

schema::Table BaseTable(std::string_view name) {
    return *std::find_if(schema::Tables().begin(), schema::Tables().end(),
                         [&](const schema::Table& table) { return table.name == name; });
}

Statements CreateForAccess(std::string_view name) {
    return {schema::CreateTable(BaseTable(name), schema::Dialect::Access)};
}

// As the tables were before intOrder took the place of the reserved word.
Statements CreateWithOrder(std::string_view name) {
    schema::Table table = BaseTable(name);
    for (schema::Column& column : table.columns)
        if (column.name == "IntOrder") column.name = "Order";
    return {schema::CreateTable(table, schema::Dialect::Access)};
}

Statements UpLink(std::string_view name) {
    using enum schema::ColumnType;
    const Name table(name), plain = table.substr(3), constraint = "Id" + plain;
    return Together(
        {CreateInAllForms({name,
                           "Id",
                           constraint,
                           {{"RefGuid", Text38}, {"RefId", Integer}, {"ServerRefId", Integer}}}),
         {"CREATE INDEX ind" + plain + " on " + table + " (RefGuid, RefId)"}});
}

Statements TranslationTable() {
    using enum schema::ColumnType;
    return CreateInAllForms({"tblTranslations",
                             "Id",
                             "IdTranslations",
                             {{"strKey", Text255},
                              {"NL", Text255},
                              {"UK", Text255},
                              {"GE", Text255},
                              {"FR", Text255}}});
}

Statements ExtraInfoTable() {
    using enum schema::ColumnType;
    return Together({CreateInAllForms({"tblDocExtraInfo",
                                       "Id",
                                       "IdDocExtraInfo",
                                       {{"DocId", Integer},
                                        {"SendTo", Text255},
                                        {"SendFrom", Text255},
                                        {"SendOn", Text255},
                                        {"RecievedOn", Text255},
                                        {"NrOfAttatchements", Integer}}}),
                     {"CREATE INDEX indDocExId on tblDocExtraInfo(DocId )"}});
}

// Closing parenthesis and all; see CompleteRights.
Statements RightsColumns() {
    Statements statements;
    for (const Name type : {"MEMO", "NTEXT", "LONGTEXT"})
        statements.push_back("ALTER TABLE tblDossiertypes ADD COLUMN ShowCabinet " + type +
                             ", CreateDossier " + type + ", OpenDossier " + type + ")");
    return statements;
}

Statements IndexesOf111() {
    return {"CREATE INDEX indChecklistFields on tblChecklistFields (Id)",
            "CREATE INDEX indChecklistRefFields on tblChecklistRefFields (Id)",
            "CREATE INDEX indTabChecklistRefFields on tblChecklistRefFields (TabRefId)",
            "CREATE INDEX indDossierFields on tblDossierFields (DossierId)",
            "CREATE INDEX indDossierRefTabs on tblDossierReftabs (DossierReferenceId)",
            "CREATE INDEX indRelDossierId on tblDossierRelations (DossierId)",
            "CREATE INDEX indRelTreeId on tblDossierRelations (TreeId)",
            "CREATE INDEX indtabdossierid on tblDossierTabs (DossierTypeId)",
            "CREATE INDEX indscreensettingsScreenId on tblscreensettings (ScreenId)",
            "CREATE INDEX indstrKey on tblTranslations (strKey)",
            "CREATE INDEX indParentId on tblTreeItem (parentId)"};
}

constexpr std::string_view upLinks[] = {"tblCheckListRefFieldsUpLink",
                                        "tblDocumentUpLink",
                                        "tblDossierDbRelationUpLink",
                                        "tblDossierReferenceUpLink",
                                        "tblDossierRefTabsUpLink",
                                        "tblDossierRelationsUpLink",
                                        "tblTreeUpLink",
                                        "tblTreeItemUpLink"};

Statements UpLinks() {
    Statements all;
    for (const std::string_view name : upLinks) all = Together({all, UpLink(name)});
    return Together({all, AddText("tblDossierReference", "DossierIdText", 100)});
}

constexpr std::string_view indexDroppedBy115 = "indRefVal10";

constexpr std::pair<std::string_view, std::string_view> guidColumns[] = {
    {"tblTreeItem", "TreeItemGuid"},
    {"tblDocument", "DocGuid"},
    {"tblDossierDbRelation", "DbRelGuid"},
    {"tblDossierReference", "RefGuid"},
    {"tblDossierRefTabs", "RefTabGuid"},
    {"tblDossierTabs", "TabGuid"},
    {"tblDossierTypes", "TypeGuid"},
    {"tblScreens", "ScreenGuid"},
    {"tblScreenSettings", "ScreenSettingsGuid"},
    {"tblDossierRelations", "RelGuid"},
    {"tblTree", "TreeGuid"}};

Statements GuidColumns() {
    Statements all;
    for (const auto& [table, column] : guidColumns)
        all = Together({all, GuidColumn(Name(table), Name(column))});
    return Together({all,
                     {"DROP INDEX indRefVal10 on tblDossierReference",
                      "DROP INDEX tblDossierReference.indRefVal10"}});
}

Statements CheckListGuid() {
    return Together({AddText("tblCheckListRefFields", "clGuid", 38),
                     GuidIndex("indCheckGuid", "tblCheckListRefFields", "clGuid")});
}

constexpr std::string_view update = "Bezig met bijwerken van database";
constexpr std::string_view moving = "Bezig met overzetten van gegevens";
constexpr std::string_view fillingTexts = "Bezig met vullen van vertaaltabel";
constexpr std::string_view fillingGuids = "Vullen GUID field";

struct TableConversion {
    std::string_view table, text;
    void (*function)(const UpgradeContext&);
};
constexpr TableConversion conversions[] = {
    {"tblDossierRefTabs", "Bezig met omvormen van tab's", upgrade::ConvertRefTabs},
    {"tblSettings", "Bezig met omvormen van instellingen", upgrade::ConvertSettings},
    {"tblDossierDbRelation", "Bezig met omvormen van DbRelaties", upgrade::ConvertDbRelations},
    {"tblCheckListFields", "Bezig met omvormen van checklistvelden",
     upgrade::ConvertCheckListFields},
    {"tblCheckListRefFields", "Bezig met omvormen van referentievelden",
     upgrade::ConvertCheckListRefFields},
    {"tblDossierFields", "Bezig met omvormen van velden", upgrade::ConvertDossierFields},
    {"tblDossierTabs", "Bezig met omvormen van Tab's", upgrade::ConvertDossierTabs},
    {"tblScreens", "Bezig met omvormen van schermen", upgrade::ConvertScreens},
    {"tblScreenSettings", "Bezig met omvormen van scherminstellingen",
     upgrade::ConvertScreenSettings},
    {"tblDossierReference", "Bezig met omvormen van referenties", upgrade::ConvertReferences},
    {"tblDossierRelations", "Bezig met omvormen van Relaties", upgrade::ConvertRelations},
    {"tblDossierTypes", "Bezig met omvormen van types", upgrade::ConvertTypes},
    {"tblDocument", "Bezig met omvormen van documenten", upgrade::ConvertDocuments},
    {"tblTree", "Bezig met omvormen van Tree's", upgrade::ConvertTrees},
    {"tblTreeItem", "Bezig met omvormen van Items", upgrade::ConvertItems}};

std::vector<UpgradePhase> Conversion() {
    std::vector<UpgradePhase> phases;
    for (const TableConversion& table : conversions)
        phases.push_back({phases.empty() ? moving : "", table.text, {}, table.function});
    phases.push_back({{}, "Bezig met aanmaken van indexes", schema::CreateIndexes()});
    return phases;
}

// The name that follows `word` in a definition.
Name NameAfter(const Name& statement, std::string_view word) {
    const std::size_t start = statement.find(word) + word.size();
    return statement.substr(start, statement.find_first_of(" (", start) - start);
}

// Each a form of the same index.
SchemaPart IndexPart(const Statements& forms, bool base = false) {
    return {SchemaPart::Kind::Index, NameAfter(forms[0], " on "), NameAfter(forms[0], "INDEX "),
            forms, base};
}

// In one row for each table, column, index and procedure.
class PartList {
public:
    void Base() {
        for (const schema::Table& table : schema::Tables()) {
            const Name name(table.name);
            parts.push_back({Kind::Table, name, name, CreateInAllForms(table), true});
            for (const auto& [column, statements] : schema::AddColumns(table)) {
                const auto conversion = ConversionOf(table, column);
                parts.push_back({Kind::Column, name, column, statements, true,
                                 conversion != nullptr, conversion});
            }
        }
        for (const Name& index : schema::CreateIndexes())
            if (NameAfter(index, "INDEX ") != indexDroppedBy115)
                parts.push_back(IndexPart({index}, true));
        for (const Name& procedure : schema::CreateProcedures())
            parts.push_back(
                {Kind::Procedure, {}, NameAfter(procedure, "PROCEDURE "), {procedure}, true});
    }
    void Upgrades() {
        using namespace upgrade;
        Table("tblTranslations", TranslationTable(),
              [](const UpgradeContext& context) { MissingTranslations(context); });
        for (const std::string_view name : upLinks) Table(Name(name), UpLink(name));
        Table("tblDocExtraInfo", ExtraInfoTable());
        Column("tblDossierRefTabs", "TabChanged", AddText("tblDossierRefTabs", "TabChanged", 1));
        Column("tblDossierReference", "DossierIdText",
               AddText("tblDossierReference", "DossierIdText", 100));
        for (const auto& [table, column] : guidColumns)
            Column(Name(table), Name(column), GuidColumn(Name(table), Name(column)),
                   column == "DocGuid" ? FillDocumentGuids : nullptr);
        Column("tblCheckListRefFields", "clGuid", CheckListGuid(), FillCheckListGuids);
        for (const Name& index : IndexesOf111()) parts.push_back(IndexPart({index}));
    }
    std::vector<SchemaPart> parts;

private:
    using Kind = SchemaPart::Kind;
    using Fill = void (*)(const UpgradeContext&);

    // What fills a column that 1.0.6 brought: a working id, or what a reserved word was called.
    static Fill ConversionOf(const schema::Table& table, std::string_view column) {
        const auto found =
            std::find_if(std::begin(conversions), std::end(conversions), [&](const auto& row) {
                return row.table == table.name &&
                       (column == "IntOrder" || column == "SKey" ||
                        std::any_of(table.columns.begin(), table.columns.end(), [&](const auto& c) {
                            return c.name == column && c.type == schema::ColumnType::OwnId;
                        }));
            });
        return found == std::end(conversions) ? nullptr : found->function;
    }

    // What makes an index among the statements is a part of its own as well.
    void Add(SchemaPart part) {
        Statements indexes;
        for (const Name& statement : part.statements)
            if (statement.starts_with("CREATE INDEX ")) indexes.push_back(statement);
        parts.push_back(std::move(part));
        if (!indexes.empty()) parts.push_back(IndexPart(indexes));
    }
    void Table(const Name& name, const Statements& statements, Fill fill = nullptr) {
        Add({Kind::Table, name, name, statements, false, false, fill});
    }
    void Column(const Name& table, const Name& name, const Statements& statements,
                Fill fill = nullptr) {
        Add({Kind::Column, table, name, statements, false, false, fill});
    }
};

} // namespace

const std::vector<UpgradeStep>& UpgradeSteps() {
    using namespace upgrade;
    static const std::vector<UpgradeStep> steps = {
        {"0", "1.0.1", true, {{update, "Bezig met aanmaken van tabellen", {}, CreateDossierTabs}}},
        {"1.0.1",
         "1.0.2",
         true,
         {{update,
           "Bezig met omvormen van referenties",
           {"ALTER TABLE tblDossierReference ADD COLUMN SaveSettings TEXT(50)"}}}},
        {"1.0.2",
         "1.0.3",
         false,
         {{update, "Bezig met aanmaken van tabellen",
           Together({CreateWithOrder("tblCheckListFields"),
                     CreateWithOrder("tblCheckListRefFields")})}}},
        {"1.0.3",
         "1.0.4",
         true,
         {{update,
           "Bezig met omvormen van tab's",
           {"ALTER TABLE tblDossierTabs ADD COLUMN AutoCreate TEXT(3)"}}}},
        {"1.0.4",
         "1.0.5",
         true,
         {{update, "Bezig met aanmaken van tabellen",
           Together({CreateForAccess("tblScreens"), CreateForAccess("tblScreenSettings")})}}},
        {"1.0.5", "1.0.6", false, Conversion()},
        {"1.0.6",
         "1.0.7",
         false,
         {{moving, "Bezig met omvormen van Relaties", {}, FillRelationIds}}},
        {"1.0.7",
         "1.0.8",
         false,
         {{update, "Bezig met toevoegen rechten", RightsColumns(), CompleteRights}}},
        {"1.0.8",
         "1.0.9",
         false,
         {{update, "Bezig met aanmaken vertaaltabel", TranslationTable()},
          {{}, fillingTexts, {}, Translations109}}},
        {"1.0.9", "1.1.0", false, {{update, fillingTexts, {}, Translations110}}},
        {"1.1.0",
         "1.1.1",
         false,
         {{update, fillingTexts, {}, Translations111},
          {{}, "Bezig met aanmaken van indexes", IndexesOf111()}}},
        {"1.1.1",
         "1.1.2",
         false,
         {{update, "Aanmaken upload", AddText("tblDossierRefTabs", "TabChanged", 1)}}},
        {"1.1.2",
         "1.1.3",
         false,
         {{update, "Aanmaken upload tabellen", UpLinks()},
          {{}, fillingTexts, {}, Translations113}}},
        {"1.1.3",
         "1.1.4",
         false,
         {{update, "Bezig met aanmaken van vertalingen", {}, Translations114}}},
        {"1.1.4", "1.1.5", false, {{update, "Toevoegen Id field", GuidColumns()}}},
        {"1.1.5",
         "1.1.6",
         false,
         {{"Bezig met bijwerken van checklist", "Toevoegen Id field", CheckListGuid()},
          {{}, fillingGuids, {}, FillCheckListGuids}}},
        {"1.1.6",
         "1.1.7",
         false,
         {{"Bezig met bijwerken van Documenten", fillingGuids, {}, FillDocumentGuids}}},
        {"1.1.7",
         "1.1.8",
         false,
         {{"Bezig met aanmaken van Document Extra Info", "Tabel aanmaken", ExtraInfoTable()}}},
    };
    return steps;
}

const std::vector<SchemaPart>& SchemaParts() {
    static const std::vector<SchemaPart> parts = [] {
        PartList list;
        list.Base();
        list.Upgrades();
        return list.parts;
    }();
    return parts;
}

} // namespace kavidex::data
