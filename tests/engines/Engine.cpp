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

class MariaDbDatabase : public TestDatabase {
public:
    ConnectionPtr Connect() override { return data::OpenOdbc(lclDatabase.ConnectionString()); }

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
        Admin()->Execute("create database " + lclName);
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
std::string MissingSqlServer() {
    return SqlServerString() ? ""
                             : "no server named: KAVIDEX_SQLSERVER holds no ODBC connection string";
}

} // namespace

const std::vector<Engine>& Engines() {
    static const std::vector<Engine> engines = {
        {"embedded", Dialect::Access, &Nothing, &Make<EmbeddedFile>},
        {"mariadb", Dialect::MySql, &MissingMariaDb, &Make<MariaDbDatabase>},
        {"sqlserver", Dialect::SqlServer, &MissingSqlServer, &Make<SqlServerDatabase>},
    };
    return engines;
}

} // namespace kavidex::tests
