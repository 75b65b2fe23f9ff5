// What a database of the current version lacks all the same: servers refuse definitions for want of
// a right, and texts come with every program.
#pragma once

#include "data/Texts.h"
#include "data/schema/upgradeSteps.h"

namespace kavidex::data {

class clsSettings;

// Tries what the schema lacks again, and tells what it still lacks once a session and database.
// On Access the base schema is its owner's matter, but for the columns that 1.0.6 brings to an
// older file, without which its rows are not found. What a connection does not list (some list no
// indexes, some no procedures) is not missing. Never throws: what cannot be read is logged.
void CompleteSchema(const UpgradeContext& context, const Translation& translation);

// Adds texts that came since the database was brought up to date; "Build"/"Translations" records
// whose texts it has, so that one look-up is all that the next assignment costs. Never throws.
void CompleteTexts(const UpgradeContext& context, clsSettings& settings);

} // namespace kavidex::data
