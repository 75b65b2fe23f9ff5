#include "imaging/annotations/win32/GdiTextPainter.h"

#include <windows.h>

#include <algorithm>
#include <cmath>

#include "platform/win32/Variant.h"

namespace kavidex::imaging::annotations {

namespace {

// A memory context with the font of one look in it.
class Context {
public:
    explicit Context(const TextLook& look)
        : lclContext(CreateCompatibleDC(nullptr)), lclFont(MakeFont(lclContext, look)),
          lclBefore(SelectObject(lclContext, lclFont)) {}
    ~Context() {
        SelectObject(lclContext, lclBefore);
        DeleteObject(lclFont);
        DeleteDC(lclContext);
    }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    HDC Get() const { return lclContext; }

private:
    static HFONT FontOf(const TextLook& look, int width) {
        return CreateFontW(-static_cast<int>(std::lround(look.height)), width, 0, 0,
                           look.bold ? FW_BOLD : FW_NORMAL, look.italic, look.underline,
                           look.strikeOut, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                           ANTIALIASED_QUALITY, DEFAULT_PITCH,
                           platform::win32::ToWide(look.face).c_str());
    }

    // A width other than the font's own is told as the average of its letters.
    static HFONT MakeFont(HDC context, const TextLook& look) {
        HFONT font = FontOf(look, 0);
        if (std::fabs(look.stretch - 1) < 0.02) return font;
        const HGDIOBJ before = SelectObject(context, font);
        TEXTMETRICW metrics{};
        GetTextMetricsW(context, &metrics);
        SelectObject(context, before);
        DeleteObject(font);
        return FontOf(look, std::max(1, static_cast<int>(
                                            std::lround(metrics.tmAveCharWidth * look.stretch))));
    }

    HDC lclContext;
    HFONT lclFont;
    HGDIOBJ lclBefore;
};

SIZE SizeOf(HDC context, const std::wstring& text) {
    SIZE size{};
    GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()), &size);
    return size;
}

class GdiTextPainter : public TextPainter {
public:
    double Width(const TextLook& look, std::string_view line) override {
        const Context context(look);
        return SizeOf(context.Get(), platform::win32::ToWide(line)).cx;
    }

    double LineHeight(const TextLook& look) override {
        const Context context(look);
        return SizeOf(context.Get(), L"Ag").cy;
    }

    Coverage Line(const TextLook& look, std::string_view line) override {
        constexpr LONG longest = 20000;
        const Context context(look);
        const std::wstring text = platform::win32::ToWide(line);
        const SIZE size = SizeOf(context.Get(), text);
        // Slanted letters hang over.
        const LONG width = std::min(longest, size.cx + size.cy / 2),
                   height = std::min(longest, size.cy);
        if (width <= 0 || height <= 0) return {};
        BITMAPINFO info{};
        info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* bits = nullptr;
        const HBITMAP bitmap =
            CreateDIBSection(context.Get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        if (!bitmap) return {};
        const HGDIOBJ before = SelectObject(context.Get(), bitmap);
        SetBkMode(context.Get(), TRANSPARENT);
        SetTextColor(context.Get(), RGB(255, 255, 255));
        TextOutW(context.Get(), 0, 0, text.c_str(), static_cast<int>(text.size()));
        GdiFlush();
        Coverage coverage{
            static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), {}};
        const auto* pixels = static_cast<const std::uint8_t*>(bits);
        for (std::size_t i = 0; i < std::size_t{coverage.width} * coverage.height; ++i)
            coverage.values.push_back(pixels[4 * i + 1]);
        SelectObject(context.Get(), before);
        DeleteObject(bitmap);
        return coverage;
    }
};

} // namespace

std::unique_ptr<TextPainter> MakeGdiTextPainter() { return std::make_unique<GdiTextPainter>(); }
std::unique_ptr<TextPainter> MakeTextPainter() { return MakeGdiTextPainter(); }

} // namespace kavidex::imaging::annotations
