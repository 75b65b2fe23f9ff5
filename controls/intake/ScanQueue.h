// Documents that wait for the open dossier in folders that devices write to: the scan queue and the
// import folder.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "controls/intake/Intake.h"

namespace kavidex::controls {

class ScanQueue {
public:
    ScanQueue(IntakeSite& site, Intake& intake) : lclSite(site), lclIntake(intake) {}

    // Under the key and under the tree's own name. Where something waits the user is asked, and
    // what is agreed to is taken in; the scanning control takes one folder at a time, what else
    // waits is asked about when the dossier is opened again. Throws when a setting or a folder
    // cannot be read.
    void Check(const std::string& key, std::int32_t treeId);

    // Hands a folder to the scanning control; false when there is none: then its files are filed
    // here, and removed from it once their copies are in the store.
    std::function<bool(const std::string& folder)> giveToScanner{};

private:
    // False: the scanning control is at work, or another dossier is open by now.
    bool Look(const Dossier& dossier, std::string_view root, const std::string& name,
              bool announce);
    void Import(const Dossier& dossier, const std::string& folder);

    IntakeSite& lclSite;
    Intake& lclIntake;
};

} // namespace kavidex::controls
