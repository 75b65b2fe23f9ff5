// Class factories of stand-ins.
#pragma once

#include <windows.h>

#include <objbase.h>

#include "com/dispatch/Automation.h"

namespace kavidex::tests {

// Makes objects of one of our classes; lives as long as the module.
template <class Object>
class FactoryOf : public IClassFactory {
public:
    virtual ~FactoryOf() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = iid == IID_IUnknown || iid == IID_IClassFactory ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
        return com::Make<Object>()->QueryInterface(iid, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

// One of our classes under a class id that is another library's, in this process.
template <class Object>
class ClassUnder : public FactoryOf<Object> {
public:
    explicit ClassUnder(const wchar_t* progId) {
        CLSID clsid;
        if (SUCCEEDED(CLSIDFromProgID(progId, &clsid)))
            CoRegisterClassObject(clsid, this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                  &lclCookie);
    }
    ~ClassUnder() override { CoRevokeClassObject(lclCookie); }
    bool Registered() const { return lclCookie != 0; }

private:
    DWORD lclCookie = 0;
};

} // namespace kavidex::tests
