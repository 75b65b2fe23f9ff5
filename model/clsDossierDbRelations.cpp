#include "model/clsDossierDbRelations.h"

#include <algorithm>

#include "data/letters.h"
#include "data/modData.h"
#include "model/Store.h"
#include "model/criteria.h"
#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::model {

namespace {

// What a database of one code page made of a key: "?" or a plain letter for each that it lacks.
bool CouldBeLeftOf(std::string_view given, std::string_view kept) {
    const auto whole = platform::ToUtf16(platform::LowerCase(given));
    const auto left = platform::ToUtf16(platform::LowerCase(kept));
    return std::equal(whole.begin(), whole.end(), left.begin(), left.end(),
                      [](char16_t a, char16_t b) { return a == b || (a > 127 && b <= 127); });
}

} // namespace

clsDossierDbRelations::clsDossierDbRelations(const platform::Workstation& workstation)
    : RecordClass(workstation, "tblDossierDbRelation", "Application Runtime Error $%$",
                  "clsDossierDbRelations") {}

std::string clsDossierDbRelations::SelectBy(std::string_view key) const {
    Criteria criteria;
    criteria.Equal("DbKey", key);
    criteria.Equal("DbRelId", lclFilter.dossierId);
    return criteria.Select(TableName(), Ordering());
}

std::string clsDossierDbRelations::SelectStatement() const { return SelectBy(lclFilter.dbKey); }

std::string clsDossierDbRelations::OtherStatement() const {
    const std::string kept = AsWritten(DbConnection(), lclFilter.dbKey);
    return kept == lclFilter.dbKey ? std::string() : SelectBy(kept);
}

void clsDossierDbRelations::ReadRow(const data::Recordset& row) {
    lclRow.dbKey = TrimmedText(row.Get("dbKey"));
    // What the caller gave reads as it gave it, and is written back as it stands.
    const std::string kept = AsWritten(DbConnection(), lclFilter.dbKey);
    if (kept != lclFilter.dbKey && platform::EqualNoCase(lclRow.dbKey, kept))
        lclRow.dbKey = lclFilter.dbKey;
    lclRow.dossierId = data::ToInt32(row.Get("DbRelId"));
}

// Servers may take "e" for "é", and find the dossier of another key.
bool clsDossierDbRelations::IsKey(std::string_view kept, std::string_view given) const {
    const auto wanted = platform::TrimView(given);
    return platform::EqualNoCase(kept, wanted) ||
           (CouldBeLeftOf(wanted, kept) &&
            !data::KeepsEveryLetter(data::CollationOf(Machine(), DbConnection())));
}

bool clsDossierDbRelations::OpenKey(std::string_view key) {
    SetDbKey(key);
    if (!OpenDataSource()) return false;
    while (!Eof() && !IsKey(DbKey(), key)) MoveNext();
    return true;
}

bool clsDossierDbRelations::SaveNewRow() {
    return Guarded("SaveNewRow", [&] {
        const std::string guid = data::SqlValue(NewGuid(Machine()));
        NewRow row;
        row.insert = "Insert into " + TableName() + " (DbKey, dbRelGuid) Values (" +
                     data::SqlValue(DbKey()) + "," + guid + ")";
        row.find = "Select * from " + TableName() + " where DbRelGuid = " + guid;
        row.keyColumn = "DossierId";
        SetDossierId(InsertRow(
            Machine(), Store(DbConnection()), row,
            [](data::Recordset& rows, std::int32_t key) { SetNumber(rows, "dbRelId", key); }));
        RowSaved();
        return true;
    });
}

// Others may have begun a dossier under the key since it was looked for. Of all their rows the
// lowest counts, whether it has its number by now or not; read once ours is there for all.
std::int32_t clsDossierDbRelations::FirstNumber() const {
    const auto key = AsWritten(DbConnection(), DbKey());
    const data::RecordsetPtr rows =
        Store(DbConnection())
            .ReadNow("Select DbRelId, DossierId, dbKey from " + TableName() +
                     " where DbKey = " + data::SqlValue(key) + " order by DossierId");
    while (!rows->Eof() && (data::ToInt32(rows->Get("DbRelId")) < 0 ||
                            !IsKey(TrimmedText(rows->Get("dbKey")), key)))
        rows->MoveNext();
    return rows->Eof() ? DossierId() : data::ToInt32(rows->Get("DossierId"));
}

bool clsDossierDbRelations::SaveNewKey(bool& anothers) {
    anothers = false;
    return SaveNewRow() && Guarded("SaveNewKey", [&] {
               const std::int32_t first = FirstNumber();
               if (first == DossierId()) return true;
               anothers = true;
               Machine().log.Write("clsDossierDbRelations",
                                   "Another gave " + DbKey() + " the number " + Number(first));
               TakeOut();
               SetDossierId(first);
               return true;
           });
}

// Some engines count only rows that a change made different.
void clsDossierDbRelations::NeedRow(std::int64_t touched) const {
    if (touched > 0) return;
    const Store store(DbConnection());
    if (store
            .ReadNow("Select DbRelId from " + TableName() +
                     " where DbRelId = " + Number(DossierId()))
            ->Eof())
        throw platform::Error(platform::errors::notFound,
                              "The dossier " + Number(DossierId()) + " does not exist any more.");
}

void clsDossierDbRelations::WriteKey() const {
    NeedRow(Store(DbConnection())
                .Write("Update " + TableName() + " set dbKey = " + data::SqlValue(DbKey()) +
                       " where dbRelId = " + Number(DossierId())));
}

bool clsDossierDbRelations::UpdateCurrentRow() {
    return GuardedRow("UpdateCurrentRow", [&] {
        WriteKey();
        return true;
    });
}

bool clsDossierDbRelations::Rekey(std::string_view newKey) {
    const Row row = lclRow, filter = lclFilter;
    const std::string oldKey = DbKey();
    const bool done = GuardedRow("Rekey", [&] {
        const Store store(DbConnection());
        Transaction transaction(store, Machine());
        SetDbKey(newKey);
        WriteKey();
        if (!oldKey.empty()) RekeyDocuments(store, oldKey, newKey);
        transaction.Commit();
        return true;
    });
    if (!done) {
        lclRow = row;
        lclFilter = filter;
    }
    return done;
}

void clsDossierDbRelations::RekeyDocuments(const Store& store, std::string_view oldKey,
                                           std::string_view newKey) const {
    const auto key = AsWritten(DbConnection(), oldKey);
    const data::RecordsetPtr rows = store.Read(
        "Select Id, ExternalId from tblDocument where ExternalId = " + data::SqlValue(key));
    std::string others; // of keys that the server takes for this one
    for (; !rows->Eof(); rows->MoveNext())
        if (!IsKey(TrimmedText(rows->Get("ExternalId")), key))
            others += (others.empty() ? "" : ", ") + Number(data::ToInt32(rows->Get("Id")));
    store.Write("update tblDocument set ExternalId = " + data::SqlValue(newKey) +
                " where ExternalId = " + data::SqlValue(oldKey) +
                (others.empty() ? "" : " and not Id in (" + others + ")"));
}

bool clsDossierDbRelations::DeleteCurrentRow() {
    return GuardedRow("DeleteCurrentRow", [&] {
        TakeOut();
        return true;
    });
}

void clsDossierDbRelations::TakeOut() const {
    if (DossierId() > 0 && Store(DbConnection())
                                   .Write("update " + TableName() +
                                          " set DbRelId = " + Number(-std::int64_t{DossierId()}) +
                                          " where DBrelid= " + Number(DossierId())) != 0)
        return;
    throw platform::Error(platform::errors::notFound,
                          "The dossier " + Number(DossierId()) + " does not exist any more.");
}

std::optional<std::string> KeyOfTree(const data::ConnectionPtr& connection, std::int32_t treeId) {
    const Store store(connection);
    const data::RecordsetPtr relations = store.Read(
        "Select DossierId, RelId from tblDossierRelations where TreeId = " + Number(treeId));
    for (; !relations->Eof(); relations->MoveNext()) {
        if (data::ToInt32(relations->Get("RelId")) <= 0) continue; // deleted
        const data::RecordsetPtr key =
            store.Read("Select dbKey from tblDossierDbRelation where DbRelId = " +
                       Number(data::ToInt32(relations->Get("DossierId"))));
        if (!key->Eof()) return TrimmedText(key->Get("dbKey"));
    }
    return std::nullopt;
}

} // namespace kavidex::model
