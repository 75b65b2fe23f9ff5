// IPerPropertyBrowsing: a form designer offers the values of a property by name. There are no
// property pages: its property browser shows every property, with the help of the type library.
#pragma once

#include <olectl.h>

#include "com/dispatch/Automation.h"

namespace kavidex::com {

class PropertyBrowsing : public IPerPropertyBrowsing {
public:
    // The name of the present value.
    HRESULT STDMETHODCALLTYPE GetDisplayString(DISPID id, BSTR* text) override;
    HRESULT STDMETHODCALLTYPE MapPropertyToPage(DISPID id, CLSID* page) override;
    // The cookie of a name is its value.
    HRESULT STDMETHODCALLTYPE GetPredefinedStrings(DISPID id, CALPOLESTR* names,
                                                   CADWORD* cookies) override;
    HRESULT STDMETHODCALLTYPE GetPredefinedValue(DISPID id, DWORD cookie, VARIANT* value) override;

protected:
    ~PropertyBrowsing() = default;
    virtual Automation& Browsed() = 0;
};

} // namespace kavidex::com
