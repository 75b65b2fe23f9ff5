// What went wrong with a file, where a user can do something about it.
#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>

#include "data/Texts.h"

namespace kavidex::controls {

// Null for any other number of an error.
std::optional<std::string> CauseOf(const data::Translation& translation, const std::string& file,
                                   std::int32_t number);

// The same of an error, or its own words where nothing more is known of it.
std::string CauseText(const data::Translation& translation, const std::string& file,
                      const std::exception& error);

} // namespace kavidex::controls
