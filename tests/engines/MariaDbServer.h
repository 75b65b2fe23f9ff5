// A MariaDB server of the tests' own: on loopback, at a free port, with a data folder that goes
// with it.
#pragma once

#include <string>

namespace kavidex::tests {

class MariaDbServer {
public:
    // Started on first use, stopped at the end of the process, and soon after it should it crash.
    static MariaDbServer& Instance();

    // Why there is none; empty when it runs.
    const std::string& Missing() const { return lclMissing; }
    // An ODBC connection string; without a database when `database` is empty.
    std::string ConnectionString(const std::string& database) const;

    MariaDbServer(const MariaDbServer&) = delete;
    MariaDbServer& operator=(const MariaDbServer&) = delete;

private:
    MariaDbServer();
    ~MariaDbServer();

    std::string lclFolder, lclConnection, lclMissing;
};

} // namespace kavidex::tests
