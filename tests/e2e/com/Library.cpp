#include "Library.h"

namespace kavidex::tests {

void Library::SetUp() {
    ASSERT_TRUE(SUCCEEDED(OleInitialize(nullptr)));
    lclModule =
        LoadLibraryW(sizeof(void*) == 8 ? L"Kavidex64.ocx" : L"Kavidex.ocx"); // lies beside us
    ASSERT_NE(lclModule, nullptr) << GetLastError();
}

void Library::TearDown() {
    if (lclModule) {
        EXPECT_EQ(Export<HRESULT STDMETHODCALLTYPE()>("DllCanUnloadNow")(), S_OK)
            << "objects are left over";
        FreeLibrary(lclModule);
    }
    OleUninitialize();
}

ComPtr<IDispatch> Library::Make(REFCLSID clsid) const {
    ComPtr<IClassFactory> factory;
    ComPtr<IDispatch> object;
    const auto get =
        Export<HRESULT STDMETHODCALLTYPE(REFCLSID, REFIID, void**)>("DllGetClassObject");
    if (SUCCEEDED(get(clsid, IID_IClassFactory, reinterpret_cast<void**>(factory.Put()))))
        factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(object.Put()));
    return object;
}

std::wstring Library::Path() const {
    wchar_t path[MAX_PATH];
    return {path, GetModuleFileNameW(lclModule, path, MAX_PATH)};
}

} // namespace kavidex::tests
