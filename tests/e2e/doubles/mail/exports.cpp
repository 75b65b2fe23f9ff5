// A library for the tests alone: the mail program of MailProgram.h under "outlook.Application", as
// long as it is registered.
#include <windows.h>

#include <olectl.h>

#include "com/Module.h"
#include "tests/e2e/doubles/Factories.h"
#include "tests/e2e/doubles/MailProgram.h"

using namespace kavidex;

namespace {

// {F81B00FE-EEE4-4755-8FEC-E32A479C0FC9}
constexpr CLSID mailClass = {
    0xf81b00fe, 0xeee4, 0x4755, {0x8f, 0xec, 0xe3, 0x2a, 0x47, 0x9c, 0x0f, 0xc9}};
const wchar_t classKey[] = L"CLSID\\{F81B00FE-EEE4-4755-8FEC-E32A479C0FC9}";
const wchar_t progIdKey[] = L"outlook.Application";

bool Write(const std::wstring& path, const std::wstring& text, const wchar_t* name = nullptr) {
    return RegSetKeyValueW(HKEY_CLASSES_ROOT, path.c_str(), name, REG_SZ, text.c_str(),
                           static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) ==
           ERROR_SUCCESS;
}

} // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    static tests::FactoryOf<tests::OutlookDouble> factory;
    if (!object) return E_POINTER;
    *object = nullptr;
    return clsid == mailClass ? factory.QueryInterface(iid, object) : CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() { return S_FALSE; }

STDAPI DllRegisterServer() {
    const std::wstring server = std::wstring(classKey) + L"\\InprocServer32";
    return Write(server, com::ModulePath()) && Write(server, L"Apartment", L"ThreadingModel") &&
                   Write(std::wstring(progIdKey) + L"\\CLSID", classKey + 6)
               ? S_OK
               : SELFREG_E_CLASS;
}

STDAPI DllUnregisterServer() {
    for (const wchar_t* key : {classKey, progIdKey}) RegDeleteTreeW(HKEY_CLASSES_ROOT, key);
    return S_OK;
}
