// The printers that Windows lists, its print dialog, and jobs drawn with GDI.
#pragma once

#include <windows.h>

#include "platform/Printers.h"

namespace kavidex::platform::win32 {

class WindowsPrinters final : public Printers {
public:
    std::optional<PrintChoice> Ask(int pages) override;
    std::unique_ptr<PrintJob> Begin(const PrintChoice& choice, std::string_view title) override;

private:
    std::string lclMode, lclNames; // DEVMODE and DEVNAMES of the last choice
};

} // namespace kavidex::platform::win32
