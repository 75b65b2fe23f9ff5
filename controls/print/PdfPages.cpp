#include "controls/print/PdfPages.h"

#include "controls/print/PagePrinter.h"
#include "platform/Error.h"

namespace kavidex::controls {

namespace {

constexpr double pointsPerInch = 72;

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
    const auto drawn = SizeForPaper(width, height, paper);
    auto bitmap = lclFile->Render(page, drawn.width, drawn.height);
    bitmap.xDpi = bitmap.width / width;
    bitmap.yDpi = bitmap.height / height;
    return bitmap;
}

} // namespace kavidex::controls
