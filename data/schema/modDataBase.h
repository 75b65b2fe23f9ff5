// Looks after the database as a whole: the schema of a server database, the backup of an Access
// file.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/Connection.h"
#include "data/Texts.h"
#include "data/schema/AccessRepair.h"
#include "data/schema/schema.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::data {

class clsSettings;

// The password that is built into every protected Access file.
inline constexpr std::string_view accessPassword = "Kw72p5n9";

// Makes the base schema, in a database that has none of it, and records its version. `phase` is
// told what is being made. Throws what the database refuses; what was made until then stays.
void CreateBaseSchema(const ConnectionPtr& connection, clsSettings& settings,
                      schema::Dialect dialect, const std::function<void(std::string_view)>& phase);

// Makes the base schema where tblSettings is missing, and records its version: 1 when it did, 0
// when the schema was there. The first failing statement ends it (logged, not thrown).
int CheckAndCreateDatabase(const platform::Workstation& workstation,
                           const ConnectionPtr& connection, clsSettings& settings, bool mySql,
                           const Translation& translation = {});

// The first time a day, while nobody has the file open: a dated copy, a repair in place, and no
// more than seven dated copies kept. 0 when it ran, 1 when there was nothing to do. What fails is
// logged and does not stop the rest.
int BackupAndRepair(const platform::Workstation& workstation, AccessRepair& repair,
                    std::string_view path, const Translation& translation = {});

// Where the dated copies of a database file lie and how they are told from other files.
struct RetentionSet {
    std::string folder; // with its closing backslash
    std::string pattern;
    std::size_t datePosition = 0; // of the date's first character in the name, from 1
};
RetentionSet RetentionOf(std::string_view path);

// Of the names in a folder, in the order of its listing, those to delete so that seven dated
// copies remain.
std::vector<std::string> CopiesToDelete(const std::vector<std::string>& names,
                                        std::size_t datePosition);

} // namespace kavidex::data
