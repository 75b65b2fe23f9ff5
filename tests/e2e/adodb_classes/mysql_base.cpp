// Makes a MySQL database with the base schema, as an administrator supplies one to a host.
//   mysql_base NAME    (the server is the one that KAVIDEX_MYSQL names)
#include <cstdio>
#include <cstdlib>

#include "data/clsSettings.h"
#include "data/odbc/OdbcConnection.h"
#include "data/schema/modDataBase.h"
#include "tests/fakes/FakeWorkstation.h"

int main(int count, char** arguments) {
    using namespace kavidex;
    const char* server = std::getenv("KAVIDEX_MYSQL");
    if (count != 2 || !server) return 2;
    const std::string name = arguments[1];
    try {
        data::OpenOdbc(server)->Execute("create database " + name);
        const data::ConnectionPtr connection =
            data::OpenOdbc(server + std::string("DATABASE=") + name + ";");
        tests::FakeWorkstation machine;
        data::clsSettings settings(machine);
        settings.SetDbConnection(connection);
        data::CheckAndCreateDatabase(machine, connection, settings, true);
        for (const auto& line : machine.log.lines) std::puts(line.what.c_str());
        return machine.log.lines.empty() ? 0 : 1;
    } catch (const std::exception& error) {
        std::puts(error.what());
        return 1;
    }
}
