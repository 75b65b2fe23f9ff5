// A real database at the current schema, a document store, and a connection that tells every
// statement letter for letter and can fail any of them.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "data/clsSettings.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "model/IntegrityCheck.h"
#include "model/clsTree.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/FaultyConnection.h"
#include "tests/fakes/On.h"

namespace kavidex::tests {

// What the upgrade chain makes of a new file; a transaction spares the many syncs.
inline void UpgradeToCurrent(const platform::Workstation& workstation,
                             const data::ConnectionPtr& connection) {
    connection->BeginTrans();
    On<data::clsUpdateDb>(workstation, connection).fncUpdateDb();
    connection->CommitTrans();
}

class ModelDatabase : public testing::Test {
protected:
    ModelDatabase() {
        machine.guids.real = true;
        database = data::EmbeddedDatabase::Create(File());
        UpgradeToCurrent(machine, database);
        On<data::clsSettings> settings(machine, database);
        machine.files.CreateDirectories(Store());
        settings.SetSetting("Storage", "DocumentPath", Store());
        machine.messages.shown.clear();
        connection = std::make_shared<FaultyConnection>(database);
    }

    std::string File() const { return machine.Path("dossier.kvx"); }
    std::string Store() const { return machine.Path("store"); }

    std::shared_ptr<model::clsTree> NewTree(std::string_view description = "Dossier") {
        auto tree = std::make_shared<On<model::clsTree>>(machine, connection);
        tree->SetDescription(description);
        EXPECT_TRUE(tree->CreateNew());
        // A tree that belongs to a dossier, so that nothing dangles.
        const std::string id = std::to_string(tree->TreeId());
        Sql("Insert into tblDossierDbRelation (DossierId, dbKey, DbRelId) Values (" + id +
            ", 'K', " + id + ")");
        Sql("Insert into tblDossierRelations (Id, RelId, DossierId, Type, TreeId) Values (" + id +
            ", " + id + ", " + id + ", 'T', " + id + ")");
        connection->statements.clear();
        return tree;
    }
    std::shared_ptr<model::clsTree> Load(std::int32_t id) {
        auto tree = std::make_shared<On<model::clsTree>>(machine, connection);
        tree->SetTreeId(id);
        return tree;
    }

    void Sql(const std::string& statement) { database->Execute(statement); }
    // Folders: ids from `first` on, each below `parentOf(i)`.
    template <class ParentOf>
    void AddRows(int count, int first, ParentOf parentOf) {
        database->BeginTrans();
        for (int i = 0; i < count; ++i) {
            const std::string id = std::to_string(first + i);
            Sql("Insert into tblTreeItem (Id, TreeItemId, Type, ItemId, ParentId, Description) "
                "Values (" +
                id + ", " + id + ", 'tab', 0, " + std::to_string(parentOf(i)) + ", 'n" + id + "')");
        }
        database->CommitTrans();
    }
    // All rows, values joined by a bar.
    std::vector<std::string> Rows(const std::string& statement) {
        std::vector<std::string> lines;
        const data::RecordsetPtr rows = database->Open({statement});
        for (; !rows->Eof(); rows->MoveNext()) {
            std::string line;
            for (std::size_t i = 0; i < rows->Fields().size(); ++i)
                line += (i ? "|" : "") + platform::Trim(data::ToText(rows->Get(i)));
            lines.push_back(line);
        }
        return lines;
    }
    std::string One(const std::string& statement) {
        const auto rows = Rows(statement);
        return rows.size() == 1 ? rows[0] : std::to_string(rows.size()) + " rows";
    }

    std::vector<std::string> Faults() {
        std::vector<std::string> names;
        for (const model::Finding& finding : model::CheckIntegrity(machine, database))
            names.emplace_back(model::FaultName(finding.fault));
        return names;
    }

    FakeWorkstation machine;
    data::ConnectionPtr database;                 // straight to the engine
    std::shared_ptr<FaultyConnection> connection; // recorded
};

// The tree as indented text: id-less, one line a node.
inline std::string Outline(const model::clsItem& node, int depth = 0) {
    std::string text =
        std::string(static_cast<std::size_t>(depth), ' ') + node.Description() + "\n";
    if (const auto& children = node.ChildCollection())
        for (const auto& child : children->Items()) text += Outline(*child, depth + 1);
    return text;
}

} // namespace kavidex::tests
