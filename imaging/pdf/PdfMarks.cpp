#include "imaging/pdf/PdfMarks.h"

#include <algorithm>

#include "imaging/WrapText.h"
#include "imaging/annotations/Dib.h"
#include "imaging/annotations/TextFrame.h"
#include "imaging/pdf/Flate.h"
#include "imaging/pdf/PageImage.h"
#include "imaging/pdf/PdfFonts.h"
#include "imaging/pdf/PdfWriter.h"

namespace kavidex::imaging {

namespace {

using annotations::Box;
using annotations::Colour;
using annotations::Mark;
using annotations::MarkType;

std::string Numbers(std::initializer_list<double> values) {
    std::string text;
    for (const double value : values) text += PdfNumber(value) + " ";
    return text;
}

std::string Paint(const Colour& colour, const char* operation) {
    return Numbers({colour.red / 255.0, colour.green / 255.0, colour.blue / 255.0}) + operation +
           "\n";
}

class Drawing {
public:
    Drawing(PdfWriter& writer, PdfFonts& fonts, const PdfPagePlace& page)
        : lclWriter(writer), lclFonts(fonts), lclPage(page) {}

    void Draw(const Mark& mark) {
        lclMarks.content += mark.highlighting ? "q /Over gs\n" : "q\n";
        if (mark.HasText()) {
            if (mark.type == MarkType::Note) Paper(mark);
            Text(mark);
        } else if (mark.HasImage()) {
            Image(mark);
        } else {
            Shape(mark);
        }
        lclMarks.content += "Q\n";
    }

    PdfMarks Finish() {
        lclMarks.resources = "/ExtGState << /Over << /BM /Multiply >> >> ";
        return std::move(lclMarks);
    }

private:
    // Pixels of the page from here on, its first row on top.
    void ToPixels() {
        lclMarks.content +=
            Numbers({lclPage.scaleX, 0, 0, -lclPage.scaleY, 0, lclPage.height}) + "cm\n";
    }

    static std::string Rectangle(const Box& box, double inset) {
        return Numbers({box.left + inset, box.top + inset,
                        std::max(0.0, double(box.right) - box.left - 2 * inset),
                        std::max(0.0, double(box.bottom) - box.top - 2 * inset)}) +
               "re ";
    }

    static std::string Lines(const Mark& mark) {
        std::string path;
        for (std::size_t i = 0; i < mark.points.size(); ++i)
            path += Numbers({double(mark.bounds.left) + mark.points[i].x,
                             double(mark.bounds.top) + mark.points[i].y}) +
                    (i == 0 ? "m " : "l ");
        if (mark.points.size() == 1)
            path += Numbers({double(mark.bounds.left) + mark.points[0].x,
                             double(mark.bounds.top) + mark.points[0].y}) +
                    "l ";
        return path;
    }

    void Shape(const Mark& mark) {
        ToPixels();
        const double width = std::max(1u, mark.lineWidth);
        const Box box = mark.bounds.Normal();
        std::string& content = lclMarks.content;
        content += Paint(mark.colour, "RG") + Paint(mark.colour, "rg") + PdfNumber(width) + " w ";
        switch (mark.type) {
        case MarkType::HollowRectangle: content += Rectangle(box, width / 2) + "S\n"; break;
        case MarkType::FilledRectangle: content += Rectangle(box, 0) + "f\n"; break;
        case MarkType::HollowPolygon: content += "1 j " + Lines(mark) + "s\n"; break;
        case MarkType::FilledPolygon: content += Lines(mark) + "f*\n"; break;
        default: content += "1 J 1 j " + Lines(mark) + "S\n"; break;
        }
    }

    void Paper(const Mark& mark) {
        const Box box = mark.bounds.Normal();
        lclMarks.content += "q\n";
        ToPixels();
        lclMarks.content +=
            Paint(mark.colour, "rg") + "0 G 1 w " + Rectangle(box, 0.5) + "B\nQ\nq\n";
        ToPixels();
        lclMarks.content += Rectangle(box, 0) + "W n\n";
        // Back to points for the text.
        lclMarks.content += Numbers({1 / lclPage.scaleX, 0, 0, -1 / lclPage.scaleY, 0,
                                     lclPage.height / lclPage.scaleY}) +
                            "cm\n";
    }

    // In points, so that letters keep their form where the resolutions differ.
    void Text(const Mark& mark) {
        const annotations::TextFrame frame = annotations::FrameOf(mark);
        const PdfFonts::Style style{mark.font.face.empty() ? "Arial" : mark.font.face,
                                    mark.font.weight >= 600, mark.font.italic};
        const double size = mark.TextPixels() * lclPage.scaleY;
        const double room = frame.length * (frame.alongX ? lclPage.scaleX : lclPage.scaleY);
        const auto lines = WrapText(mark.text, room, [&](std::string_view text) {
            return lclFonts.Width(style, text) * size;
        });
        constexpr double directions[4][2] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
        const double cosine = directions[frame.quarters][0], sine = directions[frame.quarters][1];
        const double ascent = lclFonts.Ascent(style) * size;
        const double step = ascent + lclFonts.Descent(style) * size;
        const double x = frame.x * lclPage.scaleX, y = lclPage.height - frame.y * lclPage.scaleY;
        lclMarks.content +=
            Paint(mark.type == MarkType::Note ? mark.textColour : mark.colour, "rg");
        lclMarks.content += "BT\n";
        double down = ascent;
        for (const std::string& line : lines) {
            lclMarks.content +=
                Numbers({cosine, sine, -sine, cosine, x + sine * down, y - cosine * down}) + "Tm ";
            for (const TextRun& run : lclFonts.Runs(style, line))
                lclMarks.content +=
                    "/" + run.font->Name() + " " + PdfNumber(size) + " Tf <" + run.codes + "> Tj ";
            lclMarks.content += "\n";
            down += step;
        }
        lclMarks.content += mark.type == MarkType::Note ? "ET\nQ\n" : "ET\n";
    }

    void Image(const Mark& mark) {
        const auto dib = annotations::ReadDib(mark.image);
        if (!dib) return; // the picture lies in a file elsewhere, or cannot be read
        const PageBitmap image = annotations::TurnedImage(*dib, mark.imageRotation);
        std::string entries = SizeEntries(image.width, image.height, 8) +
                              "/ColorSpace /DeviceRGB /Filter /FlateDecode";
        if (mark.transparent) entries += " /Mask [255 255 255 255 255 255]";
        const int object = lclWriter.Stream(
            entries,
            Deflated({reinterpret_cast<const char*>(image.bytes.data()), image.bytes.size()}));
        const std::string name = "/M" + std::to_string(object);
        const Box box = mark.bounds.Normal();
        const double width = (double(box.right) - box.left) * lclPage.scaleX,
                     height = (double(box.bottom) - box.top) * lclPage.scaleY;
        lclMarks.images += name + " " + PdfReference(object) + " ";
        lclMarks.content += Numbers({width, 0, 0, height, box.left * lclPage.scaleX,
                                     lclPage.height - box.bottom * lclPage.scaleY}) +
                            "cm " + name + " Do\n";
    }

    PdfWriter& lclWriter;
    PdfFonts& lclFonts;
    const PdfPagePlace& lclPage;
    PdfMarks lclMarks;
};

} // namespace

PdfMarks DrawMarks(PdfWriter& writer, PdfFonts& fonts, const annotations::Annotations& marks,
                   const PdfPagePlace& page) {
    Drawing drawing(writer, fonts, page);
    for (std::size_t i = 0; i < marks.Count(); ++i) {
        const Mark mark = marks.At(i);
        if (mark.visible && mark.IsKnown()) drawing.Draw(mark);
    }
    return drawing.Finish();
}

} // namespace kavidex::imaging
