#include "com/ClassFactory.h"

#include <new>

#include "com/Module.h"
#include "com/class_table.h"
#include "com/dispatch/ErrorBoundary.h"
#include "com/dispatch/LiveObjects.h"

namespace kavidex::com {

namespace {

class ClassFactory final : public IClassFactory {
public:
    explicit ClassFactory(const ClassRow& row) : lclRow(row) {}
    virtual ~ClassFactory() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = iid == IID_IUnknown || iid == IID_IClassFactory ? this : nullptr;
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++lclReferences); }
    ULONG STDMETHODCALLTYPE Release() override {
        const long left = --lclReferences;
        if (left == 0) delete this;
        return static_cast<ULONG>(left);
    }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        return Guard("Kavidex", IID_IClassFactory,
                     [&] { return lclRow.create()->QueryInterface(iid, object); });
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        LockModule(lock != FALSE);
        return S_OK;
    }

private:
    const ClassRow& lclRow;
    long lclReferences = 1;
    LiveCount lclCount;
};

} // namespace

HRESULT MakeClassFactory(const ClassRow& row, REFIID iid, void** object) noexcept {
    auto* factory = new (std::nothrow) ClassFactory(row);
    if (!factory) return E_OUTOFMEMORY;
    const HRESULT result = factory->QueryInterface(iid, object);
    factory->Release();
    return result;
}

} // namespace kavidex::com
