// The upgrade steps that bring texts into the translation table.
#include <set>
#include <string>

#include "data/modData.h"
#include "data/schema/translations.h"
#include "data/schema/upgradeConversions.h"
#include "platform/BusyDialog.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::data::upgrade {
namespace {

// The keys that are there already, of an upgrade that was broken off or of the installation's own;
// with `lacking`, those without a German text.
std::set<std::string> KeysPresent(const UpgradeContext& context, std::set<std::string>* lacking) {
    std::set<std::string> keys;
    const RecordsetPtr rows = OpenRecordset(
        context.workstation, "Select strKey,GE from tblTranslations", context.connection);
    if (!rows->IsOpen()) return keys;
    for (; !rows->Eof(); rows->MoveNext()) {
        std::string key = platform::Trim(ToText(rows->Get("strKey")));
        if (lacking && platform::Trim(ToText(rows->Get("GE"))).empty()) lacking->insert(key);
        keys.insert(std::move(key));
    }
    return keys;
}

std::string InsertOf(const TranslatedText& text, bool allLanguages) {
    const std::string start =
        SqlValue(text.key) + "," + SqlValue(text.dutch) + "," + SqlValue(text.english);
    if (!allLanguages) return "insert into tblTranslations (strKey,NL,UK) values(" + start + ")";
    return "insert into tblTranslations (strKey,NL,UK,GE,FR) values(" + start + "," +
           SqlValue(text.german) + "," + SqlValue(text.french) + ")";
}

void Insert(const UpgradeContext& context, std::string_view since, bool allLanguages = true) {
    const std::set<std::string> present = KeysPresent(context, nullptr);
    InTransaction(context, [&] {
        int inserted = 0;
        for (const TranslatedText& text : Translations()) {
            if (text.since != since || present.count(platform::Trim(text.key))) continue;
            context.Execute(InsertOf(text, allLanguages));
            if (++inserted % 64 == 0) context.workstation.busy.PumpMessages();
        }
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
    std::set<std::string> lacking;
    KeysPresent(context, &lacking);
    InTransaction(context, [&] {
        for (const TranslatedText& text : Translations())
            if (lacking.count(platform::Trim(text.key)))
                context.Execute("update tblTranslations set GE = " + SqlValue(text.german) +
                                ", FR = " + SqlValue(text.french) +
                                " where strKey = " + SqlValue(text.key));
    });
}

void AllTranslations(const UpgradeContext& context) {
    for (const auto fill :
         {Translations109, Translations110, Translations111, Translations113, Translations114})
        fill(context);
}

} // namespace kavidex::data::upgrade
