// The views of one document viewer, and which of them shows a document of which type.
#pragma once

#include "controls/viewer/DocumentView.h"
#include "controls/viewer/LinkView.h"
#include "controls/viewer/NoteView.h"
#include "controls/viewer/browser/BrowserView.h"
#include "controls/viewer/external/ElsewhereView.h"
#include "controls/viewer/list/ListView.h"
#include "controls/viewer/mail/MailView.h"
#include "controls/viewer/pages/ImageView.h"

namespace kavidex::controls {

struct ViewerViews {
    ViewerViews(ViewerFrame& frame, PageHost& host)
        : owner(frame), image(frame, host), note(frame), list(frame), link(frame), facts(frame),
          mail(frame, browser, facts), other(frame, browser, facts), elsewhere(frame) {}

    ViewerFrame& owner;

    ImageView image; // img1 and Thumbs
    NoteView note;
    ListView list; // Grid
    LinkView link;

    BrowserPane browser; // webctl
    FactsPane facts;
    MailView mail; // frmMail
    BrowserView other;
    ElsewhereView elsewhere; // frmShowExternal

    // Where the browser control shows no PDF in place, and its pages can be drawn here.
    bool DrawsPdf() const;
    // Null where no view shows the type.
    DocumentView* For(const ShownDocument& document);
};

} // namespace kavidex::controls
