// Reads the embedded table of translations.
#include "data/schema/translations.h"

#include <charconv>
#include <cstdint>

#include "platform/Error.h"
#include "platform/text.h"

namespace kavidex::data {

// From data/schema/translations.tsv, by cmake/EmbedText.cmake.
extern const std::string_view translationsTsv;

namespace {

constexpr std::size_t columns = 6;

std::string Unescaped(std::string_view text) {
    return platform::Replace(platform::Replace(text, "\\n", "\r\n"), "\\t", "\t");
}

} // namespace

std::vector<TranslatedText> ParseTranslations(std::string_view tsv) {
    std::vector<TranslatedText> texts;
    int number = 0;
    for (std::string line : platform::Split(tsv, '\n')) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line[0] == '#') continue;
        std::vector<std::string> parts = platform::Split(line, '\t');
        if (parts.size() != columns)
            throw platform::Error(platform::errors::invalidArgument,
                                  "translations: line " + std::to_string(number) + " has " +
                                      std::to_string(parts.size()) + " columns");
        for (std::string& part : parts) part = Unescaped(part);
        texts.push_back({parts[0], parts[1], parts[2], parts[3], parts[4], parts[5]});
    }
    return texts;
}

const std::vector<TranslatedText>& Translations() {
    static const std::vector<TranslatedText> texts = ParseTranslations(translationsTsv);
    return texts;
}

std::string TranslationsMark() {
    std::uint64_t hash = 14695981039346656037u; // FNV-1a
    for (const char c : translationsTsv)
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
    return std::to_string(Translations().size()) + "-" + std::to_string(hash);
}

bool LacksTranslations(std::string_view mark) {
    std::size_t number = 0;
    std::from_chars(mark.data(), mark.data() + mark.size(), number);
    return number < Translations().size() ||
           (number == Translations().size() && mark != TranslationsMark());
}

} // namespace kavidex::data
