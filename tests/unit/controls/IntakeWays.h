// The ways that documents come in, each as something that can be begun, cut short
// anywhere, looked at and done again: a drop, a backlog, the scan queue, the scanning control.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "model/IntegrityCheck.h"
#include "model/documentFile.h"
#include "tests/fakes/FakeBinderWindow.h"
#include "tests/fakes/FaultyConnection.h"
#include "tests/fakes/SmallTiff.h"
#include "tests/unit/controls/BinderFixture.h"

namespace kavidex::tests {

enum class Way { Drop, Backlog, Queue, Scan };

class IntakeWays : public testing::TestWithParam<Way> {
protected:
    using Binder = controls::ctrlCorrespondence;
    static constexpr int documents = 3;

    void SetUp() override {
        machine.guids.real = true;
        machine.files.CreateDirectories(machine.Path("store"));
        machine.files.CreateDirectories(machine.Path("temp"));
        const auto database = data::EmbeddedDatabase::Create(File());
        Binder made(machine);
        made.SetDbConnection(database);
        data::clsSettings settings(machine);
        settings.SetDbConnection(database);
        settings.SetSetting("Storage", "DocumentPath", machine.Path("store"));
        settings.SetSetting("BackLogSettings", "Path", machine.Path("backlog"));
        settings.SetSetting("DossierSettings", "ScanQueue", machine.Path("queue"));
    }
    std::string File() const { return machine.Path("dossiers.kvx"); }

    // A dossier of its own, for which documents then wait.
    void Prepare() {
        key = std::to_string(++lclRuns);
        {
            const Opened clean(*this, machine);
            ASSERT_EQ(clean.binder.OpenOrCreate(key, "Dossier", "", "", ""), 0);
        }
        const std::string folder =
            machine.Path(GetParam() == Way::Backlog
                             ? "backlog\\" + (std::string(12, '0') + key).substr(key.size())
                             : std::string(GetParam() == Way::Queue ? "queue\\" : "in\\") + key);
        machine.files.CreateDirectories(folder);
        sources.clear();
        for (int i = 1; i <= documents; ++i) {
            const auto path = platform::JoinPath(folder, std::to_string(i) + ".tif");
            sources[path] = SmallTiff("a") + "document " + std::to_string(i) + " of " + key;
            machine.files.WriteAll(path, sources[path]);
        }
        machine.messages.shown.clear();
    }
    // Begins with an open dossier or without one, as the way goes.
    template <class Ready>
    void TakeIn(Binder& binder, Ready ready) {
        const bool opens = GetParam() == Way::Backlog || GetParam() == Way::Queue;
        if (opens) ready();
        binder.OpenOrCreate(key, "Dossier", "", "", "");
        if (!binder.treCorr().Tree()) return; // it could not be read
        std::vector<std::string> files;
        if (!opens) {
            for (const auto& [path, bytes] : sources)
                if (machine.files.FileExists(path) && !IsStored(binder, bytes))
                    files.push_back(path);
            ready();
        }
        if (GetParam() == Way::Scan) Scan(binder, files);
        const auto top = binder.treCorr().Tree()->Item()->Id();
        if (GetParam() == Way::Queue || GetParam() == Way::Scan)
            return binder.treCorr().NodeSelected(top);
        controls::DropData data;
        data.hasFiles = true;
        data.files = files;
        if (GetParam() == Way::Drop && !files.empty()) binder.treCorr().Dropped(data, top);
    }
    // Nothing is selected yet.
    static void Scan(Binder& binder, const std::vector<std::string>& files) {
        FakeBinderWindow window;
        binder.AttachWindow(&window);
        binder.ButtonClicked("Scan");
        if (window.scanner.scanned) window.scanner.scanned(files);
        binder.AttachWindow(nullptr);
    }

    // Nothing is lost, whatever happened: each document is where it came from, as it was, or in the
    // dossier; and what the database tells is there.
    void ExpectNothingLost(const std::string& where) {
        const Opened clean(*this, machine);
        for (const char* section : {"BackLogSettings", "DossierSettings"}) // this is only a look
            clean.database->Execute("update tblSettings set [Value] = '' where Section = '" +
                                    std::string(section) + "'");
        clean.binder.OpenOrCreate(key, "Dossier", "", "", "");
        for (const auto& [path, bytes] : sources) {
            const bool kept =
                machine.files.FileExists(path) && machine.files.ReadAll(path) == bytes;
            EXPECT_TRUE(kept || Copies(clean.binder, bytes) > 0) << where << ": " << path;
            EXPECT_LE(Copies(clean.binder, bytes), 1) << where << ": " << path;
        }
        for (const auto& finding : model::CheckIntegrity(machine, clean.database)) {
            EXPECT_EQ(finding.fault, model::Fault::FileWithoutDocument) // a copy that was cut off
                << where << ": " << model::FaultName(finding.fault) << " " << finding.detail;
            if (finding.fault == model::Fault::FileWithoutDocument)
                machine.files.Remove(finding.detail);
        }
        EXPECT_TRUE(data::EmbeddedDatabase::Check(*clean.database).empty()) << where;
        data::clsSettings settings(machine);
        settings.SetDbConnection(clean.database);
        settings.SetSetting("BackLogSettings", "Path", machine.Path("backlog"));
        settings.SetSetting("DossierSettings", "ScanQueue", machine.Path("queue"));
    }
    // The next time it goes on where it stopped: every document comes in, and comes in once.
    void ExpectWholeTheNextTime(const std::string& where) {
        const Opened clean(*this, machine);
        TakeIn(clean.binder, [] {});
        for (const auto& [path, bytes] : sources) {
            EXPECT_EQ(Copies(clean.binder, bytes), 1) << where << ": " << path;
            const bool stays = GetParam() == Way::Drop || GetParam() == Way::Backlog;
            EXPECT_EQ(machine.files.FileExists(path), stays) << where;
        }
    }
    // A binder on a connection of its own.
    struct Opened {
        Opened(IntakeWays& ways, const platform::Workstation& workstation)
            : database(data::EmbeddedDatabase::Open(ways.File())), binder(workstation) {
            binder.SetDbConnection(database);
        }
        ~Opened() {
            binder.CloseObject();
            binder.SetDbConnection(nullptr);
            database->Close();
        }
        Opened(const Opened&) = delete;
        Opened& operator=(const Opened&) = delete;
        data::ConnectionPtr database;
        mutable Binder binder;
    };

    int Copies(Binder& binder, const std::string& bytes) {
        int found = 0;
        for (const auto& item : binder.treCorr().AllItems()) {
            if (item->AllowChildren()) continue;
            const auto stored = model::FindDocumentFile(machine, binder.DbConnection(), *item);
            found += stored.HasFile() && machine.files.ReadAll(stored.path) == bytes;
        }
        return found;
    }

    FakeWorkstation machine;
    const controls::OwnTemporaryFolder temporary{machine.Path("temp")};
    std::string key;
    std::map<std::string, std::string> sources; // and what they hold

private:
    bool IsStored(Binder& binder, const std::string& bytes) { return Copies(binder, bytes) > 0; }

    int lclRuns = 1000;
};

inline const char* NameOf(Way way) {
    constexpr const char* names[] = {"drop", "backlog", "queue", "scan"};
    return names[static_cast<int>(way)];
}

} // namespace kavidex::tests
