#include "data/schema/completeness.h"

#include <mutex>
#include <set>

#include "data/address.h"
#include "data/clsSettings.h"
#include "data/logText.h"
#include "data/modData.h"
#include "data/schema/translations.h"
#include "data/schema/upgradeConversions.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::data {
namespace {

using Kind = SchemaPart::Kind;
using Names = std::set<std::string>;
using Parts = std::vector<const SchemaPart*>;

// SQL Server tells a procedure with its number.
std::string Plain(const Value& value) {
    const std::string name = platform::LowerCase(platform::Trim(ToText(value)));
    return name.substr(0, name.find(';'));
}

// "table.name" for each row, or "name" without a table's column.
Names NamesIn(Connection& connection, Schema schema, const char* table, const char* name) {
    Names names;
    const RecordsetPtr rows = connection.OpenSchema(schema);
    for (; !rows->Eof(); rows->MoveNext()) {
        const std::string owner = table ? Plain(rows->Get(table)) : std::string();
        if (!owner.empty()) names.insert(owner);
        names.insert(owner + "." + Plain(rows->Get(name)));
    }
    return names;
}

class Inventory {
public:
    explicit Inventory(const UpgradeContext& context)
        : lclContext(context), lclBase(!IsAccessConnection(context.connection)),
          lclProcedures(lclBase && !IsMySqlConnection(context.connection)) {}

    // The tables and columns that are not there; a column comes with its table.
    Parts MissingTables() {
        lclTables = NamesIn(*lclContext.connection, Schema::Columns, "TABLE_NAME", "COLUMN_NAME");
        return Missing([&](const SchemaPart& part) {
            const std::string table = platform::LowerCase(part.table);
            if (part.kind == Kind::Table) return lclTables.count(table) == 0;
            return part.kind == Kind::Column && lclTables.count(table) != 0 &&
                   lclTables.count(table + "." + platform::LowerCase(part.name)) == 0;
        });
    }
    // The indexes and procedures, of the tables that were there last.
    Parts MissingRest() {
        const Names indexes = Listed(Schema::Indexes, "TABLE_NAME", "INDEX_NAME");
        const Names procedures =
            lclProcedures ? Listed(Schema::Procedures, nullptr, "PROCEDURE_NAME") : Names();
        return Missing([&](const SchemaPart& part) {
            const std::string table = platform::LowerCase(part.table),
                              name = platform::LowerCase(part.name);
            if (part.kind == Kind::Procedure)
                return !procedures.empty() && procedures.count("." + name) == 0;
            return part.kind == Kind::Index && !indexes.empty() && lclTables.count(table) != 0 &&
                   indexes.count(table + "." + name) == 0;
        });
    }

private:
    template <class Test>
    Parts Missing(Test isMissing) const {
        Parts missing;
        for (const SchemaPart& part : SchemaParts())
            if ((lclBase || !part.base || part.converted) && isMissing(part))
                missing.push_back(&part);
        return missing;
    }
    // Empty where the connection does not list them.
    Names Listed(Schema schema, const char* table, const char* name) const {
        try {
            return NamesIn(*lclContext.connection, schema, table, name);
        } catch (const std::exception& error) {
            lclContext.workstation.log.Write("CompleteSchema", InLog(error));
            return {};
        }
    }

    const UpgradeContext& lclContext;
    const bool lclBase, lclProcedures;
    Names lclTables;
};

void Bring(const UpgradeContext& context, const Parts& parts) {
    for (const SchemaPart* part : parts) {
        for (const std::string& statement : part->statements) context.Execute(statement);
        // A conversion speaks the words of Access.
        if (part->fill && (!part->converted || IsAccessConnection(context.connection)))
            part->fill(context);
    }
}

void TellMissing(const UpgradeContext& context, const Translation& translation,
                 const Parts& parts) {
    std::string list;
    for (const SchemaPart* part : parts)
        list += (list.empty() ? "" : ", ") +
                (part->kind == Kind::Column ? part->table + "." + part->name : part->name);
    context.workstation.log.Write("CompleteSchema", "missing: " + list);
    static std::mutex guard;
    static Names told; // databases, in this session
    {
        const std::lock_guard lock(guard);
        if (!told.insert(AddressOf(*context.connection)).second) return;
    }
    if (list.size() > 600) list = list.substr(0, list.rfind(',', 600)) + ", ...";
    context.workstation.messages.Show(
        {.text = Translated(translation,
                            "De database is niet volledig bijgewerkt. Vraag uw beheerder om deze "
                            "onderdelen: $%$",
                            {list}),
         .caption = Translated(translation, "Controle database")});
}

} // namespace

void CompleteSchema(const UpgradeContext& context, const Translation& translation) {
    try {
        Inventory inventory(context);
        const Parts tables = inventory.MissingTables();
        Bring(context, tables);
        Parts missing = tables.empty() ? tables : inventory.MissingTables();
        Parts rest = inventory.MissingRest();
        if (!rest.empty()) {
            Bring(context, rest);
            rest = inventory.MissingRest();
        }
        missing.insert(missing.end(), rest.begin(), rest.end());
        if (!missing.empty()) TellMissing(context, translation, missing);
    } catch (const std::exception& error) {
        // A schema that cannot be read tells nothing about what it lacks.
        context.workstation.log.Write("CompleteSchema", InLog(error));
    }
}

void CompleteTexts(const UpgradeContext& context, clsSettings& settings) {
    constexpr std::string_view section = "Build", key = "Translations";
    try {
        std::string mark;
        settings.GetSetting(section, key, mark);
        if (!settings.Failure().empty() || !LacksTranslations(mark)) return;
        if (upgrade::MissingTranslations(context))
            settings.SetSetting(section, key, TranslationsMark());
    } catch (const std::exception& error) {
        context.workstation.log.Write("CompleteTexts", InLog(error));
    }
}

} // namespace kavidex::data
