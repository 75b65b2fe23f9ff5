// IOleControl: mnemonics, ambient properties, silence of events.
#pragma once

#include "com/control/ControlCore.h"
#include "com/dispatch/ErrorBoundary.h"

namespace kavidex::com {

class OleControl : public IOleControl {
public:
    HRESULT STDMETHODCALLTYPE GetControlInfo(CONTROLINFO* info) override {
        if (!info) return E_POINTER;
        *info = {sizeof *info, nullptr, 0,
                 0}; // no mnemonics of its own; Return and Escape stay the host's
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnMnemonic(MSG*) override {
        return Guard("Kavidex", IID_IOleControl, [&] { return Core().ActivateUserInterface(); });
    }
    HRESULT STDMETHODCALLTYPE OnAmbientPropertyChange(DISPID) override {
        Core().FollowAmbients();
        Core().ViewChanged();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FreezeEvents(BOOL freeze) override {
        int& frozen = Core().frozen;
        frozen = freeze ? frozen + 1 : frozen > 0 ? frozen - 1 : 0;
        return S_OK;
    }

protected:
    ~OleControl() = default;
    virtual ControlCore& Core() = 0;
};

} // namespace kavidex::com
