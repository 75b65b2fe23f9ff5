// What COM objects of one interface share: identity and the count of references.
#pragma once

#include <unknwn.h>

namespace kavidex::platform::win32 {

// Made with one reference, which is the maker's; gone with the last. No locking: one thread.
template <class Interface>
class Counted : public Interface {
public:
    Counted() = default;
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = iid == IID_IUnknown || iid == __uuidof(Interface) ? this : nullptr;
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

protected:
    virtual ~Counted() = default;

private:
    long lclReferences = 1;
};

} // namespace kavidex::platform::win32
