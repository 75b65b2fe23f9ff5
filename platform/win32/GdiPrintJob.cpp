#include "platform/win32/GdiPrintJob.h"

#include <windows.h>
#include <winspool.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/Error.h"
#include "platform/win32/Failure.h"
#include "platform/win32/Variant.h"

namespace kavidex::platform::win32 {

namespace {

// Of a picture that is handed to the driver at once; more goes in several parts.
constexpr std::size_t partBytes = 64U << 20;

struct Bitmap {
    BITMAPINFOHEADER head{};
    RGBQUAD colours[256];
};

// The settings as a whole DEVMODE: the driver's own where the choice brings none.
std::vector<BYTE> SettingsOf(const PrintChoice& choice) {
    if (choice.settings.size() >= sizeof(DEVMODEW)) {
        const auto* bytes = reinterpret_cast<const BYTE*>(choice.settings.data());
        return {bytes, bytes + choice.settings.size()};
    }
    std::wstring name = ToWide(choice.printer);
    HANDLE printer = nullptr;
    if (!OpenPrinterW(name.data(), &printer, nullptr)) Fail(GetLastError(), "open", choice.printer);
    std::vector<BYTE> settings;
    const LONG size = DocumentPropertiesW(nullptr, printer, name.data(), nullptr, nullptr, 0);
    if (size > 0) settings.resize(static_cast<std::size_t>(size));
    if (size > 0 && DocumentPropertiesW(nullptr, printer, name.data(),
                                        reinterpret_cast<DEVMODEW*>(settings.data()), nullptr,
                                        DM_OUT_BUFFER) != IDOK)
        settings.clear();
    ClosePrinter(printer);
    return settings;
}

class GdiPrintJob final : public PrintJob {
public:
    explicit GdiPrintJob(const PrintChoice& choice)
        : lclPrinter(choice.printer), lclSettings(SettingsOf(choice)),
          lclDevice(CreateDCW(L"WINSPOOL", ToWide(choice.printer).c_str(), nullptr, Mode())) {
        if (!lclDevice) Refused();
    }
    ~GdiPrintJob() override {
        if (lclBegun) AbortDoc(lclDevice);
        if (lclDevice) DeleteDC(lclDevice);
    }
    GdiPrintJob(const GdiPrintJob&) = delete;
    GdiPrintJob& operator=(const GdiPrintJob&) = delete;

    bool Begin(std::string_view title) { // false: the user cancelled
        const std::wstring name = ToWide(title);
        DOCINFOW info{};
        info.cbSize = sizeof info;
        info.lpszDocName = name.c_str();
        SetLastError(0);
        lclBegun = StartDocW(lclDevice, &info) > 0;
        const DWORD cause = GetLastError();
        if (!lclBegun && cause != ERROR_CANCELLED && cause != ERROR_PRINT_CANCELLED) Refused();
        return lclBegun;
    }

    PrintPaper BeginPage(bool landscape) override {
        if (auto* mode = Mode()) {
            const short wanted = landscape ? DMORIENT_LANDSCAPE : DMORIENT_PORTRAIT;
            if (!(mode->dmFields & DM_ORIENTATION) || mode->dmOrientation != wanted) {
                mode->dmFields |= DM_ORIENTATION;
                mode->dmOrientation = wanted;
                ResetDCW(lclDevice, mode); // where it cannot, the page is made to fit
            }
        }
        SetLastError(0);
        if (StartPage(lclDevice) <= 0) Refused();
        const auto cap = [&](int what) { return GetDeviceCaps(lclDevice, what); };
        const int colours = cap(NUMCOLORS); // below 0: more than can be counted
        return {static_cast<double>(cap(LOGPIXELSX)), static_cast<double>(cap(LOGPIXELSY)),
                cap(HORZRES), cap(VERTRES), colours < 0 || colours > 2};
    }

    void Draw(const PrintPicture& picture, const PrintPlace& place) override {
        SetStretchBltMode(lclDevice, HALFTONE);
        SetBrushOrgEx(lclDevice, 0, 0, nullptr);
        const std::size_t row = ((std::size_t{picture.width} * picture.bits + 31) / 32) * 4;
        const auto most = static_cast<std::uint32_t>(std::max<std::size_t>(partBytes / row, 1));
        for (std::uint32_t top = 0; top < picture.height; top += most) {
            const std::uint32_t rows = std::min(most, picture.height - top);
            const int from = At(place, picture, top), to = At(place, picture, top + rows);
            DrawPart(picture, top, rows, {place.x, from, place.width, to - from});
        }
    }

    void EndPage() override {
        SetLastError(0);
        if (::EndPage(lclDevice) <= 0) Refused();
    }

    void End() override {
        SetLastError(0);
        lclBegun = false;
        if (EndDoc(lclDevice) <= 0) Refused();
    }

private:
    DEVMODEW* Mode() {
        return lclSettings.empty() ? nullptr : reinterpret_cast<DEVMODEW*>(lclSettings.data());
    }

    [[noreturn]] void Refused() const {
        const DWORD cause = GetLastError();
        if (cause != 0) Fail(cause, "print on", lclPrinter);
        throw Error(errors::fail, "Cannot print on \"" + lclPrinter + "\": the printer refuses");
    }

    // Where a row of the picture lies; the parts meet without a gap.
    static int At(const PrintPlace& place, const PrintPicture& picture, std::uint32_t row) {
        return place.y + static_cast<int>(static_cast<std::int64_t>(row) * place.height /
                                          static_cast<std::int64_t>(picture.height));
    }

    // Rows from the bottom, as every driver takes them.
    void DrawPart(const PrintPicture& picture, std::uint32_t top, std::uint32_t rows,
                  const PrintPlace& place) {
        if (place.height <= 0) return;
        const std::size_t from = (std::size_t{picture.width} * picture.bits + 7) / 8;
        const std::size_t to = (from + 3) / 4 * 4;
        std::vector<std::uint8_t> bytes(to * rows);
        for (std::uint32_t y = 0; y < rows; ++y) {
            const std::uint8_t* source = picture.bytes.data() + from * (top + y);
            std::uint8_t* target = bytes.data() + to * (rows - 1 - y);
            if (picture.bits != 24) {
                std::memcpy(target, source, from);
                continue;
            }
            for (std::uint32_t x = 0; x < picture.width; ++x, source += 3, target += 3) {
                target[0] = source[2];
                target[1] = source[1];
                target[2] = source[0];
            }
        }
        Bitmap bitmap;
        bitmap.head.biSize = sizeof bitmap.head;
        bitmap.head.biWidth = static_cast<LONG>(picture.width);
        bitmap.head.biHeight = static_cast<LONG>(rows);
        bitmap.head.biPlanes = 1;
        bitmap.head.biBitCount = static_cast<WORD>(picture.bits);
        const int greys = picture.bits == 24 ? 0 : 1 << picture.bits;
        for (int i = 0; i < greys; ++i) {
            const auto grey = static_cast<BYTE>(i * 255 / (greys - 1));
            bitmap.colours[i] = {grey, grey, grey, 0};
        }
        SetLastError(0);
        const int drawn =
            StretchDIBits(lclDevice, place.x, place.y, place.width, place.height, 0, 0,
                          static_cast<int>(picture.width), static_cast<int>(rows), bytes.data(),
                          reinterpret_cast<const BITMAPINFO*>(&bitmap), DIB_RGB_COLORS, SRCCOPY);
        if (drawn == 0 || drawn == static_cast<int>(GDI_ERROR)) Refused();
    }

    const std::string lclPrinter;
    std::vector<BYTE> lclSettings;
    HDC lclDevice;
    bool lclBegun = false;
};

} // namespace

std::unique_ptr<PrintJob> BeginGdiJob(const PrintChoice& choice, std::string_view title) {
    auto job = std::make_unique<GdiPrintJob>(choice);
    if (!job->Begin(title)) return nullptr;
    return job;
}

} // namespace kavidex::platform::win32
