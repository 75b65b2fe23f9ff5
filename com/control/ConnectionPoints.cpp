#include "com/control/ConnectionPoints.h"

#include <olectl.h>

#include <algorithm>

#include "com/control/ListEnumerator.h"

namespace kavidex::com {

namespace {

using platform::win32::ComPtr;
using platform::win32::Variant;

constexpr const char* source = "Kavidex";

using Connection = std::pair<DWORD, ComPtr<IUnknown>>;

CONNECTDATA CopyConnection(const Connection& connection) {
    return {ComPtr<IUnknown>(connection.second).Detach(), connection.first};
}
IConnectionPoint* CopyPoint(const ComPtr<IConnectionPoint>& point) {
    return ComPtr<IConnectionPoint>(point).Detach();
}

using ConnectionEnumerator =
    ListEnumerator<IEnumConnections, CONNECTDATA, Connection, CopyConnection>;
using PointEnumerator =
    ListEnumerator<IEnumConnectionPoints, IConnectionPoint*, ComPtr<IConnectionPoint>, CopyPoint>;

} // namespace

HRESULT STDMETHODCALLTYPE ConnectionPoint::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = iid == IID_IUnknown || iid == IID_IConnectionPoint ? this : nullptr;
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ConnectionPoint::GetConnectionInterface(IID* iid) {
    if (!iid) return E_POINTER;
    *iid = lclIid;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE
ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** owner) {
    if (!owner) return E_POINTER;
    lclOwner.AddRef();
    *owner = &lclOwner;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) {
    if (!sink || !cookie) return E_POINTER;
    *cookie = 0;
    return Guard(source, IID_IConnectionPoint, [&]() -> HRESULT {
        ComPtr<IUnknown> wanted;
        // Some hosts answer to IDispatch only and leave the events' own id out.
        if (FAILED(sink->QueryInterface(lclIid, reinterpret_cast<void**>(wanted.Put()))) &&
            (lclIid == IID_IPropertyNotifySink ||
             FAILED(sink->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(wanted.Put())))))
            return CONNECT_E_CANNOTCONNECT;
        lclSinks.emplace_back(++lclLastCookie, std::move(wanted));
        *cookie = lclLastCookie;
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE ConnectionPoint::Unadvise(DWORD cookie) {
    const auto found = std::find_if(lclSinks.begin(), lclSinks.end(),
                                    [&](const auto& sink) { return sink.first == cookie; });
    if (found == lclSinks.end()) return CONNECT_E_NOCONNECTION;
    const ComPtr<IUnknown> last = found->second; // released when the list is in order again
    lclSinks.erase(found);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ConnectionPoint::EnumConnections(IEnumConnections** connections) {
    if (!connections) return E_POINTER;
    return Guard(source, IID_IConnectionPoint, [&] {
        *connections = new ConnectionEnumerator(lclSinks, 0);
        return S_OK;
    });
}

std::vector<ComPtr<IUnknown>> ConnectionPoint::Sinks() const {
    std::vector<ComPtr<IUnknown>> sinks;
    for (const auto& sink : lclSinks) sinks.push_back(sink.second);
    return sinks;
}

ComPtr<IEnumConnectionPoints>
EnumerateConnectionPoints(std::vector<ComPtr<IConnectionPoint>> points) {
    return ComPtr<IEnumConnectionPoints>::Attach(new PointEnumerator(std::move(points), 0));
}

HRESULT Fire(const ConnectionPoint& point, DISPID event, std::span<const Variant> arguments) {
    std::vector<VARIANT> reversed;
    for (auto i = arguments.size(); i-- > 0;) reversed.push_back(arguments[i].Get());
    HRESULT result = S_OK;
    for (const auto& sink : point.Sinks()) {
        DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
        const HRESULT called = static_cast<IDispatch*>(static_cast<void*>(sink.Get()))
                                   ->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                            &parameters, nullptr, nullptr, nullptr);
        if (FAILED(called) && called != DISP_E_MEMBERNOTFOUND && called != E_NOTIMPL &&
            SUCCEEDED(result))
            result = called;
    }
    return result;
}

} // namespace kavidex::com
