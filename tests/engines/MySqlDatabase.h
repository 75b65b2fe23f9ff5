// A database of a MySQL server under test: made with the object, dropped with it.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "data/odbc/OdbcConnection.h"
#include "platform/Error.h"
#include "tests/engines/Engine.h"

namespace kavidex::tests {

class MySqlDatabase {
public:
    // `server`: an ODBC connection string without a database.
    explicit MySqlDatabase(std::string server) : lclServer(std::move(server)) {
        static int count = 0;
        lclName = "suite" + std::to_string(++count);
        data::OpenOdbc(lclServer)->Execute("create database " + lclName);
    }
    ~MySqlDatabase() {
        try {
            data::OpenOdbc(lclServer)->Execute("drop database " + lclName);
        } catch (const platform::Error& error) {
            ADD_FAILURE() << error.what();
        }
    }
    MySqlDatabase(const MySqlDatabase&) = delete;
    MySqlDatabase& operator=(const MySqlDatabase&) = delete;

    std::string ConnectionString() const { return lclServer + "DATABASE=" + lclName + ";"; }

private:
    std::string lclServer, lclName;
};

} // namespace kavidex::tests
