#include "com/dispatch/Automation.h"

#include <algorithm>

#include "com/Module.h"
#include "com/dispatch/ErrorBoundary.h"
#include "com/dispatch/Resolve.h"

namespace kavidex::com {

HRESULT STDMETHODCALLTYPE Automation::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == *Members().iid)
        *object = static_cast<IDispatch*>(this);
    else if (iid == IID_ISupportErrorInfo)
        *object = static_cast<ISupportErrorInfo*>(this);
    else if (iid == iidNative)
        *object = static_cast<INative*>(this);
    else
        *object = Further(iid);
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG STDMETHODCALLTYPE Automation::AddRef() { return static_cast<ULONG>(++lclReferences); }

ULONG STDMETHODCALLTYPE Automation::Release() {
    const long left = --lclReferences;
    if (left == 0) {
        lclReferences = 1; // what the destructor hands out must not destroy it a second time
        Destroy();
    }
    return static_cast<ULONG>(left);
}

HRESULT STDMETHODCALLTYPE Automation::GetTypeInfoCount(UINT* count) {
    if (!count) return E_POINTER;
    *count = 1;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Automation::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
    if (!info) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    return TypeInfoOf(*Members().iid, info);
}

HRESULT STDMETHODCALLTYPE Automation::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                                    DISPID* ids) {
    if (!names || !ids || count == 0) return E_INVALIDARG;
    ids[0] = IdOfMember(Members(), names[0]);
    bool known = ids[0] != DISPID_UNKNOWN;
    for (UINT i = 1; i < count; ++i) {
        ids[i] = IdOfParameter(Members(), ids[0], names[i]);
        known = known && ids[i] != DISPID_UNKNOWN;
    }
    return known ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT STDMETHODCALLTYPE Automation::Invoke(DISPID id, REFIID, LCID, WORD flags,
                                             DISPPARAMS* parameters, VARIANT* result,
                                             EXCEPINFO* error, UINT* wrongArgument) {
    if (!parameters) return E_INVALIDARG;
    const ComPtr<IDispatch> alive(this); // a member may drop the host's last reference
    try {
        Variant value = Resolve(*this, id, flags, *parameters);
        if (result) *result = value.Detach();
        return S_OK;
    } catch (const Refusal& refusal) {
        if (wrongArgument && refusal.argument >= 0 && parameters->cArgs > 0)
            *wrongArgument =
                parameters->cArgs - 1 -
                std::min<UINT>(parameters->cArgs - 1, static_cast<UINT>(refusal.argument));
        return refusal.result;
    } catch (...) {
        return Report(CurrentFailure(Members().source), error);
    }
}

HRESULT STDMETHODCALLTYPE Automation::InterfaceSupportsErrorInfo(REFIID iid) {
    return iid == IID_IDispatch || iid == *Members().iid || Further(iid) ? S_OK : S_FALSE;
}

void STDMETHODCALLTYPE Automation::NativeObject(const std::type_info& wanted,
                                                std::shared_ptr<void>& object) {
    object = Native(wanted);
}

} // namespace kavidex::com
