#include "imaging/pdf/PdfDocument.h"

#include "imaging/pdf/PageImage.h"
#include "imaging/pdf/PdfMarks.h"
#include "imaging/pdf/PdfTextPages.h"
#include "imaging/pdf/TiffSource.h"
#include "imaging/tiff/Resolution.h"
#include "imaging/tiff/Samples.h"
#include "platform/Files.h"

namespace kavidex::imaging {

namespace {

constexpr double pointsPerInch = 72, assumedDpi = 200, assumedJpegDpi = 96;

// From the page as it is stored to the page as it is shown, both in points with y upwards; `w` and
// `h` are the stored sides.
std::string Upright(int orientation, double w, double h) {
    const double rows[8][6] = {
        {1, 0, 0, 1, 0, 0},   {-1, 0, 0, 1, w, 0}, {-1, 0, 0, -1, w, h}, {1, 0, 0, -1, 0, h},
        {0, -1, -1, 0, h, w}, {0, -1, 1, 0, 0, w}, {0, 1, 1, 0, 0, 0},   {0, 1, -1, 0, h, 0},
    };
    if (orientation == 1) return {};
    std::string text;
    for (const double value : rows[orientation - 1]) text += PdfNumber(value) + " ";
    return text + "cm\n";
}

PdfPagePlace Turned(const PdfPagePlace& stored, int orientation) {
    if (!SwapsSides(orientation)) return stored;
    return {stored.height, stored.width, stored.scaleY, stored.scaleX};
}

std::string Drawn(const ImagePiece& piece, const PdfPagePlace& page, const std::string& name) {
    const double x = piece.x * page.scaleX, width = piece.width * page.scaleX,
                 height = piece.height * page.scaleY,
                 y = page.height - piece.y * page.scaleY - height;
    return "q " + PdfNumber(width) + " 0 0 " + PdfNumber(height) + " " + PdfNumber(x) + " " +
           PdfNumber(y) + " cm " + name + " Do Q\n";
}

} // namespace

PdfDocument::PdfDocument(ByteSink sink, FontSource& fonts)
    : lclWriter(std::move(sink)), lclFonts(lclWriter, fonts) {}

void PdfDocument::AddPage(tiff::Source& source, int page, bool marks) {
    const tiff::Directory directory = source.Page(page);
    const int orientation = tiff::OrientationOf(source, directory);
    const tiff::Resolution dpi = tiff::ResolutionOf(source, directory);
    const TiffSource file(source, page);
    const TiffFacts facts(file);
    const double x = pointsPerInch / (dpi.x > 0 ? dpi.x : assumedDpi),
                 y = pointsPerInch / (dpi.y > 0 ? dpi.y : assumedDpi);
    const PdfPagePlace stored{facts.width * x, facts.height * y, x, y};
    const PdfPagePlace shown = Turned(stored, orientation);
    std::string content = "q " + Upright(orientation, stored.width, stored.height), images,
                resources;
    for (const ImagePiece& piece : ReadPageImage(file, facts)) {
        const int object = lclWriter.Stream(piece.entries, piece.data);
        const std::string name = "/I" + std::to_string(object);
        images += name + " " + PdfReference(object) + " ";
        content += Drawn(piece, stored, name);
    }
    content += "Q\n";
    // Marks count in the elements of the page as it is shown.
    const tiff::Entry* tag = marks ? directory.Find(annotations::tagNumber) : nullptr;
    if (tag) {
        PdfMarks drawn =
            DrawMarks(lclWriter, lclFonts, annotations::Annotations(source.Value(*tag)), shown);
        content += drawn.content;
        images += drawn.images;
        resources = drawn.resources + lclFonts.Resources();
    }
    resources += "/XObject << " + images + ">>";
    lclWriter.Page(shown.width, shown.height, resources, content);
}

void PdfDocument::AddTiff(platform::Files& files, std::string_view path, bool marks) {
    tiff::Source source(files, path);
    const int count = source.PageCount();
    for (int page = 1; page <= count; ++page) AddPage(source, page, marks);
}

bool PdfDocument::AddJpeg(std::string bytes) {
    const auto file = ReadJpegFile(std::move(bytes));
    if (!file) return false;
    const double x = pointsPerInch / (file->xDpi > 0 ? file->xDpi : assumedJpegDpi),
                 y = pointsPerInch / (file->yDpi > 0 ? file->yDpi : assumedJpegDpi);
    const PdfPagePlace stored{file->piece.width * x, file->piece.height * y, x, y},
        shown = Turned(stored, file->orientation);
    const int object = lclWriter.Stream(file->piece.entries, file->piece.data);
    lclWriter.Page(shown.width, shown.height, "/XObject << /I " + PdfReference(object) + " >>",
                   Upright(file->orientation, stored.width, stored.height) +
                       Drawn(file->piece, stored, "/I"));
    return true;
}

void PdfDocument::AddText(std::string_view heading, std::string_view text) {
    WriteTextPages(lclWriter, lclFonts, heading, text);
}

void PdfDocument::Finish(std::string_view title) {
    lclFonts.Finish();
    lclWriter.Finish(title);
}

void SavePdf(platform::Files& files, std::string_view target, std::string_view title,
             const std::function<void(PdfDocument&)>& fill) {
    const std::unique_ptr<platform::FileWriter> file = files.Writer(target);
    PdfDocument document([&](std::string_view bytes) { file->Write(bytes); });
    fill(document);
    document.Finish(title);
    // It can be made again from what it was made of.
    file->PutInPlace(false, false);
}

} // namespace kavidex::imaging
