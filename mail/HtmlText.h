// The text of an HTML page, for where no browser shows it.
#pragma once

#include <string>
#include <string_view>

namespace kavidex::mail {

// Without tags, scripts and styles; blocks stand on lines of their own. Anything is taken for HTML.
std::string TextOfHtml(std::string_view html);

} // namespace kavidex::mail
