// What Windows, regsvr32 and hosts call in Kavidex.ocx.
#include <windows.h>
#include <olectl.h>

#include "com/ClassFactory.h"
#include "com/Module.h"
#include "com/class_table.h"
#include "com/registration/Manifest.h"
#include "com/registration/Registration.h"
#include "controls/pictures/win32/SharedPictures.h"

using namespace kavidex::com;

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    const ClassRow* row = FindClass(clsid);
    return row ? MakeClassFactory(*row, iid, object) : CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() {
    if (!CanUnload()) return S_FALSE;
    kavidex::controls::win32::ReleasePictures();
    return S_OK;
}

STDAPI DllRegisterServer() { return Register(Scope::Machine); }

// Takes back both: what one user registered is not seen to be another thing by whoever unregisters.
STDAPI DllUnregisterServer() {
    const HRESULT user = Unregister(Scope::User), machine = Unregister(Scope::Machine);
    return FAILED(machine) ? machine : user;
}

// regsvr32 /n /i:user registers for the current user alone, without an administrator; /n
// /i:manifest writes the file for hosts that use the library without registration.
STDAPI DllInstall(BOOL install, LPCWSTR command) {
    if (command && _wcsicmp(command, L"manifest") == 0)
        return install ? WriteManifest() : E_INVALIDARG;
    const Scope scope = command && _wcsicmp(command, L"user") == 0 ? Scope::User : Scope::Machine;
    return install ? Register(scope) : Unregister(scope);
}

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) DisableThreadLibraryCalls(module);
    return TRUE;
}
