// IConnectionPointContainer: the two connection points of a control.
#pragma once

#include <olectl.h>

#include "com/control/ConnectionPoints.h"
#include "com/dispatch/ErrorBoundary.h"

namespace kavidex::com {

class ConnectionPointHub : public IConnectionPointContainer {
public:
    explicit ConnectionPointHub(REFIID events)
        : lclEvents(*this, events), lclChanges(*this, IID_IPropertyNotifySink) {}

    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override {
        if (!points) return E_POINTER;
        return Guard("Kavidex", IID_IConnectionPointContainer, [&] {
            using platform::win32::ComPtr;
            *points = EnumerateConnectionPoints({ComPtr<IConnectionPoint>(&lclEvents),
                                                 ComPtr<IConnectionPoint>(&lclChanges)})
                          .Detach();
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override {
        if (!point) return E_POINTER;
        *point = iid == lclEvents.Iid()    ? &lclEvents
                 : iid == lclChanges.Iid() ? &lclChanges
                                           : nullptr;
        if (!*point) return CONNECT_E_NOCONNECTION;
        (*point)->AddRef();
        return S_OK;
    }

protected:
    ~ConnectionPointHub() = default;
    ConnectionPoint& Events() { return lclEvents; }
    ConnectionPoint& Changes() { return lclChanges; }

private:
    ConnectionPoint lclEvents, lclChanges;
};

} // namespace kavidex::com
