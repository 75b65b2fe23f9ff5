// Shared pieces: the own translator, menus, pictures.
#include <gtest/gtest.h>

#include "controls/common/Commands.h"
#include "controls/common/OwnTranslator.h"
#include "controls/common/PopupMenu.h"
#include "controls/pictures/NamedPictures.h"
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

namespace {

struct Desk {
    bool open = false, wide = false;
    std::vector<std::string> done;
    bool HasRight(std::string_view right) const { return right != "Burn"; }
};
using Row = Command<Desk>;
constexpr auto whenOpen = [](const Desk& desk, const CommandId&) -> CommandState {
    return {true, desk.open};
};
constexpr auto note = [](Desk& desk, const CommandId& id) {
    desk.done.push_back(std::string(id.name) + std::to_string(id.index));
};
constexpr Row deskRows[] = {
    {.name = "view", .kind = CommandKind::Owner, .tooltip = "View", .rule = whenOpen},
    {.name = "wide",
     .caption = "Wide",
     .kind = CommandKind::Toggle,
     .depth = 1,
     .key = Ctrl('W'),
     .rule = [](const Desk& desk, const CommandId&) -> CommandState {
         return {true, true, desk.wide};
     },
     .action = note},
    {.name = "burn", .caption = "Burn", .right = "Burn", .key = Key(keys::del), .action = note},
    {.name = "later", .caption = "Later", .key = Key(keys::f5), .offered = false, .action = note},
    {.name = "open",
     .count = 3,
     .text =
         [](const Desk&, const CommandId& id) {
             return id.index < 2 ? "Open " + std::to_string(id.index) : std::string();
         },
     .action = note},
};

} // namespace

TEST(Commands, MenuToolbarAndKeysRefuseAlike) {
    Desk desk;
    const Commands<Desk> commands{std::span<const Row>(deskRows)};
    EXPECT_FALSE(commands.Run(desk, {"wide"})) << "its owner is shut";
    EXPECT_FALSE(commands.Run(desk, {"burn"})) << "no right";
    EXPECT_FALSE(commands.Run(desk, {"later"}));
    EXPECT_FALSE(commands.Run(desk, {"open", 2})) << "there is none of that index now";
    EXPECT_FALSE(commands.Run(desk, {"open", -1}));
    EXPECT_FALSE(commands.Run(desk, {"nothing"}));
    desk.open = desk.wide = true;
    EXPECT_TRUE(commands.Run(desk, {"Wide"}));
    EXPECT_TRUE(commands.Run(desk, {"open", 1}));
    EXPECT_EQ(desk.done, (std::vector<std::string>{"wide0", "open1"}));
    EXPECT_EQ(commands.Of(Ctrl('W'))->name, "wide");
    EXPECT_EQ(commands.Of(Key('W')), nullptr);
    EXPECT_EQ(commands.Of(Key(keys::f5)), nullptr) << "a key without its command is the host's";
    const auto menu = commands.Menu(desk, {}, "view");
    ASSERT_EQ(menu.size(), 1U);
    EXPECT_TRUE(menu[0].checked);
    EXPECT_EQ(menu[0].depth, 0);
    EXPECT_EQ(menu[0].shortcut, "Ctrl+W");
    const auto bar = commands.Bar(desk, {});
    ASSERT_EQ(bar.size(), 4U);
    EXPECT_FALSE(bar[1].enabled);
    EXPECT_FALSE(bar[2].visible);
}

TEST(PopupMenu, EveryEntryHasALetterOfItsOwn) {
    PopupMenu menu{{"a", 0, "Knippen"},   {"b", 0, "Kopieren"}, {"c", 0, "Kopieren k"},
                   {"d", 0, "\xC3\xA9k"}, {"e", 0, "Opties"},   {"f", 0, "Knop", 1}};
    std::string letters;
    for (const auto& entry : VisibleEntries(menu))
        letters +=
            entry.mnemonic < 0 ? '?' : entry.caption[static_cast<std::size_t>(entry.mnemonic)];
    EXPECT_EQ(letters, "Kop?tK");
}

TEST(Pictures, EveryPictureIsDrawnAtEverySizeInItsColours) {
    for (const auto key : PictureNames())
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
            EXPECT_GT(opaque, size * size / 40) << key << size;
            EXPECT_GT(clear, size) << key << size;
        }
    for (const auto pixel : DrawPicture("closedtab", 16, {true, 0x00FF00, 0x000000}).pixels)
        EXPECT_EQ(pixel & 0xFF00FF, 0U) << "only the two system colours in high contrast";
}

} // namespace kavidex::controls
