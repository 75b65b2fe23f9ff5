// How documents come into the open dossier: files of the host, drops on the tree, and what waits
// for a folder. Works without a window.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "controls/intake/FiledBefore.h"
#include "controls/intake/Filer.h"
#include "controls/intake/Journal.h"
#include "controls/tree/TreeEvents.h"

namespace kavidex::controls {

class Intake {
public:
    // `site` must outlive it.
    explicit Intake(IntakeSite& site) : lclSite(site), lclFiler(site), lclJournal(site.Machine()) {}
    Intake(const Intake&) = delete;
    Intake& operator=(const Intake&) = delete;

    // As the control's AddFiles. `folder` 0: the one of that description, else the selected one,
    // else the top.
    std::int32_t AddFiles(const std::vector<std::string>& files, std::string_view description,
                          std::int32_t folder, bool scanned, bool top);
    std::int32_t NoFilesGiven() const;

    // By the user's hand: folders among the files are taken in with all below them where the user
    // agrees. Into the folder, or where there is none into the one that is selected next.
    // `filed`: what came of it. `dossier`: the one that was open before the user was asked
    // anything; it may have been left meanwhile, and they wait for it then.
    std::int32_t AddByUser(const Dossier& dossier, const std::vector<IntakeFile>& files,
                           const ItemPtr& folder, std::vector<ItemPtr>* filed = nullptr);
    std::int32_t AddByUser(const Dossier& dossier, const std::vector<IntakeFile>& files,
                           const std::function<ItemPtr()>& folder,
                           std::vector<ItemPtr>* filed = nullptr);
    // Asks for a folder to be selected.
    void AddWaiting(const Dossier& dossier, const std::vector<IntakeFile>& files);
    void Dropped(const Dossier& dossier, const DropEvent& drop); // `dossier`: as AddByUser
    void Pasted(const std::vector<std::string>& files); // into the selected folder, else the top

    // What waits belongs to the dossier that it was brought to: it is filed there, or goes on
    // waiting for it. HasPending asks for the open one.
    bool HasPending() const;
    // What still waits for it, also since a run was cut off: asks for a folder.
    void DossierShown();
    bool HasScannedPending() const;  // of any dossier
    void FolderSelected();           // files what waited for that choice
    std::int32_t FilePendingAtTop(); // before the dossier is left; an addFiles result

private:
    struct Waiting {
        IntakeEntry entry;
        Dossier dossier;
        bool refused = false; // told already: no choice of a folder tries again, leaving does
    };
    // `waited`: what could not be filed goes on waiting for its dossier.
    FilingReport FileInto(const Dossier& dossier, const ItemPtr& folder,
                          const std::vector<IntakeEntry>& entries, bool waited = false);
    using Answers = std::map<std::string, FiledBefore::Answer>; // by the file's name
    void Wait(const Dossier& dossier, std::vector<IntakeEntry> entries);
    void Keep(IntakeEntry entry, const Dossier& dossier, bool refused);
    void KeepLeft(const FilingReport& report, const std::vector<IntakeEntry>& entries,
                  const Dossier& dossier, bool waited);
    void RemoveQuietly(const std::string& file) const;
    std::int32_t LeaveBehind(const std::vector<IntakeEntry>& entries, const Dossier& dossier);
    void TakeLeftOver();
    std::vector<IntakeFile> WithoutFiled(const Dossier& dossier,
                                         const std::vector<IntakeFile>& files);
    Answers LookAtFiled(const Dossier& dossier, FiledBefore& before);
    void FailUnsure(const std::string& file, FilingReport& report) const;
    void Remember(const Dossier& dossier);
    std::vector<IntakeEntry> TakePending(bool refused, FilingReport& unsure);
    FilingReport FilePending(const ItemPtr& folder, bool refused);
    ItemPtr FolderFor(std::int32_t id, std::string_view description, bool top) const;
    std::vector<IntakeEntry> AskForFolders(const std::vector<IntakeFile>& files) const;
    std::vector<IntakeFile> FilesOfDrop(const DropEvent& drop) const;
    std::int32_t Refuse(std::int32_t number, std::string cause) const;

    IntakeSite& lclSite;
    Filer lclFiler;
    Journal lclJournal;
    std::vector<Waiting> lclPending;
    std::vector<Waiting> lclFiled;  // what could not be deleted after that
    std::vector<Waiting> lclFiling; // right now
};

} // namespace kavidex::controls
