// How the data layer passes its few user-facing texts through the translator, which lives above it.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace kavidex::data {

// Empty: the texts are shown as they stand.
using Translation = std::function<std::string(std::string_view)>;

inline std::string Translated(const Translation& translation, std::string_view text) {
    return translation ? translation(text) : std::string(text);
}

} // namespace kavidex::data
