// IPersistStreamInit: a control's properties in a stream of the host's.
#pragma once

#include "com/control/Persistence.h"

namespace kavidex::com {

class PersistStream : public IPersistStreamInit {
public:
    HRESULT STDMETHODCALLTYPE IsDirty() override { return Core().dirty ? S_OK : S_FALSE; }
    HRESULT STDMETHODCALLTYPE Load(LPSTREAM stream) override {
        if (!stream) return E_POINTER;
        return Guard("Kavidex", IID_IPersistStreamInit,
                     [&] { return LoadFrom(*stream, Persistent(), Core()); });
    }
    HRESULT STDMETHODCALLTYPE Save(LPSTREAM stream, BOOL clearDirty) override {
        if (!stream) return E_POINTER;
        return Guard("Kavidex", IID_IPersistStreamInit, [&] {
            const HRESULT saved = SaveTo(*stream, Persistent(), Core());
            if (SUCCEEDED(saved) && clearDirty) Core().dirty = false;
            return saved;
        });
    }
    HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* size) override {
        if (!size) return E_POINTER;
        return Guard("Kavidex", IID_IPersistStreamInit, [&] {
            size->QuadPart = SavedSize(Persistent(), Core());
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE InitNew() override { return com::InitNew(Core()); }

protected:
    ~PersistStream() = default;
    virtual ControlCore& Core() = 0;
    virtual PersistentOwner& Persistent() = 0;
};

} // namespace kavidex::com
