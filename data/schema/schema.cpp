// Turns the table of tables into each dialect's statements.
#include "data/schema/schema.h"

namespace kavidex::data::schema {
namespace {

struct TypeWords {
    std::string_view access, sqlServer, mySql;
};

TypeWords WordsOf(ColumnType type) {
    switch (type) {
    case ColumnType::Integer: return {"LONG", "INTEGER", "INTEGER"};
    case ColumnType::OwnId: return {"LONG", "INTEGER", "BIGINT"};
    case ColumnType::Bit: return {"BIT", "BIT", "BIT"};
    case ColumnType::Text38: return {"TEXT(38)", "CHAR(38)", "CHAR(38)"};
    case ColumnType::Text50: return {"TEXT(50)", "CHAR(50)", "CHAR(50)"};
    case ColumnType::Text100: return {"TEXT(100)", "CHAR(100)", "CHAR(100)"};
    case ColumnType::Text255: return {"TEXT(255)", "CHAR(255)", "CHAR(255)"};
    case ColumnType::Text255Null: return {"TEXT(255)", "CHAR(255) NULL", "CHAR(255) NULL"};
    case ColumnType::LongText: return {"MEMO", "NTEXT", "LONGTEXT"};
    case ColumnType::Memo: return {"MEMO", "NTEXT", "LONGTEXT "};
    }
    return {};
}

std::string_view WordOf(ColumnType type, Dialect dialect) {
    const TypeWords words = WordsOf(type);
    switch (dialect) {
    case Dialect::Access: return words.access;
    case Dialect::SqlServer: return words.sqlServer;
    case Dialect::MySql: return words.mySql;
    }
    return {};
}

std::string HeadOf(const Table& table, Dialect dialect) {
    std::string head = "CREATE TABLE " + std::string(table.name) + " ( " + std::string(table.key);
    switch (dialect) {
    case Dialect::Access:
        return head + " COUNTER CONSTRAINT " + std::string(table.constraint) + " PRIMARY KEY";
    case Dialect::SqlServer:
        return head + " INTEGER Identity(1000,1)  CONSTRAINT " + std::string(table.constraint) +
               " PRIMARY KEY";
    case Dialect::MySql: return head + " BIGINT AUTO_INCREMENT  PRIMARY KEY";
    }
    return head;
}

void AppendColumn(std::string& statement, const Column& column, const std::string& name,
                  Dialect dialect) {
    // Value, Memo, Type and others are words of the Access dialect.
    if (dialect == Dialect::Access)
        statement += ", [" + name + "]";
    else
        statement += std::string(column.lead) + name;
    statement += ' ';
    statement += WordOf(column.type, dialect);
}

// More than one where the column is numbered.
std::vector<std::string> NamesOf(const Column& column) {
    if (column.count == 0) return {std::string(column.name)};
    std::vector<std::string> names;
    for (int i = 1; i <= column.count; ++i)
        names.push_back(std::string(column.name) + std::to_string(i));
    return names;
}

struct Procedure {
    std::string_view head, insert, update;
};

// Name and parameters, the insert, and the update of the own id where there is one.
constexpr Procedure procedures[] = {
    {"AddToSettings @Section CHAR(255), @Key CHAR(255), @Value CHAR(255)",
     "tblSettings (Section, sKey, Value) VALUES (@Section, @Key, @Value)", ""},
    {"AddTotblDossierDbRelation @DbKey CHAR(255), @DbRelId INTEGER",
     "tblDossierDbRelation (DbKey, DbRelId) VALUES (@DbKey, @DbRelId)", ""},
    {"AddTotblDossierRelations @DossierId INTEGER, @Type char(255), @ChildDossierId INTEGER, "
     "@ChildType CHAR(255), @TreeId INTEGER",
     "tblDossierRelations (DossierId, Type, ChildDossierId, ChildType, TreeId) VALUES "
     "(@DossierId, @Type, @ChildDossierId, @ChildType, @TreeId)",
     "Update tblDossierRelations SET RelId = @@IDENTITY where Id = @@IDENTITY"},
    // AutoCreate is BIT here although its column is CHAR(255).
    {"AddTotblDossierTabs @DossierTypeId INTEGER, @TabType CHAR(255), @TabDescription CHAR(255), "
     "@intOrder INTEGER, @AutoCreate BIT",
     "tblDossierTabs (DossierTypeId, TabType, TabDescription, intOrder, AutoCreate) VALUES "
     "(@DossierTypeId, @TabType, @TabDescription, @intOrder, @AutoCreate)",
     "Update tblDossierTabs SET TabId = @@IDENTITY where Id = @@IDENTITY"},
    {"AddTotblDossierTypes @DossierType CHAR(255), @DossierDescription CHAR(255)",
     "tblDossierTypes (DossierType, DossierDescription) VALUES (@DossierType, "
     "@DossierDescription)",
     "Update tblDossierTypes SET TypeId = @@IDENTITY where Id = @@IDENTITY"},
    {"AddTotblScreens @Description char(255), @ApplicationName char(255), @DossierType char(255)",
     "tblScreens (Description, ApplicationName, DossierType) VALUES (@Description, "
     "@ApplicationName, @DossierType)",
     "Update tblScreens SET ScreenId = @@IDENTITY where Id = @@IDENTITY"},
    {"AddTotblScreenSettings @ScreenId INTEGER, @Class CHAR(255), @WindowText CHAR(255), "
     "@FieldNumber INTEGER, @SearchTokens CHAR(255)",
     "tblScreenSettings (ScreenId, Class, WindowText, FieldNumber, SearchTokens) VALUES "
     "(@ScreenId, @Class, @WindowText, @FieldNumber, @SearchTokens)",
     "UPDATE tblScreenSettings set ScreenSettingsId = @@IDENTITY where Id = @@IDENTITY"},
    {"AddTotblTree @Description char(255), @NewEnabled BIT, @DeleteEnabled BIT, "
     "@UpdateEnabled BIT",
     "tblTree (Description, NewEnabled, DeleteEnabled, UpdateEnabled) VALUES (@Description, "
     "@NewEnabled, @DeleteEnabled, @UpdateEnabled)",
     "update tblTree set TreeId = @@IDENTITY where Id = @@IDENTITY"},
    {"AddTotblTreeItem @Type char(255), @ItemId INTEGER, @ParentId INTEGER, "
     "@Description char(255)",
     "tblTreeItem (Type, ItemId, ParentId, Description) VALUES (@Type, @ItemId, @ParentId, "
     "@Description)",
     "Update tblTreeItem set TreeItemId = @@IDENTITY where Id  = @@IDENTITY"},
};

} // namespace

std::string CreateTable(const Table& table, Dialect dialect) {
    std::string statement = HeadOf(table, dialect);
    for (const Column& column : table.columns)
        for (const std::string& name : NamesOf(column))
            AppendColumn(statement, column, name, dialect);
    return statement + (dialect == Dialect::MySql ? ") AUTO_INCREMENT = 1000" : ")");
}

std::vector<std::pair<std::string, std::vector<std::string>>> AddColumns(const Table& table) {
    const std::string head = "ALTER TABLE " + std::string(table.name) + " ADD ";
    std::vector<std::pair<std::string, std::vector<std::string>>> columns;
    for (const Column& column : table.columns)
        for (const std::string& name : NamesOf(column)) {
            const auto words = [&](Dialect dialect) {
                return std::string(WordOf(column.type, dialect));
            };
            columns.push_back({name,
                               {head + "COLUMN [" + name + "] " + words(Dialect::Access),
                                head + name + " " + words(Dialect::SqlServer),
                                head + name + " " + words(Dialect::MySql)}});
        }
    return columns;
}

std::vector<std::string> CreateIndexes() {
    std::vector<std::string> statements = {
        "CREATE INDEX indDocId on tblDocument (DocId )",
        "CREATE INDEX indDbRelId on tblDossierDbRelation (DbRelId )",
        "CREATE INDEX indRefId on tblDossierReference (RefId )",
    };
    for (int i = 1; i <= 10; ++i)
        statements.push_back("CREATE INDEX indRefVal" + std::to_string(i) +
                             " on tblDossierReference (Value" + std::to_string(i) + " )");
    for (const char* statement : {
             "CREATE INDEX indRefTabId on tblDossierRefTabs (RefTabId )",
             "CREATE INDEX indRelId on tblDossierRelations ( RelId )",
             "CREATE INDEX indTabId on tblDossierTabs (TabId )",
             "CREATE INDEX indTypeId on tblDossierTypes ( TypeId )",
             "CREATE INDEX indScreenId on tblScreens (ScreenId )",
             "CREATE INDEX indScreenSettingsId on tblScreenSettings (ScreenSettingsId )",
             "CREATE INDEX indSectionKey on tblSettings ( Section , SKey )",
             "CREATE INDEX indTreeId on tblTree (TreeId )",
             "CREATE INDEX indTreeItemId on tblTreeItem (TreeItemId )",
         })
        statements.emplace_back(statement);
    return statements;
}

const std::vector<LookupIndex>& LookupIndexes() {
    static const std::vector<LookupIndex> indexes = {
        {"indDbKey", "tblDossierDbRelation", "dbKey"},
        {"indTopItemId", "tblTree", "TopItemId"},
        {"indItemId", "tblTreeItem", "ItemId"},
        {"indExternalId", "tblDocument", "ExternalId"},
        {"indServerRefId", "tblDocumentUpLink", "ServerRefId"},
        {"indServerRefId", "tblTreeItemUpLink", "ServerRefId"},
    };
    return indexes;
}

std::vector<std::string> CreateProcedures() {
    std::vector<std::string> statements;
    for (const Procedure& procedure : procedures) {
        std::string statement = "CREATE PROCEDURE " + std::string(procedure.head) +
                                " AS SET NOCOUNT ON  Insert into " + std::string(procedure.insert) +
                                " SELECT @@Identity";
        if (!procedure.update.empty()) statement += " " + std::string(procedure.update);
        statements.push_back(statement + " Return @@IDENTITY   SET NOCOUNT OFF");
    }
    return statements;
}

std::vector<std::string> AccessBaseStatements() {
    std::vector<std::string> statements;
    for (const Table& table : Tables()) statements.push_back(CreateTable(table, Dialect::Access));
    for (std::string& index : CreateIndexes()) statements.push_back(std::move(index));
    return statements;
}

} // namespace kavidex::data::schema
