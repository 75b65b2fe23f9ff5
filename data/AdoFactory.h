// Makes new ADODB connections by connection string: what DbOpenConnection needs of the machine.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "data/Connection.h"

namespace kavidex::data {

class AdoConnection : public Connection {
public:
    // ADO's ConnectModeEnum; 12 is share exclusive. Before opening only.
    virtual void SetMode(std::int32_t mode) = 0;
    // Opens with empty user and password and options -1. Throws data::Error with ADO's number.
    virtual void OpenDatabase(std::string_view connectionString) = 0;
};

class AdoFactory {
public:
    virtual ~AdoFactory() = default;
    // A closed "ADODB.Connection"; throws platform::Error when the class is not there.
    virtual std::shared_ptr<AdoConnection> Create() = 0;
};

} // namespace kavidex::data
