// Several texts, in whatever form another program gives them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/win32/Variant.h"

namespace kavidex::platform::win32 {

// Texts given as a collection (what For Each walks, so the keys of a Scripting.Dictionary), an
// array (of a script too: `length` and numbered members), or one single text. Null for empty, null
// and Nothing: nobody gave any.
std::optional<std::vector<std::string>> TextsOf(const Variant& given);

} // namespace kavidex::platform::win32
