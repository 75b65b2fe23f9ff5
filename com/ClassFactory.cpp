#include "com/ClassFactory.h"

#include <new>

#include "com/Module.h"
#include "com/class_table.h"
#include "com/dispatch/ErrorBoundary.h"
#include "com/dispatch/LiveObjects.h"
#include "platform/win32/Counted.h"

namespace kavidex::com {

namespace {

using platform::win32::Counted;

class ClassFactory final : public Counted<IClassFactory> {
public:
    explicit ClassFactory(const ClassRow& row) : lclRow(row) {}

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
