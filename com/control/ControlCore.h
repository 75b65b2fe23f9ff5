// What a control is between its host and its window: site, place, activation, draw advice. The OLE
// interfaces around it (one header each in this folder) are thin faces of this class.
#pragma once

#include <windows.h>
#include <ocidl.h>
#include <ole2.h>

#include <functional>
#include <memory>
#include <optional>

#include "controls/common/win32/ControlWindow.h"
#include "platform/win32/ComPtr.h"

namespace kavidex::com {

struct ClassRow;
using platform::win32::ComPtr;

// What the core asks of the control that it belongs to.
class ControlOwner {
public:
    virtual const ClassRow& Class() const = 0;
    virtual std::unique_ptr<controls::win32::ControlWindow> MakeWindow() = 0;
    virtual IOleObject& Object() = 0;
    virtual IOleInPlaceActiveObject& ActiveObject() = 0;

protected:
    ~ControlOwner() = default;
};

class ControlCore {
public:
    ControlCore(ControlOwner& owner, const ClassRow& row);
    ~ControlCore();
    ControlCore(const ControlCore&) = delete;
    ControlCore& operator=(const ControlCore&) = delete;

    const ClassRow& Class() const { return lclOwner.Class(); }

    // --- The site -------------------------------------------------------------------------------
    void SetSite(IOleClientSite* site);
    const ComPtr<IOleClientSite>& Site() const { return lclSite; }
    // The host's value of an ambient property, null when it has none.
    std::optional<bool> AmbientFlag(DISPID property) const;
    ComPtr<IOleControlSite> ControlSite() const;

    // --- Size, in hundredths of a millimetre
    // ------------------------------------------------------
    SIZEL Extent() const { return lclExtent; }
    HRESULT SetExtent(SIZEL extent);

    // --- Activation -----------------------------------------------------------------------------
    HRESULT Activate(bool userInterface, const RECT* place);
    HRESULT ActivateUserInterface();
    void DeactivateUserInterface();
    void Deactivate();
    void Close(); // deactivates and lets go of window and site
    void Leave(); // the same, and keeps the object of the window: a call of it may still run
    bool IsActive() const { return lclInPlaceSite && lclWindow && lclWindow->Handle(); }
    HRESULT SetRects(const RECT& place, const RECT& clip);
    HRESULT Hide();
    // S_OK when control or host used the key, S_FALSE when nobody did.
    HRESULT TranslateKey(MSG& message);
    void FrameActivated(bool active);
    void FollowAmbients(); // a dead user interface takes no input

    // The window object exists from its first use on; its handle only while active.
    controls::win32::ControlWindow& Window();
    HWND Handle() const { return lclWindow ? lclWindow->Handle() : nullptr; }

    // --- Drawing --------------------------------------------------------------------------------
    HRESULT Draw(HDC device, const RECT& place);
    void ViewChanged(); // the picture that the host may have is out of date

    ComPtr<IOleAdviseHolder>& AdviseHolder();
    struct ViewAdvice {
        DWORD aspects = 0, flags = 0;
        ComPtr<IAdviseSink> sink;
    } viewAdvice;

    // --- Saving ---------------------------------------------------------------------------------
    bool dirty = false;
    int frozen = 0; // calls of FreezeEvents(TRUE) that are still to be taken back

private:
    HRESULT MakeActive(const RECT* place);
    static LRESULT CALLBACK Watch(HWND window, UINT message, WPARAM wide, LPARAM data, UINT_PTR id,
                                  DWORD_PTR core);

    ControlOwner& lclOwner;
    ComPtr<IOleClientSite> lclSite;
    ComPtr<IOleInPlaceSite> lclInPlaceSite; // held while in-place active
    ComPtr<IOleInPlaceFrame> lclFrame;
    ComPtr<IOleInPlaceUIWindow> lclDocument;
    ComPtr<IOleAdviseHolder> lclAdvise;
    std::unique_ptr<controls::win32::ControlWindow> lclWindow;
    SIZEL lclExtent;
    bool lclUiActive = false;
};

} // namespace kavidex::com
