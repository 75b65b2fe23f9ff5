// A PDF file made of scanned pages, pictures and texts.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "imaging/pdf/PdfFonts.h"
#include "imaging/pdf/PdfWriter.h"

namespace kavidex::platform {
class Files;
}

namespace kavidex::imaging {

namespace tiff {
class Source;
}

class PdfDocument {
public:
    explicit PdfDocument(ByteSink sink, FontSource& fonts = SystemFonts());

    // A page of a TIFF file, from 1, embedded as it is compressed; `marks` draws its visible marks
    // over it. Throws platform::Error.
    void AddPage(tiff::Source& source, int page, bool marks);
    // All of them.
    void AddTiff(platform::Files& files, std::string_view path, bool marks);

    // A JPEG file as it is; false when the bytes are none.
    bool AddJpeg(std::string bytes);

    // A heading, which may be empty, and the text below it, on as many A4 pages as it takes.
    void AddText(std::string_view heading, std::string_view text);

    std::size_t PageCount() const { return lclWriter.PageCount(); }
    // Nothing may be added afterwards. Throws platform::Error for a document without pages.
    void Finish(std::string_view title);

private:
    PdfWriter lclWriter;
    PdfFonts lclFonts;
};

// A file that `fill` puts its pages into; whole or absent. Throws platform::Error.
void SavePdf(platform::Files& files, std::string_view target, std::string_view title,
             const std::function<void(PdfDocument&)>& fill);

} // namespace kavidex::imaging
