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
        SetDossierId(
            InsertRow(Store(DbConnection()), row, [](data::Recordset& rows, std::int32_t key) {
                SetNumber(rows, "dbRelId", key);
            }));
        return true;
    });
}

bool clsDossierDbRelations::UpdateCurrentRow() {
    return Guarded("UpdateCurrentRow", [&] {
        Store(DbConnection())
            .Write("Update " + TableName() + " set dbKey = " + data::SqlValue(DbKey()) +
                   " where dbRelId = " + Number(DossierId()));
        return true;
    });
}

bool clsDossierDbRelations::DeleteCurrentRow() {
    return Guarded("DeleteCurrentRow", [&] {
        Store(DbConnection())
            .Write("update " + TableName() + " set DbRelId = " +
                   Number(-std::int64_t{DossierId()}) + " where DBrelid= " + Number(DossierId()));
        return true;
    });
}

} // namespace kavidex::model
