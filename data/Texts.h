// How the data layer and the model pass their few user-facing texts through the translator, which
// lives above them.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text.h"

namespace kavidex::data {

// The text in the user's language, each $%$ filled with the next value. Empty: as the text stands.
using Translation =
    std::function<std::string(std::string_view text, const std::vector<std::string>& values)>;

inline std::string Translated(const Translation& translation, std::string_view text,
                              const std::vector<std::string>& values = {}) {
    return translation ? translation(text, values) : platform::FillPlaceholders(text, values);
}

} // namespace kavidex::data
