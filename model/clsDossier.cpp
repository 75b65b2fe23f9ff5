#include "model/clsDossier.h"

#include "data/modData.h"
#include "model/Store.h"
#include "model/criteria.h"

namespace kavidex::model {

clsDossier::clsDossier(const platform::Workstation& workstation)
    : RecordClass(workstation, "tblDossierRelations", "Application Runtime Error $%$",
                  "clsDossier") {}

std::string clsDossier::SelectStatement() const {
    Criteria criteria;
    criteria.Equal("RelId", lclFilter.id);
    criteria.Equal("DossierId", lclFilter.dossierId);
    criteria.Like("Type", lclFilter.type);
    criteria.Equal("ChildId", lclFilter.childId); // no such column: the database refuses it
    criteria.Like("ChildType", lclFilter.childType);
    criteria.Equal("TreeId", lclFilter.treeId);
    return criteria.Select(TableName(), Ordering());
}

void clsDossier::ReadRow(const data::Recordset& row) {
    lclRow.id = data::ToInt32(row.Get("RelId"));
    lclRow.dossierId = data::ToInt32(row.Get("DossierId"));
    lclRow.type = TrimmedText(row.Get("Type"));
    lclRow.childId = data::ToInt32(row.Get("ChildDossierId"));
    lclRow.childType = TrimmedText(row.Get("ChildType"));
    lclRow.treeId = data::ToInt32(row.Get("TreeId"));
}

bool clsDossier::SaveNewRow() {
    return Guarded("SaveNewRow", [&] {
        const std::string guid = data::SqlValue(NewGuid(Machine()));
        NewRow row;
        row.insert = "Insert into " + TableName() +
                     " (DossierId, Type, ChilddossierId, ChildType, TreeId, RelGuid) Values (" +
                     Number(DossierId()) + ", " + data::SqlValue(DossierType()) + ", " +
                     Number(ChildId()) + ", " + data::SqlValue(ChildType()) + ", " +
                     Number(TreeId()) + "," + guid + ")";
        row.find = "Select * from " + TableName() + " where RelGuid = " + guid;
        SetId(InsertRow(
            Machine(), Store(DbConnection()), row,
            [](data::Recordset& rows, std::int32_t key) { SetNumber(rows, "RelId", key); }));
        RowSaved();
        return true;
    });
}

bool clsDossier::UpdateCurrentRow() {
    return GuardedRow("UpdateCurrentRow", [&] {
        Store(DbConnection())
            .Write("update " + TableName() + " set DossierId = " + Number(DossierId()) +
                   ", Type= " + data::SqlValue(DossierType()) + ", ChildDossierId= " +
                   Number(ChildId()) + ", ChildType = " + data::SqlValue(ChildType()) +
                   " where TreeId= " + Number(TreeId()));
        return true;
    });
}

bool clsDossier::DeleteCurrentRow() {
    return GuardedRow("DeleteCurrentRow", [&] {
        Store(DbConnection())
            .Write("update " + TableName() + " set Relid= " + Number(-std::int64_t{Id()}) +
                   " where relid= " + Number(Id()));
        return true;
    });
}

} // namespace kavidex::model
