#include "controls/print/PdfPages.h"

#include <algorithm>
#include <cmath>

#include "platform/Error.h"

namespace kavidex::controls {

namespace {

constexpr double pointsPerInch = 72, sharpest = 300; // dots an inch: more only costs memory

const char* Why(imaging::PdfOpened outcome) {
    switch (outcome) {
    case imaging::PdfOpened::NeedsPassword: return "The file needs a password.";
    case imaging::PdfOpened::Damaged: return "The file is damaged, or no PDF file.";
    default: return "No program prints files of this kind.";
    }
}

} // namespace

PdfPages::PdfPages(std::string bytes) {
    auto opening = imaging::Pdfium(imaging::PdfiumPath()).Open(std::move(bytes));
    if (!opening.file) throw platform::Error(platform::errors::fail, Why(opening.outcome));
    lclFile = std::move(opening.file);
}

bool PdfPages::IsWide(int page) {
    const auto size = lclFile->SizeOf(page);
    return size.width > size.height;
}

imaging::PageBitmap PdfPages::Page(int page, const platform::PrintPaper& paper, std::string&) {
    const auto size = lclFile->SizeOf(page);
    const double width = size.width / pointsPerInch, height = size.height / pointsPerInch;
    if (!(width > 0 && height > 0))
        throw platform::Error(platform::errors::invalidData,
                              "Page " + std::to_string(page) + " cannot be read");
    // What would be made smaller on the paper anyway is drawn at that size.
    const double fitting =
        std::min({1.0, paper.width / (width * paper.xDpi), paper.height / (height * paper.yDpi)});
    const auto elements = [&](double inches, double dpi) {
        return static_cast<std::uint32_t>(
            std::max(std::lround(inches * fitting * std::min(dpi, sharpest)), 1L));
    };
    auto bitmap = lclFile->Render(page, elements(width, paper.xDpi), elements(height, paper.yDpi));
    bitmap.xDpi = bitmap.width / width;
    bitmap.yDpi = bitmap.height / height;
    return bitmap;
}

} // namespace kavidex::controls
