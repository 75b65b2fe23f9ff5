#include <gtest/gtest.h>

#include <set>

#include "data/schema/translations.h"
#include "data/schema/upgradeSteps.h"
#include "platform/Error.h"
#include "platform/text.h"

using namespace kavidex;
using namespace kavidex::data;

namespace {

int Placeholders(std::string_view text) {
    int count = 0;
    for (auto at = text.find("$%$"); at != std::string_view::npos; at = text.find("$%$", at + 3))
        ++count;
    return count;
}

} // namespace

TEST(Translations, AreWholeInFourLanguages) {
    std::set<std::string> keys, versions;
    for (const UpgradeStep& step : UpgradeSteps()) versions.insert(std::string(step.to));
    for (const TranslatedText& row : Translations()) {
        EXPECT_TRUE(keys.insert(platform::LowerCase(row.key)).second) << row.key;
        EXPECT_TRUE(versions.count(row.since)) << row.key;
        for (const std::string* text :
             {&row.key, &row.dutch, &row.english, &row.german, &row.french}) {
            EXPECT_FALSE(text->empty()) << row.key;
            EXPECT_EQ(platform::Trim(*text), *text) << row.key;
            EXPECT_LE(platform::ToUtf16(*text).size(), 255u) << row.key;
            EXPECT_EQ(text->find('\\'), std::string::npos) << row.key; // no dialect reads it alike
            EXPECT_EQ(Placeholders(*text), Placeholders(row.key)) << row.key;
        }
    }
    EXPECT_GT(keys.size(), 250u);
}

TEST(Translations, HaveWhatTheUpgradeSays) {
    std::set<std::string> keys;
    for (const TranslatedText& row : Translations()) keys.insert(platform::LowerCase(row.key));
    for (const UpgradeStep& step : UpgradeSteps())
        for (const UpgradePhase& phase : step.phases)
            for (const std::string_view text : {phase.caption, phase.text})
                EXPECT_TRUE(text.empty() || keys.count(platform::LowerCase(text))) << text;
}

TEST(Translations, NameTheBadLine) {
    EXPECT_EQ(ParseTranslations("# x\n\nk\\n2\tn\tu\tg\tf\t1.0.9\r\n").at(0).key, "k\r\n2");
    try {
        ParseTranslations("# x\na\tb\n");
        FAIL();
    } catch (const platform::Error& error) {
        EXPECT_NE(std::string(error.what()).find("line 2"), std::string::npos);
    }
}
