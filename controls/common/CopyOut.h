// Copying documents out of the store under the names that users know them by.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "controls/common/OperationLock.h"
#include "data/Connection.h"
#include "data/Texts.h"
#include "model/documentFile.h"

namespace kavidex::model {
class clsItem;
}

namespace kavidex::controls {

// A text as the name of a file, without an extension, as Windows takes it.
std::string OutgoingStem(std::string_view text);
// The file name under which an item goes out: its description and its type.
std::string OutgoingName(const model::clsItem& item);

// Documents handed out one by one. May outlive whoever asked for them.
class OutgoingDocuments {
public:
    OutgoingDocuments(const platform::Workstation& workstation, data::ConnectionPtr connection)
        : lclWorkstation(workstation), lclDocuments(workstation, std::move(connection)) {}

    // The path of a copy in the folder, under a name of its own there. Empty for what has no file
    // by its nature: a folder, a note in which nothing was written. Throws platform::Error.
    std::string CopyInto(std::string_view folder, const model::clsItem& item);
    // As above, the content itself.
    std::string Bytes(const model::clsItem& item);

private:
    std::optional<std::string> FileOf(const model::clsItem& item);

    const platform::Workstation& lclWorkstation;
    model::DocumentFiles lclDocuments;
};

struct CopiedOut {
    std::vector<std::string> files;  // full paths of the copies
    std::vector<std::string> failed; // descriptions of those left out; the log tells why
    std::size_t left = 0;            // documents that were not tried, since the user stopped it
};

// Folders and notes in which nothing was written have no file. The busy dialog lets the user stop:
// what was copied by then stays. Throws platform::Error while another operation runs.
// `copied` hears of each copy.
CopiedOut
CopyOut(const platform::Workstation& workstation, const data::ConnectionPtr& connection,
        OperationLock& lock, const data::Translation& translation,
        std::span<const std::shared_ptr<model::clsItem>> items, std::string_view folder,
        const std::function<void(const model::clsItem&, const std::string& path)>& copied = {});

// A fresh folder for such copies among the user's temporary files, where those of more than a week
// ago are removed. Throws platform::Error.
std::string MakeCopyFolder(const platform::Workstation& workstation);

} // namespace kavidex::controls
