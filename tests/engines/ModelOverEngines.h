// The system's tables on each engine, and what the tests of the model ask of them.
#pragma once

#include <gtest/gtest.h>

#include "data/clsSettings.h"
#include "data/modData.h"
#include "data/schema/clsUpdateDb.h"
#include "data/schema/modDataBase.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "model/filing.h"
#include "platform/text.h"
#include "tests/engines/Engine.h"

namespace kavidex::tests {

using namespace kavidex::model;

class ModelOverEngines : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        if (IsSkipped()) return;
        machine.guids.real = true;
        On<data::clsSettings> settings(machine, connection);
        if (!engine.ComesWithSchema()) {
            ASSERT_EQ(data::CheckAndCreateDatabase(machine, connection, settings,
                                                   data::IsMySqlConnection(connection)),
                      1);
        }
        On<data::clsUpdateDb>(machine, connection).fncUpdateDb();
        for (const auto& message : machine.messages.shown) ADD_FAILURE() << message.text;
        machine.files.CreateDirectories(machine.Path("store"));
        settings.SetSetting("Storage", "DocumentPath", machine.Path("store"));
    }

    std::shared_ptr<clsTree> Tree(std::int32_t id = 0, data::ConnectionPtr on = nullptr) {
        auto tree = std::make_shared<clsTree>(machine);
        tree->SetDbConnection(on ? on : connection);
        if (id != 0) tree->SetTreeId(id);
        return tree;
    }
    std::shared_ptr<clsTree> NewTree() {
        auto tree = Tree();
        tree->SetDescription("Dossier");
        tree->SetNewEnabled(true);
        EXPECT_TRUE(tree->CreateNew());
        return tree;
    }
    // A file of that name, which goes once it is filed.
    FilingResult FileText(clsTree& tree, const std::string& name, NodeId folder) {
        FilingRequest request;
        request.source = machine.Path(name);
        request.folderId = folder;
        request.deleteSource = true;
        machine.files.WriteAll(request.source, "inhoud");
        return FileDocument(machine, tree, request);
    }
    // The names below a node, depth first.
    static std::string Names(const clsItemPtr& item) {
        std::string names;
        if (const auto& children = item->ChildCollection())
            for (const clsItemPtr& child : children->Items())
                names += child->Description() + "(" + Names(child) + ")";
        return names;
    }
    // What a written text reads as: MySQL keeps two backslashes for one, as the statement helpers
    // make it.
    std::string Kept(std::string_view text) const {
        return engine.DoublesBackslashesOnExecute() ? platform::Replace(text, "\\", "\\\\")
                                                    : std::string(text);
    }
    std::int32_t Number(const std::string& statement) { return data::ToInt32(One(statement)); }
};

} // namespace kavidex::tests
