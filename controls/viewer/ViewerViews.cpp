#include "controls/viewer/ViewerViews.h"

#include "platform/Shell.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

namespace {

struct Row {
    std::string_view type; // empty: every type
    DocumentView& (*view)(ViewerViews& views);
    // Whether it shows this one; null: always.
    bool (*shows)(ViewerViews& views, const ShownDocument& document) = nullptr;
};

// The first row that fits counts.
constexpr Row rows[] = {
    {"tif", [](ViewerViews& views) -> DocumentView& { return views.image; }},
    {"tiff", [](ViewerViews& views) -> DocumentView& { return views.image; }},
    {"pdf", [](ViewerViews& views) -> DocumentView& { return views.image; },
     [](ViewerViews& views, const ShownDocument&) { return views.DrawsPdf(); }},
    {"nnt", [](ViewerViews& views) -> DocumentView& { return views.note; }},
    {"msg", [](ViewerViews& views) -> DocumentView& { return views.mail; }},
    {"edf", [](ViewerViews& views) -> DocumentView& { return views.link; }},
    {"", [](ViewerViews& views) -> DocumentView& { return views.other; }},
};

} // namespace

bool ViewerViews::DrawsPdf() const {
    return CanDrawPdf() &&
           (other.PdfFails() || !owner.Machine().shell.BrowserShows("application/pdf"));
}

DocumentView* ViewerViews::For(const ShownDocument& document) {
    for (const auto& row : rows)
        if ((row.type.empty() || row.type == document.type) &&
            (!row.shows || row.shows(*this, document)))
            return &row.view(*this);
    return nullptr;
}

} // namespace kavidex::controls
