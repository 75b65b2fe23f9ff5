// Repairs an Access file in place through the ODBC installer's data-source configuration call.
#pragma once

#include <memory>
#include <string_view>

namespace kavidex::data {

class AccessRepair {
public:
    virtual ~AccessRepair() = default;
    // Configures a data source (request 2) of `driver` with `attributes`; throws platform::Error
    // with the installer's words when it refuses, or when there is no installer.
    virtual void Configure(std::string_view driver, std::string_view attributes) = 0;
};

// The installer of this machine, loaded on first use (Windows only).
std::unique_ptr<AccessRepair> MakeAccessRepair();

} // namespace kavidex::data
