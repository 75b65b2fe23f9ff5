// Scanned pages into a PDF file against copying the file they lie in.
#include <cstdlib>

#include "bench/ratio.h"
#include "imaging/pdf/PdfDocument.h"
#include "platform/Files.h"
#include "platform/Workstation.h"

using namespace kavidex;

int main() {
    platform::Files& files = platform::TheWorkstation().files;
    const std::string folder = files.TemporaryFolder() + "kavidex-bench-pdf";
    const std::string native = platform::NativePath(folder);
    // Pages of words; the last command takes the name as often as there are pages.
    const std::string make =
        "mkdir -p '" + native + "' && cd '" + native +
        "' && convert -size 2480x3508 xc:white -fill black -pointsize 40 -annotate +100+150 "
        "\"$(seq -s ' ' 1 2500 | fold -sw 95)\" -density 300 -units PixelsPerInch -type bilevel "
        "-depth 1 -compress Group4 page.tif && tiffcp -c g4 -r 5000 page.tif one.tif && "
        "tiffcp $(yes one.tif | head -n 200) pages.tif";
    if (std::system(make.c_str()) != 0) {
        std::puts("the pages cannot be made: ImageMagick or libtiff's tools are not here");
        return 1;
    }
    const std::string pages = folder + "\\pages.tif";
    const bench::Times times = bench::Measure(
        [&] {
            imaging::SavePdf(files, folder + "\\pages.pdf", "pages",
                             [&](imaging::PdfDocument& pdf) { pdf.AddTiff(files, pages, false); });
        },
        [&] { files.Copy(pages, folder + "\\copy.tif", false); });
    const bool fast = bench::AtMost("200 G4 pages to PDF / copying the file", times, 3);
    const auto size = static_cast<double>(files.Size(folder + "\\pages.pdf"));
    const double room = static_cast<double>(files.Size(pages)) * 1.02 + 200 * 2048.0;
    std::printf("its size %.0f of at most %.0f bytes  %s\n", size, room,
                size <= room ? "ok" : "MISSED");
    return std::system(("rm -rf '" + native + "'").c_str()) == 0 && fast && size <= room ? 0 : 1;
}
