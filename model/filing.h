// Filing a file: its document row, its copy in the store and its place in the tree, as one whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/MailInfo.h"
#include "model/clsItem.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::model {

class clsTree;

struct FilingRequest {
    std::string source;            // full path of the file
    NodeId folderId = 0;           // a node of the tree that takes children
    std::string externalId;        // the host's key of the dossier
    std::string description;       // empty: the file's name without its extension
    std::string insertedBy;        // empty: the workstation's user
    std::string insertDate;        // yyyymmdd; empty: now, as its time
    std::string insertTime;        // hhmm
    std::string baseSaveDirectory; // empty: the installation's store
    std::optional<MailInfo> mail;
    bool readOnly = false;
    bool deleteSource = false; // once everything is in place
    bool atRest = false;       // refused while somebody still writes it
};

struct FilingResult {
    bool filed = false;
    clsItemPtr item; // the new node
    std::int32_t docId = 0;
    std::string path;        // the file in the store
    std::int32_t number = 0; // of the error, when not filed
    bool ofSource = false;   // it was the source that could not be read
    std::string error;       // names the file; also told when a filed source could not be deleted
    explicit operator bool() const { return filed; }
};

// Never throws. When it fails, what it had written is taken back and the source is untouched. A
// stop at any step leaves the source in place, and what else it leaves is found by CheckIntegrity.
FilingResult FileDocument(const platform::Workstation& workstation, clsTree& tree,
                          const FilingRequest& request);

class Filing;

// Documents that become true with one commit, which takes less time than one each. A folder of the
// tree is kept from being deleted until all of them are written, so they should share one.
class Filings {
public:
    // Both must outlive it.
    Filings(const platform::Workstation& workstation, clsTree& tree);
    ~Filings(); // what was not written is as if it had never been prepared
    Filings(const Filings&) = delete;
    Filings& operator=(const Filings&) = delete;

    // Copies the source into the store. Nothing: it waits for Write; else why it cannot be filed.
    std::optional<FilingResult> Prepare(const FilingRequest& request);
    std::size_t Waiting() const { return lclWaiting.size(); }
    // What became of those that waited, in their order. Where one is refused, what was written of
    // all is taken back, and each is filed by itself. Never throws, as Prepare.
    std::vector<FilingResult> Write();

private:
    std::vector<FilingResult> OneByOne(const std::vector<std::unique_ptr<Filing>>& refused);

    const platform::Workstation& lclWorkstation;
    clsTree& lclTree;
    std::vector<std::unique_ptr<Filing>> lclWaiting;
};

// The document type of a file: its extension in lower case, or "bin" when there is none or it
// cannot name a folder of the store.
std::string DocumentTypeOf(std::string_view fileName);

// A text cut to what a column of 255 characters holds beside `others`, never within a character.
std::string ColumnText(std::string_view text, std::size_t others = 0);

} // namespace kavidex::model
