// The base of the objects that work on a connection: what fails in a call stands in the
// connection's Errors afterwards, as ADO's callers expect.
#pragma once

#include "com/dispatch/Automation.h"

namespace kavidex::com::adodb {

class ConnectionObject;

class Reporting : public Automation {
public:
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* error,
                                     UINT* wrongArgument) override;

protected:
    // Null when the object has no connection.
    virtual ConnectionObject* Reporter() = 0;
};

} // namespace kavidex::com::adodb
