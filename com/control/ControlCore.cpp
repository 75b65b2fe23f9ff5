#include "com/control/ControlCore.h"

#include <commctrl.h>
#include <olectl.h>

#include "com/class_table.h"
#include "com/control/Metrics.h"
#include "platform/win32/ActivationScope.h"
#include "platform/win32/Late.h"
#include "platform/win32/Owner.h"

namespace kavidex::com {

namespace {

using platform::win32::Late;

constexpr UINT_PTR watchId = 1;

template <class Interface, class From>
ComPtr<Interface> Query(const ComPtr<From>& object, REFIID iid) {
    ComPtr<Interface> result;
    if (object) object->QueryInterface(iid, reinterpret_cast<void**>(result.Put()));
    return result;
}

RECT Sized(LONG left, LONG top, SIZE size) { return {left, top, left + size.cx, top + size.cy}; }

} // namespace

ControlCore::ControlCore(ControlOwner& owner, const ClassRow& row)
    : lclOwner(owner), lclExtent(ToHimetric(row.pixels)) {}

ControlCore::~ControlCore() = default;

void ControlCore::SetSite(IOleClientSite* site) {
    if (!site) Deactivate();
    lclSite = ComPtr<IOleClientSite>(site);
    if (site) FollowAmbients();
}

std::optional<bool> ControlCore::AmbientFlag(DISPID property) const {
    const auto ambients = Query<IDispatch>(lclSite, IID_IDispatch);
    if (!ambients) return std::nullopt;
    DISPPARAMS none{};
    platform::win32::Variant value;
    if (FAILED(ambients->Invoke(property, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                &none, value.Put(), nullptr, nullptr)) ||
        value.Type() != VT_BOOL)
        return std::nullopt;
    return value.ToBool();
}

ComPtr<IOleControlSite> ControlCore::ControlSite() const {
    return Query<IOleControlSite>(lclSite, IID_IOleControlSite);
}

HRESULT ControlCore::SetExtent(SIZEL extent) {
    if (extent.cx < 0 || extent.cy < 0) return E_INVALIDARG;
    if (extent.cx == lclExtent.cx && extent.cy == lclExtent.cy) return S_OK;
    lclExtent = extent;
    dirty = true;
    ViewChanged();
    return S_OK;
}

HRESULT ControlCore::Activate(bool userInterface, const RECT* place) {
    if (!IsActive()) {
        const HRESULT made = MakeActive(place);
        if (FAILED(made)) return made;
    } else {
        ShowWindow(Handle(), SW_SHOWNA);
    }
    return userInterface ? ActivateUserInterface() : S_OK;
}

HRESULT ControlCore::MakeActive(const RECT* given) {
    auto site = Query<IOleInPlaceSite>(lclSite, IID_IOleInPlaceSite);
    if (!site) return E_FAIL; // an unsited control has nowhere to show a window
    if (site->CanInPlaceActivate() != S_OK) return E_FAIL;
    HWND parent = nullptr;
    if (FAILED(site->GetWindow(&parent)) || !parent) return E_FAIL;
    site->OnInPlaceActivate();

    RECT place = given ? *given : Sized(0, 0, ToPixels(lclExtent)), clip{};
    OLEINPLACEFRAMEINFO info{};
    info.cb = sizeof info;
    RECT asked{};
    if (SUCCEEDED(site->GetWindowContext(lclFrame.Put(), lclDocument.Put(), &asked, &clip, &info)))
        place = asked;
    lclInPlaceSite = std::move(site);
    HWND window = nullptr;
    {
        const platform::win32::ActivationScope scope;
        window = Window().Create(parent, place);
    }
    if (!window) {
        Deactivate();
        return E_FAIL;
    }
    SetWindowSubclass(window, Watch, watchId, reinterpret_cast<DWORD_PTR>(this));
    platform::win32::SetHost(window);
    FollowAmbients();
    ShowWindow(window, SW_SHOWNA);
    lclSite->ShowObject();
    return S_OK;
}

HRESULT ControlCore::ActivateUserInterface() {
    if (!IsActive()) return Activate(true, nullptr);
    platform::win32::SetHost(Handle());
    if (!lclUiActive) {
        if (FAILED(lclInPlaceSite->OnUIActivate())) return E_FAIL;
        lclUiActive = true;
        IOleInPlaceActiveObject* self = &lclOwner.ActiveObject();
        if (lclFrame) lclFrame->SetActiveObject(self, nullptr);
        if (lclDocument) lclDocument->SetActiveObject(self, nullptr);
        if (lclFrame) lclFrame->SetBorderSpace(nullptr); // no tool bars of ours in the frame
        if (lclDocument) lclDocument->SetBorderSpace(nullptr);
        if (const auto site = ControlSite()) site->OnFocus(TRUE);
    }
    if (!Window().HasFocus()) Window().TakeFocus();
    return S_OK;
}

void ControlCore::DeactivateUserInterface() {
    if (!lclUiActive) return;
    lclUiActive = false;
    if (lclFrame) lclFrame->SetActiveObject(nullptr, nullptr);
    if (lclDocument) lclDocument->SetActiveObject(nullptr, nullptr);
    if (const auto site = ControlSite()) site->OnFocus(FALSE);
    if (lclInPlaceSite) lclInPlaceSite->OnUIDeactivate(FALSE);
}

void ControlCore::Deactivate() {
    DeactivateUserInterface();
    if (lclWindow && lclWindow->Handle()) {
        RemoveWindowSubclass(lclWindow->Handle(), Watch, watchId);
        lclWindow->Destroy();
    }
    lclFrame = nullptr;
    lclDocument = nullptr;
    if (auto site = std::move(lclInPlaceSite)) site->OnInPlaceDeactivate();
}

void ControlCore::Leave() {
    Deactivate();
    lclSite = nullptr;
}

void ControlCore::Close() {
    Leave();
    lclWindow.reset();
}

HRESULT ControlCore::SetRects(const RECT& place, const RECT& clip) {
    if (!IsActive()) return E_UNEXPECTED;
    lclWindow->Place(place);
    RECT seen{};
    HRGN region = nullptr;
    if (IntersectRect(&seen, &place, &clip) && !EqualRect(&seen, &place)) {
        OffsetRect(&seen, -place.left, -place.top);
        region = CreateRectRgnIndirect(&seen);
    }
    SetWindowRgn(Handle(), region, TRUE); // the window owns the region
    return S_OK;
}

HRESULT ControlCore::Hide() {
    DeactivateUserInterface();
    if (IsActive()) ShowWindow(Handle(), SW_HIDE);
    return S_OK;
}

HRESULT ControlCore::TranslateKey(MSG& message) {
    if (IsActive() && lclWindow->TranslateKey(message)) return S_OK;
    const auto site = ControlSite();
    if (!site) return S_FALSE;
    DWORD modifiers = 0; // KEYMOD_SHIFT, _CONTROL, _ALT
    if (GetKeyState(VK_SHIFT) < 0) modifiers |= 1;
    if (GetKeyState(VK_CONTROL) < 0) modifiers |= 2;
    if (GetKeyState(VK_MENU) < 0) modifiers |= 4;
    return site->TranslateAccelerator(&message, modifiers) == S_OK ? S_OK : S_FALSE;
}

void ControlCore::FrameActivated(bool active) {
    if (active && IsActive()) platform::win32::SetHost(Handle());
    if (active && lclUiActive && !Window().HasFocus()) Window().TakeFocus();
}

void ControlCore::FollowAmbients() {
    if (!Handle()) return;
    const bool dead = AmbientFlag(DISPID_AMBIENT_UIDEAD).value_or(false);
    EnableWindow(Handle(), dead ? FALSE : TRUE);
}

controls::win32::ControlWindow& ControlCore::Window() {
    if (!lclWindow) lclWindow = lclOwner.MakeWindow();
    return *lclWindow;
}

HRESULT ControlCore::Draw(HDC device, const RECT& place) {
    if (place.right <= place.left || place.bottom <= place.top) return E_INVALIDARG;
    const int state = SaveDC(device);
    Window().Draw(device, place);
    RestoreDC(device, state);
    return S_OK;
}

void ControlCore::ViewChanged() {
    if (!viewAdvice.sink || !(viewAdvice.aspects & DVASPECT_CONTENT)) return;
    const auto sink = viewAdvice.sink;
    if (viewAdvice.flags & ADVF_ONLYONCE) viewAdvice = {};
    sink->OnViewChange(DVASPECT_CONTENT, -1);
}

ComPtr<IOleAdviseHolder>& ControlCore::AdviseHolder() {
    if (!lclAdvise) CreateOleAdviseHolder(lclAdvise.Put());
    return lclAdvise;
}

// A click into any part of the control makes it the host's active one; the message climbs up from
// the child that was clicked.
LRESULT CALLBACK ControlCore::Watch(HWND window, UINT message, WPARAM wide, LPARAM data,
                                    UINT_PTR id, DWORD_PTR core) {
    auto* self = reinterpret_cast<ControlCore*>(core);
    if (message == WM_MOUSEACTIVATE || message == WM_SETFOCUS) {
        const ComPtr<IOleObject> alive(&self->lclOwner.Object());
        platform::win32::SetHost(window);
        const LRESULT result = DefSubclassProc(window, message, wide, data);
        if (self->IsActive() && !self->lclUiActive) self->ActivateUserInterface();
        return result;
    }
    if (message == WM_NCDESTROY) RemoveWindowSubclass(window, Watch, id);
    return DefSubclassProc(window, message, wide, data);
}

} // namespace kavidex::com
