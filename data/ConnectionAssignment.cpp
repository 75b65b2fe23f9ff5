// The work that assigning a connection sets off, in its order.
#include "data/ConnectionAssignment.h"

#include "data/address.h"
#include "data/letters.h"
#include "data/modData.h"
#include "data/schema/clsUpdateDb.h"
#include "data/schema/modDataBase.h"
#include "platform/General.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::data {
namespace {

std::string DatabaseOf(const Connection& connection) {
    try {
        return connection.DefaultDatabase();
    } catch (const std::exception&) {
        return {}; // not open
    }
}

// Databases of two servers may have one name. A connection that does not tell its server is taken
// to be on the other's.
bool OnOneServer(const Connection& a, const Connection& b) {
    std::string names[2];
    for (const int i : {0, 1}) {
        try {
            names[i] = ToText((i == 0 ? a : b).Property("Server Name"));
        } catch (const std::exception&) {
            return true;
        }
    }
    return names[0].empty() || names[1].empty() || platform::EqualNoCase(names[0], names[1]);
}

} // namespace

ConnectionAssignment::ConnectionAssignment(const platform::Workstation& workstation,
                                           ConnectionListeners listeners, Translation translation)
    : lclWorkstation(workstation), lclListeners(std::move(listeners)),
      lclTranslation(std::move(translation)) {}

bool ConnectionAssignment::SetDbConnection(const ConnectionPtr& connection) {
    if (IsCurrent(connection)) return false;
    const bool other = lclConnection != nullptr;
    if (other && lclListeners.leaving) lclListeners.leaving();
    lclConnection = connection;
    lclLive = connection && connection->IsOpen();
    lclDatabase = lclLive ? DatabaseOf(*connection) : std::string();
    lclAddress = lclLive ? AddressOf(*connection) : std::string();
    if (lclListeners.changed) lclListeners.changed();
    if (lclListeners.handOver) lclListeners.handOver(connection);
    if (!connection) {
        if (lclSettings) lclSettings->SetDbConnection(nullptr);
        return true;
    }
    if (!lclSettings) lclSettings = std::make_unique<clsSettings>(lclWorkstation);
    lclSettings->SetDbConnection(connection);
    if (other) lclTemplatePath.clear(); // that of the database before
    if (connection->IsOpen()) {
        CheckDatabase();
        ReadTemplatePath();
        clsUpdateDb update(lclWorkstation, lclTranslation);
        update.SetDbConnection(connection);
        update.fncUpdateDb();
        CheckLetters();
    } else {
        lclWorkstation.log.Write("DbConnection", "assigned a connection that is not open");
    }
    if (lclListeners.ready) lclListeners.ready(connection);
    return true;
}

// The same connection, or another one to the same database; one that does not name its database
// may be on any. One that was closed since, or came closed and was opened by its owner, is not
// current any more.
bool ConnectionAssignment::IsCurrent(const ConnectionPtr& connection) const {
    if (!connection || !lclConnection) return !connection && !lclConnection;
    const bool live = lclLive && lclConnection->IsOpen() && !IsElsewhere();
    if (connection == lclConnection) return live == connection->IsOpen();
    const std::string database = DatabaseOf(*connection);
    return live && !database.empty() && database == DatabaseOf(*lclConnection) &&
           OnOneServer(*connection, *lclConnection);
}

bool ConnectionAssignment::IsElsewhere() const {
    return lclLive && lclConnection->IsOpen() && DatabaseOf(*lclConnection) != lclDatabase;
}

// Once per user and machine, and never for an Access file.
void ConnectionAssignment::CheckDatabase() {
    constexpr std::string_view section = "CorrespSetting", key = "DbCheck";
    if (platform::GetRegSetting(lclWorkstation, platform::applicationName, section, key, "1") !=
            "1" ||
        IsAccessConnection(lclConnection))
        return;
    CheckAndCreateDatabase(lclWorkstation, lclConnection, *lclSettings, false, lclTranslation);
    platform::SaveRegSetting(lclWorkstation, platform::applicationName, section, key, "0");
}

// The log alone tells it: the user can do nothing, whoever looks after the database can.
void ConnectionAssignment::CheckLetters() {
    const std::string collation = CollationOf(lclWorkstation, lclConnection);
    if (KeepsEveryLetter(collation)) return;
    lclWorkstation.log.Write("DbConnection", "The database keeps its texts in " + collation +
                                                 ": letters that this lacks are lost. Choose a "
                                                 "collation of UTF-8.");
}

void ConnectionAssignment::ReadTemplatePath() {
    if (!lclSettings) return;
    std::string path;
    if (lclSettings->GetSetting("Template", "Path", path) || lclSettings->Failure().empty())
        lclTemplatePath = path;
}

void ConnectionAssignment::Release() {
    lclSettings.reset();
    lclConnection.reset();
    lclLive = false;
}

} // namespace kavidex::data
