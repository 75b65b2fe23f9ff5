// What is shown goes to a printer that the user chooses.
#pragma once

#include <string>

#include "controls/common/OperationLock.h"
#include "controls/print/PrintSource.h"
#include "controls/viewer/DocumentView.h"

namespace kavidex::controls {

// `pages`: of which the user may choose a range, 0 where which is settled. Nothing else
// is shown meanwhile. Throws platform::Error while `lock` is held, and where the printer refuses.
void PrintShown(const ViewerFrame& frame, OperationLock& lock, const std::string& title,
                PrintSource& source, int pages);

// By the program of the document's type; throws platform::Error where it has none that prints.
void PrintByProgram(const ViewerFrame& frame, const ShownDocument& document);

} // namespace kavidex::controls
