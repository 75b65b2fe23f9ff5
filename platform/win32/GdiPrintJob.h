// A print job drawn with GDI, from the printer's settings to the last page.
#pragma once

#include <memory>
#include <string_view>

#include "platform/Printers.h"

namespace kavidex::platform::win32 {

// Null when the user cancelled it; throws platform::Error when the printer refuses.
std::unique_ptr<PrintJob> BeginGdiJob(const PrintChoice& choice, std::string_view title);

} // namespace kavidex::platform::win32
