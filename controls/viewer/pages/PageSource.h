// The pages of one file as the viewer needs them: of a scanned image, or of a PDF file drawn here.
// Pages count from 1. Every failing call throws platform::Error.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "imaging/PageBitmap.h"
#include "platform/Error.h"

namespace kavidex::platform {
class Files;
}

namespace kavidex::controls {

struct PageShape {
    std::uint32_t width = 0, height = 0; // in pixels of the page, as it is shown
    double xDpi = 0, yDpi = 0;           // 0: nobody knows

    // How much higher than wide a pixel is, in a page's true form.
    double Stretch() const { return xDpi > 0 && yDpi > 0 ? xDpi / yDpi : 1; }
};

class PageSource {
public:
    virtual ~PageSource() = default;

    virtual int Count() = 0;
    virtual PageShape Shape(int page) = 0;
    // The page, to be shown at about that size. Of a damaged one what can be read, and why not
    // more.
    virtual imaging::PageBitmap Picture(int page, std::uint32_t width, std::uint32_t height,
                                        std::string& damage) = 0;
    // Whether its pictures have the size that was asked for: at another one it is asked again.
    // Otherwise they have the page's own.
    virtual bool DrawsAnySize() const = 0;
    virtual imaging::PageBitmap Thumbnail(int page, std::uint32_t width, std::uint32_t height) = 0;

    // Whether pages can be turned, marked, moved and deleted: what is below serves that.
    virtual bool Editable() const { return false; }
    virtual std::optional<std::string> Marks(int) { return std::nullopt; }
    virtual std::uint64_t Fingerprint(int) { return 0; }
};

std::unique_ptr<PageSource> OpenScan(platform::Files& files, const std::string& path);
// A file that is not drawn here, though nothing may be wrong with it.
constexpr std::string_view damagedNotice =
    "Dit document is beschadigd en kan hier niet getoond worden.";
struct CannotDraw : platform::Error {
    CannotDraw(const std::string& path, std::string_view why);
    std::string_view notice; // why, as a key of the translations
};
// Throws CannotDraw for one that needs a password, is too large or is damaged.
std::unique_ptr<PageSource> OpenPdf(platform::Files& files, const std::string& path);
bool CanDrawPdf(); // PDFium is here

} // namespace kavidex::controls
