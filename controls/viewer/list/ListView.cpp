#include "controls/viewer/list/ListView.h"

#include "controls/viewer/list/DocumentList.h"
#include "model/clsItem.h"

namespace kavidex::controls {

ListView::ListView(ViewerFrame& frame)
    : lclFrame(frame), lclList(DocumentListColumns()),
      lclActivated(
          lclList.Activated.Subscribe([this](std::int32_t id) { DocumentChosen.Raise(id); })) {
    SurroundingsChanged();
}

void ListView::SurroundingsChanged() {
    lclList.SetTranslation(
        [this](std::string_view text, const auto& values) { return lclFrame.Text(text, values); });
    Shown.Raise();
}

void ListView::Show(const std::shared_ptr<model::clsItem>& folder) {
    lclFolder = folder;
    lclList.SetRows(nullptr);
    if (lclListed != folder->Id()) lclList.Unsort();
    lclListed = folder->Id();
    try {
        lclList.SetRows(OpenDocumentList(lclFrame.Connection(), folder->Id()));
    } catch (const std::exception& error) {
        lclFrame.TellError("ShowList", error);
    }
    Shown.Raise();
}

std::string ListView::Caption() const {
    return lclFolder ? lclFrame.Text("Inhoud van map '$%$'", {lclFolder->Description()})
                     : std::string();
}

bool ListView::Close() {
    lclFolder.reset();
    lclList.SetRows(nullptr);
    return true;
}

} // namespace kavidex::controls
