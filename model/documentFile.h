// From a tree item to its document: what its row says, where its file lies, and whether it is
// there. The one look-up of everything that shows, sends, prints or copies documents.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "data/Connection.h"
#include "model/MailInfo.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::model {

class clsItem;

enum class DocumentLook {
    Ok,          // the row was read and the file is there
    NoDocument,  // the item stands for none: a folder, a user
    NoRow,       // the document has no living row
    ReadFailed,  // the database did not say; nothing is known of row or store
    NoStore,     // no store is set up, or its root is not there: an unmounted drive
    BadPath,     // the row's date or type leads out of the store
    FileMissing, // the store is there, the file is not; so is a note in which nothing was written
    LookFailed,  // the file system did not say whether the file is there
};

struct DocumentFile {
    DocumentLook outcome = DocumentLook::NoDocument;
    std::int32_t number = 0; // of the error, where there was one
    std::string error;       // in words for the log or a message's details; empty when Ok

    std::int32_t docId = 0; // 0 as long as no row was read; what follows is then empty
    std::string type, description, externalId;
    std::string insertedBy, insertDate, insertTime; // yyyymmdd, hhmm
    bool readOnly = false;
    std::optional<MailInfo> extraInfo; // none when the document has no such row

    std::string path; // full path; known from the row and the store on, whether it is there or not

    bool HasRow() const { return docId != 0; }
    bool HasFile() const { return outcome == DocumentLook::Ok; }
};

// For one operation over one or many documents: the store's root is read once. Never throws and
// shows nothing; what failed is logged.
class DocumentFiles {
public:
    DocumentFiles(const platform::Workstation& workstation, data::ConnectionPtr connection)
        : lclWorkstation(workstation), lclConnection(std::move(connection)) {}

    DocumentFile Of(const clsItem& item);
    DocumentFile OfDocument(std::int32_t docId);

private:
    bool ReadRow(DocumentFile& file, std::int32_t docId);
    bool FindRoot(DocumentFile& file);
    void FindFile(DocumentFile& file) const;

    const platform::Workstation& lclWorkstation;
    const data::ConnectionPtr lclConnection;
    std::optional<std::string> lclRoot; // empty: there is none
};

inline DocumentFile FindDocumentFile(const platform::Workstation& workstation,
                                     const data::ConnectionPtr& connection, const clsItem& item) {
    return DocumentFiles(workstation, connection).Of(item);
}

} // namespace kavidex::model
