#include "model/clsDossier.h"

#include "data/modData.h"
#include "model/Store.h"
#include "model/criteria.h"
#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"

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

// Read once ours is there for all: whoever made one meanwhile sees the same first.
bool clsDossier::SaveFirstRow() {
    return SaveNewRow() && Guarded("SaveFirstRow", [&] {
               const data::RecordsetPtr rows =
                   Store(DbConnection())
                       .ReadNow("Select Id, RelId, TreeId from " + TableName() +
                                " where DossierId = " + Number(DossierId()) + " order by Id");
               while (!rows->Eof() && data::ToInt32(rows->Get("RelId")) < 0) rows->MoveNext();
               const std::int32_t first = rows->Eof() ? Id() : data::ToInt32(rows->Get("Id"));
               if (first == Id()) return true;
               Machine().log.Write("clsDossier", "Another gave the dossier " + Number(DossierId()) +
                                                     " its tree, not " + Number(TreeId()));
               TakeOut();
               SetId(first);
               SetTreeId(data::ToInt32(rows->Get("TreeId")));
               return true;
           });
}

bool clsDossier::UpdateCurrentRow() {
    return GuardedRow("UpdateCurrentRow", [&] {
        const Store store(DbConnection());
        Transaction transaction(store, Machine());
        store.Write(
            "update " + TableName() + " set DossierId = " + Number(DossierId()) +
            ", Type= " + data::SqlValue(DossierType()) + ", ChildDossierId= " + Number(ChildId()) +
            ", ChildType = " + data::SqlValue(ChildType()) + " where TreeId= " + Number(TreeId()));
        if (!TreeHasRelation(store)) Gone("tree", TreeId()); // what was rewritten is deleted
        transaction.Commit();
        return true;
    });
}

bool clsDossier::TreeHasRelation(const Store& store) const {
    const data::RecordsetPtr rows =
        store.ReadNow("Select RelId from " + TableName() + " where TreeId = " + Number(TreeId()));
    rows->SetFilter(LiveRows());
    return !rows->Eof();
}

void clsDossier::Gone(std::string_view what, std::int32_t id) {
    throw platform::Error(platform::errors::notFound, "The relation of " + std::string(what) + " " +
                                                          Number(id) + " does not exist any more.");
}

bool clsDossier::DeleteCurrentRow() {
    return GuardedRow("DeleteCurrentRow", [&] {
        TakeOut();
        return true;
    });
}

void clsDossier::TakeOut() const {
    if (Id() < 1 || // minus a negative number would bring the row back
        Store(DbConnection())
                .Write("update " + TableName() + " set Relid= " + Number(-std::int64_t{Id()}) +
                       " where relid= " + Number(Id())) == 0)
        Gone("row", Id());
}

} // namespace kavidex::model
