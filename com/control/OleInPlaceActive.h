// IOleInPlaceActiveObject: keys and activation of the host's frame. A key that the control has no
// use for goes back to the host.
#pragma once

#include "com/control/ControlCore.h"
#include "com/dispatch/ErrorBoundary.h"

namespace kavidex::com {

class OleInPlaceActive : public IOleInPlaceActiveObject {
public:
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG message) override {
        if (!message) return E_POINTER;
        return Guard("Kavidex", IID_IOleInPlaceActiveObject,
                     [&] { return Core().TranslateKey(*message); });
    }
    HRESULT STDMETHODCALLTYPE OnFrameWindowActivate(BOOL active) override {
        Core().FrameActivated(active != FALSE);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnDocWindowActivate(BOOL active) override {
        Core().FrameActivated(active != FALSE);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) override {
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return S_OK; }

protected:
    ~OleInPlaceActive() = default;
    virtual ControlCore& Core() = 0;
};

} // namespace kavidex::com
