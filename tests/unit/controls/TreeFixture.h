// A small dossier in an embedded database, shown by the tree control.
#pragma once

#include <gtest/gtest.h>

#include "controls/tree/ctrlTree.h"
#include "data/clsSettings.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "model/documentFile.h"
#include "model/filing.h"
#include "platform/General.h"
#include "tests/fakes/FakeTreeWindow.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/On.h"

namespace kavidex::controls {

// A copy of a database of the current schema; the upgrade itself runs once for all tests.
inline data::ConnectionPtr CurrentDatabase(tests::FakeWorkstation& machine) {
    static const auto current = [&] {
        auto made = data::EmbeddedDatabase::CreateInMemory();
        tests::On<data::clsUpdateDb>(machine, made).fncUpdateDb();
        return made;
    }();
    data::EmbeddedDatabase::BackupTo(*current, machine.Path("dossier.db"));
    return data::EmbeddedDatabase::Open(machine.Path("dossier.db"));
}

class TreeTest : public testing::Test {
protected:
    TreeTest() {
        machine.guids.real = true;
        lclSelection = tree.EvItemSelected.Subscribe(
            [this](const TreeItemInfo& info) { selections.push_back(info.nodeFullPath); });
    }
    ~TreeTest() override { tree.AttachWindow(nullptr); }

    // Dossier > Letters (a.tif, note), Mail > Old (b.msg), c.001
    void MakeDossier() {
        tree.SetDbConnection(database);
        ASSERT_TRUE(tree.CreateNew("Dossier", "Letters;Mail")) << Told();
        root = tree.Tree()->Item()->Id();
        letters = Id("Letters");
        mail = Id("Mail");
        old = tree.AddTab("Old", mail)->Id();
        letter = Add("tif", 11, "a.tif", letters);
        note = Add("nnt", 12, "note", letters);
        message = Add("msg", 13, "b.msg", old);
        numbered = Add("001", 14, "c.001", root);
    }
    std::int32_t Add(const char* type, std::int32_t itemId, const char* name, std::int32_t parent) {
        const auto item = tree.Add(0, type, nullptr, itemId, name, parent);
        return item ? item->Id() : 0;
    }
    void MakeStore() {
        const auto store = machine.Path("store");
        machine.files.CreateDirectories(store);
        tests::On<data::clsSettings>(machine, database)
            .SetSetting("Storage", "DocumentPath", store);
    }
    // A document with a file in the store.
    std::int32_t File(const std::string& file, const std::string& bytes, std::int32_t folder,
                      const std::string& name = {}) {
        machine.files.WriteAll(machine.Path(file), bytes);
        model::FilingRequest request;
        request.source = machine.Path(file);
        request.folderId = folder;
        request.description = name;
        const auto filed = model::FileDocument(machine, *tree.Tree(), request);
        EXPECT_TRUE(filed) << filed.error;
        tree.AddItem(filed.item, folder, false);
        return filed.item->Id();
    }
    std::string PathOf(const ItemPtr& item) {
        return model::FindDocumentFile(machine, database, *item).path;
    }
    // From the menu over these items: whether it was offered.
    bool ChooseFor(const std::vector<std::int32_t>& ids, const char* entry) {
        tree.ClearSelectedItems();
        tree.SetHighLightToItem(ids.front());
        if (ids.size() > 1)
            for (const auto id : ids) tree.NodeChecked(id, true);
        auto menu = tree.PrepareMenu(ids.front());
        const auto* found = FindEntry(menu, entry);
        tree.ChooseMenu(*found);
        return found->visible && found->enabled;
    }
    // The tree as another user has it.
    std::shared_ptr<model::clsTree> Elsewhere() {
        auto other = std::make_shared<tests::On<model::clsTree>>(machine, database);
        other->SetTreeId(tree.TreeId());
        return other;
    }
    std::string Told() const {
        std::string texts;
        for (const auto& shown : machine.messages.shown)
            texts += shown.caption + ": " + shown.text + "\n";
        for (const auto& line : machine.log.lines) texts += line.where + ": " + line.what + "\n";
        return texts;
    }
    std::string LastTold() const {
        return machine.messages.shown.empty() ? "" : machine.messages.shown.back().text;
    }
    std::int32_t Id(const char* description) { return tree.GetItem(0, description)->Id(); }
    std::string Stored(const std::string& statement) {
        const auto rows = database->Open({statement});
        return rows->Eof() ? "none" : data::ToText(rows->Get(std::size_t{0}));
    }

    tests::FakeWorkstation machine;
    tests::FakeTreeWindow window;
    data::ConnectionPtr database = CurrentDatabase(machine);
    ctrlTree tree{machine};
    std::vector<std::string> selections;
    std::int32_t root = 0, letters = 0, mail = 0, old = 0, letter = 0, note = 0, message = 0,
                 numbered = 0;

private:
    std::shared_ptr<void> lclSelection;
};

} // namespace kavidex::controls
