// Shared pieces: the own translator, menus, pictures.
#include <gtest/gtest.h>

#include "controls/common/OwnTranslator.h"
#include "controls/common/PopupMenu.h"
#include "controls/tree/IconShapes.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::controls {

TEST(OwnTranslator, AnswersByLanguageAndLeavesUnknownTextsAlone) {
    tests::FakeWorkstation machine;
    const auto database = data::EmbeddedDatabase::CreateEmpty(machine.Path("texts.db"));
    database->Execute("Create table tblTranslations (Id COUNTER, strKey TEXT(255), NL TEXT(255), "
                      "UK TEXT(255), GE TEXT(255), FR TEXT(255))");
    database->Execute("Insert into tblTranslations (strKey, NL, UK, GE) values "
                      "('Map $%$ van $%$', 'Map $%$ van $%$', 'Folder $%$ of $%$', 'Ordner $%$')");
    OwnTranslator translator(machine);
    EXPECT_EQ(translator.Translate("Map $%$ van $%$", {"1", "2"}), "Map 1 van 2");
    translator.SetDbConnection(database);
    translator.SetLanguage(Language::English);
    EXPECT_EQ(translator.Translate("Map $%$ van $%$", {"1", "2"}), "Folder 1 of 2");
    EXPECT_EQ(translator.Translate("MAP $%$ Van $%$", {"1", "2"}), "Folder 1 of 2");
    EXPECT_EQ(translator.Translate("Onbekend $%$", {"x"}), "Onbekend x");
    database->Execute("Delete from tblTranslations");
    EXPECT_EQ(translator.Translate("Map $%$ van $%$", {"1"}), "Folder 1 of $%$") << "read once";
    translator.SetLanguage(Language::French);
    EXPECT_EQ(translator.Translate("Map $%$ van $%$"), "Map $%$ van $%$");
    database->Execute("Drop table tblTranslations");
    translator.SetLanguage(Language::German);
    EXPECT_EQ(translator.Translate("Map"), "Map");
    EXPECT_TRUE(machine.log.Has("OwnTranslator"));
}

TEST(PopupMenu, HidesWhatHasNothingToSeparateOrToOwn) {
    PopupMenu menu{{"s", 0, "", 0, true, true, false},  {"a", 0, "A", 0, true, true, false},
                   {"s", 0, "", 0, true, true, false},  {"b", 0, "B", 0, false, true, false},
                   {"c", 0, "C", 1, true, true, false}, {"s", 0, "", 0, true, true, false},
                   {"d", 0, "D", 0, true, true, false}, {"e", 0, "E", 1, true, true, false},
                   {"s", 0, "", 1, true, true, false},  {"s", 0, "", 0, true, true, false}};
    std::string names;
    for (const auto& entry : VisibleEntries(menu)) names += entry.name;
    EXPECT_EQ(names, "asde");
}

TEST(IconShapes, EveryPictureIsDrawnAtEverySizeInItsColours) {
    for (const auto key : PictureKeys())
        for (const int size : {16, 20, 24, 32}) {
            const auto picture = DrawPicture(key, size);
            ASSERT_EQ(picture.pixels.size(), static_cast<std::size_t>(size) * size);
            int opaque = 0, clear = 0;
            for (const auto pixel : picture.pixels) {
                const auto alpha = pixel >> 24;
                opaque += alpha == 255;
                clear += alpha == 0;
                EXPECT_LE((pixel >> 16) & 255, alpha) << "colours are multiplied by alpha";
            }
            EXPECT_GT(opaque, size * size / 4) << key << size;
            EXPECT_GT(clear, size) << key << size;
        }
    for (const auto pixel : DrawPicture("closedtab", 16, {true, 0x00FF00, 0x000000}).pixels)
        EXPECT_EQ(pixel & 0xFF00FF, 0U) << "only the two system colours in high contrast";
}

} // namespace kavidex::controls
