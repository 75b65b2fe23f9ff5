// What stands in the viewer while its document is shown elsewhere: that it is, and how windows of
// their own close (frmShowExternal).
#pragma once

#include <string>
#include <string_view>

#include "controls/forms/Form.h"
#include "controls/viewer/DocumentView.h"

namespace kavidex::controls {

class ElsewhereView final : public StageView {
public:
    explicit ElsewhereView(ViewerFrame& frame);

    void Show(std::string_view notice); // a key of the translations
    const std::string& Notice() const { return lclNotice; }
    bool Close() override { return true; }
    PartSet Parts() const override { return {Part::Elsewhere}; }
    void SurroundingsChanged() override;
    forms::Form& Form() { return lclForm; }

private:
    ViewerFrame& lclFrame;
    std::string lclNotice;
    forms::Form lclForm;
};

} // namespace kavidex::controls
