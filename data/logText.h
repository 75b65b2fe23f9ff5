// A failure as the log tells it: with the statement that met it, which no message box shows.
#pragma once

#include <cstddef>
#include <exception>
#include <string>

#include "data/Error.h"

namespace kavidex::data {

inline std::string InLog(const std::exception& error) {
    std::string text = error.what();
    const auto* const ours = dynamic_cast<const Error*>(&error);
    if (!ours || ours->Statement().empty()) return text;
    constexpr std::size_t longest = 1000; // some carry whole texts
    text += " Statement: " + ours->Statement().substr(0, longest);
    return ours->Statement().size() > longest ? text + "..." : text;
}

} // namespace kavidex::data
