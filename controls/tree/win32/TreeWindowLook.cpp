// How the control looks: fonts, colours, border, and as it draws itself without a window.
#include "controls/common/win32/Look.h"
#include "controls/tree/ctrlTree.h"
#include "controls/tree/win32/TreeWindowWin32.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

void TreeWindowWin32::BuildLook() {
    lclDpi = DpiOf(lclWindow);
    const HFONT old = std::exchange(lclFont, MakeFont(lclFace, lclDpi));
    for (const HWND child : {lclLabel, lclTree})
        SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(lclFont), TRUE);
    TreeView_SetImageList(lclTree, nullptr, TVSIL_NORMAL);
    lclImages.Build(lclDpi);
    TreeView_SetImageList(lclTree, lclImages.Handle(), TVSIL_NORMAL);
    SetColours(lclBack, lclFore, lclOpaque);
    if (old) DeleteObject(old);
    Layout();
}

void TreeWindowWin32::BuildGridLook() {
    if (lclOwnColours)
        lclGrid.BuildLook(lclDpi, lclFont, ColourOf(lclBack), ColourOf(lclFore));
    else
        lclGrid.BuildLook(lclDpi, lclFont);
}

void TreeWindowWin32::SetStatusText(std::string_view text) {
    const auto wide = platform::win32::ToWide(text);
    ShowText(lclLabel, wide);
    // What is read out as their name: the label before it names the tree, but not for every reader.
    ShowText(lclTree, wide);
    lclGrid.SetName(text);
}

void TreeWindowWin32::ShowStatusBar(bool show) {
    lclStatusBar = show;
    Layout();
}

void TreeWindowWin32::SetColours(std::uint32_t back, std::uint32_t fore, bool opaque) {
    lclBack = back;
    lclFore = fore;
    lclOpaque = opaque;
    // Equal colours (as with a host that saved none) would show nothing: the system's then.
    const bool ours = lclOwnColours = back != fore && !HighContrast();
    TreeView_SetBkColor(lclTree, ours ? ColourOf(back) : static_cast<COLORREF>(-1));
    TreeView_SetTextColor(lclTree, ours ? ColourOf(fore) : static_cast<COLORREF>(-1));
    if (lclLabelBrush) DeleteObject(std::exchange(lclLabelBrush, nullptr));
    if (ours && opaque) lclLabelBrush = CreateSolidBrush(ColourOf(back));
    if (lclList) BuildGridLook();
    InvalidateRect(lclLabel, nullptr, TRUE);
    InvalidateRect(lclWindow, nullptr, TRUE);
}

LRESULT TreeWindowWin32::LabelColours(HDC device) {
    SetTextColor(device, ColourOf(lclFore));
    SetBkColor(device, ColourOf(lclBack));
    return reinterpret_cast<LRESULT>(lclLabelBrush);
}

void TreeWindowWin32::SetFont(const std::optional<FontFace>& font) {
    if (font == lclFace) return;
    lclFace = font;
    BuildLook();
}

void TreeWindowWin32::SetEnabled(bool enabled) {
    EnableWindow(lclTree, enabled);
    EnableWindow(lclGrid.Handle(), enabled);
    EnableWindow(lclLabel, enabled);
}

void TreeWindowWin32::SetBorder(bool border) {
    const auto style = GetWindowLongPtrW(lclWindow, GWL_STYLE);
    const auto wanted = border ? style | WS_BORDER : style & ~static_cast<LONG_PTR>(WS_BORDER);
    if (wanted == style) return;
    SetWindowLongPtrW(lclWindow, GWL_STYLE, wanted);
    SetWindowPos(lclWindow, nullptr, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

// The control as it stands without its window: the label, the tree's frame and its first rows.
void TreeWindowWin32::Draw(HDC device, const RECT& place) const {
    const int dpi = GetDeviceCaps(device, LOGPIXELSY);
    const HFONT font = MakeFont(lclFace, dpi);
    const HGDIOBJ old = SelectObject(device, font);
    const int saved = SaveDC(device);
    TEXTMETRICW metrics{};
    GetTextMetricsW(device, &metrics);
    const int size = Scaled(16, dpi);
    const int line = std::max<int>(metrics.tmHeight + Scaled(2, dpi), size + Scaled(2, dpi));
    RECT area = place;
    FillRect(device, &area, GetSysColorBrush(COLOR_BTNFACE));
    SetBkMode(device, TRANSPARENT);
    constexpr UINT oneLine = DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS;
    if (lclLogic.StatusBarVisible()) {
        RECT label{area.left + Scaled(4, dpi), area.top, area.right, area.top + line};
        SetTextColor(device, GetSysColor(COLOR_BTNTEXT));
        DrawTextW(device, platform::win32::ToWide(lclLogic.StatusText()).c_str(), -1, &label,
                  oneLine);
        area.top = label.bottom;
    }
    DrawEdge(device, &area, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
    FillRect(device, &area, GetSysColorBrush(COLOR_WINDOW));
    SetTextColor(device, GetSysColor(COLOR_WINDOWTEXT));
    IconStore images;
    images.Build(dpi);
    int top = area.top + Scaled(2, dpi);
    for (const auto& row : lclLogic.FirstRows((area.bottom - area.top) / line)) {
        int image = images.Index(row.imageKey);
        if (image < 0 && images.AddFileIcon(row.imageKey, row.imageKey))
            image = images.Index(row.imageKey);
        const int left = area.left + Scaled(4, dpi) + row.depth * Scaled(19, dpi);
        ImageList_Draw(images.Handle(), image < 0 ? images.Index("unknown") : image, device, left,
                       top + (line - size) / 2, ILD_TRANSPARENT);
        RECT text{left + size + Scaled(4, dpi), top, area.right, top + line};
        DrawTextW(device, platform::win32::ToWide(row.text).c_str(), -1, &text, oneLine);
        top += line;
    }
    RestoreDC(device, saved);
    SelectObject(device, old);
    DeleteObject(font);
}

} // namespace kavidex::controls::win32
