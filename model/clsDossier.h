// What a dossier number and a dossier type are tied to: a tree and perhaps a child dossier.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "model/RecordClass.h"

namespace kavidex::model {

class Store;

// OpenDataSource filters on the properties that the caller has set (above 0, not empty; a type with
// "%" or "*" filters with like) and loads the first row; moves load theirs. A filter on ChildId
// names a column that does not exist and fails.
class clsDossier : public RecordClass {
public:
    explicit clsDossier(const platform::Workstation& workstation);

    std::int32_t Id() const { return lclRow.id; } // the row's RelId
    void SetId(std::int32_t id) { lclRow.id = lclFilter.id = id; }
    std::int32_t DossierId() const { return lclRow.dossierId; }
    void SetDossierId(std::int32_t id) { lclRow.dossierId = lclFilter.dossierId = id; }
    const std::string& DossierType() const { return lclRow.type; } // column Type
    void SetDossierType(std::string_view type) { lclRow.type = lclFilter.type = type; }
    std::int32_t ChildId() const { return lclRow.childId; } // column ChildDossierId
    void SetChildId(std::int32_t id) { lclRow.childId = lclFilter.childId = id; }
    const std::string& ChildType() const { return lclRow.childType; }
    void SetChildType(std::string_view type) { lclRow.childType = lclFilter.childType = type; }
    std::int32_t TreeId() const { return lclRow.treeId; }
    void SetTreeId(std::int32_t id) { lclRow.treeId = lclFilter.treeId = id; }

    std::int64_t Id_Size() const { return FieldSize("RelId"); }
    std::int64_t DossierId_Size() const { return FieldSize("DossierId"); }
    std::int64_t DossierType_Size() const { return FieldSize("Type"); }
    std::int64_t ChildId_Size() const { return FieldSize("ChildDossierId"); }
    std::int64_t ChildType_Size() const { return FieldSize("ChildType"); }
    std::int64_t TreeId_Size() const { return FieldSize("TreeId"); }

    bool SaveNewRow() override;
    // The same, for a dossier that has no relation: where another gives it one at the same moment,
    // `TreeId` is that of the first, and the row made here is taken out again.
    bool SaveFirstRow();
    // Rewrites every relation row of this TreeId; false where none of them lives.
    bool UpdateCurrentRow() override;
    bool DeleteCurrentRow() override;

protected:
    std::string SelectStatement() const override;
    std::string_view LiveRows() const override { return "RelId > 0"; }
    void ReadRow(const data::Recordset& row) override;
    void RowChanged() override { LoadData(); }

private:
    struct Row {
        std::int32_t id = 0, dossierId = 0, childId = 0, treeId = 0;
        std::string type, childType;
    };
    bool TreeHasRelation(const Store& store) const;
    void TakeOut() const;
    [[noreturn]] static void Gone(std::string_view what, std::int32_t id);

    Row lclRow;    // what the properties show
    Row lclFilter; // what the caller set, without what was loaded
};

} // namespace kavidex::model
