// The scanning control in the viewer's place, and the documents that it scans.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "controls/intake/Intake.h"

namespace kavidex::controls {

// What the control is told when it opens, and when that changes: its properties by name, those that
// it has.
struct ScanSetup {
    std::vector<std::pair<const wchar_t*, std::string>> texts;
    std::vector<std::pair<const wchar_t*, bool>> flags;
    // Full names of the files of scanned documents; they belong to the binder from then on.
    std::function<void(const std::vector<std::string>&)> scanned;
};

// The port to the window in which it stands.
class ScanPlace {
public:
    // In the viewer's place. Throws platform::Error when it is not installed or refuses.
    virtual void OpenScanner(const ScanSetup& setup) = 0;
    virtual void TellScanner(const ScanSetup& setup) = 0; // while it is open
    virtual void CloseScanner() = 0;                      // the viewer comes back

protected:
    ~ScanPlace() = default;
};

class ScanPanel {
public:
    ScanPanel(IntakeSite& site, Intake& intake) : lclSite(site), lclIntake(intake) {}

    bool IsOpen() const { return lclOpen; }
    void Toggle();
    void Close();
    void SetupChanged(); // the user, the language
    // False where there is no scanning control: nothing is told then.
    bool Import(const std::string& folder);

    std::function<void()> changed{}; // it opened or closed

private:
    void Open(const std::string& importFolder);
    ScanSetup Setup() const;
    ItemPtr Folder() const;
    void Scanned(const Dossier& dossier, const std::vector<std::string>& files);

    IntakeSite& lclSite;
    Intake& lclIntake;
    bool lclOpen = false, lclOpening = false;
    std::int32_t lclFolder = 0; // that was selected when it was opened
};

} // namespace kavidex::controls
