#include "host/ControlSite.h"

#include "platform/Error.h"
#include "platform/win32/Variant.h"

namespace kavidex::host {

using platform::win32::ComPtr;

namespace {

void Demand(HRESULT result, const char* step) {
    if (FAILED(result))
        throw platform::Error(static_cast<std::int32_t>(result), step, "kavidex-host");
}

constexpr DISPID ambientUserMode = -709, ambientUiDead = -710, ambientLocale = -705;

} // namespace

ControlSite::ControlSite(HWND frame, EventHandler onEvent)
    : lclFrame(frame), lclOnEvent(std::move(onEvent)) {}

void ControlSite::Open(const wchar_t* progId, const RECT& place) {
    lclPlace = place;
    CLSID clsid;
    Demand(CLSIDFromProgID(progId, &clsid), "The control is not registered.");
    Demand(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IOleObject,
                            reinterpret_cast<void**>(lclObject.Put())),
           "The control cannot be created.");
    Demand(lclObject->SetClientSite(this), "The control refuses its site.");
    ComPtr<IPersistStreamInit> state;
    if (SUCCEEDED(lclObject->QueryInterface(IID_IPersistStreamInit,
                                            reinterpret_cast<void**>(state.Put()))))
        Demand(state->InitNew(), "The control cannot start with its defaults.");
    Demand(lclObject->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(lclControl.Put())),
           "The control cannot be automated.");
    ConnectEvents();
    Demand(lclObject->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, this, 0, lclFrame, &lclPlace),
           "The control cannot be activated.");
    Demand(lclObject->QueryInterface(IID_IOleInPlaceObject,
                                     reinterpret_cast<void**>(lclInPlace.Put())),
           "The control has no window.");
    Place(place);
}

void ControlSite::Close() {
    if (lclEvents) lclEvents->Unadvise(lclCookie);
    lclEvents.Reset();
    if (lclInPlace) lclInPlace->InPlaceDeactivate();
    lclInPlace.Reset();
    lclActive.Reset();
    lclControl.Reset();
    if (lclObject) {
        lclObject->Close(OLECLOSE_NOSAVE);
        lclObject->SetClientSite(nullptr);
    }
    lclObject.Reset();
}

// The source interface and the names of its events come from the control's own type information.
void ControlSite::ConnectEvents() {
    ComPtr<IProvideClassInfo2> info;
    ComPtr<IConnectionPointContainer> container;
    Demand(lclObject->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(info.Put())),
           "The control does not tell its events.");
    Demand(lclObject->QueryInterface(IID_IConnectionPointContainer,
                                     reinterpret_cast<void**>(container.Put())),
           "The control offers no events.");
    Demand(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &lclEventInterface),
           "The control has no default events.");
    ComPtr<ITypeInfo> own, events;
    ComPtr<ITypeLib> library;
    UINT index = 0;
    Demand(info->GetClassInfo(own.Put()), "The control has no type information.");
    Demand(own->GetContainingTypeLib(library.Put(), &index), "The control has no type library.");
    Demand(library->GetTypeInfoOfGuid(lclEventInterface, events.Put()),
           "The events are not in the type library.");
    TYPEATTR* attributes = nullptr;
    Demand(events->GetTypeAttr(&attributes), "The events cannot be read.");
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
        FUNCDESC* function = nullptr;
        if (FAILED(events->GetFuncDesc(i, &function))) continue;
        BSTR name = nullptr;
        UINT count = 0;
        if (SUCCEEDED(events->GetNames(function->memid, &name, 1, &count)) && count == 1)
            lclEventNames[function->memid] = platform::win32::FromBstr(name);
        SysFreeString(name);
        events->ReleaseFuncDesc(function);
    }
    events->ReleaseTypeAttr(attributes);
    Demand(container->FindConnectionPoint(lclEventInterface, lclEvents.Put()),
           "The control does not raise its events.");
    Demand(lclEvents->Advise(static_cast<IDispatch*>(this), &lclCookie),
           "The control refuses the sink of its events.");
}

void ControlSite::Place(const RECT& place) {
    lclPlace = place;
    if (!lclObject) return;
    HDC screen = GetDC(nullptr);
    SIZEL extent{MulDiv(place.right - place.left, 2540, GetDeviceCaps(screen, LOGPIXELSX)),
                 MulDiv(place.bottom - place.top, 2540, GetDeviceCaps(screen, LOGPIXELSY))};
    ReleaseDC(nullptr, screen);
    lclObject->SetExtent(DVASPECT_CONTENT, &extent);
    if (lclInPlace) lclInPlace->SetObjectRects(&place, &place);
}

bool ControlSite::TranslateKey(MSG& message) {
    return lclActive && lclActive->TranslateAccelerator(&message) == S_OK;
}

void ControlSite::Focus() {
    if (lclObject) lclObject->DoVerb(OLEIVERB_UIACTIVATE, nullptr, this, 0, lclFrame, &lclPlace);
}

HRESULT ControlSite::QueryInterface(REFIID iid, void** object) {
    *object = nullptr;
    if (iid == IID_IUnknown || iid == IID_IOleClientSite)
        *object = static_cast<IOleClientSite*>(this);
    else if (iid == IID_IOleInPlaceSite || iid == IID_IOleWindow)
        *object = static_cast<IOleInPlaceSite*>(this);
    else if (iid == IID_IOleInPlaceFrame || iid == IID_IOleInPlaceUIWindow)
        *object = static_cast<IOleInPlaceFrame*>(this);
    else if (iid == IID_IOleControlSite)
        *object = static_cast<IOleControlSite*>(this);
    else if (iid == IID_IDispatch || iid == lclEventInterface)
        *object = static_cast<IDispatch*>(this);
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG ControlSite::Release() {
    const ULONG left = --lclReferences;
    if (left == 0) delete this;
    return left;
}

// A key that the control gives back. There is no other control to tab to: around it goes again.
HRESULT ControlSite::TranslateAccelerator(MSG* message, DWORD modifiers) {
    constexpr DWORD shift = 1;
    if (message->message != WM_KEYDOWN || message->wParam != VK_TAB || (modifiers & ~shift))
        return S_FALSE;
    ::SetFocus(lclFrame); // which hands it to the control
    return S_OK;
}

HRESULT ControlSite::GetContainer(IOleContainer** container) {
    *container = nullptr;
    return E_NOINTERFACE;
}

HRESULT ControlSite::GetWindow(HWND* window) {
    *window = lclFrame;
    return S_OK;
}

HRESULT ControlSite::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                      LPRECT place, LPRECT clip, LPOLEINPLACEFRAMEINFO info) {
    *frame = this;
    AddRef();
    *document = nullptr;
    *place = *clip = lclPlace;
    info->fMDIApp = FALSE;
    info->hwndFrame = lclFrame;
    info->haccel = nullptr;
    info->cAccelEntries = 0;
    return S_OK;
}

HRESULT ControlSite::SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) {
    lclActive.Reset();
    if (object)
        object->QueryInterface(IID_IOleInPlaceActiveObject,
                               reinterpret_cast<void**>(lclActive.Put()));
    return S_OK;
}

HRESULT ControlSite::GetTypeInfoCount(UINT* count) {
    *count = 0;
    return S_OK;
}

HRESULT ControlSite::Ambient(DISPID member, VARIANT* result) {
    VariantInit(result);
    switch (member) {
    case ambientUserMode:
        result->vt = VT_BOOL;
        result->boolVal = VARIANT_TRUE;
        return S_OK;
    case ambientUiDead:
        result->vt = VT_BOOL;
        result->boolVal = VARIANT_FALSE;
        return S_OK;
    case ambientLocale:
        result->vt = VT_I4;
        result->lVal = static_cast<LONG>(GetUserDefaultLCID());
        return S_OK;
    default: return DISP_E_MEMBERNOTFOUND;
    }
}

HRESULT ControlSite::Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                            VARIANT* result, EXCEPINFO*, UINT*) {
    if ((flags & DISPATCH_PROPERTYGET) && member < 0 && result) return Ambient(member, result);
    const auto name = lclEventNames.find(member);
    if (name == lclEventNames.end()) return DISP_E_MEMBERNOTFOUND;
    std::vector<std::string> arguments; // the last argument comes first
    for (UINT i = parameters->cArgs; i-- > 0;)
        arguments.push_back(platform::win32::Variant(parameters->rgvarg[i]).ToText());
    lclOnEvent(name->second, arguments);
    return S_OK;
}

} // namespace kavidex::host
