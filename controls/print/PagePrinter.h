// Prints pages as one job, each in its own resolution and depth of colour.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "controls/print/PrintSource.h"

namespace kavidex::controls {

struct PagesPrinted {
    bool stopped = false; // by the user: what was not printed yet is taken back
    std::string damage;   // of pages that were printed as far as they can be read; empty: none
};

// Before each page `step` is asked with the number of pages done, and of all; false stops. Throws
// platform::Error, and takes the job back, when the printer refuses or a page cannot be read.
PagesPrinted PrintPages(platform::Printers& printers, const platform::PrintChoice& choice,
                        std::string_view title, PrintSource& source,
                        const std::function<bool(int done, int total)>& step);

// Of a page of so many inches that can be drawn at any size: no finer than the paper shows it.
struct DrawnSize {
    std::uint32_t width = 1, height = 1;
};
DrawnSize SizeForPaper(double width, double height, const platform::PrintPaper& paper);

// In its true size, in the middle; smaller where the paper is.
platform::PrintPlace PlaceOnPaper(const imaging::PageBitmap& page,
                                  const platform::PrintPaper& paper);

} // namespace kavidex::controls
