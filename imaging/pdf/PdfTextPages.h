// A note or a plain text on A4 pages.
#pragma once

#include <string_view>

namespace kavidex::imaging {

class PdfFonts;
class PdfWriter;

// The heading stands in bold over a rule on the first page, the text below; pages are numbered when
// there is more than one.
void WriteTextPages(PdfWriter& writer, PdfFonts& fonts, std::string_view heading,
                    std::string_view text);

} // namespace kavidex::imaging
