// The texts that upgrades and later programs bring into the translation table.
#include <set>
#include <string>

#include "data/modData.h"
#include "data/schema/translations.h"
#include "data/schema/upgradeConversions.h"
#include "data/schema/upgradeRows.h"
#include "platform/text.h"

namespace kavidex::data::upgrade {
namespace {

// Keys as the databases compare them.
std::string KeyOf(std::string_view key) { return platform::LowerCase(platform::TrimView(key)); }

struct Present {
    bool table = false;
    std::set<std::string> keys;    // of an upgrade that was broken off or of the installation's own
    std::set<std::string> lacking; // those of them without a German text
};

Present KeysPresent(const UpgradeContext& context) {
    Present present;
    const RecordsetPtr rows =
        RowsOf(context, "Select strKey,GE from tblTranslations", {"strKey", "GE"});
    if (!rows) return present;
    present.table = true;
    for (; !rows->Eof(); rows->MoveNext()) {
        std::string key = KeyOf(ToText(rows->Get("strKey")));
        if (platform::Trim(ToText(rows->Get("GE"))).empty()) present.lacking.insert(key);
        present.keys.insert(std::move(key));
    }
    return present;
}

std::string InsertOf(const TranslatedText& text, bool allLanguages) {
    const std::string start =
        SqlValue(text.key) + "," + SqlValue(text.dutch) + "," + SqlValue(text.english);
    if (!allLanguages) return "insert into tblTranslations (strKey,NL,UK) values(" + start + ")";
    return "insert into tblTranslations (strKey,NL,UK,GE,FR) values(" + start + "," +
           SqlValue(text.german) + "," + SqlValue(text.french) + ")";
}

void Insert(const UpgradeContext& context, std::string_view since, bool allLanguages = true) {
    InTransaction(context, [&] {
        const Present present = KeysPresent(context);
        for (const TranslatedText& text : Translations())
            if (text.since == since && !present.keys.count(KeyOf(text.key)))
                context.Execute(InsertOf(text, allLanguages));
    });
}

} // namespace

void Translations109(const UpgradeContext& context) { Insert(context, "1.0.9"); }
void Translations110(const UpgradeContext& context) { Insert(context, "1.1.0", false); }
void Translations111(const UpgradeContext& context) { Insert(context, "1.1.1"); }
void Translations113(const UpgradeContext& context) { Insert(context, "1.1.3"); }

// Brings its own texts, and the languages that the texts of 1.1.0 came without.
void Translations114(const UpgradeContext& context) {
    Insert(context, "1.1.4");
    InTransaction(context, [&] {
        const Present present = KeysPresent(context);
        for (const TranslatedText& text : Translations())
            if (present.lacking.count(KeyOf(text.key)))
                context.Execute("update tblTranslations set GE = " + SqlValue(text.german) +
                                ", FR = " + SqlValue(text.french) +
                                " where strKey = " + SqlValue(text.key));
    });
}

bool MissingTranslations(const UpgradeContext& context) {
    bool table = false;
    InTransaction(context, [&] {
        const Present present = KeysPresent(context);
        table = present.table;
        for (const TranslatedText& text : Translations())
            if (table && !present.keys.count(KeyOf(text.key)))
                context.connection->Execute(InsertOf(text, true));
    });
    return table;
}

} // namespace kavidex::data::upgrade
