#include "model/clsDossierDbRelations.h"

#include "data/modData.h"
#include "model/Store.h"
#include "model/criteria.h"

namespace kavidex::model {

clsDossierDbRelations::clsDossierDbRelations(const platform::Workstation& workstation)
    : RecordClass(workstation, "tblDossierDbRelation", "Application Runtime Error $%$",
                  "clsDossierDbRelations") {}

std::string clsDossierDbRelations::SelectStatement() const {
    Criteria criteria;
    criteria.Equal("DbKey", lclFilter.dbKey);
    criteria.Equal("DbRelId", lclFilter.dossierId);
    return criteria.Select(TableName(), Ordering());
}

void clsDossierDbRelations::ReadRow(const data::Recordset& row) {
    lclRow.dbKey = TrimmedText(row.Get("dbKey"));
    lclRow.dossierId = data::ToInt32(row.Get("DbRelId"));
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

void clsDossierDbRelations::WriteKey() const {
    Store(DbConnection())
        .Write("Update " + TableName() + " set dbKey = " + data::SqlValue(DbKey()) +
               " where dbRelId = " + Number(DossierId()));
}

bool clsDossierDbRelations::UpdateCurrentRow() {
    return GuardedRow("UpdateCurrentRow", [&] {
        WriteKey();
        return true;
    });
}

bool clsDossierDbRelations::Rekey(std::string_view newKey) {
    const std::string oldKey = DbKey();
    const bool done = GuardedRow("Rekey", [&] {
        const Store store(DbConnection());
        Transaction transaction(store, Machine());
        SetDbKey(newKey);
        WriteKey();
        if (!oldKey.empty())
            store.Write("update tblDocument set ExternalId = " + data::SqlValue(newKey) +
                        " where ExternalId = " + data::SqlValue(oldKey));
        transaction.Commit();
        return true;
    });
    if (!done) SetDbKey(oldKey);
    return done;
}

bool clsDossierDbRelations::DeleteCurrentRow() {
    return GuardedRow("DeleteCurrentRow", [&] {
        Store(DbConnection())
            .Write("update " + TableName() + " set DbRelId = " +
                   Number(-std::int64_t{DossierId()}) + " where DBrelid= " + Number(DossierId()));
        return true;
    });
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
