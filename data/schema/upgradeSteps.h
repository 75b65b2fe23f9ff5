// The upgrade chain as a table: what each version's step says to the user and does to the database.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/Connection.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::data {

// What a step's work is given. Everything that fails in it is logged and skipped.
struct UpgradeContext {
    const platform::Workstation& workstation;
    const ConnectionPtr& connection;
    bool inTransaction = false; // the whole step is one

    bool Execute(std::string_view statement) const; // false when the database refused
    bool HasTable(std::string_view name) const;
    // Whether tables and columns take part in transactions, so that a step can be one.
    bool TransactsDefinitions() const;
};

// One line of text in the busy dialog, and the work behind it: statements, then a function. An
// empty caption leaves the one before.
struct UpgradePhase {
    std::string_view caption, text;
    std::vector<std::string> statements;
    void (*function)(const UpgradeContext&) = nullptr;
};

struct UpgradeStep {
    std::string_view from, to;
    // Without tblDossierTypes the version moves on and nothing else happens.
    bool needsDossierTables;
    std::vector<UpgradePhase> phases;
};

// In the order of the versions, "0" first.
const std::vector<UpgradeStep>& UpgradeSteps();

} // namespace kavidex::data
