#include "com/adodb/ConnectionFace.h"

#include <map>
#include <mutex>

#include "com/adodb/ConnectionObject.h"
#include "data/win32/LateAdoConnection.h"
#include "platform/Error.h"
#include "platform/ErrorNumber.h"

namespace kavidex::com::adodb {

namespace {

using data::win32::LateAdoConnection;

// The engines that there are, for the threads of a host. An engine holds its object, so an address
// in here is good while its engine lives.
struct Engines {
    std::mutex guard;
    std::map<IUnknown*, std::weak_ptr<LateAdoConnection>> known;

    std::shared_ptr<LateAdoConnection> Of(IUnknown* object) {
        const std::lock_guard lock(guard);
        const auto found = known.find(object);
        return found == known.end() ? nullptr : found->second.lock();
    }
    // The one that another thread has added meanwhile, or this.
    std::shared_ptr<LateAdoConnection> Added(IUnknown* object,
                                             std::shared_ptr<LateAdoConnection> engine) {
        const std::lock_guard lock(guard);
        std::erase_if(known, [](const auto& entry) { return entry.second.expired(); });
        const auto place = known.try_emplace(object, engine).first;
        auto there = place->second.lock();
        if (!there) place->second = engine;
        return there ? there : engine;
    }
};

Engines& AllEngines() {
    static Engines engines;
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
    const ComPtr<IUnknown> identity = object.Query<IUnknown>();
    if (auto engine = AllEngines().Of(identity.Get())) return engine;
    // No lock is held while the host's object is called: it may live on another thread.
    Demand(object);
    return AllEngines().Added(identity.Get(),
                              std::make_shared<LateAdoConnection>(platform::win32::Late(object)));
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
    if (auto known = ConnectionObject::Over(connection.get())) return known;
    return Make<ConnectionObject>(connection);
}

} // namespace kavidex::com::adodb
