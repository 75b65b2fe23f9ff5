// The fonts that Windows draws with.
#include <windows.h>

#include "imaging/pdf/FontSource.h"
#include "platform/win32/Variant.h"

namespace kavidex::imaging {

namespace {

class SelectedFont : public FontFile {
public:
    SelectedFont(const std::wstring& face, bool bold, bool italic)
        : lclContext(CreateCompatibleDC(nullptr)),
          lclFont(CreateFontW(-1000, 0, 0, 0, bold ? FW_BOLD : FW_NORMAL, italic, FALSE, FALSE,
                              DEFAULT_CHARSET, OUT_TT_ONLY_PRECIS, CLIP_DEFAULT_PRECIS,
                              DEFAULT_QUALITY, DEFAULT_PITCH, face.c_str())),
          lclBefore(SelectObject(lclContext, lclFont)) {}
    ~SelectedFont() override {
        SelectObject(lclContext, lclBefore);
        DeleteObject(lclFont);
        DeleteDC(lclContext);
    }
    SelectedFont(const SelectedFont&) = delete;
    SelectedFont& operator=(const SelectedFont&) = delete;

    std::string Table(std::string_view tag) override {
        DWORD name = 0;
        for (std::size_t i = 0; i < 4; ++i) name |= DWORD{static_cast<BYTE>(tag[i])} << (8 * i);
        const DWORD size = GetFontData(lclContext, name, 0, nullptr, 0);
        if (size == GDI_ERROR) return {};
        std::string bytes(size, '\0');
        if (GetFontData(lclContext, name, 0, bytes.data(), size) != size) return {};
        return bytes;
    }

private:
    HDC lclContext;
    HFONT lclFont;
    HGDIOBJ lclBefore;
};

class WindowsFonts : public FontSource {
public:
    std::unique_ptr<FontFile> Open(std::string_view face, bool bold, bool italic) override {
        return std::make_unique<SelectedFont>(platform::win32::ToWide(face), bold, italic);
    }

    std::vector<std::string> Fallbacks() override {
        return {"Arial",          "Segoe UI",         "Tahoma",          "Segoe UI Symbol",
                "MS Gothic",      "Malgun Gothic",    "Microsoft YaHei", "SimSun",
                "Segoe UI Emoji", "Arial Unicode MS", "DejaVu Sans"};
    }
};

} // namespace

FontSource& SystemFonts() {
    static WindowsFonts fonts;
    return fonts;
}

} // namespace kavidex::imaging
