#include "com/adodb/ConnectionFace.h"

#include <map>

#include "com/adodb/ConnectionObject.h"
#include "data/win32/LateAdoConnection.h"
#include "platform/Error.h"
#include "platform/ErrorNumber.h"

namespace kavidex::com::adodb {

namespace {

using data::win32::LateAdoConnection;

// An engine holds its object, so an address in here is good while its engine lives.
std::map<IUnknown*, std::weak_ptr<LateAdoConnection>>& Engines() {
    static std::map<IUnknown*, std::weak_ptr<LateAdoConnection>> engines;
    return engines;
}

// Refused, before anything is kept: the object lacks what will be called.
void Demand(const ComPtr<IDispatch>& object) {
    const platform::win32::Late given(object);
    for (const wchar_t* const name : {L"State", L"Properties", L"Execute", L"BeginTrans"})
        if (!given.Has(name))
            throw platform::Error(platform::errors::invalidPropertyValue,
                                  "Invalid property value: a connection has a member " +
                                      platform::win32::FromWide(name));
}

data::ConnectionPtr EngineFor(const ComPtr<IDispatch>& object) {
    auto& engines = Engines();
    std::erase_if(engines, [](const auto& entry) { return entry.second.expired(); });
    auto& known = engines[object.Query<IUnknown>().Get()];
    if (auto engine = known.lock()) return engine;
    Demand(object);
    auto made = std::make_shared<LateAdoConnection>(platform::win32::Late(object));
    known = made;
    return made;
}

} // namespace

data::ConnectionPtr ConnectionFrom(const ComPtr<IDispatch>& object) {
    if (!object) return nullptr;
    if (auto own = NativeOf<data::Connection>(object.Get())) return own;
    return EngineFor(object);
}

ComPtr<IDispatch> ObjectOf(const data::ConnectionPtr& connection) {
    if (!connection) return {};
    if (const auto* late = dynamic_cast<const LateAdoConnection*>(connection.get()))
        return late->Object();
    if (ConnectionObject* known = ConnectionObject::Over(connection.get()))
        return ComPtr<IDispatch>(known);
    return Make<ConnectionObject>(connection);
}

} // namespace kavidex::com::adodb
