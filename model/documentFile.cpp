#include "model/documentFile.h"

#include "data/Error.h"
#include "model/Store.h"
#include "model/clsDocument.h"
#include "model/clsItem.h"
#include "model/storePath.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Workstation.h"

namespace kavidex::model {
namespace {

void Fail(DocumentFile& file, DocumentLook outcome, std::string words, std::int32_t number = 0) {
    file.outcome = outcome;
    file.number = number;
    file.error = std::move(words);
}

void Fail(DocumentFile& file, DocumentLook outcome, const std::exception& error) {
    const auto* const known = dynamic_cast<const platform::Error*>(&error);
    Fail(file, outcome, error.what(), known ? known->Number() : platform::errors::fail);
}

} // namespace

DocumentFile DocumentFiles::Of(const clsItem& item) {
    if (!item.AllowChildren()) return OfDocument(item.ItemId());
    DocumentFile folder;
    folder.error = "Item " + Number(item.Id()) + " is a folder.";
    return folder;
}

DocumentFile DocumentFiles::OfDocument(std::int32_t docId) {
    DocumentFile file;
    if (docId <= 0) {
        file.error = "There is no document " + Number(docId) + ".";
        return file;
    }
    if (ReadRow(file, docId) && FindRoot(file)) FindFile(file);
    if (file.number != 0)
        lclWorkstation.log.Write("DocumentFiles", "Document " + Number(docId) + ": " + file.error);
    return file;
}

bool DocumentFiles::ReadRow(DocumentFile& file, std::int32_t docId) {
    try {
        clsDocument row(lclWorkstation);
        row.SetDatabaseObject(lclConnection);
        if (!row.Load(docId)) {
            Fail(file, DocumentLook::NoRow, "Document " + Number(docId) + " has no row.");
            return false;
        }
        file.docId = docId;
        file.type = row.DocType();
        file.description = row.Description();
        file.externalId = row.ExternalId();
        file.insertedBy = row.InsertedBy();
        file.insertDate = row.InsertDate();
        file.insertTime = row.InsertTime();
        file.readOnly = row.ReadOnly();
        if (row.HasExtraInfo())
            file.extraInfo = {row.SendTo(), row.RecievedFrom(), row.SendOn(), row.RecievedOn(),
                              row.NumberOfAttatchements()};
        return true;
    } catch (const std::exception& error) {
        Fail(file, DocumentLook::ReadFailed, error);
        return false;
    }
}

bool DocumentFiles::FindRoot(DocumentFile& file) {
    try {
        if (!lclRoot) lclRoot = FindStore(lclWorkstation, lclConnection).value_or("");
        if (!lclRoot->empty()) return true;
        Fail(file, DocumentLook::NoStore, "DocumentPath in section Storage not found");
    } catch (const std::exception& error) {
        Fail(file, DocumentLook::ReadFailed, error);
    }
    return false;
}

void DocumentFiles::FindFile(DocumentFile& file) const {
    platform::Files& files = lclWorkstation.files;
    try {
        file.path = DocumentPath(*lclRoot, file.insertDate, file.type, file.docId);
    } catch (const platform::Error& error) {
        return Fail(file, DocumentLook::BadPath, error);
    }
    try {
        const bool folder = files.Attributes(file.path) & platform::attributes::directory;
        if (!folder) file.outcome = DocumentLook::Ok;
        if (folder) Fail(file, DocumentLook::FileMissing, file.path + " is a folder.");
    } catch (const platform::Error& error) {
        const bool absent = error.Number() == platform::errors::notFound ||
                            error.Number() == platform::errors::pathNotFound;
        if (!absent) return Fail(file, DocumentLook::LookFailed, error);
        if (files.DirectoryExists(*lclRoot))
            return Fail(file, DocumentLook::FileMissing, file.path + " is not there.");
        Fail(file, DocumentLook::NoStore, "The document store \"" + *lclRoot + "\" is not there.",
             error.Number());
    }
}

} // namespace kavidex::model
