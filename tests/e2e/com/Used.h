// What this process holds of the system: windows, handles, GDI objects, memory.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

namespace kavidex::tests {

struct Used {
    int windows = 0; // with their children, and those for messages only
    DWORD handles = 0;
    std::optional<int> gdi; // null where the system does not show them
    std::size_t bytes = 0;  // of the heap that the runtime takes its memory from

    static Used Now();
};

} // namespace kavidex::tests
