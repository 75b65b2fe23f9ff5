#include "com/adodb/ConnectionFace.h"

#include <map>

#include "com/adodb/ConnectionObject.h"
#include "data/win32/LateAdoConnection.h"

namespace kavidex::com::adodb {

namespace {

using data::win32::LateAdoConnection;

// An engine holds its object, so an address in here is good while its engine lives.
std::map<IUnknown*, std::weak_ptr<LateAdoConnection>>& Engines() {
    static std::map<IUnknown*, std::weak_ptr<LateAdoConnection>> engines;
    return engines;
}

data::ConnectionPtr EngineFor(const ComPtr<IDispatch>& object) {
    auto& engines = Engines();
    std::erase_if(engines, [](const auto& entry) { return entry.second.expired(); });
    auto& known = engines[object.Query<IUnknown>().Get()];
    if (auto engine = known.lock()) return engine;
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
