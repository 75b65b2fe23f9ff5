// Rows that the upgrade chain copies, numbers and fills.
#include "data/schema/upgradeConversions.h"

#include <string>

#include "data/schema/upgradeRows.h"
#include "platform/Workstation.h"
#include "platform/modCreateGuid.h"

namespace kavidex::data::upgrade {
namespace {

// `Order`, a reserved word, becomes intOrder; the old column goes once every row was copied.
void RenameOrder(const UpgradeContext& context, const std::string& table) {
    context.Execute("ALTER TABLE " + table + " ADD COLUMN intOrder LONG");
    const bool copied =
        KeepEachRow(context, "Select * from " + table, {"Order", "intOrder"}, [](Recordset& row) {
            row.Set("intOrder", Value(row.Get("Order")));
            return true;
        });
    if (copied) context.Execute("ALTER TABLE " + table + " DROP COLUMN [Order]");
}

// Rows that have a working id keep it: it may be negated, for a deleted row.
void FillOwnIds(const UpgradeContext& context, const std::string& table, const std::string& key,
                const std::string& column) {
    KeepEachRow(context, "Select * from " + table, {key, column}, [&](Recordset& row) {
        if (ToInt64(row.Get(column)) != 0) return false;
        row.Set(column, Value(row.Get(key)));
        return true;
    });
}

void AddOwnIds(const UpgradeContext& context, const std::string& table, const std::string& column,
               const std::string& key = "Id") {
    context.Execute("ALTER TABLE " + table + " ADD COLUMN " + column + " LONG");
    FillOwnIds(context, table, key, column);
}

void FillGuids(const UpgradeContext& context, const std::string& statement,
               const std::string& column) {
    ForEachRow(context, statement, {column}, [&](Recordset& row) {
        std::string guid;
        if (platform::CreateGuid(context.workstation, guid) != 0) return false;
        row.Set(column, std::move(guid));
        return true;
    });
}

} // namespace

// The second form of each statement is for databases that refuse the reserved word or the bare
// words of the first. Each table and each type's tab by itself: an earlier run may have ended
// between any two of them.
void CreateDossierTabs(const UpgradeContext& context) {
    for (const std::string table : {"tblDossierTabs", "tblDossierRefTabs"}) {
        if (context.HasTable(table)) continue;
        const std::string head =
            "CREATE TABLE " + table + " (Id COUNTER CONSTRAINT IdConst PRIMARY KEY," +
            (table == "tblDossierTabs" ? "DossierTypeId" : "DossierReferenceId") +
            " LONG,TabDescription TEXT(50),TabType TEXT(50),";
        if (!context.Execute(head + "Order LONG)")) context.Execute(head + "[Order] LONG)");
    }
    ForEachRow(context, "Select * from tblDossierTypes", {}, [&](Recordset& row) {
        // Own ids came with 1.0.6; until then the key was the type's id.
        const std::string id = ToText(row.Get(HasField(row, "TypeId") ? "TypeId" : "Id"));
        const RecordsetPtr tabs = RowsOf(
            context, "Select * from tblDossierTabs where DossierTypeId = " + id, {"DossierTypeId"});
        if (!tabs || !tabs->Eof()) return false;
        if (!context.Execute("insert into tblDossierTabs (DossierTypeId ,TabDescription ,TabType "
                             ",Order ) VALUES (" +
                             id + ",Dossier,Dossiertype,1)"))
            context.Execute("insert into tblDossierTabs (DossierTypeId ,TabDescription ,TabType "
                            ",[Order] ) VALUES (" +
                            id + ",'Dossier','Dossiertype',1)");
        return false;
    });
}

void ConvertSettings(const UpgradeContext& context) {
    context.Execute("ALTER TABLE tblSettings ADD COLUMN SKey TEXT(255)");
    const bool copied =
        KeepEachRow(context, "Select * from tblSettings", {"Key", "SKey"}, [](Recordset& row) {
            if (IsNull(row.Get("Key"))) return false; // written since the column is there
            row.Set("SKey", Value(row.Get("Key")));
            return true;
        });
    if (copied) context.Execute("ALTER TABLE tblSettings DROP COLUMN [Key]");
}

void ConvertRefTabs(const UpgradeContext& context) {
    RenameOrder(context, "tblDossierRefTabs");
    AddOwnIds(context, "tblDossierRefTabs", "RefTabId");
}

void ConvertDbRelations(const UpgradeContext& context) {
    AddOwnIds(context, "tblDossierDbRelation", "DbRelId", "DossierId");
}

void ConvertCheckListFields(const UpgradeContext& context) {
    RenameOrder(context, "tblCheckListFields");
}

void ConvertCheckListRefFields(const UpgradeContext& context) {
    RenameOrder(context, "tblCheckListRefFields");
}

void ConvertDossierFields(const UpgradeContext& context) {
    RenameOrder(context, "tblDossierFields");
}

void ConvertDossierTabs(const UpgradeContext& context) {
    RenameOrder(context, "tblDossierTabs");
    AddOwnIds(context, "tblDossierTabs", "TabId");
}

void ConvertScreens(const UpgradeContext& context) { AddOwnIds(context, "tblScreens", "ScreenId"); }

void ConvertScreenSettings(const UpgradeContext& context) {
    AddOwnIds(context, "tblScreenSettings", "ScreenSettingsId");
}

void ConvertReferences(const UpgradeContext& context) {
    AddOwnIds(context, "tblDossierReference", "RefId");
}

void ConvertRelations(const UpgradeContext& context) {
    AddOwnIds(context, "tblDossierRelations", "RelId");
}

void ConvertTypes(const UpgradeContext& context) {
    AddOwnIds(context, "tblDossierTypes", "TypeId");
}

void ConvertDocuments(const UpgradeContext& context) { AddOwnIds(context, "tblDocument", "DocId"); }

void ConvertTrees(const UpgradeContext& context) { AddOwnIds(context, "tblTree", "TreeId"); }

void ConvertItems(const UpgradeContext& context) {
    AddOwnIds(context, "tblTreeItem", "TreeItemId");
}

// All relations again, whatever they have, save those that are deleted (their key, negated).
void FillRelationIds(const UpgradeContext& context) {
    KeepEachRow(context, "Select * from tblDossierRelations", {"Id", "RelId"}, [](Recordset& row) {
        const std::int64_t id = ToInt64(row.Get("Id"));
        const std::int64_t now = ToInt64(row.Get("RelId"));
        if (now == id || now == -id) return false;
        row.Set("RelId", id);
        return true;
    });
}

// The statements of the step end in a parenthesis that most databases refuse; what is missing
// after them is added column by column.
void CompleteRights(const UpgradeContext& context) {
    const RecordsetPtr types =
        RowsOf(context, "Select * from tblDossierTypes where TypeId = 0", {"TypeId"});
    if (!types) return;
    for (const std::string column : {"ShowCabinet", "CreateDossier", "OpenDossier"}) {
        if (HasField(*types, column)) continue;
        for (const std::string& form : {"ADD COLUMN " + column + " MEMO",
                                        "ADD " + column + " NTEXT", "ADD " + column + " LONGTEXT"})
            if (context.Execute("ALTER TABLE tblDossierTypes " + form)) break;
    }
}

void FillCheckListGuids(const UpgradeContext& context) {
    FillGuids(context, "Select * from tblChecklistReffields", "CLGuid");
}

void FillDocumentGuids(const UpgradeContext& context) {
    FillGuids(context, "Select * from tblDocument where DocGuid is null", "DocGuid");
}

} // namespace kavidex::data::upgrade
