#include "model/clsDocument.h"

#include <optional>

#include "data/Error.h"
#include "data/logText.h"
#include "data/modData.h"
#include "model/Store.h"
#include "model/storePath.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::model {
namespace {

constexpr std::string_view markedDescription = "Document allready exists";

} // namespace

clsDocument::clsDocument(const platform::Workstation& workstation)
    : RecordClass(workstation, "tblDocument", "Section Runtime Error $%$", "clsDocument") {}

std::string clsDocument::Columns() const {
    return "select Id, ExternalId, InsertedBy, InsertDate, InsertTime, Description, ReadOnly, "
           "Type, DocId FROM " +
           TableName();
}

bool clsDocument::Load(std::int32_t docId) {
    const data::RecordsetPtr rows = Store(DbConnection())
                                        .Read(Columns() + " WHERE DocId = " + Number(docId) +
                                              " and Id > 0"); // a deleted row has its key negated
    if (rows->Eof()) return false;
    ReadRow(*rows);
    return true;
}

std::string clsDocument::SelectStatement() const {
    std::string statement = Columns();
    statement += lclCriteria.empty() ? " WHERE tbldocument.Docid = " + Number(lclId)
                                     : " WHERE " + lclCriteria;
    if (!Ordering().empty()) statement += " order by " + Ordering();
    return statement;
}

void clsDocument::ReadRow(const data::Recordset& row) {
    lclId = data::ToInt32(row.Get("Id"));
    SetDocId(data::ToInt32(row.Get("DocId")));
    lclExternalId = TrimmedText(row.Get("ExternalId"));
    lclInsertedBy = TrimmedText(row.Get("InsertedBy"));
    lclInsertDate = TrimmedText(row.Get("InsertDate"));
    lclInsertTime = TrimmedText(row.Get("InsertTime"));
    lclDescription = TrimmedText(row.Get("Description"));
    lclReadOnly = data::ToBool(row.Get("ReadOnly"));
    lclDocType = TrimmedText(row.Get("Type"));
    LoadExtraInfo();
}

void clsDocument::LoadExtraInfo() {
    const data::RecordsetPtr row =
        Store(DbConnection())
            .Read("Select * from tblDocExtraInfo where DocId = " + Number(lclDocId));
    const bool found = !row->Eof();
    lclExtraInfoOf = lclDocId;
    lclExtraInfoId = found ? data::ToInt32(row->Get("Id")) : 0;
    const auto text = [&](std::string_view column, std::int64_t& size) {
        size = found ? row->Fields()[row->IndexOf(column)].definedSize : 0;
        return found ? TrimmedText(row->Get(column)) : std::string();
    };
    lclSendOn = text("SendOn", lclExtraSizes.sendOn);
    lclRecievedOn = text("RecievedOn", lclExtraSizes.recievedOn);
    lclRecievedFrom = text("SendFrom", lclExtraSizes.from);
    lclSendTo = text("SendTo", lclExtraSizes.to);
    const std::string count = text("NrOfAttatchements", lclExtraSizes.attachments);
    lclNumberOfAttatchements = data::ToInt32(data::Value(count));
}

std::string clsDocument::BaseFolder() const {
    if (lclBaseSaveDirectory.empty()) return StoreOrTold(Machine(), DbConnection(), Translation());
    return WithBackslash(lclBaseSaveDirectory);
}

std::string clsDocument::StorePath() const {
    return DocumentPath(BaseFolder(), lclInsertDate, lclDocType, lclDocId);
}

// The path of a file that is to be written: the type folder is made, unless the base is unknown.
std::string clsDocument::MakePath(std::string_view base, std::int32_t id) const {
    if (!base.empty()) MakeTypeFolder(base);
    return DocumentPath(base, lclInsertDate, lclDocType, id);
}

std::string clsDocument::MakeTypeFolder(std::string_view base) const {
    std::string folder = TypeFolder(base, lclInsertDate, lclDocType);
    MakeStoreFolder(Machine(), base, folder);
    return folder;
}

bool clsDocument::SaveNewRow() {
    return Guarded("SaveNewRow", [&] {
        InsertNewRow();
        RowSaved();
        return true;
    });
}

void clsDocument::InsertNewRow() {
    const Store store(DbConnection());
    lclAllreadyExists = false;
    lclGuid = NewGuid(Machine());
    const std::string guid = data::SqlValue(lclGuid);
    NewRow row;
    row.insert = "Insert into " + TableName() +
                 " (ExternalId,insertedby,InsertDate,InsertTime,Description,readOnly,Type, DocGuid)"
                 " Values (" +
                 data::SqlValue(lclExternalId) + "," + data::SqlValue(lclInsertedBy) + "," +
                 data::SqlNumber(lclInsertDate) + "," + data::SqlNumber(lclInsertTime) + "," +
                 data::SqlValue(lclDescription) + "," + data::SqlBool(Word(lclReadOnly)) + "," +
                 data::SqlValue(lclDocType) + "," + guid + ")";
    row.find = "Select * from " + TableName() + " where DocGuid = " + guid;

    std::optional<std::string> base; // none is told once the transaction has ended
    Transaction transaction(store, Machine());
    const std::int32_t id =
        InsertRow(Machine(), store, row, [&](data::Recordset& rows, std::int32_t key) {
            base = lclBaseSaveDirectory.empty() ? FindStore(Machine(), DbConnection())
                                                : WithBackslash(lclBaseSaveDirectory);
            lclAllreadyExists = IsThere(Machine(), MakePath(base.value_or(""), key));
            SetNumber(rows, "DocId", lclAllreadyExists ? 0 : key);
            if (!lclAllreadyExists) return;
            rows.Set("DocGuid", std::string());
            rows.Set("Description", std::string(markedDescription));
        });
    if (!lclSendTo.empty() || !lclRecievedFrom.empty())
        store.Write("Insert into tblDocExtraInfo "
                    "(DocId,SendTo,SendFrom,RecievedOn,SendOn,NrOfAttatchements) Values (" +
                    Number(id) + "," + data::SqlValue(lclSendTo) + "," +
                    data::SqlValue(lclRecievedFrom) + "," + data::SqlValue(lclRecievedOn) + "," +
                    data::SqlValue(lclSendOn) + "," + Number(lclNumberOfAttatchements) + ")");
    transaction.Commit();
    if (!base) TellNoStore(Machine(), Translation());

    lclId = lclExtraInfoOf = id;
    if (lclAllreadyExists) lclMarkedId = id;
    lclKeptDocId = lclDocId != 0;
    if (lclDocId == 0) lclDocId = id;
    lclExtraInfoId = lclSendTo.empty() && lclRecievedFrom.empty() ? 0 : -1;
}

bool clsDocument::IsNewRowThere() const {
    return !Store(DbConnection())
                .Read("Select Id from " + TableName() +
                      " where DocGuid = " + data::SqlValue(lclGuid))
                ->Eof();
}

void clsDocument::RemoveNewRow() {
    const Store store(DbConnection());
    Transaction transaction(store, Machine());
    if (lclExtraInfoId != 0)
        store.Write("Delete from tblDocExtraInfo where DocId = " + Number(lclId));
    store.Write("Delete from " + TableName() + " where DocGuid = " + data::SqlValue(lclGuid));
    transaction.Commit();
    lclExtraInfoId = 0;
}

// The key of a document's extra information, 0 when it has none; read unless it is known.
std::int32_t clsDocument::ExtraInfoId(std::int32_t document) {
    const bool kept = lclExtraInfoOf == document;
    if (kept && lclExtraInfoId >= 0) return lclExtraInfoId;
    const data::RecordsetPtr row =
        Store(DbConnection())
            .Read("Select * from tblDocExtraInfo where DocId = " + Number(document));
    const std::int32_t key = row->Eof() ? 0 : data::ToInt32(row->Get("Id"));
    if (kept) lclExtraInfoId = key;
    return key;
}

bool clsDocument::UpdateCurrentRow() {
    return GuardedRow("UpdateCurrentRow", [&] {
        // The rows that were marked at their insert share the number 0.
        if (lclDocId < 1)
            throw data::Error(data::errors::badEof, "There is no current document.", "clsDocument");
        const Store store(DbConnection());
        // What was never read or written by this object would be overwritten unseen.
        const std::int32_t extraInfo = lclExtraInfoOf == lclDocId ? ExtraInfoId(lclDocId) : 0;
        Transaction transaction(store, Machine());
        store.Write("update " + TableName() + " set ExternalId = " + data::SqlValue(lclExternalId) +
                    ", InsertedBy = " + data::SqlValue(lclInsertedBy) +
                    ", InsertDate = " + data::SqlNumber(lclInsertDate) +
                    ", InsertTime = " + data::SqlValue(lclInsertTime) +
                    ", Description = " + data::SqlValue(lclDescription) + ", ReadOnly = " +
                    data::SqlBool(Word(lclReadOnly)) + ", Type = " + data::SqlValue(lclDocType) +
                    " where DocId = " + Number(lclDocId));
        if (store
                .ReadNow("Select Id from " + TableName() + " where DocId = " + Number(lclDocId) +
                         " and Id > 0")
                ->Eof())
            Gone();
        if (extraInfo > 0)
            store.Write("update tblDocExtraInfo set SendTo = " + data::SqlValue(lclSendTo) +
                        ", Sendfrom = " + data::SqlValue(lclRecievedFrom) +
                        ", SendOn = " + data::SqlValue(lclSendOn) +
                        ", RecievedOn= " + data::SqlValue(lclRecievedOn) +
                        ", NrOfattatchements = " + Number(lclNumberOfAttatchements) +
                        " WHERE Id = " + Number(extraInfo));
        transaction.Commit();
        return true;
    });
}

bool clsDocument::DeleteCurrentRow() {
    return GuardedRow("DeleteCurrentRow", [&] {
        if (lclId < 1) // minus a negative number would bring the document back, or read as a remark
            throw data::Error(data::errors::badEof, "There is no current document.", "clsDocument");
        const Store store(DbConnection());
        const std::int32_t extraInfo = ExtraInfoId(lclId);
        const std::string id = Number(lclId);
        Transaction transaction(store, Machine());
        TakeOutRow();
        store.Write("delete from " + TableName() + "uplink where serverrefId = " + id);
        if (extraInfo > 0)
            store.Write("delete from tblDocExtraInfo WHERE Id = " + Number(extraInfo));
        transaction.Commit();
        lclExtraInfoId = 0;
        return true;
    });
}

// Where the key column cannot be written (SQL Server, Access), the row is taken out of the look-ups
// by its working id instead, as every other soft-deleted row is.
void clsDocument::TakeOutRow() {
    const Store store(DbConnection());
    const std::string id = Number(lclId), row = " where Id = " + id;
    std::int64_t touched = 0;
    try {
        touched = store.Write("update " + TableName() + " set Id = -" + id + row);
    } catch (const data::Error& error) {
        Machine().log.Write("clsDocument.DeleteCurrentRow", data::InLog(error));
    }
    const data::RecordsetPtr left = store.Read("Select Id, DocId from " + TableName() + row);
    if (left->Eof() ? touched == 0 : data::ToInt32(left->Get("DocId")) < 0) Gone();
    if (!left->Eof())
        store.Write("update " + TableName() + " set DocId = -DocId" + row + " and DocId > 0");
}

void clsDocument::Gone() const {
    throw platform::Error(platform::errors::notFound,
                          "The document " + Number(lclId != 0 ? lclId : lclDocId) +
                              " does not exist any more.",
                          "clsDocument");
}

bool clsDocument::FindBase() {
    if (lclBaseSaveDirectory.empty()) lclBaseSaveDirectory = BaseFolder();
    return !lclBaseSaveDirectory.empty();
}

// A file that no document has, or another one.
void clsDocument::RefuseForeignFile() const {
    if (lclDocId <= 0)
        throw platform::Error(platform::errors::invalidArgument,
                              "The document is not in the database, so it can have no file.",
                              "clsDocument");
    if (lclDocId == lclMarkedId)
        throw platform::Error(platform::errors::alreadyExists,
                              "The store already holds a file " + Number(lclDocId) +
                                  ", which is not this document's.",
                              "clsDocument");
}

void clsDocument::KeepFileOfAnotherRow(std::string_view target) const {
    if (lclKeptDocId && IsThere(Machine(), target))
        throw platform::Error(platform::errors::alreadyExists,
                              std::string(target) + " belongs to the row that was saved before.",
                              "clsDocument");
}

std::string clsDocument::CopyAside(std::string_view source, bool atRest) {
    const std::string base = BaseFolder();
    MakeDateFolder(Machine(), base);
    return Machine().files.CopyAside(source, MakeTypeFolder(base), atRest);
}

void clsDocument::PutInPlace(std::string_view copy) { Machine().files.Rename(copy, StorePath()); }

bool clsDocument::AddDocument(std::string_view source, bool failIfExists, bool deleteSource) {
    return Guarded("AddDocument", [&] {
        RefuseForeignFile();
        if (!FindBase()) return false;
        MakeDateFolder(Machine(), lclBaseSaveDirectory);
        const std::string target = MakePath(BaseFolder(), lclDocId);
        KeepFileOfAnotherRow(target);
        try {
            Machine().files.Copy(source, target, failIfExists);
        } catch (const platform::Error& error) {
            Machine().log.Write("clsDocument.AddDocument", error.what());
            return false;
        }
        // The document is filed by now, whatever becomes of its source.
        if (deleteSource)
            Guarded("AddDocument", [&] {
                RemoveCopied(Machine(), source, target);
                return true;
            });
        return true;
    });
}

bool clsDocument::CreateEmptyDoc(std::string& path) {
    return Guarded("CreateEmptyDoc", [&] {
        path.clear();
        RefuseForeignFile();
        // Asked once, since it tells the user what is missing.
        const bool found = FindBase();
        const std::string base = found ? BaseFolder() : std::string();
        if (found) MakeDateFolder(Machine(), base);
        const std::string made = MakePath(base, lclDocId);
        KeepFileOfAnotherRow(made);
        path = made;
        return !platform::Trim(path).empty();
    });
}

std::string MakeDateFolder(const platform::Workstation& workstation, std::string_view path) {
    std::string folder = WithBackslash(path) + platform::DateNumber(workstation.clock.Now());
    MakeStoreFolder(workstation, path, folder);
    return folder;
}

} // namespace kavidex::model
