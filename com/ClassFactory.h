#pragma once

#include <windows.h>
#include <unknwn.h>

namespace kavidex::com {

struct ClassRow;

// The class object of a row, with the interface asked for.
HRESULT MakeClassFactory(const ClassRow& row, REFIID iid, void** object) noexcept;

} // namespace kavidex::com
