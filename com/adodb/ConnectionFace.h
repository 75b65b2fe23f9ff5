// Connections across the COM border: what a host hands to DbConnection, and what it gets back.
#pragma once

#include "com/dispatch/Convert.h"
#include "data/Connection.h"

namespace kavidex::com::adodb {

// Our own open connections come through directly, unless their LateBound is set; any other object
// is served by the ADO engine, one engine an object. Null for nothing.
data::ConnectionPtr ConnectionFrom(const ComPtr<IDispatch>& object);

// The host's own object where it handed one over, else an ADODB-compatible face; the same object as
// long as one is alive. Null for null.
ComPtr<IDispatch> ObjectOf(const data::ConnectionPtr& connection);

} // namespace kavidex::com::adodb

namespace kavidex::com {

template <>
struct Convert<data::ConnectionPtr> {
    static constexpr VARTYPE type = VT_DISPATCH;
    static data::ConnectionPtr From(const Variant& value) {
        return adodb::ConnectionFrom(value.ToDispatch());
    }
    static Variant To(const data::ConnectionPtr& value) { return {adodb::ObjectOf(value)}; }
};

} // namespace kavidex::com
