// Opening by provider and path: what is swallowed, what is shown, what comes out.
#include "data/ConnectionOpener.h"

#include "data/Error.h"
#include "data/schema/modDataBase.h"
#include "platform/ErrorNumber.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::data {
namespace {

constexpr std::int32_t shareExclusive = 12;
constexpr std::string_view accessDriver = "driver={Microsoft Access Driver (*.mdb)};DBQ=";

std::string Joined(std::string_view a, std::string_view b, std::string_view c = {}) {
    return std::string(a).append(b).append(c);
}

// The numbers that the Access driver also gives for a wrong password and for a missing file: never
// shown, only logged. True when the step ran through.
template <class Step>
bool Swallowing(const platform::Workstation& workstation, Step step) {
    try {
        step();
        return true;
    } catch (const platform::Error& error) {
        if (error.Number() != errors::authentication && error.Number() != errors::unspecified)
            throw;
        workstation.log.Write("DbOpenConnection", error.what());
        return false;
    }
}

} // namespace

std::string AccessConnectionString(std::string_view path, bool password) {
    return Joined(accessDriver, path, password ? Joined(";Password=", accessPassword) : "");
}

ConnectionOpener::ConnectionOpener(const platform::Workstation& workstation, AdoFactory& factory,
                                   AccessRepair& repair, Translation translation)
    : lclWorkstation(workstation), lclFactory(factory), lclRepair(repair),
      lclTranslation(std::move(translation)) {}

OpenResult
ConnectionOpener::DbOpenConnection(std::string_view provider, std::string_view path, bool& opened,
                                   const std::function<void(const ConnectionPtr&)>& assign) {
    if (platform::TrimView(path).empty()) return openNoPath;
    if (platform::TrimView(provider).empty()) return openNoProvider;
    const auto failed = [&](std::int32_t number, std::string_view description) {
        lclWorkstation.messages.Show(
            {.text = std::to_string(number) + " " + std::string(description),
             .caption = Translated(lclTranslation, "Error in DbOpenConnection of Correspondence")});
        return openFailed;
    };
    try {
        const std::string word = platform::LowerCase(provider);
        OpenResult result = openDone;
        ConnectionPtr connection;
        if (word == "msaccess" || word == "sqlserver") {
            connection = word == "msaccess" ? OpenAccess(path) : OpenSqlServer(path);
            opened = true;
        } else {
            connection = lclFactory.Create();
            lclWorkstation.messages.Show(
                {.text =
                     Joined(Translated(lclTranslation, "Not yet implemented ("), provider, ")")});
            result = openUnknownProvider;
        }
        Swallowing(lclWorkstation, [&] { assign(connection); });
        return result;
    } catch (const platform::Error& error) {
        return failed(platform::ShownNumber(error.Number()), error.what());
    } catch (const std::exception& error) {
        return failed(platform::errors::fail, error.what());
    }
}

ConnectionPtr ConnectionOpener::OpenAccess(std::string_view path) {
    auto connection = lclFactory.Create();
    BackupAndRepair(lclWorkstation, lclRepair, path, lclTranslation);
    const bool noPasswordYet = Swallowing(
        lclWorkstation, [&] { connection->OpenDatabase(AccessConnectionString(path, false)); });
    if (noPasswordYet) {
        Swallowing(lclWorkstation, [&] { connection->Close(); });
        connection = lclFactory.Create();
        Swallowing(lclWorkstation, [&] { SetAccessPassword(path); });
    }
    Swallowing(lclWorkstation,
               [&] { connection->OpenDatabase(AccessConnectionString(path, true)); });
    return connection;
}

// From now on the file is protected. The exclusive connection never outlives this call.
void ConnectionOpener::SetAccessPassword(std::string_view path) {
    const auto exclusive = lclFactory.Create();
    exclusive->SetMode(shareExclusive);
    exclusive->OpenDatabase(Joined("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=", path));
    try {
        exclusive->Execute(Joined("ALTER DATABASE PASSWORD ", accessPassword, "``"));
    } catch (...) {
        exclusive->Close();
        throw;
    }
    exclusive->Close();
}

ConnectionPtr ConnectionOpener::OpenSqlServer(std::string_view path) {
    auto connection = lclFactory.Create();
    Swallowing(lclWorkstation,
               [&] { connection->OpenDatabase(Joined("DRIVER={SQL Server};SERVER=", path)); });
    return connection;
}

} // namespace kavidex::data
