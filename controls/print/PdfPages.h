// The pages of a PDF file, drawn for printing where no program of the workstation prints them.
#pragma once

#include <memory>
#include <string>

#include "controls/print/PrintSource.h"
#include "imaging/pdfium/Pdfium.h"

namespace kavidex::controls {

class PdfPages final : public PrintSource {
public:
    // `bytes` are the whole file. Throws platform::Error when it cannot be opened here.
    explicit PdfPages(std::string bytes);

    int Count() override { return lclFile->Count(); }
    bool IsWide(int page) override;
    imaging::PageBitmap Page(int page, const platform::PrintPaper& paper,
                             std::string& damage) override;

private:
    std::unique_ptr<imaging::PdfFile> lclFile;
};

} // namespace kavidex::controls
