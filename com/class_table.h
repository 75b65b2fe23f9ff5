// One row a class that hosts can create: registration and the class factory follow from it.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <span>

#include "platform/win32/ComPtr.h"

namespace kavidex::com {

struct ClassRow {
    const wchar_t* name; // the programmatic identifier is "Kavidex." and this
    const wchar_t* description;
    const CLSID* clsid;
    const IID* iid;    // its dispinterface
    const IID* events; // null when it raises none
    DWORD miscStatus;  // OLEMISC flags; 0 for a class without a window
    platform::win32::ComPtr<IDispatch> (*create)();
    WORD toolboxBitmap = 100; // its picture in a form designer, a resource of kavidex.rc
    SIZE pixels = {320, 240}; // as it is placed on a form, at 96 dots an inch

    bool IsControl() const { return miscStatus != 0; }
};

std::span<const ClassRow> ClassTable();
const ClassRow* FindClass(REFCLSID clsid); // null when there is none

} // namespace kavidex::com
