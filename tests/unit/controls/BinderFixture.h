// A binder control over the embedded engine: no window, real files.
#pragma once

#include "controls/binder/ctrlCorrespondence.h"

#include <map>

#include <gtest/gtest.h>

#include "controls/splitter/ctlSplitPanel.h"
#include "controls/tree/ctrlTree.h"
#include "controls/viewer/DocumentPanel.h"
#include "data/clsSettings.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "model/clsUserAuth.h"
#include "platform/General.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::controls {

struct MapBag : PropertyBag {
    std::map<std::string, data::Value, std::less<>> values;
    std::optional<data::Value> Read(std::string_view name, const data::Value&, BagWidth) override {
        const auto found = values.find(name);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    void Write(std::string_view name, const data::Value& value, BagWidth) override {
        values[std::string(name)] = value;
    }
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
        data::clsSettings settings(machine);
        settings.SetDbConnection(connection);
        settings.SetSetting(section, key, value);
    }
    std::int32_t Open(std::string_view key, std::string_view oldKey = "") {
        return binder->OpenOrCreate(key, " Dossier ", "", oldKey, "");
    }
    std::string File(std::string_view name, std::string_view bytes = "text") {
        const auto path = machine.Path(name);
        machine.files.WriteAll(path, bytes);
        return path;
    }
    std::int64_t Count(const std::string& table) {
        data::Command command;
        command.text = "select * from " + table;
        return connection->Open(command)->RecordCount();
    }
    std::int32_t Root() { return binder->treCorr().Tree()->Item()->Id(); }
    bool Told(std::string_view part) {
        for (const auto& message : machine.messages.shown)
            if (message.text.find(part) != std::string::npos) return true;
        return false;
    }
};

} // namespace kavidex::controls
