#include "controls/common/win32/Look.h"

#include <cmath>
#include <cstring>

#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

namespace {

int SystemDpi() {
    HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return dpi;
}

} // namespace

int DpiOf(HWND window) {
    using Function = UINT(WINAPI*)(HWND);
    // Looked up at run time: only newer systems have it.
    static const auto function = reinterpret_cast<Function>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
    const UINT dpi = function && window ? function(window) : 0;
    return dpi ? static_cast<int>(dpi) : SystemDpi();
}

void Put(HWND window, const RECT& place) {
    RECT now{};
    GetWindowRect(window, &now);
    MapWindowPoints(nullptr, GetAncestor(window, GA_PARENT), reinterpret_cast<POINT*>(&now), 2);
    if (EqualRect(&now, &place)) return;
    MoveWindow(window, place.left, place.top, place.right - place.left, place.bottom - place.top,
               TRUE);
}

void ShowText(HWND window, const std::wstring& text) {
    std::wstring now(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    now.resize(
        static_cast<std::size_t>(GetWindowTextW(window, now.data(), static_cast<int>(now.size()))));
    if (now != text) SetWindowTextW(window, text.c_str());
}

int LineHeight(HWND window, HFONT font) {
    HDC device = GetDC(window);
    const HGDIOBJ before = font ? SelectObject(device, font) : nullptr;
    TEXTMETRICW metrics{};
    GetTextMetricsW(device, &metrics);
    if (before) SelectObject(device, before);
    ReleaseDC(window, device);
    return metrics.tmHeight;
}

HFONT MakeFont(const std::optional<FontFace>& face, int dpi) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    LOGFONTW font = metrics.lfMessageFont;
    font.lfHeight = MulDiv(font.lfHeight, dpi, SystemDpi());
    if (face && !face->name.empty()) {
        const auto name = platform::win32::ToWide(face->name);
        std::memset(font.lfFaceName, 0, sizeof font.lfFaceName);
        name.copy(font.lfFaceName, LF_FACESIZE - 1);
    }
    if (face) {
        if (face->points > 0)
            font.lfHeight = -static_cast<LONG>(std::lround(face->points * dpi / 72.0));
        font.lfWeight = face->weight;
        font.lfItalic = face->italic;
        font.lfUnderline = face->underline;
        font.lfStrikeOut = face->strikethrough;
    }
    return CreateFontIndirectW(&font);
}

bool HighContrast() {
    HIGHCONTRASTW state{};
    state.cbSize = sizeof state;
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof state, &state, 0) &&
           (state.dwFlags & HCF_HIGHCONTRASTON);
}

COLORREF ColourOf(std::uint32_t oleColour) {
    return oleColour & 0x80000000U ? GetSysColor(static_cast<int>(oleColour & 0xFF)) : oleColour;
}

} // namespace kavidex::controls::win32
