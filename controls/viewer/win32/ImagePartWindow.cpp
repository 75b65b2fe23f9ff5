#include "controls/viewer/win32/ImagePartWindow.h"

#include <algorithm>

#include "controls/common/win32/Look.h"
#include "controls/common/win32/WindowClass.h"
#include "controls/viewer/ViewerViews.h"
#include "controls/viewer/ctlViewer.h"

namespace kavidex::controls::win32 {

namespace {

constexpr int toolboxId = 1;
constexpr std::int32_t thumbsShare = 2300; // of the room, in ten-thousandths
constexpr std::int32_t thumbsWidth = 154;  // a column of thumbnails, at 96 dots an inch

} // namespace

std::unique_ptr<ControlWindow> MakeImagePart(ctlViewer& viewer,
                                             const platform::Workstation& workstation) {
    return std::make_unique<ImagePartWindow>(viewer, workstation);
}

ImagePartWindow::ImagePartWindow(ctlViewer& viewer, const platform::Workstation& workstation)
    : lclViewer(viewer), lclWorkstation(workstation),
      lclCanvas(viewer.Views().image.Canvas(), workstation),
      lclThumbs(viewer.Views().image.Thumbs(), workstation),
      lclToolbox(viewer.Views().image.Toolbox()), lclSplitter(lclSplit, workstation) {
    lclSplit.SetPosition(thumbsShare);
    lclSplit.SetMinPanelSize(thumbsWidth);
    lclSplit.SetSnapToEdge(false);
    lclSplit.ShowControls(false, true);
}

HWND ImagePartWindow::Create(HWND parent, const RECT& place) {
    if (lclWindow) return lclWindow;
    WindowOf<ImagePartWindow>::Create(*this, lclWindow, L"KavidexImagePart", L"",
                                      WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                                      WS_EX_CONTROLPARENT, place, parent, lclWorkstation);
    if (!lclWindow) return nullptr;
    if (!lclToolbox.Create(lclWindow, toolboxId) || !lclSplitter.Create(lclWindow, L"Splitter") ||
        !lclSplitter.SetPanels(&lclThumbs, &lclCanvas)) {
        Destroy();
        return nullptr;
    }
    BuildLook();
    lclViewer.Views().image.AttachWindow(this);
    ContentChanged();
    return lclWindow;
}

void ImagePartWindow::ContentChanged() {
    if (!lclWindow) return;
    const auto& image = lclViewer.Views().image;
    lclToolbox.ShowButtons();
    const bool toolbox = image.ToolboxShown(), thumbs = image.ThumbsShown();
    const bool changes =
        thumbs != lclSplit.Control1Visible() ||
        toolbox != ((GetWindowLongPtrW(lclToolbox.Handle(), GWL_STYLE) & WS_VISIBLE) != 0);
    const auto status = image.Status();
    lclCanvas.SetName(status.page);
    lclThumbs.SetName(status.page);
    if (!changes) return;
    if (!toolbox && GetFocus() == lclToolbox.Handle()) lclCanvas.TakeFocus();
    ShowWindow(lclToolbox.Handle(), toolbox ? SW_SHOWNA : SW_HIDE);
    lclSplit.ShowControls(thumbs, true);
    Layout();
}

void ImagePartWindow::BuildLook() {
    lclDpi = DpiOf(lclWindow);
    const HFONT font = MakeFont(lclViewer.Font(), lclDpi);
    lclCanvas.BuildLook(lclDpi, font);
    lclThumbs.BuildLook(lclDpi, font);
    lclFont.Reset(font);
    lclToolbox.BuildLook(lclDpi);
    Layout();
}

void ImagePartWindow::Layout() {
    if (!lclWindow || !lclSplitter.Handle()) return;
    RECT area{};
    GetClientRect(lclWindow, &area);
    if (lclViewer.Views().image.ToolboxShown()) {
        lclToolbox.Place(area.right);
        area.top = std::min<LONG>(area.bottom, lclToolbox.Height());
    }
    lclSplitter.Place(area, lclDpi);
}

bool ImagePartWindow::TranslateKey(const MSG& message) {
    if (lclCanvas.TranslateKey(message) || lclThumbs.TranslateKey(message)) return true;
    if (message.message != WM_KEYDOWN || GetKeyState(VK_CONTROL) < 0 || GetKeyState(VK_MENU) < 0)
        return false;
    if (GetFocus() == lclToolbox.Handle()
            ? lclToolbox.UsesKey(message.wParam)
            : lclSplitter.BarHasFocus() && lclSplitter.UsesKey(message.wParam)) {
        DispatchMessageW(&message);
        return true;
    }
    return false;
}

LRESULT ImagePartWindow::Handle(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
    case WM_SIZE: Layout(); return 0;
    case WM_SETFOCUS: TakeFocus(); return 0;
    case WM_COMMAND:
        if (lclToolbox.Handle() && reinterpret_cast<HWND>(l) == lclToolbox.Handle())
            lclToolbox.Command(LOWORD(w));
        return 0;
    case WM_NOTIFY: return lclToolbox.Notified(*reinterpret_cast<NMHDR*>(l));
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
    case 0x02E3: // WM_DPICHANGED_AFTERPARENT
        if (!lclToolbox.Handle()) return 0;
        SendMessageW(lclToolbox.Handle(), message, w, l);
        BuildLook();
        return 0;
    case WM_DESTROY: lclViewer.Views().image.AttachWindow(nullptr); return 0;
    case WM_NCDESTROY: {
        const LRESULT result = DefWindowProcW(lclWindow, message, w, l);
        lclToolbox.Forget();
        lclFont.Reset();
        return result;
    }
    default: return DefWindowProcW(lclWindow, message, w, l);
    }
}

} // namespace kavidex::controls::win32
