#include "controls/intake/Filer.h"

#include <exception>
#include <optional>
#include <utility>

#include "controls/intake/MailDrop.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "model/filing.h"
#include "model/storePath.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Links.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::size_t together = 16; // documents with one commit
constexpr int deepest = 64;          // folders in folders

int DepthOf(const std::vector<IntakeEntry>& entries, std::size_t at) {
    int depth = 0;
    for (; entries[at].into != IntakeEntry::target; at = entries[at].into) ++depth;
    return depth;
}

} // namespace

std::vector<IntakeEntry> EntriesOf(const std::vector<IntakeFile>& files) {
    std::vector<IntakeEntry> entries;
    entries.reserve(files.size());
    for (const auto& file : files) entries.push_back({file});
    return entries;
}

struct Filer::Run {
    std::shared_ptr<model::clsTree> tree;
    ItemPtr target;
    const std::function<void(std::size_t)>& heard;
    std::string store{}, key{};
    std::vector<ItemPtr> folders{}; // those that were made, by the position of their entry
    FilingReport report{};
    std::vector<bool> settled{}; // filed or failed, by the position of the entry

    // Documents whose copies are made: of one folder, and written together.
    std::optional<model::Filings> together{};
    std::vector<std::size_t> waiting{};
    ItemPtr waitsFor{};

    void Failed(std::size_t at, std::int32_t number, std::string cause) {
        report.Failed(number, std::move(cause));
        report.left.push_back(at);
        if (at >= settled.size()) settled.resize(at + 1);
        settled[at] = true;
    }
};

FilingReport Filer::File(const ItemPtr& folder, std::vector<IntakeEntry> entries,
                         const std::function<void(std::size_t)>& filed) {
    Run run{.tree = lclSite.Tree(), .target = folder, .heard = filed};
    Operation operation(lclSite.Lock());
    if (!Begin(run, operation, entries)) return std::move(run.report);
    const auto others = [&](std::int32_t number, auto told) {
        run.settled.resize(entries.size());
        for (std::size_t at = 0; at < entries.size(); ++at)
            if (!run.settled[at]) {
                run.Failed(at, number, told(entries[at].what.file));
                run.report.untried.push_back(at);
            }
    };
    try {
        operation.Show(lclSite.Text("Documenten toevoegen"), "", lclSite.Text("Annuleren"));
        OpenFolders(entries, run, operation);
        run.folders.resize(entries.size());
        run.settled.resize(entries.size());
        FileEntries(entries, run, operation);
        WriteWaiting(entries, run);
        run.report.stopped = operation.Stopped();
        if (run.report.stopped)
            others(addFiles::stopped, [&](const std::string& file) {
                return lclSite.Text("$%$: niet toegevoegd, want het toevoegen is afgebroken",
                                    {file});
            });
    } catch (const std::exception& error) {
        lclSite.Machine().log.Write("AddFiles", error.what());
        try {
            WriteWaiting(entries, run); // what was ready before
        } catch (const std::exception& again) {
            lclSite.Machine().log.Write("AddFiles", again.what());
        }
        others(addFiles::notFiled, [&](const std::string& file) {
            return lclSite.Text("$%$: niet opgeslagen", {file});
        });
    }
    run.together.reset();
    operation.End(); // before what is left to tell
    try {
        if (!run.report.filed.empty()) lclSite.ShowAgain();
    } catch (const std::exception& error) {
        lclSite.Machine().log.Write("AddFiles", error.what());
    }
    return std::move(run.report);
}

void Filer::FileEntries(const std::vector<IntakeEntry>& entries, Run& run,
                        Operation& operation) const {
    const auto caption = lclSite.Text("Documenten toevoegen");
    const auto total = static_cast<int>(entries.size());
    for (std::size_t at = 0; at < entries.size(); ++at) {
        const auto name = platform::FileName(entries[at].what.file);
        operation.Show(caption,
                       total == 1 ? name
                                  : lclSite.Text("$%$ ($%$ van $%$)", {name, std::to_string(at + 1),
                                                                       std::to_string(total)}));
        if (!operation.Step(static_cast<int>(at), total)) return;
        if (!run.settled[at]) FileEntry(entries, at, run); // a folder that could not be read
    }
    operation.Step(total, total);
}

// False, and every entry failed, when nothing can be filed at all.
bool Filer::Begin(Run& run, Operation& operation, const std::vector<IntakeEntry>& entries) const {
    std::int32_t number = addFiles::done;
    std::string cause;
    if (!operation) {
        number = addFiles::notFiled;
        cause = lclSite.Text("Er loopt nog een andere bewerking");
    } else if (!run.tree || !run.target) {
        number = addFiles::noDossier;
        cause = lclSite.Text("Er is geen dossier geopend");
    } else {
        try {
            run.key = lclSite.DossierKey();
            run.store =
                model::FindStore(lclSite.Machine(), lclSite.DbConnection()).value_or(std::string());
            if (!run.store.empty()) return true;
            number = addFiles::noStore;
            cause = lclSite.Text("DocumentPath in section Storage not found");
        } catch (const std::exception& error) {
            lclSite.Machine().log.Write("AddFiles", error.what());
            number = addFiles::notFiled;
            cause = lclSite.Text("Het dossier kan niet gelezen worden");
        }
    }
    run.report.Failed(number, std::move(cause));
    for (std::size_t at = 0; at < entries.size(); ++at) {
        run.Failed(at, number, lclSite.Text("$%$: niet opgeslagen", {entries[at].what.file}));
        if (!operation) run.report.untried.push_back(at);
    }
    return false;
}

// What the folders hold comes behind the rest, so that each folder still stands before it.
void Filer::OpenFolders(std::vector<IntakeEntry>& entries, Run& run, Operation& operation) const {
    for (std::size_t at = 0; at < entries.size(); ++at) {
        if (!entries[at].folder) continue;
        if (!operation.Step(0, 0)) return;
        OpenFolder(entries, at, run);
    }
}

// It may lead back up: what it holds would come in over and over.
bool Filer::IsLink(const std::string& folder) const {
    try {
        const auto found = lclSite.Machine().files.Attributes(folder);
        return (found & platform::attributes::link) != 0;
    } catch (const std::exception& error) { // it cannot be read either, which is told
        lclSite.Machine().log.Write("AddFiles", error.what());
        return false;
    }
}

void Filer::OpenFolder(std::vector<IntakeEntry>& entries, std::size_t at, Run& run) const {
    auto& files = lclSite.Machine().files;
    const auto folder = entries[at].what.file;
    try {
        if (DepthOf(entries, at) > deepest)
            return run.Failed(at, addFiles::noFile,
                              lclSite.Text("$%$: te veel mappen in mappen", {folder}));
        for (const auto& name : files.List(folder, "*", true)) {
            const auto path = platform::JoinPath(folder, name);
            const bool within = files.DirectoryExists(path);
            if (within && IsLink(path))
                run.report.Failed(
                    addFiles::noFile,
                    lclSite.Text("$%$: een koppeling naar een andere map, die niet gevolgd wordt",
                                 {path}));
            else if (!within && !lclSite.AcceptsType(model::DocumentTypeOf(name)))
                run.report.Failed(
                    addFiles::noFile,
                    lclSite.Text("Bestanden van dit type worden hier niet opgenomen: $%$", {path}));
            else
                entries.push_back({{path}, within, at});
        }
    } catch (const std::exception& error) {
        lclSite.Machine().log.Write("AddFiles", error.what());
        run.Failed(at, addFiles::noFile, CauseInSource(lclSite, folder, NumberOf(error)));
    }
}

void Filer::FileEntry(const std::vector<IntakeEntry>& entries, std::size_t at, Run& run) const {
    const auto& entry = entries[at];
    const auto& file = entry.what.file;
    const auto into = entry.into == IntakeEntry::target ? run.target : run.folders[entry.into];
    if (lclSite.Tree() != run.tree || lclSite.IsElsewhere())
        return run.Failed(at, addFiles::noDossier,
                          lclSite.Text("$%$: het dossier is gesloten", {file}));
    if (!into) // its folder was refused
        return run.Failed(at, addFiles::notFiled, lclSite.Text("$%$: niet opgeslagen", {file}));
    if (entry.folder || into != run.waitsFor) WriteWaiting(entries, run);
    if (entry.folder)
        MakeFolder(entries, at, into, run);
    else
        FileDocument(entries, at, into, run);
    if (run.waiting.size() == together) WriteWaiting(entries, run);
}

void Filer::MakeFolder(const std::vector<IntakeEntry>& entries, std::size_t at, const ItemPtr& into,
                       Run& run) const {
    const auto& path = entries[at].what.file;
    const auto name = platform::FileName(path);
    try {
        const auto made =
            run.tree->AddChildTab(model::ColumnText(name.empty() ? path : name), into->Id());
        if (!made) throw platform::Error(platform::errors::fail, "The folder was not taken.");
        run.folders[at] = made;
        run.settled[at] = true;
        ShowFiled(made, into, run);
    } catch (const std::exception& error) {
        lclSite.Machine().log.Write("AddFiles", path + ": " + error.what());
        run.Failed(at, addFiles::notFiled, lclSite.Text("$%$: niet opgeslagen", {path}));
    }
}

void Filer::FileDocument(const std::vector<IntakeEntry>& entries, std::size_t at,
                         const ItemPtr& into, Run& run) const {
    const auto& what = entries[at].what;
    const auto& machine = lclSite.Machine();
    if (machine.files.DirectoryExists(what.file))
        return run.Failed(at, addFiles::noFile,
                          lclSite.Text("$%$ is een map en geen bestand", {what.file}));
    // A device would be read for ever.
    if (platform::TrimView(what.file).empty() ||
        platform::IsDeviceName(platform::FileName(what.file)))
        return run.Failed(at, addFiles::noFile,
                          lclSite.Text("Bestand niet gevonden: $%$", {what.file}));
    model::FilingRequest request;
    request.source = what.file;
    request.folderId = into->Id();
    request.externalId = run.key;
    request.baseSaveDirectory = run.store;
    request.deleteSource = what.ours;
    request.atRest = what.comesBack; // a device may be at it
    request.description = what.description;
    if (request.description.empty() && what.scanned)
        request.description = lclSite.Text("Gescand document");
    if (model::DocumentTypeOf(what.file) == "msg" && machine.files.FileExists(what.file))
        request.mail = MailInfoOf(lclSite, what.file);
    if (!run.together) run.together.emplace(machine, *run.tree);
    if (const auto refused = run.together->Prepare(request))
        return Refused(what.file, at, *refused, run);
    run.waitsFor = into;
    run.waiting.push_back(at);
}

void Filer::Refused(const std::string& file, std::size_t at, const model::FilingResult& refused,
                    Run& run) const {
    lclSite.Machine().log.Write("AddFiles", refused.error);
    if (refused.ofSource)
        run.Failed(at, addFiles::noFile, CauseInSource(lclSite, file, refused.number));
    else
        run.Failed(at, addFiles::notFiled, CauseInStore(lclSite, file, refused.number));
}

// All are settled before anybody hears of one.
void Filer::WriteWaiting(const std::vector<IntakeEntry>& entries, Run& run) const {
    const auto waiting = std::exchange(run.waiting, {});
    if (waiting.empty()) return;
    if (lclSite.Tree() != run.tree || lclSite.IsElsewhere()) {
        run.together.reset();
        for (const auto at : waiting)
            run.Failed(at, addFiles::noDossier,
                       lclSite.Text("$%$: het dossier is gesloten", {entries[at].what.file}));
        return;
    }
    const auto results = run.together->Write();
    std::vector<std::size_t> filed;
    for (std::size_t i = 0; i < waiting.size(); ++i) {
        if (!results[i]) {
            Refused(entries[waiting[i]].what.file, waiting[i], results[i], run);
            continue;
        }
        if (!results[i].error.empty()) lclSite.Machine().log.Write("AddFiles", results[i].error);
        run.settled[waiting[i]] = true;
        filed.push_back(waiting[i]);
        ShowFiled(results[i].item, run.waitsFor, run);
    }
    std::exception_ptr broken;
    for (const auto at : filed) try {
            if (run.heard) run.heard(at);
        } catch (const std::exception&) {
            if (!broken) broken = std::current_exception();
        }
    if (broken) std::rethrow_exception(broken);
}

// It is filed, even where it cannot be shown.
void Filer::ShowFiled(const ItemPtr& item, const ItemPtr& into, Run& run) const {
    run.report.filed.push_back(item);
    try {
        if (lclSite.Tree() == run.tree) lclSite.Show(item, into->Id(), false);
    } catch (const std::exception& error) {
        lclSite.Machine().log.Write("AddFiles", error.what());
    }
}

} // namespace kavidex::controls
