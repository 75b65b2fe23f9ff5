// The container's side of one embedded control: its client site, its in-place site and frame, its
// ambient properties, the sink of its events and of its property changes. Any embeddable control of
// any maker, ours in the sample host as well as the web browser within ours.
#pragma once

#include <windows.h>

#include <ole2.h>
#include <olectl.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/win32/ComPtr.h"
#include "platform/win32/Variant.h"

namespace kavidex::platform::win32 {

struct SiteEvent {
    DISPID id;
    std::string name;       // from the control's type information; empty when it has none
    DISPPARAMS& parameters; // the last argument comes first; by-reference ones may be written

    std::vector<Variant> Arguments() const; // in the order of their declaration
};

// Whatever a control hands over: the elements of an array parted by bars, and nothing for what has
// no text.
std::string TextOf(const Variant& argument);

// What the owner wants to know or to decide; what is not set has its usual answer. An event's hook
// may throw: the control then hears of a failure.
struct SiteHooks {
    std::function<void(const SiteEvent&)> event{};
    // A key that the control gives back, and its modifiers (1: shift): true when it was used.
    std::function<bool(MSG&, DWORD)> keyBack{};
    std::function<std::optional<Variant>(DISPID)> ambient{};
    std::function<void(DISPID)> propertyChanged{};
    std::function<void(const char* call)> note{}; // calls of the protocol, by name
};

// Reference counted: the owner keeps one and calls Close before it lets go. `frame` is the window
// that holds the control, at its place in the window's client coordinates.
class ControlSite final : public IOleClientSite,
                          public IOleInPlaceSite,
                          public IOleInPlaceFrame,
                          public IOleControlSite,
                          public IPropertyNotifySink,
                          public IDispatch {
public:
    explicit ControlSite(HWND frame, SiteHooks hooks = {});

    // Creates the control of that programmatic identifier, gives it this site, its events and a
    // place, and activates it. Throws platform::Error when a step is refused; Close then.
    void Open(const wchar_t* progId, const RECT& place);
    // The same for an object that is there; without `activate` it stays without a window.
    void Take(const ComPtr<IUnknown>& object, const RECT& place, bool activate = true);
    // `hearing`: what the control tells on being closed still reaches the owner. Nothing does so
    // once this is back.
    void Close(bool hearing = false);

    IDispatch* Control() const { return lclControl.Get(); }
    HWND ControlWindow() const; // null while it has none
    bool HasEvents() const { return static_cast<bool>(lclEvents); }
    void Place(const RECT& place);
    // True when the control used the key.
    bool TranslateKey(MSG& message);
    void Focus();
    ULONG References() const { return lclReferences; }

    // IUnknown
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++lclReferences; }
    ULONG STDMETHODCALLTYPE Release() override;

    // IOleClientSite
    HRESULT STDMETHODCALLTYPE SaveObject() override { return Note("SaveObject"); }
    HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** container) override;
    HRESULT STDMETHODCALLTYPE ShowObject() override { return Note("ShowObject"); }
    HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return E_NOTIMPL; }

    // IOleWindow
    HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }

    // IOleInPlaceSite
    HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override { return Note("OnInPlaceActivate"); }
    HRESULT STDMETHODCALLTYPE OnUIActivate() override { return Note("OnUIActivate"); }
    HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frame,
                                               IOleInPlaceUIWindow** document, LPRECT place,
                                               LPRECT clip, LPOLEINPLACEFRAMEINFO info) override;
    HRESULT STDMETHODCALLTYPE Scroll(SIZE) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) override { return Note("OnUIDeactivate"); }
    HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override { return Note("OnInPlaceDeactivate"); }
    HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnPosRectChange(LPCRECT place) override;

    // IOleInPlaceUIWindow and IOleInPlaceFrame: the owner keeps its own menu and border.
    HRESULT STDMETHODCALLTYPE GetBorder(LPRECT) override { return INPLACE_E_NOTOOLSPACE; }
    HRESULT STDMETHODCALLTYPE RequestBorderSpace(LPCBORDERWIDTHS) override {
        return INPLACE_E_NOTOOLSPACE;
    }
    HRESULT STDMETHODCALLTYPE SetBorderSpace(LPCBORDERWIDTHS) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) override;
    HRESULT STDMETHODCALLTYPE InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetMenu(HMENU, HOLEMENU, HWND) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE RemoveMenus(HMENU) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetStatusText(LPCOLESTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG, WORD) override { return S_FALSE; }

    // IOleControlSite
    HRESULT STDMETHODCALLTYPE OnControlInfoChanged() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE LockInPlaceActive(BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetExtendedControl(IDispatch**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE TransformCoords(POINTL*, POINTF*, DWORD) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG* message, DWORD modifiers) override;
    HRESULT STDMETHODCALLTYPE OnFocus(BOOL got) override {
        return Note(got ? "GotFocus" : "LostFocus");
    }
    HRESULT STDMETHODCALLTYPE ShowPropertyFrame() override { return E_NOTIMPL; }

    // IPropertyNotifySink
    HRESULT STDMETHODCALLTYPE OnChanged(DISPID id) override;
    HRESULT STDMETHODCALLTYPE OnRequestEdit(DISPID) override { return S_OK; }

    // IDispatch: ambient properties when asked, events when told.
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO*,
                                     UINT*) override;

private:
    ~ControlSite() = default;
    HRESULT Note(const char* call) const;
    void ConnectEvents();
    void Disconnect();
    bool FindEvents();
    ComPtr<IConnectionPoint> Connect(REFIID iid, IUnknown* sink, DWORD& cookie) const;
    HRESULT Ambient(DISPID member, VARIANT* result) const;

    HWND lclFrame;
    SiteHooks lclHooks;
    ULONG lclReferences = 1;
    RECT lclPlace{};
    ComPtr<IDispatch> lclControl;
    ComPtr<IOleObject> lclObject;
    ComPtr<IOleInPlaceObject> lclInPlace;
    ComPtr<IOleInPlaceActiveObject> lclActive;
    ComPtr<IConnectionPoint> lclEvents, lclChanges;
    DWORD lclEventsCookie = 0, lclChangesCookie = 0;
    bool lclDeaf = false; // a control may call a sink that it was told to let go of
    IID lclEventInterface{};
    std::map<DISPID, std::string> lclEventNames;
};

} // namespace kavidex::platform::win32
