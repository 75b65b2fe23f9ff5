// Folders of ours among the user's temporary files, of a kind and a day:
// Kavidex-<kind>-<day>-<number>. What a program that was killed left behind goes when the next one
// of that kind is made.
#pragma once

#include <string>
#include <string_view>

namespace kavidex::platform {

struct Workstation;

// The full path; those of the kind that are older than so many days are removed. Throws Error.
std::string MakeTemporaryFolder(const Workstation& workstation, std::string_view kind, int days);
// With all that is in it; what cannot go stays, and the log tells it.
void RemoveTemporaryFolder(const Workstation& workstation, const std::string& folder);

// One that goes with its owner.
class TemporaryFolder {
public:
    TemporaryFolder(const Workstation& workstation, std::string_view kind)
        : lclWorkstation(workstation), lclPath(MakeTemporaryFolder(workstation, kind, 1)) {}
    ~TemporaryFolder() { RemoveTemporaryFolder(lclWorkstation, lclPath); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& Path() const { return lclPath; }

private:
    const Workstation& lclWorkstation;
    std::string lclPath;
};

} // namespace kavidex::platform
