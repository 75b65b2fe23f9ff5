// IPersistStorage: for hosts that give each control a storage; ours holds one stream, "Contents".
#pragma once

#include "com/control/Persistence.h"

namespace kavidex::com {

class PersistStore : public IPersistStorage {
public:
    HRESULT STDMETHODCALLTYPE IsDirty() override { return Core().dirty ? S_OK : S_FALSE; }
    HRESULT STDMETHODCALLTYPE InitNew(IStorage*) override { return com::InitNew(Core()); }
    HRESULT STDMETHODCALLTYPE Load(IStorage* storage) override {
        if (!storage) return E_POINTER;
        return Guard("Kavidex", IID_IPersistStorage, [&]() -> HRESULT {
            ComPtr<IStream> stream;
            const HRESULT opened = storage->OpenStream(
                contents, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, stream.Put());
            return FAILED(opened) ? opened : LoadFrom(*stream, Persistent(), Core());
        });
    }
    HRESULT STDMETHODCALLTYPE Save(IStorage* storage, BOOL) override {
        if (!storage) return E_POINTER;
        return Guard("Kavidex", IID_IPersistStorage, [&]() -> HRESULT {
            ComPtr<IStream> stream;
            const HRESULT made = storage->CreateStream(
                contents, STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE, 0, 0, stream.Put());
            return FAILED(made) ? made : SaveTo(*stream, Persistent(), Core());
        });
    }
    HRESULT STDMETHODCALLTYPE SaveCompleted(IStorage*) override {
        Core().dirty = false;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE HandsOffStorage() override { return S_OK; } // none is held

protected:
    ~PersistStore() = default;
    virtual ControlCore& Core() = 0;
    virtual PersistentOwner& Persistent() = 0;

private:
    static constexpr const wchar_t* contents = L"Contents";
};

} // namespace kavidex::com
