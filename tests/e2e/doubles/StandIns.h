// Puts the classes of a library of stand-ins into the registry, under the identifiers of what they
// stand in for.
#pragma once

#include <windows.h>

#include <olectl.h>

#include <span>
#include <string>

#include "com/Module.h"

namespace kavidex::tests {

struct StandIn {
    const wchar_t* progId;
    const wchar_t* clsid; // in braces
    const CLSID* id;
    IClassFactory* (*factory)();
};

inline bool WriteKey(const std::wstring& path, const std::wstring& text,
                     const wchar_t* name = nullptr) {
    return RegSetKeyValueW(HKEY_CLASSES_ROOT, path.c_str(), name, REG_SZ, text.c_str(),
                           static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) ==
           ERROR_SUCCESS;
}

inline HRESULT RegisterAll(std::span<const StandIn> all) {
    for (const auto& one : all) {
        const std::wstring server = L"CLSID\\" + std::wstring(one.clsid) + L"\\InprocServer32";
        if (!WriteKey(server, com::ModulePath()) ||
            !WriteKey(server, L"Apartment", L"ThreadingModel") ||
            !WriteKey(std::wstring(one.progId) + L"\\CLSID", one.clsid))
            return SELFREG_E_CLASS;
    }
    return S_OK;
}

inline HRESULT UnregisterAll(std::span<const StandIn> all) {
    for (const auto& one : all) {
        RegDeleteTreeW(HKEY_CLASSES_ROOT, (L"CLSID\\" + std::wstring(one.clsid)).c_str());
        RegDeleteTreeW(HKEY_CLASSES_ROOT, one.progId);
    }
    return S_OK;
}

inline HRESULT FactoryFor(std::span<const StandIn> all, REFCLSID clsid, REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    for (const auto& one : all)
        if (*one.id == clsid) return one.factory()->QueryInterface(iid, object);
    return CLASS_E_CLASSNOTAVAILABLE;
}

} // namespace kavidex::tests
