#include "controls/intake/Intake.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "controls/intake/FiledBefore.h"
#include "controls/intake/MailDrop.h"
#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "model/walk.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

std::int32_t Intake::Refuse(std::int32_t number, std::string cause) const {
    FilingReport report;
    report.Failed(number, std::move(cause));
    return TellNotAdded(lclSite, report);
}

std::int32_t Intake::NoFilesGiven() const {
    return Refuse(addFiles::noFile, lclSite.Text("Geen bestanden opgegeven"));
}

namespace {

// The first one of that name; the dossier itself only where no folder bears it.
ItemPtr FolderNamed(model::clsTree& tree, std::string_view name) {
    const auto top = tree.Item();
    const auto named = [&](const model::clsItem& item) {
        return item.AllowChildren() && item.Id() > 0 &&
               platform::EqualNoCase(name, item.DescriptionText());
    };
    const auto* below = model::FirstDepthFirst(
        *top, [&](const model::clsItem& item) { return &item != top.get() && named(item); });
    if (below) return tree.GetItem(below->Id(), {});
    return named(*top) ? top : nullptr;
}

} // namespace

ItemPtr Intake::FolderFor(std::int32_t id, std::string_view description, bool top) const {
    const auto tree = lclSite.Tree();
    ItemPtr folder;
    if (top)
        folder = tree->Item();
    else if (id != 0)
        folder = tree->GetItem(id, {});
    else if (!platform::TrimView(description).empty())
        folder = FolderNamed(*tree, description);
    else
        folder = lclSite.SelectedFolder() ? lclSite.SelectedFolder() : tree->Item();
    return folder && folder->AllowChildren() ? folder : nullptr;
}

std::int32_t Intake::AddFiles(const std::vector<std::string>& files, std::string_view description,
                              std::int32_t folder, bool scanned, bool top) {
    if (files.empty()) return addFiles::done;
    if (lclSite.Lock().Held())
        return Refuse(addFiles::noDossier, lclSite.Text("Er loopt nog een andere bewerking"));
    if (!lclSite.Tree())
        return Refuse(addFiles::noDossier, lclSite.Text("Er is geen dossier geopend"));
    const auto into = FolderFor(folder, description, top);
    if (!into)
        return Refuse(addFiles::noFolder, lclSite.Text("Map '$%$' zit niet in dit dossier",
                                                       {folder != 0 ? std::to_string(folder)
                                                                    : std::string(description)}));
    std::vector<IntakeEntry> entries;
    for (const auto& file : files) entries.push_back({{file, scanned}});
    return TellNotAdded(lclSite, FileInto(lclSite.OpenDossier(), into, entries));
}

FilingReport Intake::FileInto(const Dossier& dossier, const ItemPtr& folder,
                              const std::vector<IntakeEntry>& entries, bool waited) {
    const auto begun = lclFiling.size(); // more may begin meanwhile, and is refused
    for (const auto& entry : entries) lclFiling.push_back({entry, dossier});
    Remember(dossier);
    auto report = lclFiler.File(dossier == lclSite.OpenDossier() ? folder : nullptr, entries);
    lclFiling.resize(begun);
    const std::set<std::size_t> left(report.left.begin(), report.left.end());
    for (std::size_t at = 0; at < entries.size(); ++at) {
        if (left.contains(at)) continue;
        const auto& what = entries[at].what;
        std::erase_if(lclPending, [&](const Waiting& one) {
            return one.dossier == dossier && one.entry.what.file == what.file;
        });
        if (what.ours && !IsGone(lclSite.Machine(), what.file))
            lclFiled.push_back({entries[at], dossier});
    }
    KeepLeft(report, entries, dossier, waited);
    Remember(dossier);
    return report;
}

// What waited goes on waiting, and what only this control holds is not given up.
void Intake::KeepLeft(const FilingReport& report, const std::vector<IntakeEntry>& entries,
                      const Dossier& dossier, bool waited) {
    const std::set<std::size_t> left(report.left.begin(), report.left.end()),
        untried(report.untried.begin(), report.untried.end());
    for (const auto at : left) {
        if (at >= entries.size()) continue; // within a folder of the disk
        const auto& what = entries[at].what;
        const bool kept = waited || what.scanned || what.ours;
        if (!kept || IsGone(lclSite.Machine(), what.file)) continue;
        const bool stopped = untried.contains(at) && report.stopped;
        if (!waited && what.comesBack) continue;
        if (!waited && stopped && !what.scanned)
            RemoveQuietly(what.file); // a copy of what the other program still has
        else
            Keep({what}, dossier, stopped || !untried.contains(at));
    }
}

void Intake::RemoveQuietly(const std::string& file) const {
    try {
        lclSite.Machine().files.Remove(file);
    } catch (const std::exception& error) {
        lclSite.Machine().log.Write("Intake", error.what());
    }
}

void Intake::Keep(IntakeEntry entry, const Dossier& dossier, bool refused) {
    for (const auto& one : lclPending)
        if (one.dossier == dossier && one.entry.what.file == entry.what.file) return;
    lclPending.push_back({std::move(entry), dossier, refused});
}

// What only this program knows of is noted on the disk for as long as it is not filed.
void Intake::Remember(const Dossier& dossier) {
    std::vector<IntakeFile> ours;
    for (const auto* held : {&lclPending, &lclFiled, &lclFiling})
        for (const auto& one : *held)
            if (one.entry.what.ours && one.dossier == dossier) ours.push_back(one.entry.what);
    lclJournal.Note(dossier, ours);
}

void Intake::TakeLeftOver() {
    using Answer = FiledBefore::Answer;
    const auto dossier = lclSite.OpenDossier();
    FiledBefore before(lclSite);
    LookAtFiled(dossier, before);
    for (auto& file : lclJournal.LeftFor(dossier)) {
        if (IsGone(lclSite.Machine(), file.file)) continue;
        const auto answer = before.Look(file.file);
        file.perhapsFiled = answer == Answer::Unknown;
        if (answer == Answer::FiledButThere || (file.perhapsFiled && file.comesBack))
            lclFiled.push_back({{std::move(file)}, dossier});
        else if (answer != Answer::Filed && !file.comesBack)
            Keep({std::move(file)}, dossier, false);
    }
    Remember(dossier);
}

// What is in the dossier already goes as soon as it can.
Intake::Answers Intake::LookAtFiled(const Dossier& dossier, FiledBefore& before) {
    using Answer = FiledBefore::Answer;
    Answers answers;
    std::erase_if(lclFiled, [&](const Waiting& one) {
        if (one.dossier != dossier) return false;
        const auto& file = one.entry.what.file;
        const auto answer = IsGone(lclSite.Machine(), file) ? Answer::Filed : before.Look(file);
        answers[file] = answer;
        return answer == Answer::Filed || answer == Answer::No; // No: it is another one by now
    });
    return answers;
}

// And does not come in again.
std::vector<IntakeFile> Intake::WithoutFiled(const Dossier& dossier,
                                             const std::vector<IntakeFile>& files) {
    using Answer = FiledBefore::Answer;
    if (dossier != lclSite.OpenDossier()) return files;
    FiledBefore before(lclSite);
    auto answers = LookAtFiled(dossier, before);
    FilingReport unsure;
    std::vector<IntakeFile> fresh;
    for (const auto& file : files) {
        const auto known = answers.find(file.file);
        if (known == answers.end() || known->second == Answer::No) {
            fresh.push_back(file);
            if (file.ours) answers[file.file] = Answer::Filed; // it may be told twice
        } else if (known->second == Answer::Unknown) {
            FailUnsure(file.file, unsure);
        }
    }
    TellNotAdded(lclSite, unsure);
    return fresh;
}

void Intake::FailUnsure(const std::string& file, FilingReport& report) const {
    try {
        lclSite.Machine().files.Attributes(file);
        report.Failed(addFiles::notFiled,
                      CauseInStore(lclSite, file, platform::errors::pathNotFound));
    } catch (const std::exception& error) {
        report.Failed(addFiles::noFile, CauseInSource(lclSite, file, NumberOf(error)));
    }
}

std::vector<IntakeEntry> Intake::AskForFolders(const std::vector<IntakeFile>& files) const {
    std::vector<IntakeEntry> entries;
    std::string folders;
    for (const auto& file : files) {
        const bool folder = lclSite.Machine().files.DirectoryExists(file.file);
        if (folder) folders += (folders.empty() ? "" : ", ") + platform::FileName(file.file);
        entries.push_back({file, folder});
    }
    if (folders.empty()) return entries;
    const bool allowed = lclSite.MayUser(UserAction::CreateFolder);
    if (!allowed) lclSite.Tell("U heeft geen bevoegdheid om mappen toe te voegen: $%$", {folders});
    if (!allowed ||
        !lclSite.Ask(lclSite.Text("Wilt u '$%$' met alle onderliggende mappen en documenten "
                                  "toevoegen aan het dossier?",
                                  {folders}),
                     lclSite.Text("Bevestiging toevoegen map")))
        std::erase_if(entries, [](const IntakeEntry& entry) { return entry.folder; });
    return entries;
}

std::int32_t Intake::AddByUser(const Dossier& dossier, const std::vector<IntakeFile>& files,
                               const ItemPtr& folder, std::vector<ItemPtr>* filed) {
    return AddByUser(
        dossier, files, [&] { return folder; }, filed);
}

std::int32_t Intake::AddByUser(const Dossier& dossier, const std::vector<IntakeFile>& files,
                               const std::function<ItemPtr()>& folder,
                               std::vector<ItemPtr>* filed) {
    if (lclSite.OpenDossier() != dossier) return LeaveBehind(EntriesOf(files), dossier);
    auto entries = AskForFolders(WithoutFiled(dossier, files));
    if (entries.empty()) return addFiles::stopped;
    if (lclSite.OpenDossier() != dossier) return LeaveBehind(entries, dossier);
    if (const auto into = folder()) {
        const auto report = FileInto(dossier, into, entries);
        if (filed) *filed = report.filed;
        return TellNotAdded(lclSite, report);
    }
    Wait(dossier, std::move(entries));
    return addFiles::done;
}

std::int32_t Intake::LeaveBehind(const std::vector<IntakeEntry>& entries, const Dossier& dossier) {
    FilingReport report;
    for (const auto& entry : entries) {
        Keep(entry, dossier, false);
        report.Failed(addFiles::noDossier,
                      lclSite.Text("$%$: het dossier is gesloten", {entry.what.file}));
    }
    Remember(dossier);
    return TellNotAdded(lclSite, report);
}

void Intake::AddWaiting(const Dossier& dossier, const std::vector<IntakeFile>& files) {
    if (auto entries = EntriesOf(WithoutFiled(dossier, files)); !entries.empty())
        Wait(dossier, std::move(entries));
}

void Intake::Wait(const Dossier& dossier, std::vector<IntakeEntry> entries) {
    for (auto& entry : entries) Keep(std::move(entry), dossier, false);
    Remember(dossier);
    lclSite.Tell("Selecteer een map om het document op te bergen");
}

void Intake::Dropped(const Dossier& dossier, const DropEvent& drop) {
    drop.effect = drop::none;
    if (!lclSite.Tree() && dossier == lclSite.OpenDossier())
        return lclSite.Tell("Er is geen dossier geopend");
    const auto files = FilesOfDrop(drop); // asks
    if (files.empty()) return;
    const auto target = [&] {
        const auto tree = lclSite.Tree();
        if (drop.targetId == 0) return lclSite.SelectedFolder();
        const auto folder = tree->GetItem(drop.targetId, {});
        return folder && !folder->AllowChildren() ? lclSite.ParentOf(*folder) : folder;
    };
    if (AddByUser(dossier, files, target) == addFiles::done) drop.effect = drop::copy;
}

// Files as they are; else what stands nowhere yet. Mails of the mail program are asked of it, so
// that they come with their attachments; where it cannot be asked, what it hands out is taken.
std::vector<IntakeFile> Intake::FilesOfDrop(const DropEvent& drop) const {
    const auto& data = drop.data;
    std::vector<IntakeFile> files;
    for (const auto& name : data.files) files.push_back({name});
    if (!files.empty()) return files;
    const bool mails =
        drop.fromMail &&
        std::all_of(data.virtualFiles.begin(), data.virtualFiles.end(),
                    [](const platform::VirtualFile& file) {
                        return platform::EqualNoCase(platform::Extension(file.name), "msg");
                    });
    if (!data.virtualFiles.empty() && !mails) return FilesOf(lclSite, data.virtualFiles);
    if (data.hasText)
        if (auto taken = FilesOfMailProgram(lclSite, data.virtualFiles.empty())) return *taken;
    return FilesOf(lclSite, data.virtualFiles);
}

void Intake::Pasted(const std::vector<std::string>& names) {
    const auto tree = lclSite.Tree();
    if (!tree) return lclSite.Tell("Er is geen dossier geopend");
    std::vector<IntakeFile> files;
    for (const auto& name : names) files.push_back({name});
    AddByUser(lclSite.OpenDossier(), files, FolderFor(0, {}, false));
}

bool Intake::HasPending() const {
    return std::any_of(
        lclPending.begin(), lclPending.end(),
        [dossier = lclSite.OpenDossier()](const Waiting& one) { return one.dossier == dossier; });
}

bool Intake::HasScannedPending() const {
    return std::any_of(lclPending.begin(), lclPending.end(),
                       [](const Waiting& one) { return one.entry.what.scanned; });
}

// Those to be filed now. What may stand in the dossier already is looked at once more.
std::vector<IntakeEntry> Intake::TakePending(bool refused, FilingReport& unsure) {
    using Answer = FiledBefore::Answer;
    std::vector<IntakeEntry> taken;
    const auto dossier = lclSite.OpenDossier();
    FiledBefore before(lclSite);
    std::vector<Waiting> kept;
    for (auto& one : std::exchange(lclPending, {})) {
        auto& what = one.entry.what;
        if (one.dossier != dossier || (!refused && one.refused)) {
            kept.push_back(std::move(one));
            continue;
        }
        if (what.ours && IsGone(lclSite.Machine(), what.file)) { // filed elsewhere
            lclSite.Machine().log.Write("Intake", what.file + " is gone");
            continue;
        }
        const auto answer = what.perhapsFiled ? before.Look(what.file) : Answer::No;
        what.perhapsFiled = answer == Answer::Unknown;
        if (answer == Answer::No) {
            taken.push_back(std::move(one.entry));
        } else if (answer == Answer::FiledButThere) {
            lclFiled.push_back(std::move(one));
        } else if (answer == Answer::Unknown) {
            FailUnsure(what.file, unsure);
            one.refused = true;
            kept.push_back(std::move(one));
        }
    }
    lclPending.insert(lclPending.begin(), std::make_move_iterator(kept.begin()),
                      std::make_move_iterator(kept.end()));
    return taken;
}

FilingReport Intake::FilePending(const ItemPtr& folder, bool refused) {
    const auto dossier = lclSite.OpenDossier();
    FilingReport unsure;
    const auto entries = TakePending(refused, unsure);
    if (entries.empty()) {
        Remember(dossier);
        return unsure;
    }
    auto report = FileInto(dossier, folder, entries, true);
    for (auto& cause : unsure.causes) report.Failed(unsure.result, std::move(cause));
    return report;
}

void Intake::DossierShown() {
    if (!lclSite.Tree()) return;
    TakeLeftOver();
    if (!HasPending()) return;
    for (auto& one : lclPending)
        if (one.dossier == lclSite.OpenDossier()) one.refused = false;
    lclSite.Tell("Selecteer een map om het document op te bergen");
}

void Intake::FolderSelected() {
    if (lclSite.Lock().Held() || !lclSite.Tree() || !HasPending()) return;
    if (const auto folder = lclSite.SelectedFolder())
        TellNotAdded(lclSite, FilePending(folder, false));
}

std::int32_t Intake::FilePendingAtTop() {
    if (!HasPending()) return addFiles::done;
    const auto tree = lclSite.Tree();
    const auto report = FilePending(tree ? tree->Item() : nullptr, true);
    if (!report.filed.empty())
        lclSite.Tell(
            "Er waren nog documenten om op te bergen, deze zijn op het hoogste niveau toegevoegd");
    return TellNotAdded(lclSite, report);
}

} // namespace kavidex::controls
