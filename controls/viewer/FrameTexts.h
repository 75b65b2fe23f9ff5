// The viewer's texts for a form of one of its views, in whatever language they are at the time.
#pragma once

#include "controls/common/Translator.h"
#include "controls/viewer/DocumentView.h"

namespace kavidex::controls {

class FrameTexts final : public Translator {
public:
    explicit FrameTexts(const ViewerFrame& frame) : lclFrame(frame) {}
    std::string Translate(std::string_view text, const std::vector<std::string>& values) override {
        return lclFrame.Text(text, values);
    }

private:
    const ViewerFrame& lclFrame;
};

} // namespace kavidex::controls
