// What the library writes so that hosts find it, computed from the class table and the type
// library.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kavidex::com {

struct RegistryEntry {
    std::wstring key;  // below the root of the classes
    std::wstring name; // empty: the key's default value
    std::wstring value;
};

// Everything that registration writes, and the keys whose removal takes it away again.
struct Registration {
    std::vector<RegistryEntry> entries;
    std::vector<std::wstring> trees;  // removed with all below them
    std::vector<std::wstring> shared; // as trees, but kept for a library of the other width
    std::vector<std::wstring> shells; // removed when nothing is left in them
    std::wstring otherWidth;          // is there while a library of the other width is registered
};

Registration DescribeRegistration();

enum class Scope { Machine, User };

HRESULT Register(Scope scope) noexcept;
// Goes on past what is missing already; fails when something is left behind.
HRESULT Unregister(Scope scope) noexcept;

} // namespace kavidex::com
