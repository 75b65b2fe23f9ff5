// The pages of a scanned document, for printing.
#pragma once

#include <memory>
#include <string_view>

#include "controls/print/PrintSource.h"
#include "imaging/PageFile.h"
#include "imaging/annotations/TextPainter.h"

namespace kavidex::controls {

class TiffPages final : public PrintSource {
public:
    // With the marks that show on its pages, unless `texts` is null.
    TiffPages(platform::Files& files, std::string_view path,
              std::unique_ptr<imaging::annotations::TextPainter> texts)
        : lclFile(files, path), lclTexts(std::move(texts)) {}

    int Count() override { return lclFile.Count(); }
    bool IsWide(int page) override;
    imaging::PageBitmap Page(int page, const platform::PrintPaper& paper,
                             std::string& damage) override;

private:
    imaging::PageFile lclFile;
    std::unique_ptr<imaging::annotations::TextPainter> lclTexts;
};

} // namespace kavidex::controls
