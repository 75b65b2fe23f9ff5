// Every text that the sources hand to a translator has its row among the translations. The sources
// themselves are read; a call whose text cannot be told from them fails until `texts` below names
// where it comes from.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <vector>

#include "data/schema/translations.h"
#include "model/rights.h"
#include "platform/text.h"

using namespace kavidex;

namespace {

using Texts = std::vector<std::string>;

std::string WithoutComments(const std::string& source) {
    return std::regex_replace(source, std::regex(R"((^|\s)//[^\n]*)"), "$1");
}

// The string literals of a piece of source, neighbours joined.
Texts Literals(const std::string& source) {
    Texts texts;
    for (std::size_t at = source.find('"'); at != std::string::npos; at = source.find('"', at)) {
        std::string text;
        do {
            for (++at; at < source.size() && source[at] != '"'; ++at)
                text += source[at] != '\\'    ? source[at]
                        : source[++at] == 'n' ? '\n'
                        : source[at] == 'r'   ? '\r'
                        : source[at] == 't'   ? '\t'
                                              : source[at];
            at = source.find_first_not_of(" \n", at + 1);
        } while (at != std::string::npos && source[at] == '"');
        texts.push_back(text);
    }
    return texts;
}

// What stands between the parentheses of a call that begins at `at`, parted at its commas.
Texts Arguments(const std::string& source, std::size_t at) {
    Texts arguments(1);
    int depth = 0;
    bool quoted = false;
    for (; at < source.size(); ++at) {
        const char c = source[at];
        if (c == '"' && source[at - 1] != '\\') quoted = !quoted;
        if (!quoted) {
            if (c == ')' || c == '}' || c == ']') --depth;
            if (depth < 0) break;
            if (c == '(' || c == '{' || c == '[') ++depth;
            if (c == ',' && depth == 0) {
                arguments.emplace_back();
                continue;
            }
        }
        arguments.back() += c;
    }
    for (std::string& argument : arguments)
        argument = platform::Trim(std::regex_replace(argument, std::regex("\\s+"), " "));
    return arguments;
}

// The literals of `name = ...;` or `name[] = ...;`.
Texts InitialisersOf(const std::string& name, const std::string& source) {
    std::smatch found;
    const std::regex start("\\b" + name + R"((\[\])?\s*=)");
    if (!std::regex_search(source, found, start)) return {};
    const auto from = static_cast<std::size_t>(found.position() + found.length());
    return Literals(source.substr(from, source.find(';', from) - from));
}

struct Shown : testing::Test {
    std::set<std::string> keys;
    std::set<std::string> checked;

    Shown() {
        for (const auto& row : data::Translations()) keys.insert(row.key);
    }
    void Expect(const std::string& text, const std::string& where) {
        if (text.empty()) return;
        checked.insert(text);
        EXPECT_TRUE(keys.count(text)) << '"' << text << "\" of " << where << " has no row";
    }
    void ExpectAll(const Texts& texts, const std::string& where) {
        for (const std::string& text : texts) Expect(text, where);
    }
    // The calls that translate, in one file; the text is their argument number `position`.
    void Read(const std::string& source, const std::string& where, const std::regex& call,
              std::size_t position, const std::map<std::string, Texts>& indirect) {
        for (std::sregex_iterator it(source.begin(), source.end(), call), end; it != end; ++it) {
            const auto start = static_cast<std::size_t>(it->position());
            if (start > 0 && (std::isalnum(static_cast<unsigned char>(source[start - 1])) ||
                              source.substr(start < 5 ? 0 : start - 5, 5) == "busy."))
                continue; // another name; the busy dialog is given what was translated
            const Texts arguments = Arguments(source, start + it->str().size());
            if (arguments.size() <= position) continue;
            const std::string& text = arguments[position];
            if (text.empty()) continue; // the property itself
            if (text.starts_with("std::string_view") || text.starts_with("const Cell&") ||
                text.starts_with("std::size_t"))
                continue;
            if (const Texts direct = Literals(text); !direct.empty()) {
                ExpectAll(direct, where);
                continue;
            }
            if (const auto known = indirect.find(text); known != indirect.end()) {
                ExpectAll(known->second, where);
                continue;
            }
            const Texts table = InitialisersOf(text.substr(0, text.find('[')), source);
            EXPECT_FALSE(table.empty()) << where << ": where does " << text << " come from?";
            ExpectAll(table, where);
        }
    }
    template <class Visit>
    static void EachSource(const char* room, Visit visit) {
        namespace fs = std::filesystem;
        const fs::path root = KAVIDEX_SOURCES;
        for (const auto& entry : fs::recursive_directory_iterator(root / room)) {
            const std::string kind = entry.path().extension().string();
            if (kind != ".cpp" && kind != ".h") continue;
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string source{std::istreambuf_iterator<char>(file), {}};
            visit(WithoutComments(source), fs::relative(entry.path(), root).string());
        }
    }
};

} // namespace

TEST_F(Shown, TextsOfTheControlsHaveTranslations) {
    std::size_t rows = 0;
    EachSource("controls", [&](const std::string& source, const std::string& where) {
        // Tables of commands name their texts.
        const std::regex text(R"re(\.(caption|tooltip|checkedTooltip)\s*=\s*("[^"]*"))re");
        for (std::sregex_iterator it(source.begin(), source.end(), text), end; it != end; ++it) {
            Expect(Literals((*it)[2].str()).at(0), where);
            ++rows;
        }
    });
    // Forms: the rows of fields, the captions of layouts, the headings of columns.
    EachSource("controls", [&](const std::string& source, const std::string& where) {
        const std::regex captioned(
            R"re((Kind::\w+,\s*\{[^}]*\},|\bLayout \w+\s*=?\s*\{"\w+",)\s*("[^"]*"))re");
        for (std::sregex_iterator it(source.begin(), source.end(), captioned), end; it != end; ++it)
            ExpectAll(platform::Split(Literals((*it)[2].str()).at(0), ';'), where);
        const std::regex table(R"re(\bColumn (\w+)\[\]\s*=)re");
        for (std::sregex_iterator it(source.begin(), source.end(), table), end; it != end; ++it)
            ExpectAll(InitialisersOf((*it)[1].str(), source), where);
    });
    EXPECT_GE(rows, 40u);
    Texts rights, groups;
    for (const auto& one : model::Rights()) rights.emplace_back(one.caption);
    for (const auto& one : model::RightGroups()) groups.emplace_back(one.caption);
    const std::map<std::string, Texts> texts = {
        {"lclLayout.caption", {}}, // of forms: their tables are read above
        {"field.Row().caption", {}},
        {"column.caption", {}},
        {"lclNotice",
         {"Dit document kan hier niet getoond worden.",
          "Dit bestand kan iets uitvoeren en wordt daarom niet getoond.",
          "Dit document wordt in een eigen venster getoond.",
          "Dit document is in zijn eigen programma geopend."}},
        {"damagedNotice", {"Dit document is beschadigd en kan hier niet getoond worden."}},
        {"row.caption", {}},
        {"group.caption", groups},
        {"all[i].caption", rights},
        {"shown.text", {"Aanwezig", "Ontbreekt", "$%$ van $%$", "Niet verplicht", "Niet nodig"}},
        {"lclField.Row().caption", {}},
        {"lclColumns[i].caption", {}},
        {"names[i]", {}},
        {"names[position]", {}}, // the user's own, or Text("Nieuwe map") and its like
        {"caption", {}},         // handed on by ShowError
        {"row", {}},             // of a list: its content
        {"pages", {}},           // a number, asked of a printer
        {"lclOrder[row]", {}},
        {"std::string question", {}}, // of the intake's sites, which translate theirs
        {"text", {}},                 // handed on by Tell and by the translation of the data layer
    };
    std::map<std::string, Texts> shared = texts; // of what the controls' common rooms translate
    for (const char* table : {"Column(column).caption", "other ? row.checkedTooltip : row.tooltip"})
        shared[table] = {};
    shared["name.text"] = {"Del", "Enter", "Ins", "Esc", "Spatie"};
    const std::regex call(R"((Text|Tell|Translate|ShowError)\()");
    EachSource("controls", [&](const std::string& source, const std::string& where) {
        Read(source, where, call, 0, texts);
        for (const std::size_t position : {0U, 1U})
            Read(source, where, std::regex(R"(\bAsk\()"), position, texts);
        Read(source, where, std::regex(R"(\bTranslated\()"), 1, shared);
    });
    for (const char* known :
         {"Melding viewer", "Knippen", "Vorig document", "Nieuwe notitie", "Geen authorisatie",
          "(aflopend)", "Grootte:", "Alleen boom", "Datum en tijd:", "Verberg checklist"})
        EXPECT_TRUE(checked.count(known)) << known << " was not seen";
}

TEST_F(Shown, TextsOfTheDataLayerAndTheModelHaveTranslations) {
    // The phases of the upgrade are a table with a test of its own.
    const std::map<std::string, Texts> phases = {{"phase.caption", {}},
                                                 {"phase.text", {}},
                                                 {"step.phases.front().caption", {}},
                                                 {"step.phases.front().text", {}},
                                                 {"text", {}}};
    const std::regex translated(R"(\bTranslated\()");
    EachSource("data", [&](const std::string& source, const std::string& where) {
        if (where.starts_with("data/embedded") || where.starts_with("data/odbc"))
            return; // they translate statements and names
        Read(source, where, std::regex(R"(\bsay\()"), 0, phases);
        Read(source, where, translated, 1, phases);
    });
    const std::map<std::string, Texts> titles = {
        {"lclTitle", {"Section Runtime Error $%$", "Application Runtime Error $%$"}}};
    EachSource("model", [&](const std::string& source, const std::string& where) {
        Read(source, where, translated, 1, titles);
        // What is shown as it stands would pass the translator by.
        EXPECT_FALSE(std::regex_search(source, std::regex(R"re(\.(caption|text) = ")re"))) << where;
    });
    for (const char* known : {"Controle database", "Bezig met bijwerken van versienummer",
                              "Database backup and compress", "Not yet implemented (",
                              "DocumentPath in section Storage not found", "Error in $%$",
                              "An unknown runtime error has occured."})
        EXPECT_TRUE(checked.count(known)) << known << " was not seen";
}
