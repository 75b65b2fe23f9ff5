// Databases for tests of the data layer: as an installation of long ago had them, and a printout of
// all that one holds, to tell two apart.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "data/Connection.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "platform/text.h"

namespace kavidex::tests {

inline std::vector<std::string> TablesOf(data::Connection& connection) {
    std::vector<std::string> names;
    const data::RecordsetPtr rows = connection.OpenSchema(data::Schema::Tables);
    for (; !rows->Eof(); rows->MoveNext())
        if (platform::EqualNoCase(data::ToText(rows->Get("TABLE_TYPE")), "TABLE"))
            names.push_back(data::ToText(rows->Get("TABLE_NAME")));
    std::sort(names.begin(), names.end());
    return names;
}

// In memory, before version 1.0.1: keys without own ids, the settings' column Key, the column
// Order.
inline data::ConnectionPtr OldDatabase(bool dossierTables) {
    data::ConnectionPtr connection = data::EmbeddedDatabase::CreateInMemory();
    for (const std::string& table : TablesOf(*connection))
        connection->Execute("DROP TABLE " + table);
    std::vector<std::string> statements = {
        "CREATE TABLE tblSettings (Id COUNTER CONSTRAINT a PRIMARY KEY, Section TEXT(255), [Key] "
        "TEXT(255), [Value] TEXT(255))",
        "CREATE TABLE tblDocument (Id COUNTER CONSTRAINT b PRIMARY KEY, ExternalId TEXT(255), "
        "InsertedBy TEXT(255), InsertDate LONG, InsertTime LONG, Description TEXT(255), [ReadOnly] "
        "BIT, [Type] TEXT(255))",
        "CREATE TABLE tblTree (Id COUNTER CONSTRAINT c PRIMARY KEY, Description TEXT(255), "
        "NewEnabled BIT, DeleteEnabled BIT, UpdateEnabled BIT, TopItemId LONG)",
        "CREATE TABLE tblTreeItem (Id COUNTER CONSTRAINT d PRIMARY KEY, [Type] TEXT(255), ItemId "
        "LONG, ParentId LONG, Description TEXT(255))",
        "insert into tblSettings (Section,[Key],[Value]) values ('Storage','DocumentPath','C:\\d')",
        "insert into tblDocument (Description,[Type]) values ('first','tif')",
        "insert into tblDocument (Description,[Type]) values ('second','pdf')",
        "insert into tblTree (Description,TopItemId) values ('tree',1)",
        "insert into tblTreeItem ([Type],ParentId,Description) values ('tab',0,'top')",
        "insert into tblTreeItem ([Type],ParentId,ItemId,Description) values ('tif',1,1,'first')"};
    if (dossierTables)
        for (const char* statement :
             {"CREATE TABLE tblDossierTypes (Id COUNTER CONSTRAINT e PRIMARY KEY, DossierType "
              "TEXT(255), DossierDescription TEXT(255), UseMemo LONG)",
              "CREATE TABLE tblDossierDbRelation (DossierId COUNTER CONSTRAINT f PRIMARY KEY, "
              "dbKey TEXT(255))",
              "CREATE TABLE tblDossierRelations (Id COUNTER CONSTRAINT g PRIMARY KEY, DossierId "
              "LONG, "
              "[Type] TEXT(255), DossierDescription TEXT(255), ChildDossierId LONG, ChildType "
              "TEXT(255), TreeId LONG)",
              "CREATE TABLE tblDossierFields (Id COUNTER CONSTRAINT h PRIMARY KEY, DossierId LONG, "
              "[Order] LONG, FieldDescription TEXT(255), FieldType TEXT(255), IsExternal LONG, "
              "IsIndex LONG, InDescription LONG)",
              "CREATE TABLE tblDossierReference (Id COUNTER CONSTRAINT i PRIMARY KEY, DossierId "
              "LONG, "
              "DossierType LONG, Value1 TEXT(100), Value10 TEXT(100))",
              "insert into tblDossierTypes (DossierType) values ('Dossiermap')",
              "insert into tblDossierDbRelation (dbKey) values ('client 12')",
              "insert into tblDossierRelations (DossierId,[Type],TreeId) values (1,'Dossiermap',1)",
              "insert into tblDossierFields (DossierId,[Order],FieldDescription) values (1,3,'x')",
              "insert into tblDossierReference (DossierId) values (1)"})
            statements.emplace_back(statement);
    for (const std::string& statement : statements) connection->Execute(statement);
    return connection;
}

// Every table with its columns and rows, and every index; `without` names a column to leave out.
inline std::string Printout(data::Connection& connection, std::string_view without = {}) {
    std::string text;
    for (const std::string& table : TablesOf(connection)) {
        text += table + "\n";
        const data::RecordsetPtr rows = connection.Open({"select * from [" + table + "]"});
        std::vector<std::size_t> shown;
        for (std::size_t i = 0; i < rows->Fields().size(); ++i) {
            if (platform::EqualNoCase(rows->Fields()[i].name, without)) continue;
            shown.push_back(i);
            text += " " + rows->Fields()[i].name;
        }
        for (; !rows->Eof(); rows->MoveNext()) {
            text += "\n ";
            for (const std::size_t i : shown) text += data::ToText(rows->Get(i)) + "|";
        }
        text += "\n";
    }
    std::vector<std::string> indexes;
    const data::RecordsetPtr rows = connection.OpenSchema(data::Schema::Indexes);
    for (; !rows->Eof(); rows->MoveNext())
        indexes.push_back(data::ToText(rows->Get("TABLE_NAME")) + "." +
                          data::ToText(rows->Get("INDEX_NAME")));
    std::sort(indexes.begin(), indexes.end());
    for (const std::string& index : indexes) text += index + "\n";
    return text;
}

} // namespace kavidex::tests
