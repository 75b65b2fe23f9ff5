#include "com/control/Control.h"

#include "com/dispatch/Resolve.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/win32/Late.h"
#include "platform/win32/OwnCall.h"

namespace kavidex::com {

Control::Control(const ClassRow& row)
    : ConnectionPointHub(*row.events), lclRow(row), lclCore(*this, row) {}

Control::~Control() = default;

void Control::Destroy() {
    Events().DisconnectAll();
    Changes().DisconnectAll();
    lclCore.Leave();
    platform::win32::AfterOwnCalls([this] { delete this; });
}

void Control::Shutdown() {
    lclCore.Close();
    Events().DisconnectAll();
    Changes().DisconnectAll();
}

HRESULT STDMETHODCALLTYPE Control::GetClassID(CLSID* clsid) {
    if (!clsid) return E_POINTER;
    *clsid = *lclRow.clsid;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Control::GetWindow(HWND* window) {
    if (!window) return E_POINTER;
    *window = lclCore.Handle();
    return *window ? S_OK : E_FAIL;
}

void* Control::Further(REFIID iid) {
    struct {
        const IID& iid;
        void* face;
    } const faces[] = {
        {IID_IOleObject, static_cast<IOleObject*>(this)},
        {IID_IOleWindow, static_cast<IOleWindow*>(static_cast<IOleInPlaceObject*>(this))},
        {IID_IOleInPlaceObject, static_cast<IOleInPlaceObject*>(this)},
        {IID_IOleInPlaceActiveObject, static_cast<IOleInPlaceActiveObject*>(this)},
        {IID_IOleControl, static_cast<IOleControl*>(this)},
        {IID_IViewObject, static_cast<IViewObject2*>(this)},
        {IID_IViewObject2, static_cast<IViewObject2*>(this)},
        {IID_IPersist, static_cast<IPersist*>(static_cast<IPersistStreamInit*>(this))},
        {IID_IPersistStreamInit, static_cast<IPersistStreamInit*>(this)},
        {IID_IPersistPropertyBag, static_cast<IPersistPropertyBag*>(this)},
        {IID_IPersistStorage, static_cast<IPersistStorage*>(this)},
        {IID_IPerPropertyBrowsing, static_cast<IPerPropertyBrowsing*>(this)},
        {IID_IProvideClassInfo, static_cast<IProvideClassInfo2*>(this)},
        {IID_IProvideClassInfo2, static_cast<IProvideClassInfo2*>(this)},
        {IID_IConnectionPointContainer, static_cast<IConnectionPointContainer*>(this)},
    };
    for (const auto& face : faces)
        if (face.iid == iid) return face.face;
    return nullptr;
}

Variant Control::Reference(VARTYPE type, void* place) {
    VARIANT raw;
    raw.vt = static_cast<VARTYPE>(VT_BYREF | type);
    raw.byref = place;
    return Variant::Attach(raw);
}

void Control::RaiseList(DISPID event, std::span<const Variant> arguments) {
    if (lclCore.frozen > 0 || !Events().HasSinks()) return;
    const ComPtr<IDispatch> alive(this); // a handler may drop the control
    const HRESULT result = Fire(Events(), event, arguments);
    if (FAILED(result))
        platform::TheWorkstation().log.Write(
            "Control::Raise", "Event " + std::to_string(event) +
                                  " failed in the host: " + platform::win32::HresultText(result));
}

void Control::Changed(std::string_view savedName) {
    lclCore.dirty = true;
    lclCore.ViewChanged();
    if (!Changes().HasSinks()) return;
    const ComPtr<IDispatch> alive(this);
    const DISPID id = IdOfMember(Members(), platform::win32::ToWide(savedName).c_str());
    for (const auto& sink : Changes().Sinks())
        static_cast<IPropertyNotifySink*>(static_cast<void*>(sink.Get()))->OnChanged(id);
}

} // namespace kavidex::com
