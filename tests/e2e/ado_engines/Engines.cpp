// The engines that can be reached through COM on this machine, and ODBC without it.
#include <cstdlib>

#include "data/win32/LateAdoConnection.h"
#include "data/win32/LateAdoFactory.h"
#include "tests/e2e/doubles/AdoClasses.h"
#include "tests/engines/Engine.h"
#include "tests/engines/MySqlDatabase.h"

namespace kavidex::tests {

namespace {

using data::schema::Dialect;

// COM and the classes of ADO, for as long as a database is under test.
class ComDatabase : public TestDatabase {
public:
    ComDatabase() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
    ~ComDatabase() override {
        lclClasses.reset();
        CoUninitialize();
    }

protected:
    // As DbOpenConnection makes one: CreateObject("ADODB.Connection"), then Open.
    data::ConnectionPtr OpenByAdo(const std::string& connectionString) {
        if (!lclClasses) lclClasses = std::make_unique<AdoClasses>();
        const auto connection = data::win32::LateAdoFactory().Create();
        connection->OpenDatabase(connectionString);
        return connection;
    }

private:
    std::unique_ptr<AdoClasses> lclClasses;
};

class AccessDouble : public ComDatabase {
public:
    data::ConnectionPtr Connect() override {
        const std::string path = lclMachine.Path("suite.mdb");
        data::EmbeddedDatabase::OpenOrCreate(path)->Close();
        return OpenByAdo("driver={Microsoft Access Driver (*.mdb)};DBQ=" + path +
                         ";Password=Kw72p5n9");
    }

private:
    FakeWorkstation lclMachine;
};

// A connection of ours in a host's hands: ConnectionObject makes commands and recordsets itself,
// Stranger only executes, and there are no classes of ADO here.
template <class Object>
class HandedOver : public ComDatabase {
public:
    data::ConnectionPtr Connect() override {
        return std::make_shared<data::win32::LateAdoConnection>(Late(
            com::Make<Object>(data::EmbeddedDatabase::OpenOrCreate(lclMachine.Path("suite.kvx")))));
    }

private:
    FakeWorkstation lclMachine;
};

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

class MySqlByOdbc : public TestDatabase {
public:
    data::ConnectionPtr Connect() override {
        return data::OpenOdbc(lclDatabase.ConnectionString());
    }

private:
    MySqlDatabase lclDatabase{Variable("KAVIDEX_MYSQL")};
};

class MySqlByAdo : public ComDatabase {
public:
    data::ConnectionPtr Connect() override { return OpenByAdo(lclDatabase.ConnectionString()); }

private:
    MySqlDatabase lclDatabase{Variable("KAVIDEX_MYSQL")};
};

template <class Database>
std::unique_ptr<TestDatabase> Make() {
    return std::make_unique<Database>();
}
std::string Nothing() { return {}; }
std::string MissingMySql() {
    if (!Variable("KAVIDEX_MYSQL").empty()) return {};
    const std::string reason = Variable("KAVIDEX_MYSQL_MISSING");
    return reason.empty() ? "no server named: KAVIDEX_MYSQL holds no ODBC connection string"
                          : reason;
}

} // namespace

const std::vector<Engine>& Engines() {
    static const std::vector<Engine> engines = {
        {"adoOverEmbedded", Dialect::Access, &Nothing, &Make<AccessDouble>},
        {"handedOver", Dialect::Access, &Nothing, &Make<HandedOver<com::adodb::ConnectionObject>>},
        {"executeOnly", Dialect::Access, &Nothing, &Make<HandedOver<Stranger>>},
        {"adoOverOdbc", Dialect::MySql, &MissingMySql, &Make<MySqlByAdo>},
        {"odbc", Dialect::MySql, &MissingMySql, &Make<MySqlByOdbc>},
    };
    return engines;
}

} // namespace kavidex::tests
