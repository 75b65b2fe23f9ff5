// IProvideClassInfo2: which class this is, and which interface its events come by.
#pragma once

#include <olectl.h>

#include "com/Module.h"
#include "com/class_table.h"
#include "com/control/ControlCore.h"

namespace kavidex::com {

class ClassInfo : public IProvideClassInfo2 {
public:
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override {
        return info ? TypeInfoOf(*Core().Class().clsid, info) : E_POINTER;
    }
    HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* guid) override {
        if (!guid) return E_POINTER;
        if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID || !Core().Class().events) return E_INVALIDARG;
        *guid = *Core().Class().events;
        return S_OK;
    }

protected:
    ~ClassInfo() = default;
    virtual ControlCore& Core() = 0;
};

} // namespace kavidex::com
