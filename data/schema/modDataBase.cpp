// Checks a server database and creates the base schema in it.
#include "data/schema/modDataBase.h"

#include "data/Error.h"
#include "data/clsSettings.h"
#include "data/logText.h"
#include "platform/BusyDialog.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::data {
namespace {

bool HasSettingsTable(Connection& connection) {
    const RecordsetPtr tables = connection.OpenSchema(Schema::Tables);
    bool found = false;
    for (; !found && !tables->Eof(); tables->MoveNext())
        found = platform::LowerCase(ToText(tables->Get("TABLE_TYPE"))) == "table" &&
                platform::LowerCase(ToText(tables->Get("TABLE_NAME"))) == "tblsettings";
    tables->Close();
    return found;
}

} // namespace

void CreateBaseSchema(const ConnectionPtr& connection, clsSettings& settings,
                      schema::Dialect dialect, const std::function<void(std::string_view)>& phase) {
    phase("Bezig met het aanmaken van tabellen.");
    for (const schema::Table& table : schema::Tables())
        connection->Execute(schema::CreateTable(table, dialect));
    if (dialect == schema::Dialect::SqlServer) {
        phase("Bezig met het aanmaken van Stored Procedures.");
        for (const std::string& procedure : schema::CreateProcedures())
            connection->Execute(procedure);
    }
    phase("Bezig met het aanmaken van indexen.");
    for (const std::string& index : schema::CreateIndexes()) connection->Execute(index);
    phase("Bezig met het bijwerken van het versienummer.");
    settings.SetSetting("Build", "DbVersion", schema::baseVersion);
    if (!settings.Failure().empty())
        throw Error(errors::unspecified, settings.Failure(), "CreateBaseSchema");
}

int CheckAndCreateDatabase(const platform::Workstation& workstation,
                           const ConnectionPtr& connection, clsSettings& settings, bool mySql,
                           const Translation& translation) {
    int created = 0;
    const auto say = [&](std::string_view text) { return Translated(translation, text); };
    try {
        platform::BusyScope busy(workstation.busy, say("Controle database"),
                                 say("Bezig met het controleren van de database."));
        if (HasSettingsTable(*connection)) return 0;
        created = 1;
        CreateBaseSchema(
            connection, settings, mySql ? schema::Dialect::MySql : schema::Dialect::SqlServer,
            [&](std::string_view text) { busy.Text(say("Aanmaken database"), say(text)); });
    } catch (const std::exception& error) {
        workstation.log.Write("CheckAndCreateDatabase", InLog(error));
    }
    return created;
}

} // namespace kavidex::data
