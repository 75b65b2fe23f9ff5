// The library as a COM server: factories, locks, registration for the machine and for one user.
#include <set>

#include "Library.h"
#include "com/adodb/ConnectionObject.h"
#include "com/class_table.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "kavidex_idl.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::tests {

namespace {

class Server : public Library {
protected:
    using GetClassObject = HRESULT STDMETHODCALLTYPE(REFCLSID, REFIID, void**);
    HRESULT Call(const char* name) const { return Export<HRESULT STDMETHODCALLTYPE()>(name)(); }
    HRESULT Install(bool install, const wchar_t* command) const {
        return Export<HRESULT STDMETHODCALLTYPE(BOOL, LPCWSTR)>("DllInstall")(install, command);
    }
    static std::wstring Value(HKEY root, const std::wstring& key, const wchar_t* name = nullptr) {
        wchar_t text[MAX_PATH];
        DWORD size = sizeof text;
        const LONG got = RegGetValueW(root, (L"Software\\Classes\\" + key).c_str(), name,
                                      RRF_RT_REG_SZ, nullptr, text, &size);
        return got == ERROR_SUCCESS ? text : L"(none)";
    }
    static bool Exists(HKEY root, const std::wstring& key) {
        HKEY opened = nullptr;
        if (RegOpenKeyExW(root, (L"Software\\Classes\\" + key).c_str(), 0, KEY_READ, &opened) !=
            ERROR_SUCCESS)
            return false;
        RegCloseKey(opened);
        return true;
    }
    static std::wstring Text(REFGUID guid) {
        wchar_t text[40];
        StringFromGUID2(guid, text, 40);
        return text;
    }
    static std::wstring PlatformKey(std::size_t bits) {
        return L"TypeLib\\" + Text(LIBID_Kavidex) + L"\\1.0\\0\\win" + std::to_wstring(bits);
    }
    // The names of all keys below the root of the classes.
    static void KeysBelow(HKEY root, const std::wstring& path, std::set<std::wstring>& keys) {
        HKEY opened = nullptr;
        wchar_t name[256];
        if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &opened)) return;
        for (DWORD i = 0, size = 256;
             !RegEnumKeyExW(opened, i, name, &size, nullptr, nullptr, nullptr, nullptr);
             ++i, size = 256)
            if (keys.insert(path + L"\\" + name).second) KeysBelow(root, path + L"\\" + name, keys);
        RegCloseKey(opened);
    }
    static std::set<std::wstring> Classes(HKEY root) {
        std::set<std::wstring> keys;
        KeysBelow(root, L"Software\\Classes", keys);
        return keys;
    }
    void ExpectWritten(HKEY root) const;
};

void Server::ExpectWritten(HKEY root) const {
    for (const com::ClassRow& row : com::ClassTable()) {
        const std::wstring key = L"CLSID\\" + Text(*row.clsid),
                           progId = std::wstring(L"Kavidex.") + row.name;
        EXPECT_EQ(Value(root, progId + L"\\CLSID"), Text(*row.clsid));
        EXPECT_EQ(Value(root, progId + L"\\CurVer"), progId + L".1");
        EXPECT_EQ(Value(root, progId + L".1\\CLSID"), Text(*row.clsid));
        EXPECT_EQ(_wcsicmp(Value(root, key + L"\\InprocServer32").c_str(), Path().c_str()), 0);
        EXPECT_EQ(Value(root, key + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
        EXPECT_EQ(Exists(root, key + L"\\Control"), row.IsControl());
        EXPECT_TRUE(Exists(root, L"Interface\\" + Text(*row.iid)));
        // No control is marked safe for a browser.
        EXPECT_FALSE(Exists(
            root, key + L"\\Implemented Categories\\{7DD95801-9882-11CF-9FA9-00AA006C42C4}"));
    }
    EXPECT_EQ(_wcsicmp(Value(root, PlatformKey(8 * sizeof(void*))).c_str(), Path().c_str()), 0);
}

} // namespace

TEST_F(Server, AnotherCopyOfTheLibraryInTheProcessIsAnotherLibrary) {
    // This program holds the same classes: it knows what it made itself, not what the library made.
    FakeWorkstation machine;
    const std::string path = machine.Path("both.kdb");
    const auto own =
        com::Make<com::adodb::ConnectionObject>(data::EmbeddedDatabase::OpenOrCreate(path));
    EXPECT_TRUE(com::NativeOf<data::Connection>(own.Get()));
    EXPECT_TRUE(com::adodb::ConnectionObject::From(own.Get()));
    const Late theirs(Late(Make(CLSID_EmbeddedDatabase)).Call(L"Open", {Variant(path)}));
    ASSERT_TRUE(theirs.Object());
    EXPECT_FALSE(com::NativeOf<data::Connection>(theirs.Object().Get()));
    EXPECT_FALSE(com::adodb::ConnectionObject::From(theirs.Object().Get()));
    theirs.Call(L"Close");
}

TEST_F(Server, FactoryRefusesWhatItCannotMake) {
    const auto get = Export<GetClassObject>("DllGetClassObject");
    void* object = this;
    EXPECT_EQ(get(IID_IUnknown, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(get(CLSID_clsTree, IID_IClassFactory, reinterpret_cast<void**>(factory.Put())), S_OK);
    EXPECT_EQ(factory->CreateInstance(factory.Get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IOleObject, &object), E_NOINTERFACE);
}

TEST_F(Server, StaysLoadedWhileLockedOrInUse) {
    const auto get = Export<GetClassObject>("DllGetClassObject");
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(get(CLSID_clsTree, IID_IClassFactory, reinterpret_cast<void**>(factory.Put())), S_OK);
    EXPECT_EQ(Call("DllCanUnloadNow"), S_FALSE);
    factory->LockServer(TRUE);
    factory = nullptr;
    EXPECT_EQ(Call("DllCanUnloadNow"), S_FALSE);
    ASSERT_EQ(get(CLSID_clsTree, IID_IClassFactory, reinterpret_cast<void**>(factory.Put())), S_OK);
    factory->LockServer(FALSE);
    factory = nullptr;
    EXPECT_EQ(Call("DllCanUnloadNow"), S_OK);
    auto object = Make(CLSID_clsTree);
    EXPECT_EQ(Call("DllCanUnloadNow"), S_FALSE);
}

TEST_F(Server, RegistersForTheMachineAndTakesAllOfItAway) {
    ASSERT_EQ(Call("DllUnregisterServer"), S_OK);
    const auto machine = Classes(HKEY_LOCAL_MACHINE), user = Classes(HKEY_CURRENT_USER);
    ASSERT_FALSE(machine.empty());
    ASSERT_EQ(Call("DllRegisterServer"), S_OK);
    ExpectWritten(HKEY_LOCAL_MACHINE);
    EXPECT_GT(Classes(HKEY_LOCAL_MACHINE).size(), machine.size() + 100);
    ASSERT_EQ(Install(true, L"user"), S_OK);
    ASSERT_EQ(Call("DllUnregisterServer"), S_OK);
    EXPECT_EQ(Call("DllUnregisterServer"), S_OK); // nothing left to do is no failure
    EXPECT_EQ(Classes(HKEY_LOCAL_MACHINE), machine);
    EXPECT_EQ(Classes(HKEY_CURRENT_USER), user);
    ASSERT_EQ(Call("DllRegisterServer"), S_OK);
    for (const com::ClassRow& row : com::ClassTable())
        EXPECT_TRUE(Late::TryCreate("Kavidex." + platform::win32::FromWide(row.name)));
    CoFreeUnusedLibrariesEx(0, 0);
}

TEST_F(Server, RegistersForOneUserWithoutTouchingTheMachine) {
    const auto machine = Classes(HKEY_LOCAL_MACHINE), user = Classes(HKEY_CURRENT_USER);
    ASSERT_EQ(Install(true, L"user"), S_OK);
    ExpectWritten(HKEY_CURRENT_USER);
    ASSERT_EQ(Install(false, L"USER"), S_OK);
    EXPECT_EQ(Classes(HKEY_CURRENT_USER), user);
    EXPECT_EQ(Classes(HKEY_LOCAL_MACHINE), machine);
}

// The names of the classes and the type library serve the libraries of both widths.
TEST_F(Server, LeavesToALibraryOfTheOtherWidthWhatBothNeed) {
    const auto before = Classes(HKEY_CURRENT_USER);
    const std::wstring other = PlatformKey(96 - 8 * sizeof(void*));
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, (L"Software\\Classes\\" + other).c_str(), &key), 0);
    RegCloseKey(key);
    ASSERT_EQ(Install(true, L"user"), S_OK);
    ASSERT_EQ(Install(false, L"user"), S_OK);
    EXPECT_FALSE(Exists(HKEY_CURRENT_USER, L"CLSID\\" + Text(CLSID_clsTree)));
    EXPECT_EQ(Value(HKEY_CURRENT_USER, L"Kavidex.clsTree\\CLSID"), Text(CLSID_clsTree));
    EXPECT_TRUE(Exists(HKEY_CURRENT_USER, other));
    EXPECT_FALSE(Exists(HKEY_CURRENT_USER, PlatformKey(8 * sizeof(void*))));
    ASSERT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, (L"Software\\Classes\\" + other).c_str()), 0);
    ASSERT_EQ(Install(false, L"user"), S_OK);
    EXPECT_EQ(Classes(HKEY_CURRENT_USER), before);
}

} // namespace kavidex::tests
