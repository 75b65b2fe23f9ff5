// The texts of the system in its four languages, from data/schema/translations.tsv.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kavidex::data {

struct TranslatedText {
    std::string key;                            // the text as the code has it
    std::string dutch, english, german, french; // "$%$" equally often in each
    std::string since;                          // the schema version that brings it
};

// Parsed on first use; in the order of the file.
const std::vector<TranslatedText>& Translations();

// What a database records once it has these texts: it changes with them. Whether those of that mark
// are fewer than these, or as many others; a later program's are not.
std::string TranslationsMark();
bool LacksTranslations(std::string_view mark);

// One row a line, tab between the columns, \n for a line break (CR LF) and \t for a tab in a text;
// lines that begin with # and empty lines are skipped. Throws platform::Error naming a bad line.
std::vector<TranslatedText> ParseTranslations(std::string_view tsv);

} // namespace kavidex::data
