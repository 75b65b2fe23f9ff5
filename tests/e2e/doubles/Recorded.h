// Where stand-ins leave a line for every call.
#pragma once

#include <cstdlib>
#include <fstream>
#include <string>

#include "platform/Files.h"
#include "platform/Workstation.h"

namespace kavidex::tests {

// Into the file that the variable names, else `otherwise` in the temporary folder.
inline void RecordCall(const char* variable, const char* otherwise, const std::string& line) {
    const char* named = std::getenv(variable);
    const std::string path =
        named ? named : platform::TheWorkstation().files.TemporaryFolder() + otherwise;
    std::ofstream(path, std::ios::app) << line << "\n";
}

} // namespace kavidex::tests
