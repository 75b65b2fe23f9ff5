// Grid: the list of a folder's documents on the viewer's stage.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "controls/common/Event.h"
#include "controls/lists/VirtualList.h"
#include "controls/viewer/DocumentView.h"

namespace kavidex::controls {

class ListView final : public StageView {
public:
    explicit ListView(ViewerFrame& frame);

    // A list that cannot be read is told to the user, and stays empty.
    void Show(const std::shared_ptr<model::clsItem>& folder);
    std::string Caption() const; // "Inhoud van map ..."
    VirtualList& List() { return lclList; }
    // Of the first column, in pixels at 96 dots an inch; 0: an equal share.
    void SetColWidth(std::int32_t width) { lclList.SetWidth(0, width); }

    bool Close() override;
    PartSet Parts() const override { return {Part::Grid}; }
    void SurroundingsChanged() override;

    Event<> Shown;                      // its caption is another
    Event<std::int32_t> DocumentChosen; // by double click or Enter, the id of its tree item

private:
    ViewerFrame& lclFrame;
    VirtualList lclList;
    std::shared_ptr<model::clsItem> lclFolder;
    std::int32_t lclListed = 0; // the folder whose order the list keeps
    std::shared_ptr<void> lclActivated;
};

} // namespace kavidex::controls
