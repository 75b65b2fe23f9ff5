// What the program needs of its system.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "data/AdoFactory.h"

namespace kavidex::db {

std::vector<std::string> Arguments(int count, char** values); // in UTF-8
// Null where there is no ADO.
std::unique_ptr<data::AdoFactory> MakeAdoFactory();

// Before anything is opened or printed: texts are UTF-8, and objects can be made.
void Begin();

} // namespace kavidex::db
