#include "tools/check/arguments.h"

#include "platform/text.h"

namespace kavidex::check {

std::vector<std::string> Arguments(int count, char** values) {
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) arguments.push_back(platform::Replace(values[i], "/", "\\"));
    return arguments;
}

} // namespace kavidex::check
