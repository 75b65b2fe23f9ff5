#include "tests/engines/Engine.h"

#include <cstdlib>

#include "data/embedded/EmbeddedDatabase.h"
#include "data/odbc/OdbcConnection.h"
#include "tests/engines/MariaDbServer.h"
#include "tests/engines/MySqlDatabase.h"

namespace kavidex::tests {

namespace {

using data::ConnectionPtr;
using data::schema::Dialect;

class EmbeddedFile : public TestDatabase {
public:
    ConnectionPtr Connect() override {
        const std::string path = lclMachine.Path("suite.kvx");
        return data::EmbeddedDatabase::OpenOrCreate(path);
    }

private:
    FakeWorkstation lclMachine;
};

std::string DriverOf(const std::string& connectionString) {
    const auto start = connectionString.find('=') + 1;
    return connectionString.substr(start, connectionString.find(';') - start);
}

// `strict`: behind a driver with other manners.
template <bool strict>
class MariaDbDatabase : public TestDatabase {
public:
    ConnectionPtr Connect() override {
        const std::string usual = lclDatabase.ConnectionString();
        if (!strict) return data::OpenOdbc(usual);
        ::setenv("KAVIDEX_STRICT_OVER", DriverOf(usual).c_str(), 1);
        return data::OpenOdbc("DRIVER=" KAVIDEX_STRICT_DRIVER + usual.substr(usual.find(';')));
    }

private:
    MySqlDatabase lclDatabase{MariaDbServer::Instance().ConnectionString("")};
};

const char* SqlServerString() { return std::getenv("KAVIDEX_SQLSERVER"); }

class SqlServerDatabase : public TestDatabase {
public:
    SqlServerDatabase() {
        static int count = 0;
        lclName = "kavidexSuite" + std::to_string(++count);
        Admin()->Execute("if db_id('" + lclName + "') is not null drop database " + lclName);
        try { // every letter, where the server knows how
            Admin()->Execute("create database " + lclName +
                             " collate Latin1_General_100_CI_AS_SC_UTF8");
        } catch (const platform::Error&) {
            Admin()->Execute("create database " + lclName);
        }
    }
    ~SqlServerDatabase() override {
        try {
            Admin()->Execute("drop database " + lclName);
        } catch (const platform::Error& error) {
            ADD_FAILURE() << error.what();
        }
    }
    ConnectionPtr Connect() override {
        ConnectionPtr connection = Admin();
        connection->Execute("use " + lclName);
        return connection;
    }

private:
    static ConnectionPtr Admin() { return data::OpenOdbc(SqlServerString()); }
    std::string lclName;
};

template <class Database>
std::unique_ptr<TestDatabase> Make() {
    return std::make_unique<Database>();
}

std::string Nothing() { return {}; }
std::string MissingMariaDb() { return MariaDbServer::Instance().Missing(); }
std::string MissingStrict() {
    const MariaDbServer& server = MariaDbServer::Instance();
    if (!server.Missing().empty()) return server.Missing();
    const std::string driver = DriverOf(server.ConnectionString(""));
    return driver[0] == '/' ? "" : "the file of MariaDB's ODBC driver is not known";
}
std::string MissingSqlServer() {
    return SqlServerString() ? ""
                             : "no server named: KAVIDEX_SQLSERVER holds no ODBC connection string";
}

} // namespace

const std::vector<Engine>& Engines() {
    static const std::vector<Engine> engines = {
        {"embedded", Dialect::Access, &Nothing, &Make<EmbeddedFile>},
        {"mariadb", Dialect::MySql, &MissingMariaDb, &Make<MariaDbDatabase<false>>},
        {"strict", Dialect::MySql, &MissingStrict, &Make<MariaDbDatabase<true>>},
        {"sqlserver", Dialect::SqlServer, &MissingSqlServer, &Make<SqlServerDatabase>},
    };
    return engines;
}

} // namespace kavidex::tests
