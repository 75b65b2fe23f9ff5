// Notes on the disk of what would be lost with the process: files that only this program knows of,
// such as copies of mails and scanned documents, until they are filed.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "controls/intake/Filer.h"
#include "platform/Files.h"

namespace kavidex::controls {

class Journal {
public:
    // `machine` must outlive it.
    explicit Journal(const platform::Workstation& machine) : lclMachine(machine) {}
    ~Journal() = default; // what is noted stays
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    // From now on these files wait for the dossier, or are being filed; none: the note goes. What
    // cannot be noted leaves a line in the log.
    void Note(const Dossier& dossier, const std::vector<IntakeFile>& files);
    // What runs that were cut off left for the dossier; their notes stay until the next Note. Not
    // what another control holds, in this process or another.
    std::vector<IntakeFile> LeftFor(const Dossier& dossier);

private:
    using LockPtr = std::unique_ptr<platform::FileLock>;
    struct Own {
        Dossier dossier;
        std::string path;
        LockPtr alive; // tells others that this note is no leftover
    };
    struct Adopted { // a note of another that is ours now
        std::string path;
        LockPtr held;
    };
    std::string Folder() const;
    Own& OwnFor(const Dossier& dossier);
    void Begin(Own& own) const;
    LockPtr LockOf(const std::string& path) const;
    void Adopt(const std::string& path, const Dossier& dossier, std::vector<IntakeFile>& left);
    void Remove(const std::string& path) const;

    const platform::Workstation& lclMachine;
    std::vector<Own> lclOwn;
    std::vector<Adopted> lclAdopted;
};

} // namespace kavidex::controls
