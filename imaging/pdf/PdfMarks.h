// The marks of a page drawn over its picture in a PDF file: as shapes and text, so that the picture
// stays as it was scanned and the marks stay sharp.
#pragma once

#include <string>

#include "imaging/annotations/Annotations.h"

namespace kavidex::imaging {

class PdfFonts;
class PdfWriter;

struct PdfPagePlace {
    double width, height;  // of the page, in points
    double scaleX, scaleY; // points a pixel
};

struct PdfMarks {
    std::string content;
    std::string resources; // entries; the fonts are not among them
    std::string images;    // entries of the resources' images
};

PdfMarks DrawMarks(PdfWriter& writer, PdfFonts& fonts, const annotations::Annotations& marks,
                   const PdfPagePlace& page);

} // namespace kavidex::imaging
