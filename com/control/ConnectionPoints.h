// The sinks of a control: its events and the changes of its properties.
#pragma once

#include <windows.h>
#include <ocidl.h>

#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "platform/win32/ComPtr.h"
#include "platform/win32/Variant.h"

namespace kavidex::com {

// One connection point; it lives inside its owner and shares the owner's reference count.
class ConnectionPoint final : public IConnectionPoint {
public:
    ConnectionPoint(IConnectionPointContainer& owner, REFIID iid) : lclOwner(owner), lclIid(iid) {}
    virtual ~ConnectionPoint() = default;
    ConnectionPoint(const ConnectionPoint&) = delete;
    ConnectionPoint& operator=(const ConnectionPoint&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return lclOwner.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return lclOwner.Release(); }

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override;
    HRESULT STDMETHODCALLTYPE
    GetConnectionPointContainer(IConnectionPointContainer** owner) override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override;

    const IID& Iid() const { return lclIid; }
    // Held for the caller: a sink may disconnect while it is called.
    std::vector<platform::win32::ComPtr<IUnknown>> Sinks() const;
    bool HasSinks() const { return !lclSinks.empty(); }
    void DisconnectAll() { lclSinks.clear(); }

private:
    IConnectionPointContainer& lclOwner;
    const IID lclIid;
    DWORD lclLastCookie = 0;
    std::vector<std::pair<DWORD, platform::win32::ComPtr<IUnknown>>> lclSinks;
};

// Enumerators over fixed lists, counted like every object.
platform::win32::ComPtr<IEnumConnectionPoints>
EnumerateConnectionPoints(std::vector<platform::win32::ComPtr<IConnectionPoint>> points);

// Calls every sink with the arguments, in the order of the event's declaration. A sink that does
// not handle the event is no failure; the first other failure is returned.
HRESULT Fire(const ConnectionPoint& point, DISPID event,
             std::span<const platform::win32::Variant> arguments);

} // namespace kavidex::com
