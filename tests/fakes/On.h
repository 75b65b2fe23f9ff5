// A class of the data layer or the model on a connection, made in one line.
#pragma once

#include "data/Connection.h"
#include "platform/Workstation.h"

namespace kavidex::tests {

template <class Object>
struct On : Object {
    On(const platform::Workstation& workstation, const data::ConnectionPtr& connection)
        : Object(workstation) {
        if constexpr (requires { this->SetDatabaseObject(connection); })
            this->SetDatabaseObject(connection);
        else
            this->SetDbConnection(connection);
    }
};

} // namespace kavidex::tests
