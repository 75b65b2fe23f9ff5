// A binder control over the embedded engine: no window, real files.
#pragma once

#include "controls/binder/ctrlCorrespondence.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "controls/splitter/ctlSplitPanel.h"
#include "controls/tree/ctrlTree.h"
#include "controls/viewer/ViewerViews.h"
#include "controls/viewer/ctlViewer.h"
#include "data/clsSettings.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "model/clsUserAuth.h"
#include "model/documentFile.h"
#include "platform/General.h"
#include "tests/fakes/FakeForms.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/FaultyConnection.h"
#include "tests/fakes/MapBag.h"
#include "tests/fakes/On.h"
#include "tests/fakes/SmallTiff.h"

namespace kavidex::controls {

using tests::MapBag;

// Temporary files go into a folder of the test's own for as long as this lives.
struct OwnTemporaryFolder {
    explicit OwnTemporaryFolder(const std::string& folder) { Set(folder); }
    ~OwnTemporaryFolder() { Set(before); }

private:
    static constexpr const char* name =
#ifdef _WIN32
        "TMP";
    static void Set(const std::string& value) { _putenv_s(name, value.c_str()); }
#else
        "TMPDIR";
    static void Set(const std::string& value) {
        ::setenv(name, platform::NativePath(value).c_str(), 1);
    }
#endif
    const std::string before = std::getenv(name) ? std::getenv(name) : "/tmp";
};

struct Binder : testing::Test {
    tests::FakeWorkstation machine;
    data::ConnectionPtr connection = data::EmbeddedDatabase::CreateInMemory();
    std::unique_ptr<ctrlCorrespondence> binder = Make();

    std::unique_ptr<ctrlCorrespondence> Make() {
        auto made = std::make_unique<ctrlCorrespondence>(machine);
        made->SetDbConnection(connection);
        return made;
    }
    void SetUp() override {
        machine.files.CreateDirectories(machine.Path("store"));
        Setting("Storage", "DocumentPath", machine.Path("store"));
    }
    void Setting(std::string_view section, std::string_view key, std::string_view value) {
        tests::On<data::clsSettings>(machine, connection).SetSetting(section, key, value);
    }
    std::int32_t Open(std::string_view key, std::string_view oldKey = "") {
        return binder->OpenOrCreate(key, " Dossier ", "", oldKey, "");
    }
    std::string File(std::string_view name, std::string_view bytes = "text") {
        const auto path = machine.Path(name);
        machine.files.CreateDirectories(platform::FolderOf(path));
        machine.files.WriteAll(path, bytes);
        return path;
    }
    std::int64_t Count(const std::string& table) {
        return connection->Open({"select * from " + table})->RecordCount();
    }
    std::int32_t Root() { return binder->treCorr().Tree()->Item()->Id(); }
    bool Told(std::string_view part) const {
        for (const auto& message : machine.messages.shown)
            if (message.text.find(part) != std::string::npos) return true;
        return false;
    }
    // The dossier, a level deeper one more dot.
    std::string Outline() {
        std::string lines;
        auto& tree = binder->treCorr();
        for (const auto& item : tree.AllItems()) {
            for (auto up = tree.GetParent(item->Id()); up && up->Id() != Root();
                 up = tree.GetParent(up->Id()))
                lines += '.';
            lines += item->Description() + "|" + item->ItemType() + "\n";
        }
        return lines;
    }
    // Where the store keeps it.
    std::string FileOf(const ItemPtr& item) {
        return model::FindDocumentFile(machine, binder->DbConnection(), *item).path;
    }
};

struct BinderWithTemporaryFolder : Binder {
    const std::string temporary = machine.Path("temp");
    const OwnTemporaryFolder own{temporary};

    void SetUp() override {
        Binder::SetUp();
        machine.files.CreateDirectories(temporary);
    }
};

} // namespace kavidex::controls
