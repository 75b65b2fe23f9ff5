// Notes on the disk of what would be lost with the process: files that only this program knows of,
// such as copies of mails and scanned documents, until they are filed.
#pragma once

#include <string>
#include <vector>

#include "controls/intake/Filer.h"

namespace kavidex::controls {

class Journal {
public:
    // `machine` must outlive it.
    explicit Journal(const platform::Workstation& machine) : lclMachine(machine) {}
    ~Journal(); // what is noted stays
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    // From now on these files wait for the dossier, or are being filed; none: the note goes. What
    // cannot be noted leaves a line in the log.
    void Note(const Dossier& dossier, const std::vector<IntakeFile>& files);
    // What runs that were cut off left for the dossier; their notes stay until the next Note. Not
    // what another control of this process holds.
    std::vector<IntakeFile> LeftFor(const Dossier& dossier);

private:
    struct Own {
        Dossier dossier;
        std::string path;
    };
    std::string Folder() const;
    Own& OwnFor(const Dossier& dossier);
    void Write(const Own& own, const std::vector<IntakeFile>& files) const;
    void Remove(const std::string& path) const;

    const platform::Workstation& lclMachine;
    std::vector<Own> lclOwn;
    std::vector<std::string> lclAdopted; // notes of others that are ours now
};

} // namespace kavidex::controls
