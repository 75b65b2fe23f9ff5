// The dialog "Eigenschappen van gescand document": who filed a scan and when, and what its file
// says of itself and of the page that is shown.
#pragma once

#include "controls/forms/Form.h"
#include "controls/viewer/DocumentView.h"
#include "imaging/PageFile.h"

namespace kavidex::controls {

class frmScanProperties {
public:
    frmScanProperties(const ViewerFrame& frame, const ShownDocument& document);

    // Throws platform::Error where the file cannot be read.
    void fncFill(int page, const std::string& caption);
    forms::Form& Form() { return lclForm; }

private:
    void FillDocument();
    void FillPage(const imaging::PageFacts& facts);

    const ViewerFrame& lclFrame;
    const ShownDocument& lclDocument;
    forms::Form lclForm;
};

} // namespace kavidex::controls
