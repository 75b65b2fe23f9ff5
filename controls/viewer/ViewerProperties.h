// What the document viewer keeps in its host's property bag.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "controls/common/PropertyTable.h"

namespace kavidex::controls {

struct ViewerProperties {
    std::int32_t BackColor = 0, ForeColor = 0;
    bool Enabled = true;
    std::int16_t BackStyle = 0, BorderStyle = 0;
    bool ExternalMove = false; // kept for the host: whether pages leave is what the user is asked
    bool AllowMultipleDocScroll = false;
    bool AnnotationsPopupShown = false; // the question about the toolbox was asked
    std::string LastFit = "best";       // the fit mode of every image: "best", "height", "width"
    std::string Description;            // of the document shown

    // Not saved with the host.
    bool DragPossible = false; // pages may be dragged out of the thumbnail pane
};

std::span<const Property<ViewerProperties>> ViewerPropertyTable();

} // namespace kavidex::controls
