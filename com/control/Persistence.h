// What the persistence interfaces ask of a control.
#pragma once

#include "com/control/Bags.h"
#include "com/control/ControlCore.h"
#include "com/dispatch/ErrorBoundary.h"

namespace kavidex::com {

class PersistentOwner {
public:
    virtual void LoadProperties(controls::PropertyBag& bag) = 0;
    virtual void SaveProperties(controls::PropertyBag& bag) const = 0;

protected:
    ~PersistentOwner() = default;
};

// A whole control to and from a stream; its size in the host goes with its properties.
HRESULT LoadFrom(IStream& stream, PersistentOwner& owner, ControlCore& core);
HRESULT SaveTo(IStream& stream, const PersistentOwner& owner, const ControlCore& core);
ULONG SavedSize(const PersistentOwner& owner, const ControlCore& core);
// A new control stays as it was made: the defaults of absent items are those of restoring.
inline HRESULT InitNew(ControlCore& core) {
    core.dirty = false;
    return S_OK;
}

} // namespace kavidex::com
