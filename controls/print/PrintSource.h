// Pages that can be printed: of a scanned document, of a PDF file, or whatever else can draw them.
#pragma once

#include <string>

#include "imaging/PageBitmap.h"
#include "platform/Printers.h"

namespace kavidex::controls {

// Pages count from 1. What cannot be read throws platform::Error.
class PrintSource {
public:
    virtual ~PrintSource() = default;
    virtual int Count() = 0;
    virtual bool IsWide(int page) = 0; // wider than high, on paper
    // For that paper. The resolution tells its size there; without one it fills the paper. `damage`
    // tells why a part of it stayed white.
    virtual imaging::PageBitmap Page(int page, const platform::PrintPaper& paper,
                                     std::string& damage) = 0;
};

} // namespace kavidex::controls
