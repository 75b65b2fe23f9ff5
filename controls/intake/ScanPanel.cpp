#include "controls/intake/ScanPanel.h"

#include "model/clsItem.h"
#include "model/clsTree.h"
#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

ScanSetup ScanPanel::Setup() const {
    ScanSetup setup;
    setup.texts = {{L"AlternateScanSetting", lclSite.ScanProfile()}};
    for (auto& text : lclSite.TextsForScanner())
        if (!text.second.empty()) setup.texts.push_back(std::move(text));
    constexpr std::pair<const wchar_t*, std::string_view> rights[] = {
        {L"StartScan", "StartScan"},
        {L"EditSettings", "EditSettings"},
        {L"TransportBatches", "TransportBatches"}};
    for (const auto& [property, right] : rights)
        setup.flags.emplace_back(property, lclSite.HasRight(right));
    return setup;
}

void ScanPanel::Open(const std::string& importFolder) {
    auto* const place = lclSite.Scanner();
    if (lclOpening) throw platform::Error(platform::errors::fail, "The control is being opened.");
    if (!place) throw platform::Error(platform::errors::fail, "The control has no window.");
    auto setup = Setup();
    if (!importFolder.empty()) setup.texts.emplace_back(L"ImportFolder", importFolder);
    const auto folder = lclSite.SelectedFolder();
    lclFolder = folder ? folder->Id() : 0;
    setup.scanned = [this, dossier = lclSite.OpenDossier()](const std::vector<std::string>& files) {
        Scanned(dossier, files);
    };
    // It may report at once, and the panel be closed on that.
    lclOpen = lclOpening = true;
    try {
        place->OpenScanner(setup);
    } catch (...) {
        lclOpen = lclOpening = false;
        throw;
    }
    lclOpening = false;
    auto* const now = lclSite.Scanner();
    if (!lclOpen && now) now->CloseScanner();
    if (changed) changed();
}

void ScanPanel::Toggle() {
    if (lclOpen) return Close();
    if (lclOpening) return;
    const bool window = lclSite.Scanner() != nullptr;
    try {
        Open({});
    } catch (const std::exception& error) {
        lclSite.Machine().log.Write("ScanPanel", error.what());
        if (window && !lclSite.Scanner()) return; // closed with it
        lclSite.TellReady(
            lclSite.Text("De scanmodule (Tessaro.ctrlScan) kan niet geopend worden. Is deze op dit "
                         "werkstation geïnstalleerd?"));
        if (changed) changed(); // the button comes up again
    }
}

bool ScanPanel::Import(const std::string& folder) {
    if (lclOpen) Close();
    try {
        Open(folder);
        return lclOpen;
    } catch (const std::exception& error) {
        lclSite.Machine().log.Write("ScanPanel", error.what());
        return false;
    }
}

void ScanPanel::Close() {
    if (!lclOpen) return;
    lclOpen = false;
    if (auto* const place = lclSite.Scanner()) place->CloseScanner();
    if (changed) changed();
}

void ScanPanel::SetupChanged() {
    auto* const place = lclOpen ? lclSite.Scanner() : nullptr;
    if (place) place->TellScanner(Setup());
}

// A selection closes it: what it hands over then is of the folder before.
ItemPtr ScanPanel::Folder() const {
    const auto tree = lclSite.Tree();
    const auto folder = tree && lclFolder != 0 ? tree->GetItem(lclFolder, {}) : nullptr;
    return folder ? folder : lclSite.SelectedFolder();
}

void ScanPanel::Scanned(const Dossier& dossier, const std::vector<std::string>& names) {
    std::vector<IntakeFile> files;
    for (const auto& name : names) files.push_back({name, true, true});
    if (!files.empty()) lclIntake.AddByUser(dossier, files, [this] { return Folder(); });
}

} // namespace kavidex::controls
