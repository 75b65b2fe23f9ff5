#include "controls/common/Causes.h"

#include <iterator>

#include "platform/Error.h"

namespace kavidex::controls {

std::optional<std::string> CauseOf(const data::Translation& translation, const std::string& file,
                                   std::int32_t number) {
    namespace errors = platform::errors;
    struct Cause {
        std::int32_t number;
        const char* words;
    };
    constexpr Cause causes[] = {
        {errors::notFound, "$%$: bestand of map niet gevonden"},
        {errors::pathNotFound, "$%$: bestand of map niet gevonden"},
        {errors::accessDenied, "$%$: geen toegang"},
        {errors::sharingViolation, "$%$: in gebruik bij een ander programma"},
        {errors::diskFull, "$%$: de schijf is vol"},
    };
    for (std::size_t i = 0; i < std::size(causes); ++i)
        if (causes[i].number == number)
            return data::Translated(translation, causes[i].words, {file});
    return std::nullopt;
}

std::string CauseText(const data::Translation& translation, const std::string& file,
                      const std::exception& error) {
    const auto* ours = dynamic_cast<const platform::Error*>(&error);
    return CauseOf(translation, file, ours ? ours->Number() : 0).value_or(error.what());
}

} // namespace kavidex::controls
