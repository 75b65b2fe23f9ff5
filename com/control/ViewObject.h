// IViewObject2: the control's picture where it has no window (design time, printing, metafiles).
#pragma once

#include "com/control/ControlCore.h"
#include "com/dispatch/ErrorBoundary.h"

namespace kavidex::com {

class ViewObject : public IViewObject2 {
public:
    HRESULT STDMETHODCALLTYPE Draw(DWORD aspect, LONG, void*, DVTARGETDEVICE*, HDC, HDC device,
                                   LPCRECTL bounds, LPCRECTL, BOOL(STDMETHODCALLTYPE*)(ULONG_PTR),
                                   ULONG_PTR) override {
        if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
        if (!device || !bounds) return E_POINTER;
        RECT place{bounds->left, bounds->top, bounds->right, bounds->bottom};
        // The windows draw in pixels from the top down, whatever the host's mapping is. A metafile
        // cannot say where its units lie and is drawn as it stands.
        const bool screen = GetDeviceCaps(device, TECHNOLOGY) != DT_METAFILE;
        const int state = SaveDC(device);
        if (screen) {
            LPtoDP(device, reinterpret_cast<POINT*>(&place), 2);
            SetMapMode(device, MM_TEXT);
            SetWindowOrgEx(device, 0, 0, nullptr);
            SetViewportOrgEx(device, 0, 0, nullptr);
        }
        const RECT upright{place.left < place.right ? place.left : place.right,
                           place.top < place.bottom ? place.top : place.bottom,
                           place.left < place.right ? place.right : place.left,
                           place.top < place.bottom ? place.bottom : place.top};
        const HRESULT result =
            Guard("Kavidex", IID_IViewObject2, [&] { return Core().Draw(device, upright); });
        RestoreDC(device, state);
        return result;
    }
    HRESULT STDMETHODCALLTYPE GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC,
                                          LOGPALETTE** colors) override {
        if (colors) *colors = nullptr;
        return S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Freeze(DWORD, LONG, void*, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Unfreeze(DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) override {
        Core().viewAdvice = {aspects, flags, ComPtr<IAdviseSink>(sink)};
        if (flags & ADVF_PRIMEFIRST) Core().ViewChanged();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) override {
        const auto& advice = Core().viewAdvice;
        if (aspects) *aspects = advice.aspects;
        if (flags) *flags = advice.flags;
        if (sink) *sink = ComPtr<IAdviseSink>(advice.sink).Detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, LONG, DVTARGETDEVICE*,
                                        LPSIZEL extent) override {
        if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
        if (!extent) return E_POINTER;
        *extent = Core().Extent();
        return S_OK;
    }

protected:
    ~ViewObject() = default;
    virtual ControlCore& Core() = 0;
};

} // namespace kavidex::com
