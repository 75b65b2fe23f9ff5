#include "com/class_table.h"

#include <array>

#include "kavidex_idl.h"

namespace kavidex::com {

namespace {

// name, description, class, interface, events, misc status, factory
const std::array<ClassRow, 0> table = {{
}};

} // namespace

std::span<const ClassRow> ClassTable() {
    return table;
}

const ClassRow* FindClass(REFCLSID clsid) {
    for (const ClassRow& row : table)
        if (*row.clsid == clsid) return &row;
    return nullptr;
}

} // namespace kavidex::com
