// One document: its row, its mail-like extra information, and where its file lies in the store.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "model/RecordClass.h"

namespace kavidex::model {

// InsertDate is the text yyyymmdd, InsertTime hhmm, DocType the file extension.
class clsDocument : public RecordClass {
public:
    explicit clsDocument(const platform::Workstation& workstation);

    const data::ConnectionPtr& DatabaseObject() const { return DbConnection(); }
    void SetDatabaseObject(data::ConnectionPtr connection) {
        SetDbConnection(std::move(connection));
    }
    const std::string& Criteria() const { return lclCriteria; }
    void SetCriteria(std::string_view criteria) { lclCriteria = criteria; }
    // The root of the document store; when empty, the installation's setting counts.
    const std::string& BaseSaveDirectory() const { return lclBaseSaveDirectory; }
    void SetBaseSaveDirectory(std::string_view folder) { lclBaseSaveDirectory = folder; }

    std::int32_t Id() const { return lclId; }
    void SetId(std::int32_t id) { lclId = id; }
    std::int32_t DocId() const { return lclDocId; }
    void SetDocId(std::int32_t id) {
        lclDocId = id;
        lclKeptDocId = false;
    }
    const std::string& ExternalId() const { return lclExternalId; }
    void SetExternalId(std::string_view id) { lclExternalId = id; }
    const std::string& InsertedBy() const { return lclInsertedBy; }
    void SetInsertedBy(std::string_view user) { lclInsertedBy = user; }
    const std::string& InsertDate() const { return lclInsertDate; }
    void SetInsertDate(std::string_view date) { lclInsertDate = date; }
    const std::string& InsertTime() const { return lclInsertTime; }
    void SetInsertTime(std::string_view time) { lclInsertTime = time; }
    const std::string& Description() const { return lclDescription; }
    void SetDescription(std::string_view description) { lclDescription = description; }
    bool ReadOnly() const { return lclReadOnly; }
    void SetReadOnly(bool readOnly) { lclReadOnly = readOnly; }
    const std::string& DocType() const { return lclDocType; }
    void SetDocType(std::string_view type) { lclDocType = type; }

    const std::string& RecievedFrom() const { return lclRecievedFrom; } // column SendFrom
    void SetRecievedFrom(std::string_view from) { lclRecievedFrom = from; }
    const std::string& SendTo() const { return lclSendTo; }
    void SetSendTo(std::string_view to) { lclSendTo = to; }
    const std::string& SendOn() const { return lclSendOn; }
    void SetSendOn(std::string_view on) { lclSendOn = on; }
    const std::string& RecievedOn() const { return lclRecievedOn; }
    void SetRecievedOn(std::string_view on) { lclRecievedOn = on; }
    std::int32_t NumberOfAttatchements() const { return lclNumberOfAttatchements; }
    void SetNumberOfAttatchements(std::int32_t count) { lclNumberOfAttatchements = count; }

    // Widths of the columns of the current row; 0 without one. The extra information's columns
    // are those of the row that LoadData read.
    std::int64_t Id_Size() const { return FieldSize("Id"); }
    std::int64_t DocId_Size() const { return FieldSize("DocId"); }
    std::int64_t ExternalId_Size() const { return FieldSize("ExternalId"); }
    std::int64_t InsertedBy_Size() const { return FieldSize("InsertedBy"); }
    std::int64_t InsertDate_Size() const { return FieldSize("InsertDate"); }
    std::int64_t InsertTime_Size() const { return FieldSize("InsertTime"); }
    std::int64_t Description_Size() const { return FieldSize("Description"); }
    std::int64_t ReadOnly_Size() const { return FieldSize("ReadOnly"); }
    std::int64_t DocType_Size() const { return FieldSize("Type"); }
    std::int64_t RecievedFrom_Size() const { return lclExtraSizes.from; }
    std::int64_t SendTo_Size() const { return lclExtraSizes.to; }
    std::int64_t SendOn_Size() const { return lclExtraSizes.sendOn; }
    std::int64_t RecievedOn_Size() const { return lclExtraSizes.recievedOn; }
    std::int64_t NumberOfAttatchements_Size() const { return lclExtraSizes.attachments; }

    // A row whose file is there already is marked ("Document allready exists", DocId 0) and told
    // by AllreadyExists.
    bool SaveNewRow() override;
    bool UpdateCurrentRow() override;
    // Negates the row's Id, or its DocId where the engine refuses the former; the file stays.
    bool DeleteCurrentRow() override;
    bool AllreadyExists() const { return lclAllreadyExists; }

    // Copies the file into the store as this document's file; true when it was copied. A copy that
    // fails is false and a line in the log, without a message. The source is deleted only after the
    // copy is seen to be another file with the same bytes.
    bool AddDocument(std::string_view source, bool failIfExists, bool deleteSource);
    // Where this document's file belongs; the folder of the day is made, no file is written. False
    // for a document that has no row.
    bool CreateEmptyDoc(std::string& path);

    // The living row with this working id, for callers that tell failures their own way: false when
    // there is none, throws data::Error when it could not be read.
    bool Load(std::int32_t docId);
    bool HasExtraInfo() const { return lclExtraInfoOf == lclDocId && lclExtraInfoId != 0; }

    // What SaveNewRow does, for callers that tell failures their own way: this throws.
    void InsertNewRow();
    // The two halves of AddDocument, for a document that has no number before its file is in the
    // store: a copy under a temporary name, whose path is given, then its final name, never one in
    // use.
    std::string CopyAside(std::string_view source, bool atRest = false);
    void PutInPlace(std::string_view copy);
    // Takes back what InsertNewRow wrote, for a document that could not be completed. Throws.
    bool IsNewRowThere() const;
    void RemoveNewRow();

    // base\InsertDate\DocType\DocId.DocType; nothing is made.
    std::string StorePath() const;

protected:
    std::string SelectStatement() const override;
    // A caller's own criteria say themselves what they want.
    std::string_view LiveRows() const override { return lclCriteria.empty() ? "Id > 0" : ""; }
    void ReadRow(const data::Recordset& row) override;

private:
    struct ExtraSizes {
        std::int64_t from = 0, to = 0, sendOn = 0, recievedOn = 0, attachments = 0;
    };
    std::string BaseFolder() const;
    std::string MakePath(std::string_view base, std::int32_t id) const;
    std::string MakeTypeFolder(std::string_view base) const;
    std::string Columns() const;
    bool FindBase(); // false, and told to the user, without a store
    void RefuseForeignFile() const;
    void KeepFileOfAnotherRow(std::string_view target) const;
    void TakeOutRow();
    [[noreturn]] void Gone() const;
    void LoadExtraInfo();
    void InsertExtraInfo();
    std::int32_t ExtraInfoId(std::int32_t document);

    std::string lclCriteria, lclBaseSaveDirectory;
    std::int32_t lclId = 0, lclDocId = 0;
    std::string lclExternalId, lclInsertedBy, lclInsertDate, lclInsertTime, lclDescription;
    std::string lclDocType;
    bool lclReadOnly = false;
    std::string lclRecievedFrom, lclSendTo, lclSendOn, lclRecievedOn;
    std::int32_t lclNumberOfAttatchements = 0;
    // The extra information's row, kept for update and deletion: of which document, and its key
    // (0 when there is none, -1 when this object wrote it and its key is still to be read).
    std::int32_t lclExtraInfoOf = 0, lclExtraInfoId = 0;
    std::string lclGuid; // of the row that this object inserted
    ExtraSizes lclExtraSizes;
    bool lclAllreadyExists = false;
    std::int32_t lclMarkedId = 0; // of the row that was marked: its file is another document's
    bool lclKeptDocId = false;    // DocId stayed that of the row before when a new one was saved
};

// Makes the folder named by today's date (yyyymmdd) under `path`, and returns it.
std::string MakeDateFolder(const platform::Workstation& workstation, std::string_view path);

} // namespace kavidex::model
