// Files what was brought in, one document after the other, under the busy dialog: what was filed
// stays, whatever comes of the rest.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "controls/intake/FilingReport.h"

namespace kavidex::model {
struct FilingResult;
}

namespace kavidex::controls {

// Held in a folder of images while they are taken in from it, so that no two do so at once.
constexpr std::string_view lockName = "kavidex.lock";

struct IntakeFile {
    std::string file; // full path
    bool scanned = false;
    bool ours = false;         // a copy that was made for the intake: gone once it is filed
    std::string description{}; // empty: by its name, or of a scan
    bool comesBack = false;    // the folder that it waits in is looked at again by itself
    bool perhapsFiled = false; // by a run that was cut off; it could not be found out
};

// In the order of filing: a folder of the disk stands before what goes into it.
struct IntakeEntry {
    static constexpr std::size_t target = static_cast<std::size_t>(-1);

    IntakeFile what;
    bool folder = false;
    std::size_t into = target; // the position of a folder among the entries
};

std::vector<IntakeEntry> EntriesOf(const std::vector<IntakeFile>& files);

class Filer {
public:
    explicit Filer(IntakeSite& site) : lclSite(site) {}

    // Into a folder of the open dossier. Tells nobody; a folder among the entries is filed with all
    // that it holds.
    // `filed` hears of each document by its entry's position, some time after it was filed; where
    // it throws, filing ends.
    FilingReport File(const ItemPtr& folder, std::vector<IntakeEntry> entries,
                      const std::function<void(std::size_t)>& filed = {});

private:
    struct Run;
    using Entries = std::vector<IntakeEntry>;
    bool Begin(Run& run, Operation& operation, const Entries& entries) const;
    void FileEntries(const Entries& entries, Run& run, Operation& operation) const;
    void OpenFolders(Entries& entries, Run& run, Operation& operation) const;
    void OpenFolder(Entries& entries, std::size_t at, Run& run) const;
    bool IsLink(const std::string& folder) const;
    void FileEntry(const Entries& entries, std::size_t at, Run& run) const;
    void MakeFolder(const Entries& entries, std::size_t at, const ItemPtr& into, Run& run) const;
    void FileDocument(const Entries& entries, std::size_t at, const ItemPtr& into, Run& run) const;
    void Refused(const std::string& file, std::size_t at, const model::FilingResult& refused,
                 Run& run) const;
    void WriteWaiting(const Entries& entries, Run& run) const;
    void ShowFiled(const ItemPtr& item, const ItemPtr& into, Run& run) const;

    IntakeSite& lclSite;
};

} // namespace kavidex::controls
