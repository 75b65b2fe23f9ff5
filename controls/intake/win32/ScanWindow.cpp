#include "controls/intake/win32/ScanWindow.h"

#include "controls/common/win32/WindowClass.h"
#include "platform/Error.h"
#include "platform/win32/Late.h"
#include "platform/win32/TextsOf.h"
#include "platform/win32/ole/ControlSite.h"

namespace kavidex::controls::win32 {

using platform::win32::ControlSite;
using platform::win32::Late;
using platform::win32::Variant;

namespace {

constexpr const wchar_t* progId = L"Tessaro.ctrlScan";
constexpr std::string_view scannedEvent = "ScannedImages";

} // namespace

ScanWindow::ScanWindow(const platform::Workstation& workstation, const ScanObjects& objects)
    : lclWorkstation(workstation), lclObjects(objects) {}

ScanWindow::~ScanWindow() {
    CloseSite();
    Destroy();
}

HWND ScanWindow::Create(HWND parent, const RECT& place) {
    if (lclWindow) return lclWindow;
    return WindowOf<ScanWindow>::Create(*this, lclWindow, L"KavidexScan", L"",
                                        WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                                        WS_EX_CONTROLPARENT, place, parent, lclWorkstation);
}

void ScanWindow::Open(const ScanSetup& setup) {
    platform::win32::SiteHooks hooks;
    hooks.event = [this, scanned = setup.scanned](const platform::win32::SiteEvent& event) {
        if (event.name != scannedEvent) return;
        const auto arguments = event.Arguments();
        const auto files = arguments.empty() ? std::nullopt : TextsOf(arguments.front());
        if (files)
            scanned(*files);
        else
            lclWorkstation.log.Write("ScanWindow", "Scanned images were reported without names");
    };
    RECT area{};
    GetClientRect(lclWindow, &area);
    lclSite = platform::win32::ComPtr<ControlSite>::Attach(new ControlSite(lclWindow, hooks));
    const auto site = lclSite; // what it reports meanwhile may close the window
    site->Open(progId, area);
    if (!lclSite) {
        site->Close();
        throw platform::Error(platform::errors::fail, "The window has gone.");
    }
    Configure(setup);
}

// A control that lacks a property does without.
void ScanWindow::Configure(const ScanSetup& setup) const {
    const Late control{platform::win32::ComPtr<IDispatch>(lclSite->Control())};
    const auto put = [&](const wchar_t* name, const Variant& value, bool object) {
        if (object && !value.ToDispatch()) return;
        try {
            if (!control.Has(name))
                throw platform::Error(platform::errors::notFound, "It is not there.");
            object ? control.PutRef(name, {value}) : control.Put(name, {value});
        } catch (const std::exception& error) {
            lclWorkstation.log.Write("ScanWindow",
                                     platform::win32::FromWide(name) + ": " + error.what());
        }
    };
    if (lclObjects.translate) put(L"Translate", lclObjects.translate(), true);
    if (lclObjects.userAuth) put(L"UserAuth", lclObjects.userAuth(), true);
    for (const auto& [name, value] : setup.flags) put(name, Variant(value), false);
    for (const auto& [name, value] : setup.texts) put(name, Variant(value), false);
}

void ScanWindow::CloseSite() {
    if (!lclSite) return;
    const auto site = std::move(lclSite);
    site->Close(true); // it may hand over what it still holds
}

void ScanWindow::TakeFocus() {
    if (lclSite) lclSite->Focus();
}

bool ScanWindow::TranslateKey(const MSG& message) {
    MSG copy = message;
    return lclSite && HasFocus() && lclSite->TranslateKey(copy);
}

LRESULT ScanWindow::Handle(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
    case WM_SIZE:
        if (lclSite) lclSite->Place({0, 0, LOWORD(l), HIWORD(l)});
        return 0;
    case WM_SETFOCUS: TakeFocus(); return 0;
    case WM_DESTROY: CloseSite(); return 0;
    default: return DefWindowProcW(lclWindow, message, w, l);
    }
}

} // namespace kavidex::controls::win32
