// The upgrade chain as a table: what each version's step says to the user and does to the database.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/Connection.h"
#include "data/Error.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::data {

// Something that decides what the chain does could not be read, or the whole of a step could not be
// kept: the chain stops where it stands and goes on at the next assignment.
class UpgradeHalted : public Error {
public:
    explicit UpgradeHalted(const std::string& description)
        : Error(errors::unspecified, description, "clsUpdateDb") {}
};

// What a step's work is given. Everything that fails in it is logged and skipped.
struct UpgradeContext {
    const platform::Workstation& workstation;
    const ConnectionPtr& connection;
    bool inTransaction = false; // the whole step is one

    bool Execute(std::string_view statement) const; // false when the database refused
    bool HasTable(std::string_view name) const;     // throws UpgradeHalted when that cannot be told
    // Whether a step can be one transaction: on the embedded engine alone. Elsewhere one refused
    // statement may undo all that went before it.
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

// Something that a database of the current version has, and what brings it.
struct SchemaPart {
    enum class Kind { Table, Column, Index, Procedure } kind;
    std::string table; // none for a procedure
    std::string name;  // of a table too
    std::vector<std::string> statements;
    bool base = false;                             // of the base schema
    bool converted = false;                        // of files older than that by 1.0.6, on Access
    void (*fill)(const UpgradeContext&) = nullptr; // the rows that come with it
};
const std::vector<SchemaPart>& SchemaParts();

} // namespace kavidex::data
