// A library for the tests alone: serves our ADODB-compatible objects under ADODB's own class ids.
// Registering keeps who served them before, beside the entry; unregistering gives the entry back.
#include "com/Module.h"
#include "tests/e2e/doubles/AdoClasses.h"

#include <olectl.h>

#include <iterator>

using namespace kavidex;

namespace {

const wchar_t* const keptName = L"KavidexTestKept";
const wchar_t* const progIds[] = {L"ADODB.Connection", L"ADODB.Command", L"ADODB.Recordset"};

IClassFactory* FactoryAt(std::size_t place) {
    static tests::FactoryOf<tests::AdoConnectionDouble> connection;
    static tests::FactoryOf<com::adodb::CommandObject> command;
    static tests::FactoryOf<com::adodb::RecordsetObject> recordset;
    IClassFactory* const all[] = {&connection, &command, &recordset};
    return all[place];
}

std::wstring ReadValue(HKEY key, const wchar_t* name) {
    wchar_t text[MAX_PATH] = L"";
    DWORD size = sizeof text - sizeof *text;
    if (RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size))
        return {};
    return text;
}

bool WriteValue(HKEY key, const wchar_t* name, const std::wstring& text) {
    return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                          static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

template <class Work>
HRESULT OnEveryServer(Work work) {
    for (const wchar_t* progId : progIds) {
        CLSID clsid;
        wchar_t text[40];
        HKEY key;
        if (FAILED(CLSIDFromProgID(progId, &clsid))) return SELFREG_E_CLASS;
        StringFromGUID2(clsid, text, static_cast<int>(std::size(text)));
        const std::wstring path = std::wstring(L"CLSID\\") + text + L"\\InprocServer32";
        if (RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ | KEY_WRITE, &key))
            return SELFREG_E_CLASS;
        const bool done = work(key);
        RegCloseKey(key);
        if (!done) return SELFREG_E_CLASS;
    }
    return S_OK;
}

} // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    for (std::size_t i = 0; i < std::size(progIds); ++i) {
        CLSID known;
        if (SUCCEEDED(CLSIDFromProgID(progIds[i], &known)) && known == clsid)
            return FactoryAt(i)->QueryInterface(iid, object);
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() { return S_FALSE; }

STDAPI DllRegisterServer() {
    return OnEveryServer([](HKEY key) {
        const std::wstring before = ReadValue(key, nullptr), own = com::ModulePath();
        if (before.empty()) return false;
        return before == own ||
               (WriteValue(key, keptName, before) && WriteValue(key, nullptr, own));
    });
}

STDAPI DllUnregisterServer() {
    return OnEveryServer([](HKEY key) {
        const std::wstring kept = ReadValue(key, keptName);
        if (kept.empty()) return true;
        return WriteValue(key, nullptr, kept) && RegDeleteValueW(key, keptName) == ERROR_SUCCESS;
    });
}
