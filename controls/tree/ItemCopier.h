// Making items that stand for documents: new notes, and copies of what is elsewhere.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "data/Connection.h"
#include "model/documentFile.h"

namespace kavidex::model {
class clsTree;
}

namespace kavidex::controls {

// A note in which nothing is written yet: its document row and its item, or neither. Null when the
// user was told why, or the folder does not take it. Throws platform::Error.
std::shared_ptr<model::clsItem> AddNote(const platform::Workstation& workstation,
                                        model::clsTree& tree, std::string_view dossierKey,
                                        std::string_view description, std::int32_t folder);

// A copy of a document is a document of its own, with a row and a file of its own.
class ItemCopier {
public:
    // `from` is the database of the items; `into` may belong to another one. Where nobody knows the
    // key of the host's there, a copy keeps that of the original.
    ItemCopier(const platform::Workstation& workstation, data::ConnectionPtr from,
               model::clsTree& into, std::optional<std::string> dossierKey)
        : lclWorkstation(workstation), lclTree(into), lclDocuments(workstation, std::move(from)),
          lclDossierKey(std::move(dossierKey)) {}

    // The item alone, without what is below it. Throws platform::Error; nothing is left then. A
    // note whose file is missing may be one in which nothing was written: it is copied as such,
    // unless the original is to go (`moves`).
    std::shared_ptr<model::clsItem> Copy(const model::clsItem& item, std::int32_t folder,
                                         bool moves);

private:
    std::shared_ptr<model::clsItem> CopyDocument(const model::DocumentFile& document,
                                                 const model::clsItem& item, std::int32_t folder,
                                                 bool moves);

    const platform::Workstation& lclWorkstation;
    model::clsTree& lclTree;
    model::DocumentFiles lclDocuments;
    std::optional<std::string> lclDossierKey;
};

} // namespace kavidex::controls
