// IOleInPlaceObject: the control's window in its host's.
#pragma once

#include "com/control/ControlCore.h"
#include "com/dispatch/ErrorBoundary.h"

namespace kavidex::com {

class OleInPlace : public IOleInPlaceObject {
public:
    HRESULT STDMETHODCALLTYPE InPlaceDeactivate() override {
        Core().Deactivate();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE UIDeactivate() override {
        Core().DeactivateUserInterface();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetObjectRects(LPCRECT place, LPCRECT clip) override {
        if (!place || !clip) return E_POINTER;
        return Guard("Kavidex", IID_IOleInPlaceObject,
                     [&] { return Core().SetRects(*place, *clip); });
    }
    HRESULT STDMETHODCALLTYPE ReactivateAndUndo() override { return INPLACE_E_NOTUNDOABLE; }

protected:
    ~OleInPlace() = default;
    virtual ControlCore& Core() = 0;
};

} // namespace kavidex::com
