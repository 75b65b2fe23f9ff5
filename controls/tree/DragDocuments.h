// What a drag of items hands to other programs: files, so that a document can be dropped on the
// desktop, into a mail, or in another dossier.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "controls/exchange/DragDrop.h"
#include "data/Connection.h"

namespace kavidex::platform {
struct Workstation;
}
namespace kavidex::model {
class clsItem;
}

namespace kavidex::controls {

// Adds the documents to the data: as virtual files, read once they are dropped, and, where they are
// not too many to hold the mouse up, as copies among the temporary files, made when a target asks
// for them. The data may outlive the drag, since targets take their time. What could not be handed
// out is logged, and named in the text that is given back, one line each.
std::shared_ptr<const std::vector<std::string>>
OfferDocuments(const platform::Workstation& workstation, const data::ConnectionPtr& connection,
               const std::vector<std::shared_ptr<model::clsItem>>& documents, DropData& data);

} // namespace kavidex::controls
