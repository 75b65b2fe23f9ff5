// The command line in UTF-8, paths in the house's form.
#pragma once

#include <string>
#include <vector>

namespace kavidex::check {

std::vector<std::string> Arguments(int count, char** values);

} // namespace kavidex::check
