#include "controls/common/Causes.h"

#include "platform/Error.h"

namespace kavidex::controls {

std::optional<std::string> CauseOf(const data::Translation& translation, const std::string& file,
                                   std::int32_t number) {
    namespace errors = platform::errors;
    const auto text = [&](const char* words) {
        return data::Translated(translation, words, {file});
    };
    switch (number) {
    case errors::notFound:
    case errors::pathNotFound: return text("$%$: bestand of map niet gevonden");
    case errors::accessDenied: return text("$%$: geen toegang");
    case errors::sharingViolation: return text("$%$: in gebruik bij een ander programma");
    case errors::diskFull: return text("$%$: de schijf is vol");
    default: return std::nullopt;
    }
}

} // namespace kavidex::controls
