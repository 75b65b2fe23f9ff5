// A document viewer over the embedded engine, with a folder to put documents in: no window, real
// files.
#pragma once

#include <gtest/gtest.h>

#include "controls/viewer/ctlViewer.h"
#include "data/clsSettings.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "model/clsDocument.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "model/documentFile.h"
#include "tests/fakes/FakeViewerWindow.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::tests {

struct ViewerTest : testing::Test {
    using ItemPtr = std::shared_ptr<model::clsItem>;

    FakeWorkstation machine;
    data::ConnectionPtr database = data::EmbeddedDatabase::CreateInMemory();
    controls::ctlViewer viewer{machine};
    FakeViewerWindow window{viewer};
    model::clsTree tree{machine};
    ItemPtr root, folder;

    void SetUp() override {
        data::clsUpdateDb update(machine);
        update.SetDbConnection(database);
        update.fncUpdateDb();
        machine.files.CreateDirectories(machine.Path("store"));
        data::clsSettings settings(machine);
        settings.SetDbConnection(database);
        settings.SetSetting("Storage", "DocumentPath", machine.Path("store"));
        viewer.SetDbConnection(database);
        tree.SetDbConnection(database);
        tree.SetDescription("Dossier");
        ASSERT_TRUE(tree.CreateNew());
        root = tree.Item();
        folder = tree.AddChildTab("Post", root->Id());
    }
    // Without a file.
    ItemPtr Document(const char* type, const char* name, const char* time = "1405",
                     const char* sender = "", int attachments = 0) {
        model::clsDocument made(machine);
        made.SetDatabaseObject(database);
        made.SetDocType(type);
        made.SetInsertedBy("jansen");
        made.SetInsertDate("20261115");
        made.SetInsertTime(time);
        made.SetRecievedFrom(sender);
        made.SetNumberOfAttatchements(attachments);
        std::string path;
        EXPECT_TRUE(made.SaveNewRow() && made.CreateEmptyDoc(path));
        return tree.AddChildItem(0, type, nullptr, made.DocId(), name, folder->Id());
    }
    std::string FileOf(const ItemPtr& item) {
        return model::FindDocumentFile(machine, database, *item).path;
    }
    ItemPtr DocumentOf(const char* type, const char* name, std::string_view bytes) {
        auto item = Document(type, name);
        machine.files.WriteAll(FileOf(item), bytes);
        return item;
    }
    std::string LastMessage() const {
        return machine.messages.shown.empty() ? "" : machine.messages.shown.back().text;
    }
};

} // namespace kavidex::tests
