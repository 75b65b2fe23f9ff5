// The one way in which the binder's operations end on an error.
#pragma once

#include "controls/binder/ctrlCorrespondence.h"

namespace kavidex::controls {

template <class Work>
void ctrlCorrespondence::Guarded(std::string_view where, Work work) const {
    try {
        work();
    } catch (const std::exception& error) {
        ReportError(where, error);
    }
}

} // namespace kavidex::controls
