// Links to documents that are held elsewhere (type "edf"): the host is asked to open what they
// name; the viewer itself shows nothing.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "controls/viewer/DocumentView.h"

namespace kavidex::controls {

class LinkView final : public DocumentView {
public:
    explicit LinkView(ViewerFrame& frame) : lclFrame(frame) {}

    bool Show(const ShownDocument& document) override;
    bool Close() override { return true; }
    PartSet Parts() const override { return {}; }

private:
    ViewerFrame& lclFrame;
};

// The two values of a link file: the entry "Input" of its section "Param", parted at the semicolon.
// Null where there is none.
using Link = std::pair<std::string, std::string>;
std::optional<Link> ReadLink(std::string_view bytes);

} // namespace kavidex::controls
