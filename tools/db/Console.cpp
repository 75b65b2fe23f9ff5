#include "tools/db/Console.h"

#include <cstdio>

#include "data/schema/translations.h"
#include "platform/text.h"

namespace kavidex::db {

std::string English(std::string_view text, const std::vector<std::string>& values) {
    for (const data::TranslatedText& row : data::Translations())
        if (row.key == text) return platform::FillPlaceholders(row.english, values);
    return platform::FillPlaceholders(text, values);
}

// Nobody is there to agree: the answer is the one that does nothing.
platform::Answer ConsoleMessages::Show(const platform::Message& message) {
    ++shown;
    std::fprintf(stderr, "%s: %s\n", message.caption.c_str(), message.text.c_str());
    switch (message.buttons) {
    case platform::Buttons::Ok: return platform::Answer::Ok;
    case platform::Buttons::YesNo: return platform::Answer::No;
    default: return platform::Answer::Cancel;
    }
}

void ConsoleBusy::Show(std::string_view caption, std::string_view text) {
    std::string line = English(caption) + ": " + English(text);
    if (line == lclLast) return;
    lclLast = std::move(line);
    std::printf("%s\n", lclLast.c_str());
    std::fflush(stdout);
}

} // namespace kavidex::db
