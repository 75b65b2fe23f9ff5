#include "tools/db/machine.h"

namespace kavidex::db {

std::vector<std::string> Arguments(int count, char** values) {
    return {values + 1, values + count};
}

std::unique_ptr<data::AdoFactory> MakeAdoFactory() { return nullptr; }

void Begin() {}

} // namespace kavidex::db
