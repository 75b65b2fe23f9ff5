#include "controls/viewer/ViewerProperties.h"

namespace kavidex::controls {

std::span<const Property<ViewerProperties>> ViewerPropertyTable() {
    using P = ViewerProperties;
    static constexpr Property<P> table[] = {
        {"BackColor", &P::BackColor, 0},
        {"ForeColor", &P::ForeColor, 0},
        {"Enabled", &P::Enabled, true},
        {"BackStyle", &P::BackStyle, 0, {}, {}, 0, 1},
        {"BorderStyle", &P::BorderStyle, 0, {}, {}, 0, 1},
        {"ExternalMove", &P::ExternalMove, false},
        {"AllowMultipleDocScroll", &P::AllowMultipleDocScroll, false},
        {"AnnotationsPopupShown", &P::AnnotationsPopupShown, false},
        {"LastFit", &P::LastFit, "best"},
        {"Description", &P::Description, ""},
    };
    return table;
}

} // namespace kavidex::controls
