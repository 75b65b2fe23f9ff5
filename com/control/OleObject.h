// IOleObject: embedding, verbs and size.
#pragma once

#include <olectl.h>

#include <string_view>

#include "com/class_table.h"
#include "com/control/ControlCore.h"
#include "com/dispatch/ErrorBoundary.h"

namespace kavidex::com {

class OleObject : public IOleObject {
public:
    HRESULT STDMETHODCALLTYPE SetClientSite(IOleClientSite* site) override {
        Core().SetSite(site);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetClientSite(IOleClientSite** site) override {
        if (!site) return E_POINTER;
        *site = ComPtr<IOleClientSite>(Core().Site()).Detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Close(DWORD option) override {
        if (option != OLECLOSE_NOSAVE && Core().dirty && Core().Site()) Core().Site()->SaveObject();
        Core().Deactivate();
        if (auto& holder = Core().AdviseHolder()) holder->SendOnClose();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker** moniker) override {
        if (moniker) *moniker = nullptr;
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetClipboardData(DWORD, IDataObject** data) override {
        if (data) *data = nullptr;
        return E_NOTIMPL;
    }

    HRESULT STDMETHODCALLTYPE DoVerb(LONG verb, LPMSG, IOleClientSite* site, LONG, HWND,
                                     LPCRECT place) override {
        if (site && !Core().Site()) Core().SetSite(site);
        return Guard("Kavidex", IID_IOleObject, [&]() -> HRESULT {
            switch (verb) {
            case OLEIVERB_SHOW:
            case OLEIVERB_INPLACEACTIVATE: return Core().Activate(false, place);
            case OLEIVERB_PRIMARY:
            case OLEIVERB_UIACTIVATE: return Core().Activate(true, place);
            case OLEIVERB_HIDE: return Core().Hide();
            case OLEIVERB_DISCARDUNDOSTATE: return S_OK;
            default:
                return verb > 0 ? OLEOBJ_S_INVALIDVERB : E_NOTIMPL; // own window, property pages
            }
        });
    }
    HRESULT STDMETHODCALLTYPE EnumVerbs(IEnumOLEVERB** verbs) override;
    HRESULT STDMETHODCALLTYPE Update() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE IsUpToDate() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetUserClassID(CLSID* clsid) override {
        if (!clsid) return E_POINTER;
        *clsid = *Core().Class().clsid;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetUserType(DWORD, LPOLESTR* name) override {
        if (!name) return E_POINTER;
        const std::wstring_view text = Core().Class().description;
        *name = static_cast<LPOLESTR>(CoTaskMemAlloc((text.size() + 1) * sizeof(OLECHAR)));
        if (!*name) return E_OUTOFMEMORY;
        text.copy(*name, text.size());
        (*name)[text.size()] = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetExtent(DWORD aspect, SIZEL* extent) override {
        if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
        return extent ? Core().SetExtent(*extent) : E_POINTER;
    }
    HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, SIZEL* extent) override {
        if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
        if (!extent) return E_POINTER;
        *extent = Core().Extent();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Advise(IAdviseSink* sink, DWORD* cookie) override {
        auto& holder = Core().AdviseHolder();
        return holder ? holder->Advise(sink, cookie) : E_OUTOFMEMORY;
    }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override {
        auto& holder = Core().AdviseHolder();
        return holder ? holder->Unadvise(cookie) : OLE_E_NOCONNECTION;
    }
    HRESULT STDMETHODCALLTYPE EnumAdvise(IEnumSTATDATA** list) override {
        auto& holder = Core().AdviseHolder();
        return holder ? holder->EnumAdvise(list) : E_OUTOFMEMORY;
    }
    HRESULT STDMETHODCALLTYPE GetMiscStatus(DWORD aspect, DWORD* status) override {
        if (!status) return E_POINTER;
        *status = aspect == DVASPECT_CONTENT ? Core().Class().miscStatus : 0;
        return aspect == DVASPECT_CONTENT ? S_OK : DV_E_DVASPECT;
    }
    HRESULT STDMETHODCALLTYPE SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

protected:
    ~OleObject() = default;
    virtual ControlCore& Core() = 0;
};

} // namespace kavidex::com
