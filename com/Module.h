// The library as a module: where it was loaded, and the type library inside it.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>

namespace kavidex::com {

// The module that this code lies in.
HINSTANCE ThisModule() noexcept;
std::wstring ModulePath();

// From the module's own resource, never through the registry. Both leave a reference with the
// caller.
HRESULT OwnTypeLib(ITypeLib** library) noexcept;
HRESULT TypeInfoOf(REFGUID guid, ITypeInfo** info) noexcept;

// DllGetClassObject's locks and DllCanUnloadNow's answer.
void LockModule(bool lock) noexcept;
bool CanUnload() noexcept;

} // namespace kavidex::com
