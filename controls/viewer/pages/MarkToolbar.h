// The annotation toolbox: its buttons as one table.
#pragma once

#include "controls/common/Commands.h"
#include "controls/common/Toolbar.h"
#include "controls/viewer/DocumentView.h"

namespace kavidex::controls {

class ImageView;

class MarkToolbar final : public ToolbarSource {
public:
    MarkToolbar(ViewerFrame& frame, ImageView& pages) : lclFrame(frame), lclPages(pages) {}

    std::vector<ToolbarItem> Toolbar() override;
    void ButtonClicked(std::string_view name) override;
    PopupMenu ButtonMenu(std::string_view name);
    void MenuChosen(const MenuEntry& entry);

private:
    struct Context;
    static const Commands<Context>& Table();
    data::Translation Translation() const;

    ViewerFrame& lclFrame;
    ImageView& lclPages;
};

} // namespace kavidex::controls
