// IPersistPropertyBag: a control's properties by name, as hosts with readable forms keep them.
#pragma once

#include "com/control/Persistence.h"

namespace kavidex::com {

class PersistBag : public IPersistPropertyBag {
public:
    HRESULT STDMETHODCALLTYPE InitNew() override { return com::InitNew(Core()); }
    HRESULT STDMETHODCALLTYPE Load(IPropertyBag* bag, IErrorLog* log) override {
        if (!bag) return E_POINTER;
        return Guard("Kavidex", IID_IPersistPropertyBag, [&] {
            HostBag items(*bag, log);
            Persistent().LoadProperties(items);
            Core().dirty = false;
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE Save(IPropertyBag* bag, BOOL clearDirty, BOOL) override {
        if (!bag) return E_POINTER;
        return Guard("Kavidex", IID_IPersistPropertyBag, [&] {
            HostBag items(*bag, nullptr);
            Persistent().SaveProperties(items);
            if (clearDirty) Core().dirty = false;
            return S_OK;
        });
    }

protected:
    ~PersistBag() = default;
    virtual ControlCore& Core() = 0;
    virtual PersistentOwner& Persistent() = 0;
};

} // namespace kavidex::com
