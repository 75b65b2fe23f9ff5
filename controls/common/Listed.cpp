#include "controls/common/Listed.h"

#include <algorithm>

namespace kavidex::controls {

namespace {

constexpr std::size_t mostShown = 8;

} // namespace

std::string Listed(const std::vector<std::string>& names, const data::Translation& translation,
                   std::string_view between) {
    std::string text;
    const auto shown = std::min(names.size(), mostShown);
    for (std::size_t i = 0; i < shown; ++i) {
        if (i > 0) text += between;
        text += names[i];
    }
    if (names.size() > shown)
        text += "\r\n" + data::Translated(translation, "... en nog $%$; het logboek noemt ze alle",
                                          {std::to_string(names.size() - shown)});
    return text;
}

} // namespace kavidex::controls
