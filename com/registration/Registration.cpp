#include "com/registration/Registration.h"

#include <oaidl.h>
#include <olectl.h>

#include "com/Module.h"
#include "com/class_table.h"
#include "com/dispatch/ErrorBoundary.h"
#include "kavidex_idl.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Late.h"
#include "platform/win32/Variant.h"

namespace kavidex::com {

namespace {

using platform::win32::Bstr;
using platform::win32::Check;
using platform::win32::ComPtr;

constexpr const wchar_t* controlCategory = L"{40FC6ED4-2438-11CF-A3DB-080036F12502}";
constexpr const wchar_t* programmableCategory = L"{40FC6ED5-2438-11CF-A3DB-080036F12502}";
constexpr const wchar_t* dispatchProxy = L"{00020420-0000-0000-C000-000000000046}";
constexpr const wchar_t* libraryVersion = L"1.0";
constexpr bool wide = sizeof(void*) == 8;
constexpr const wchar_t *platformKey = wide ? L"win64" : L"win32",
                        *otherPlatformKey = wide ? L"win32" : L"win64";

std::wstring GuidText(REFGUID guid) {
    wchar_t text[40];
    StringFromGUID2(guid, text, 40);
    return text;
}

void DescribeClass(Registration& plan, const ClassRow& row, const std::wstring& path) {
    const std::wstring clsid = GuidText(*row.clsid), key = L"CLSID\\" + clsid;
    const std::wstring progId = std::wstring(L"Kavidex.") + row.name, versioned = progId + L".1";
    auto& list = plan.entries;
    list.push_back({key, L"", row.description});
    list.push_back({key + L"\\InprocServer32", L"", path});
    list.push_back({key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"});
    list.push_back({key + L"\\ProgID", L"", versioned});
    list.push_back({key + L"\\VersionIndependentProgID", L"", progId});
    list.push_back({key + L"\\TypeLib", L"", GuidText(LIBID_Kavidex)});
    list.push_back({key + L"\\Version", L"", libraryVersion});
    list.push_back({key + L"\\Programmable", L"", L""});
    list.push_back({key + L"\\Implemented Categories\\" + programmableCategory, L"", L""});
    if (row.IsControl()) {
        list.push_back({key + L"\\Control", L"", L""});
        list.push_back({key + L"\\Implemented Categories\\" + controlCategory, L"", L""});
        list.push_back(
            {key + L"\\ToolboxBitmap32", L"", path + L", " + std::to_wstring(row.toolboxBitmap)});
        list.push_back({key + L"\\Verb\\0", L"", L"&Edit,0,2"});
        list.push_back({key + L"\\MiscStatus", L"", L"0"});
        list.push_back({key + L"\\MiscStatus\\1", L"", std::to_wstring(row.miscStatus)});
    }
    list.push_back({progId, L"", row.description});
    list.push_back({progId + L"\\CLSID", L"", clsid});
    list.push_back({progId + L"\\CurVer", L"", versioned});
    list.push_back({versioned, L"", row.description});
    list.push_back({versioned + L"\\CLSID", L"", clsid});
    plan.trees.push_back(key);
    plan.shared.insert(plan.shared.end(), {progId, versioned});
}

void DescribeInterface(Registration& plan, ITypeInfo& info, const TYPEATTR& attributes) {
    Bstr name;
    Check(info.GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr), "Kavidex");
    const std::wstring key = L"Interface\\" + GuidText(attributes.guid);
    plan.entries.push_back({key, L"", name.Get()});
    plan.entries.push_back({key + L"\\ProxyStubClsid32", L"", dispatchProxy});
    plan.entries.push_back({key + L"\\TypeLib", L"", GuidText(LIBID_Kavidex)});
    plan.entries.push_back({key + L"\\TypeLib", L"Version", libraryVersion});
    plan.trees.push_back(key);
}

// Written by ourselves rather than by RegisterTypeLib, so that it goes where the classes go.
void DescribeTypeLib(Registration& plan, const std::wstring& path) {
    const std::wstring library = L"TypeLib\\" + GuidText(LIBID_Kavidex);
    const std::wstring key = library + L"\\" + libraryVersion, platforms = key + L"\\0\\";
    plan.entries.push_back({key, L"", L"Kavidex electronic dossiers"});
    plan.entries.push_back({platforms + platformKey, L"", path});
    plan.entries.push_back({key + L"\\FLAGS", L"", L"0"});
    plan.entries.push_back({key + L"\\HELPDIR", L"", path.substr(0, path.find_last_of(L'\\'))});
    plan.trees.push_back(platforms + platformKey);
    plan.shared.push_back(key);
    plan.shells.push_back(library);
    plan.otherWidth = platforms + otherPlatformKey;

    ComPtr<ITypeLib> types;
    Check(OwnTypeLib(types.Put()), "Kavidex");
    for (UINT i = 0; i < types->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        TYPEATTR* attributes = nullptr;
        Check(types->GetTypeInfo(i, info.Put()), "Kavidex");
        Check(info->GetTypeAttr(&attributes), "Kavidex");
        const TYPEATTR copy = *attributes;
        info->ReleaseTypeAttr(attributes);
        if (copy.typekind == TKIND_DISPATCH) DescribeInterface(plan, *info, copy);
    }
}

std::wstring Rooted(const std::wstring& key) { return L"Software\\Classes\\" + key; }

HKEY RootOf(Scope scope) {
    return scope == Scope::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

LONG Write(HKEY root, const RegistryEntry& entry) {
    HKEY key = nullptr;
    LONG result = RegCreateKeyExW(root, Rooted(entry.key).c_str(), 0, nullptr, 0, KEY_WRITE,
                                  nullptr, &key, nullptr);
    if (result != ERROR_SUCCESS) return result;
    const auto bytes = static_cast<DWORD>((entry.value.size() + 1) * sizeof(wchar_t));
    result = RegSetValueExW(key, entry.name.empty() ? nullptr : entry.name.c_str(), 0, REG_SZ,
                            reinterpret_cast<const BYTE*>(entry.value.c_str()), bytes);
    RegCloseKey(key);
    return result;
}

bool Gone(LONG result) {
    return result == ERROR_SUCCESS || result == ERROR_FILE_NOT_FOUND ||
           result == ERROR_PATH_NOT_FOUND;
}

bool Exists(HKEY root, const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
}

bool IsEmptyKey(HKEY root, const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    DWORD keys = 0, values = 0;
    RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                     nullptr, nullptr, nullptr);
    RegCloseKey(key);
    return keys == 0 && values == 0;
}

} // namespace

Registration DescribeRegistration() {
    Registration plan;
    const std::wstring path = ModulePath();
    for (const ClassRow& row : ClassTable()) DescribeClass(plan, row, path);
    DescribeTypeLib(plan, path);
    // A user may have had none of these before.
    plan.shells.insert(plan.shells.end(), {L"CLSID", L"Interface", L"TypeLib"});
    return plan;
}

HRESULT Register(Scope scope) noexcept {
    const HRESULT result = Guard("Kavidex", IID_NULL, [&]() -> HRESULT {
        for (const RegistryEntry& entry : DescribeRegistration().entries)
            if (const LONG written = Write(RootOf(scope), entry); written != ERROR_SUCCESS)
                return HRESULT_FROM_WIN32(static_cast<DWORD>(written));
        return S_OK;
    });
    if (FAILED(result)) Unregister(scope); // whole or not at all
    return result;
}

HRESULT Unregister(Scope scope) noexcept {
    return Guard("Kavidex", IID_NULL, [&]() -> HRESULT {
        const Registration plan = DescribeRegistration();
        std::vector<std::wstring> trees = plan.trees;
        if (!Exists(RootOf(scope), Rooted(plan.otherWidth)))
            trees.insert(trees.end(), plan.shared.begin(), plan.shared.end());
        HRESULT result = S_OK;
        for (const std::wstring& tree : trees)
            if (const LONG removed = RegDeleteTreeW(RootOf(scope), Rooted(tree).c_str());
                !Gone(removed))
                result = HRESULT_FROM_WIN32(static_cast<DWORD>(removed));
        for (const std::wstring& shell : plan.shells)
            if (IsEmptyKey(RootOf(scope), Rooted(shell)))
                RegDeleteKeyW(RootOf(scope), Rooted(shell).c_str());
        return result;
    });
}

} // namespace kavidex::com
