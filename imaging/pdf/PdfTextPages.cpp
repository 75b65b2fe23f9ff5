#include "imaging/pdf/PdfTextPages.h"

#include "imaging/WrapText.h"
#include "imaging/pdf/PdfFonts.h"
#include "imaging/pdf/PdfWriter.h"

namespace kavidex::imaging {

namespace {

// In points.
constexpr double pageWidth = 595.28, pageHeight = 841.89, margin = 56.7, headingSize = 12,
                 textSize = 10.5, footerSize = 8.5, leading = 1.35, underHeading = 10;

class Pages {
public:
    explicit Pages(PdfFonts& fonts) : lclFonts(fonts) { Begin(); }

    void Lines(const PdfFonts::Style& style, double size, std::string_view text) {
        const auto lines = WrapText(text, pageWidth - 2 * margin, [&](std::string_view part) {
            return lclFonts.Width(style, part) * size;
        });
        for (const std::string& line : lines) {
            if (lclDown + size * leading > pageHeight - margin) Begin();
            lclDown += size * leading;
            Put(style, size, margin, pageHeight - lclDown, line);
        }
    }

    void Rule() {
        lclDown += underHeading;
        lclContents.back() += "0.5 w " + PdfNumber(margin) + " " + PdfNumber(pageHeight - lclDown) +
                              " m " + PdfNumber(pageWidth - margin) + " " +
                              PdfNumber(pageHeight - lclDown) + " l S\n";
        lclDown += underHeading;
    }

    void Write(PdfWriter& writer) {
        if (lclContents.size() > 1)
            for (std::size_t page = 0; page < lclContents.size(); ++page) Number(page);
        for (const std::string& content : lclContents)
            writer.Page(pageWidth, pageHeight, lclFonts.Resources(), content);
    }

private:
    void Begin() {
        lclContents.emplace_back();
        lclDown = margin;
    }

    void Number(std::size_t page) {
        const PdfFonts::Style style;
        const std::string text =
            std::to_string(page + 1) + " / " + std::to_string(lclContents.size());
        const double width = lclFonts.Width(style, text) * footerSize;
        Put(style, footerSize, pageWidth - margin - width, margin / 2, text, page);
    }

    void Put(const PdfFonts::Style& style, double size, double x, double y, std::string_view line) {
        Put(style, size, x, y, line, lclContents.size() - 1);
    }

    void Put(const PdfFonts::Style& style, double size, double x, double y, std::string_view line,
             std::size_t page) {
        if (line.empty()) return;
        std::string text = "BT " + PdfNumber(x) + " " + PdfNumber(y) + " Td";
        for (const TextRun& run : lclFonts.Runs(style, line))
            text += " /" + run.font->Name() + " " + PdfNumber(size) + " Tf <" + run.codes + "> Tj";
        lclContents[page] += text + " ET\n";
    }

    PdfFonts& lclFonts;
    std::vector<std::string> lclContents; // of the pages so far
    double lclDown = 0;                   // from the top of the last one
};

} // namespace

void WriteTextPages(PdfWriter& writer, PdfFonts& fonts, std::string_view heading,
                    std::string_view text) {
    Pages pages(fonts);
    if (!heading.empty()) {
        PdfFonts::Style bold;
        bold.bold = true;
        pages.Lines(bold, headingSize, heading);
        pages.Rule();
    }
    // Line ends behind the last word would make a page of nothing.
    pages.Lines({}, textSize, text.substr(0, text.find_last_not_of("\r\n\t ") + 1));
    pages.Write(writer);
}

} // namespace kavidex::imaging
