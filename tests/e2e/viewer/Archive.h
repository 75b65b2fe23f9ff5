// A database with a folder and a store of its own on the real machine, for programs that show
// documents.
#pragma once

#include <memory>
#include <string>

#include "data/clsSettings.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "model/clsDocument.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "model/documentFile.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Workstation.h"

namespace kavidex::tests {

struct Archive {
    using ItemPtr = std::shared_ptr<model::clsItem>;

    const platform::Workstation& machine;
    data::ConnectionPtr database = data::EmbeddedDatabase::CreateInMemory();
    model::clsTree tree{machine};
    ItemPtr folder;

    // `store`: a new folder.
    Archive(const platform::Workstation& workstation, const std::string& store)
        : machine(workstation) {
        data::clsUpdateDb update(machine);
        update.SetDbConnection(database);
        update.fncUpdateDb();
        machine.files.CreateDirectories(store);
        data::clsSettings settings(machine);
        settings.SetDbConnection(database);
        settings.SetSetting("Storage", "DocumentPath", store);
        tree.SetDbConnection(database);
        tree.SetDescription("Dossier van de heer Jansen");
        tree.CreateNew();
        folder = tree.AddChildTab("Correspondentie", tree.Item()->Id());
    }
    // Without bytes there is no file.
    ItemPtr Document(const std::string& type, const std::string& name, const std::string& bytes,
                     const std::string& sender = {}) {
        model::clsDocument made(machine);
        made.SetDatabaseObject(database);
        made.SetDocType(type);
        made.SetInsertedBy("jansen");
        made.SetInsertDate(platform::DateNumber(machine.clock.Now()));
        made.SetInsertTime(platform::TimeNumber(machine.clock.Now()));
        made.SetRecievedFrom(sender);
        if (!sender.empty()) made.SetRecievedOn("20261114093005");
        made.SetNumberOfAttatchements(sender.empty() ? 0 : 2);
        std::string path;
        made.SaveNewRow();
        made.CreateEmptyDoc(path);
        if (!bytes.empty()) machine.files.WriteAll(path, bytes);
        return tree.AddChildItem(0, type, nullptr, made.DocId(), name, folder->Id());
    }
    std::string FileOf(const ItemPtr& item) const {
        return model::FindDocumentFile(machine, database, *item).path;
    }
};

} // namespace kavidex::tests
