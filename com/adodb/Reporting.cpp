#include "com/adodb/Reporting.h"

#include "com/adodb/ConnectionObject.h"

namespace kavidex::com::adodb {

HRESULT STDMETHODCALLTYPE Reporting::Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                            DISPPARAMS* parameters, VARIANT* result,
                                            EXCEPINFO* error, UINT* wrongArgument) {
    EXCEPINFO own = {};
    EXCEPINFO& info = error ? *error : own;
    // The call may drop the last reference that a script holds on the connection.
    const ComPtr<ConnectionObject> reporter(Reporter());
    const HRESULT outcome =
        Automation::Invoke(id, iid, locale, flags, parameters, result, &info, wrongArgument);
    if (outcome == DISP_E_EXCEPTION) {
        ConnectionObject* target = reporter ? reporter.Get() : Reporter();
        if (target)
            target->Note({info.scode, platform::win32::FromBstr(info.bstrDescription),
                          platform::win32::FromBstr(info.bstrSource)});
    }
    SysFreeString(own.bstrDescription);
    SysFreeString(own.bstrSource);
    SysFreeString(own.bstrHelpFile);
    return outcome;
}

} // namespace kavidex::com::adodb
