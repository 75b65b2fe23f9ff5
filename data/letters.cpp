#include "data/letters.h"

#include "data/modData.h"
#include "platform/text.h"

namespace kavidex::data {

std::string CollationOf(const platform::Workstation& workstation, const ConnectionPtr& connection) {
    if (IsAccessConnection(connection)) return {};
    const RecordsetPtr rows = OpenRecordset(
        workstation,
        IsMySqlConnection(connection)
            ? "select @@collation_database"
            : "select cast(databasepropertyex(db_name(), 'Collation') as varchar(128))",
        connection);
    if (!rows->IsOpen() || rows->Eof()) return {};
    return platform::Trim(ToText(rows->Get(0)));
}

bool KeepsEveryLetter(std::string_view collation) {
    return collation.empty() || platform::LowerCase(collation).find("utf8") != std::string::npos;
}

} // namespace kavidex::data
