// Opens the database that DbProvider and DbPath name, with the swallow rules of DbOpenConnection.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "data/AdoFactory.h"
#include "data/Texts.h"
#include "data/schema/AccessRepair.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::data {

enum OpenResult : std::int32_t {
    openDone = 0, // a connection was assigned; it may still not be open
    openNoPath = -1,
    openNoProvider = -2,
    openUnknownProvider = -3, // a message was shown
    openFailed = -99          // a message was shown, nothing was assigned
};

// How the Access driver is asked for a file, with the built-in password or without one.
std::string AccessConnectionString(std::string_view path, bool password);

class ConnectionOpener {
public:
    ConnectionOpener(const platform::Workstation& workstation, AdoFactory& factory,
                     AccessRepair& repair, Translation translation = {});

    // `assign` receives the new connection, open or not; what it throws is reported as a failure
    // to open. `opened` becomes true once the connection was opened here.
    OpenResult DbOpenConnection(std::string_view provider, std::string_view path, bool& opened,
                                const std::function<void(const ConnectionPtr&)>& assign);

private:
    ConnectionPtr OpenAccess(std::string_view path);
    ConnectionPtr OpenSqlServer(std::string_view path);
    void SetAccessPassword(std::string_view path);

    const platform::Workstation& lclWorkstation;
    AdoFactory& lclFactory;
    AccessRepair& lclRepair;
    Translation lclTranslation;
};

} // namespace kavidex::data
