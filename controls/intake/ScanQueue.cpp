#include "controls/intake/ScanQueue.h"

#include "controls/intake/frmFolder.h"
#include "model/Store.h"
#include "model/clsItem.h"
#include "platform/Files.h"
#include "platform/General.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::string_view section = "DossierSettings";
constexpr std::string_view roots[] = {"ScanQueue", "ImportDocumentsPath"};
constexpr std::string_view images = "*.tif";

} // namespace

void ScanQueue::Check(const std::string& key, std::int32_t treeId) {
    if (!lclSite.DbConnection()) return;
    if (!lclSite.Tree()) // nobody would ever be asked again for what came in without one
        return lclSite.Machine().log.Write("fncCheckDocumentQueue", "no dossier is open");
    // Every box lets the host in, which may open another dossier: these documents are not its.
    const auto dossier = lclSite.OpenDossier();
    for (const auto name : roots) {
        auto root = platform::Trim(
            model::ReadSetting(lclSite.Machine(), lclSite.DbConnection(), section, name)
                .value_or(std::string()));
        if (root.empty()) continue;
        if (root.back() != '\\') root += '\\';
        if (!key.empty() && !Look(dossier, root, key, false)) return;
        if (treeId != 0 && !Look(dossier, root, "Map" + std::to_string(treeId), name == roots[0]))
            return;
    }
}

// `announce`: the name is shown where the workstation asks for it, so that it can be set up on the
// scanning device.
bool ScanQueue::Look(const Dossier& dossier, std::string_view root, const std::string& name,
                     bool announce) {
    const auto& machine = lclSite.Machine();
    const auto setting = [&](std::string_view of) {
        return platform::GetRegSetting(machine, platform::applicationName, of, "ShowExtId", "");
    };
    if (announce && platform::Val(setting("CorrespSetting")) == 1)
        lclSite.Tell("Mapnaam voor opslag vanuit multifunctional = $%$", {name});
    const std::string folder = platform::JoinPath(root, name);
    if (platform::EqualNoCase(setting("DebugFlags"), "true"))
        machine.messages.Show({folder, lclSite.Text("Path for ScanQueue")});
    // A key names one folder below the root and nothing else.
    if (!platform::IsFileName(name)) return true;
    if (!machine.files.Holds(folder, images)) return true;
    machine.log.Write("fncCheckDocumentQueue", "Documents wait in " + folder);
    if (!lclSite.Ask(lclSite.Text("Er zijn nog documenten aanwezig die moeten worden toegevoegd "
                                  "aan dit dossier. Wilt u dit nu doen?"),
                     lclSite.Text("Controle op bestaande documenten")))
        return dossier == lclSite.OpenDossier();
    if (dossier != lclSite.OpenDossier()) return false;
    if (giveToScanner && giveToScanner(folder)) return false;
    Import(dossier, folder);
    return dossier == lclSite.OpenDossier();
}

void ScanQueue::Import(const Dossier& dossier, const std::string& folder) {
    auto& files = lclSite.Machine().files;
    const auto waiting = [&] {
        std::vector<IntakeFile> found;
        for (const auto& name : files.List(folder, images))
            found.push_back({platform::JoinPath(folder, name), true, true, {}, true});
        return found;
    };
    if (!lclSite.Forms()) return lclIntake.AddWaiting(dossier, waiting());
    const auto chosen = ChooseFolder(lclSite);
    if (!chosen) return;
    const auto lock = files.Lock(platform::JoinPath(folder, lockName));
    if (!lock)
        return lclSite.Tell("Een andere gebruiker voegt de documenten in '$%$' al toe", {folder});
    if (const auto found = waiting(); !found.empty()) lclIntake.AddByUser(dossier, found, chosen);
}

} // namespace kavidex::controls
