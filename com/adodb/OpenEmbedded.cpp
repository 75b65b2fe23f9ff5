// Which embedded database a connection string means.
#include "com/adodb/ConnectionObject.h"
#include "data/Error.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "platform/text.h"

namespace kavidex::com::adodb {

data::ConnectionPtr OpenEmbedded(const std::string& connectionString) {
    using platform::EqualAsciiNoCase;
    std::string path, refused;
    for (const std::string& part : platform::Split(connectionString, ';')) {
        const auto equals = part.find('=');
        if (equals == std::string::npos) {
            if (path.empty()) path = platform::Trim(part);
            continue;
        }
        const std::string key = platform::Trim(part.substr(0, equals));
        const std::string value = platform::Trim(part.substr(equals + 1));
        if (EqualAsciiNoCase(key, "Data Source") || EqualAsciiNoCase(key, "DBQ") ||
            EqualAsciiNoCase(key, "Database"))
            path = value;
        else if ((EqualAsciiNoCase(key, "Driver") || EqualAsciiNoCase(key, "Provider")) &&
                 !EqualAsciiNoCase(value, "Kavidex"))
            refused = value;
    }
    if (!refused.empty())
        throw data::Error(data::errors::invalidArgument,
                          "The driver or provider " + refused + " is not served here.",
                          "Kavidex.Connection");
    if (path.empty())
        throw data::Error(data::errors::invalidArgument,
                          "The connection string names no database file.", "Kavidex.Connection");
    return data::EmbeddedDatabase::Open(path);
}

} // namespace kavidex::com::adodb
