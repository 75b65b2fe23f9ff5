// Dates of the Access dialect.
#pragma once

#include <string>
#include <string_view>

namespace kavidex::data::embedded {

// Reads "2004-05-01", "2004-05-01 13:30:00" or "5/1/2004" (month first) into the stored form
// yyyy-mm-dd hh:mm:ss; false when the text is no such date.
bool ReadDate(std::string_view text, std::string& stored);

} // namespace kavidex::data::embedded
