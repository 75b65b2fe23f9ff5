#include "platform/win32/ole/ControlSite.h"

#include <utility>

#include "platform/Error.h"
#include "platform/win32/OwnCall.h"

namespace kavidex::platform::win32 {

namespace {

void Demand(HRESULT result, const char* step) {
    if (FAILED(result)) throw Error(static_cast<std::int32_t>(result), step, "ControlSite");
}

constexpr DISPID ambientUserMode = -709, ambientUiDead = -710, ambientLocale = -705;

} // namespace

std::string TextOf(const Variant& argument) {
    try {
        if (!argument.IsArray()) return argument.ToText();
        std::string texts;
        for (const auto& element : ElementsOf(argument.Get()))
            texts += (texts.empty() ? "" : "|") + TextOf(element);
        return texts;
    } catch (const std::exception&) {
        return {};
    }
}

std::vector<Variant> SiteEvent::Arguments() const {
    std::vector<Variant> arguments;
    for (UINT i = parameters.cArgs; i-- > 0;) arguments.emplace_back(parameters.rgvarg[i]);
    return arguments;
}

ControlSite::ControlSite(HWND frame, SiteHooks hooks)
    : lclFrame(frame), lclHooks(std::move(hooks)) {}

HRESULT ControlSite::Note(const char* call) const {
    if (lclHooks.note) lclHooks.note(call);
    return S_OK;
}

void ControlSite::Open(const wchar_t* progId, const RECT& place) {
    CLSID clsid;
    Demand(CLSIDFromProgID(progId, &clsid), "The control is not registered.");
    ComPtr<IUnknown> object;
    Demand(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                            reinterpret_cast<void**>(object.Put())),
           "The control cannot be created.");
    Take(object, place);
}

void ControlSite::Take(const ComPtr<IUnknown>& object, const RECT& place, bool activate) {
    lclPlace = place;
    lclDeaf = false;
    lclObject = object.Query<IOleObject>(IID_IOleObject);
    if (!lclObject) Demand(E_NOINTERFACE, "The object cannot be embedded.");
    Demand(lclObject->SetClientSite(this), "The control refuses its site.");
    if (const auto state = object.Query<IPersistStreamInit>(IID_IPersistStreamInit))
        Demand(state->InitNew(), "The control cannot start with its defaults.");
    lclControl = object.Query<IDispatch>(IID_IDispatch);
    if (!lclControl) Demand(E_NOINTERFACE, "The control cannot be automated.");
    ConnectEvents();
    if (!activate) return;
    Demand(lclObject->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, this, 0, lclFrame, &lclPlace),
           "The control cannot be activated.");
    lclInPlace = object.Query<IOleInPlaceObject>(IID_IOleInPlaceObject);
    if (!lclInPlace) Demand(E_NOINTERFACE, "The control has no window.");
    Place(place);
}

void ControlSite::Close(bool hearing) {
    const ComPtr<IOleClientSite> alive(this); // the last of the control's references may go here
    if (!hearing) Disconnect();
    if (const auto window = std::exchange(lclInPlace, {})) {
        window->UIDeactivate();
        window->InPlaceDeactivate();
    }
    lclActive.Reset();
    lclControl.Reset();
    const auto object = std::exchange(lclObject, {});
    if (object) object->Close(OLECLOSE_NOSAVE);
    Disconnect();
    if (object) object->SetClientSite(nullptr);
}

void ControlSite::Disconnect() {
    lclDeaf = true;
    if (const auto events = std::exchange(lclEvents, {})) events->Unadvise(lclEventsCookie);
    if (const auto changes = std::exchange(lclChanges, {})) changes->Unadvise(lclChangesCookie);
}

HWND ControlSite::ControlWindow() const {
    HWND window = nullptr;
    if (lclInPlace) lclInPlace->GetWindow(&window);
    return window;
}

ComPtr<IConnectionPoint> ControlSite::Connect(REFIID iid, IUnknown* sink, DWORD& cookie) const {
    const auto container =
        lclObject.Query<IConnectionPointContainer>(IID_IConnectionPointContainer);
    ComPtr<IConnectionPoint> point;
    if (!container || FAILED(container->FindConnectionPoint(iid, point.Put())) ||
        FAILED(point->Advise(sink, &cookie)))
        return {};
    return point;
}

// A control without events, or that tells nothing of them, is used without.
void ControlSite::ConnectEvents() {
    if (FindEvents())
        lclEvents = Connect(lclEventInterface, static_cast<IDispatch*>(this), lclEventsCookie);
    lclChanges =
        Connect(IID_IPropertyNotifySink, static_cast<IPropertyNotifySink*>(this), lclChangesCookie);
}

// The source interface and the names of its events come from the control's own type information.
bool ControlSite::FindEvents() {
    const auto info = lclObject.Query<IProvideClassInfo2>(IID_IProvideClassInfo2);
    if (!info || FAILED(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &lclEventInterface)))
        return false;
    ComPtr<ITypeInfo> own, events;
    ComPtr<ITypeLib> library;
    UINT index = 0;
    TYPEATTR* attributes = nullptr;
    if (FAILED(info->GetClassInfo(own.Put())) ||
        FAILED(own->GetContainingTypeLib(library.Put(), &index)) ||
        FAILED(library->GetTypeInfoOfGuid(lclEventInterface, events.Put())) ||
        FAILED(events->GetTypeAttr(&attributes)))
        return true; // events without names
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
        FUNCDESC* function = nullptr;
        if (FAILED(events->GetFuncDesc(i, &function))) continue;
        BSTR name = nullptr;
        UINT count = 0;
        if (SUCCEEDED(events->GetNames(function->memid, &name, 1, &count)) && count == 1)
            lclEventNames[function->memid] = FromBstr(name);
        SysFreeString(name);
        events->ReleaseFuncDesc(function);
    }
    events->ReleaseTypeAttr(attributes);
    return true;
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
    else if (iid == IID_IPropertyNotifySink)
        *object = static_cast<IPropertyNotifySink*>(this);
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

HRESULT ControlSite::TranslateAccelerator(MSG* message, DWORD modifiers) {
    Note("SiteKey");
    return lclHooks.keyBack && lclHooks.keyBack(*message, modifiers) ? S_OK : S_FALSE;
}

HRESULT ControlSite::OnPosRectChange(LPCRECT place) {
    if (place && lclInPlace) lclInPlace->SetObjectRects(place, place);
    return S_OK;
}

HRESULT ControlSite::OnChanged(DISPID id) {
    if (!lclDeaf && lclHooks.propertyChanged) lclHooks.propertyChanged(id);
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
    Note(object ? "SetActiveObject" : "ClearActiveObject");
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

HRESULT ControlSite::Ambient(DISPID member, VARIANT* result) const {
    VariantInit(result);
    if (lclHooks.ambient)
        if (const auto own = lclHooks.ambient(member))
            return VariantCopy(result, const_cast<VARIANT*>(&own->Get()));
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
    if (!(flags & DISPATCH_METHOD)) return DISP_E_MEMBERNOTFOUND;
    if (lclDeaf) return S_OK;
    const auto name = lclEventNames.find(member);
    const ComPtr<IDispatch> alive(this); // whatever the owner does on the event
    const OwnCall call;
    if (!parameters) return E_INVALIDARG;
    try {
        if (lclHooks.event)
            lclHooks.event(
                {member, name == lclEventNames.end() ? std::string() : name->second, *parameters});
        return S_OK;
    } catch (...) { // nothing that a control hands over may end its host
        return E_FAIL;
    }
}

} // namespace kavidex::platform::win32
